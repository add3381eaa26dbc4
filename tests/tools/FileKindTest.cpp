#include "tools/FileKind.h"

#include <gtest/gtest.h>

#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

TEST(FileKind, FollowsTheAlternativesOfTheODF) {
    const char* names[] = {"PrKDF",      "PuKDF",     "TrustedPuKDF", "SKDF", "CDF",
                           "TrustedCDF", "UsefulCDF", "DODF",         "AODF"};
    for (std::size_t choice = 0; choice < 9; ++choice) {
        EXPECT_EQ(directoryFileKind(choice).name, names[choice]);
        EXPECT_NE(directoryFileKind(choice).record, nullptr);
    }
    EXPECT_EQ(directoryFileKind(2).record, directoryFileKind(1).record);
    EXPECT_EQ(otherFile.record, nullptr);
}

}  // namespace
}  // namespace tovi::test
