#include "tools/ValueText.h"

#include <gtest/gtest.h>

#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

TEST(ValueText, HasTheNamesOfTheMembersAndNoControlCharacters) {
    PKCS15::CommonObjectAttributes attributes;
    attributes.label = PKCS15::Label();
    *attributes.label =
        "A\x1B"
        "B";
    const std::string text = valueText(attributes);
    EXPECT_NE(text.find("label"), std::string::npos);
    EXPECT_EQ(text.find('\x1B'), std::string::npos);
    EXPECT_NE(text.find('\n'), std::string::npos);
}

TEST(Indented, IndentsAndEndsEachLine) {
    EXPECT_EQ(indented("a\nb", 2), "  a\n  b\n");
    EXPECT_EQ(indented("a\n\nb\n", 1), " a\n \n b\n");
    EXPECT_EQ(indented("", 4), "");
}

}  // namespace
}  // namespace tovi::test
