#include "tools/TextTable.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

const Style plain(false);

TEST(TextTable, AlignsColumnsByWhatIsSeen) {
    TextTable table({"n", "name", "id"});
    table.add({"1", "\xC3\xA9", "01"});
    table.add({"22", "ab", "02"});
    EXPECT_EQ(table.text(plain),
              "  n   name  id\n"
              "  1   \xC3\xA9     01\n"
              "  22  ab    02\n");
}

TEST(TextTable, LeavesOutColumnsThatAreEmpty) {
    TextTable table({"a", "b", "c"});
    table.add({"1", "", "3"});
    table.add({"4"});
    EXPECT_EQ(table.text(plain, 0),
              "a  c\n"
              "1  3\n"
              "4\n");
}

TEST(TextTable, MakesCellsFitForATerminal) {
    TextTable table({"a"});
    table.add({"x\x1B\n"});
    EXPECT_EQ(table.text(plain, 0), "a\nx\\x1B\\x0A\n");
}

TEST(TextTable, KnowsWhetherItHasRows) {
    TextTable table({"a"});
    EXPECT_TRUE(table.empty());
    table.add({"1"});
    EXPECT_FALSE(table.empty());
}

TEST(FieldList, AlignsValuesAndLeavesOutEmptyOnes) {
    FieldList fields;
    fields.add("label", "A\tB");
    fields.add("id", "");
    fields.add("authId", "01");
    EXPECT_EQ(fields.text(plain),
              "  label   A\\x09B\n"
              "  authId  01\n");
}

TEST(Style, ColoursOnlyWhereWanted) {
    EXPECT_EQ(plain.warning("x"), "x");
    EXPECT_EQ(Style(true).warning("x"), "\x1B[33mx\x1B[0m");
    EXPECT_EQ(Style(true).error("x"), "\x1B[31mx\x1B[0m");
    EXPECT_EQ(Style(true).heading("x"), "\x1B[1mx\x1B[0m");
    EXPECT_EQ(Style(true).dim("x"), "\x1B[2mx\x1B[0m");
}

}  // namespace
}  // namespace tovi::test
