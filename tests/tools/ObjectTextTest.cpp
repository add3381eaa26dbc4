#include "tools/ObjectText.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

const Style plain(false);

TEST(FieldsText, ShowsEachKindOfValueOnALine) {
    const Json object = {
        {"label", "L"},
        {"count", 3},
        {"nothing", nullptr},
        {"no", false},
        {"yes", true},
        {"list", {"a", "b"}},
        {"attributes", {{"CKA_SIGN", true}, {"CKA_WRAP", false}, {"CKA_ID", "01"}}},
        {"rows", {{{"n", 1}, {"ops", {"x", "y"}}}, {{"n", 2}, {"id", ""}}}}};
    EXPECT_EQ(fieldsText(object, plain),
              "  label       L\n"
              "  count       3\n"
              "  no          no\n"
              "  yes         yes\n"
              "  list        a, b\n"
              "  attributes  CKA_SIGN, CKA_ID 01\n"
              "  rows        (n 1, ops x, y), (n 2)\n");
}

TEST(FieldsText, ShowsTheLabelInHexOnlyWhereItSaysMore) {
    EXPECT_EQ(fieldsText({{"label", "L"}, {"labelHex", "4C"}}, plain), "  label  L\n");
    EXPECT_EQ(fieldsText({{"label", "\xEF\xBF\xBD"}, {"labelHex", "FF"}}, plain),
              "  label     \xEF\xBF\xBD\n  labelHex  FF\n");
}

TEST(PathText, AddsThePartOfTheFile) {
    EXPECT_EQ(pathText({}), "");
    EXPECT_EQ(pathText({Blob{0x4B, 0x01}, 0, 0}), "4B01");
    EXPECT_EQ(pathText({Blob{0x4B, 0x01}, 16, 0}), "4B01[16+0]");
    EXPECT_EQ(pathText({Blob{0x4B, 0x01}, 0, 256}), "4B01[0+256]");
}

}  // namespace
}  // namespace tovi::test
