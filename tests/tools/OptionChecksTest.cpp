#include "tools/OptionChecks.h"

#include <gtest/gtest.h>

namespace tovi::test {
namespace {

TEST(OptionChecks, TakeWhatTheCardCanHold) {
    EXPECT_EQ(checkedAid("A0"), "");
    EXPECT_EQ(checkedAid(std::string(32, 'a')), "");
    EXPECT_NE(checkedAid(""), "");
    EXPECT_NE(checkedAid(std::string(34, 'a')), "");
    EXPECT_EQ(checkedLabel(""), "");
    EXPECT_EQ(checkedLabel(std::string(255, 'x')), "");
    EXPECT_NE(checkedLabel(std::string(256, 'x')), "");
    EXPECT_NE(checkedLabel("\xC3"), "");
    EXPECT_EQ(checkedSerial("00"), "");
    EXPECT_NE(checkedSerial(""), "");
    EXPECT_NE(checkedSerial("0"), "");
    EXPECT_NE(checkedSerial(std::string(512, '0')), "");
    EXPECT_EQ(checkedFid("4b01"), "");
    EXPECT_NE(checkedFid("4B"), "");
    EXPECT_NE(checkedFid("4B0101"), "");
    EXPECT_EQ(checkedNotEmpty("x"), "");
    EXPECT_NE(checkedNotEmpty(""), "");
}

}  // namespace
}  // namespace tovi::test
