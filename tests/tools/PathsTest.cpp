#include "tools/Paths.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

const Blob root = {0x3F, 0x00, 0x50, 0x15};

TEST(AbsolutePath, KeepsAPathFromTheMasterFile) {
    EXPECT_EQ(absolutePath(root, Blob{0x3F, 0x00, 0x2F, 0x00}), (Blob{0x3F, 0x00, 0x2F, 0x00}));
}

TEST(AbsolutePath, PutsARelativeOneBelowTheApplication) {
    EXPECT_EQ(absolutePath(root, Blob{0x44, 0x01}), (Blob{0x3F, 0x00, 0x50, 0x15, 0x44, 0x01}));
    EXPECT_EQ(absolutePath(root, Blob{}), root);
}

TEST(AbsolutePath, ReadsTheNameOfTheCurrentFolder) {
    EXPECT_EQ(absolutePath(root, Blob{0x3F, 0xFF, 0x44, 0x01}),
              (Blob{0x3F, 0x00, 0x50, 0x15, 0x44, 0x01}));
}

TEST(BeginsWith, ComparesOctets) {
    EXPECT_TRUE(beginsWith(root, Blob{0x3F, 0x00}));
    EXPECT_TRUE(beginsWith(root, root));
    EXPECT_TRUE(beginsWith(root, Blob{}));
    EXPECT_FALSE(beginsWith(Blob{0x3F}, Blob{0x3F, 0x00}));
    EXPECT_FALSE(beginsWith(root, Blob{0x3F, 0x01}));
}

}  // namespace
}  // namespace tovi::test
