#include "tools/ObjectName.h"

#include <gtest/gtest.h>

#include "tools/Failure.h"

namespace tovi::test {
namespace {

TEST(ParseObjectName, TakesRecordNumbersAndReferences) {
    EXPECT_FALSE(parseObjectName("12").isAuth);
    EXPECT_EQ(parseObjectName("12").number, 12u);
    EXPECT_EQ(parseObjectName("18446744073709551615").number, ~std::uint64_t{0});
    EXPECT_TRUE(parseObjectName("auth:129").isAuth);
    EXPECT_EQ(parseObjectName("auth:65534").number, 65534u);
}

TEST(ParseObjectName, RefusesOtherTexts) {
    for (const char* text : {"", "x", "1x", "-1", "+1", " 1", "0x1", "18446744073709551616",
                             "auth:", "auth:x", "auth:65535", "auth:-1", "AUTH:1", "auth"}) {
        EXPECT_THROW(parseObjectName(text), UsageError) << text;
    }
}

}  // namespace
}  // namespace tovi::test
