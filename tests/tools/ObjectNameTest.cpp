#include "tools/ObjectName.h"

#include <gtest/gtest.h>

#include "tools/Failure.h"

namespace tovi::test {
namespace {

TEST(ParseObjectName, TakesRecordNumbersReferencesAndIdentifiers) {
    EXPECT_FALSE(parseObjectName("12").auth);
    EXPECT_EQ(parseObjectName("12").record, 12u);
    EXPECT_EQ(parseObjectName("18446744073709551615").record, ~std::uint64_t{0});
    EXPECT_EQ(parseObjectName("auth:129").auth.value().reference, 129u);
    EXPECT_EQ(parseObjectName("auth:65534").auth.value().reference, 65534u);
    const AuthName name = parseObjectName("auth:id=0a0B").auth.value();
    EXPECT_EQ(name.reference, noReference);
    EXPECT_EQ(name.text(), "id=0A0B");
}

TEST(ParseObjectName, RefusesOtherTexts) {
    for (const char* text : {"", "x", "1x", "-1", "+1", " 1", "0x1", "18446744073709551616",
                             "auth:", "auth:x", "auth:65535", "auth:-1", "AUTH:1", "auth",
                             "auth:id=", "auth:id=0", "auth:id=xx", "auth:ID=01", "id=01"}) {
        EXPECT_THROW(parseObjectName(text), UsageError) << text;
    }
}

}  // namespace
}  // namespace tovi::test
