#include "tovi/card/Apdu.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

CommandApdu parsed(const std::string& hex) {
    CommandApdu command;
    EXPECT_TRUE(CommandApdu::parse(octets(hex), command)) << hex;
    return command;
}

TEST(CommandApdu, EncodesTheFourShortCases) {
    CommandApdu command{0x00, 0xB0, 0x01, 0x02, {}, 0};
    EXPECT_EQ(hexOf(command.encode()), "00B00102");
    command.expected = 256;
    EXPECT_EQ(hexOf(command.encode()), "00B0010200");
    command.data = octets("AABB");
    EXPECT_EQ(hexOf(command.encode()), "00B0010202AABB00");
    command.expected = 0;
    EXPECT_EQ(hexOf(command.encode()), "00B0010202AABB");
}

TEST(CommandApdu, TakesExtendedLengthFieldsOnlyWhereShortOnesDoNotDo) {
    CommandApdu command{0x00, 0xB0, 0x00, 0x00, {}, 257};
    EXPECT_EQ(hexOf(command.encode()), "00B00000000101");
    command.expected = 65536;
    EXPECT_EQ(hexOf(command.encode()), "00B00000000000");
    command.data = filled(256, 0xAA);
    command.expected = 0;
    EXPECT_EQ(hexOf(command.encode()).substr(0, 18), "00B00000000100AAAA");
    command.expected = 1;
    const Blob both = command.encode();
    EXPECT_EQ(both.size(), 4u + 3 + 256 + 2);
    EXPECT_EQ(hexOf(slice(both, 263, 2)), "0001");
}

TEST(CommandApdu, ParsesEveryCaseAsItWasEncoded) {
    EXPECT_EQ(parsed("00A40000").expected, 0u);
    EXPECT_EQ(parsed("00A4000000").expected, 256u);
    EXPECT_EQ(parsed("00A4000010").expected, 16u);
    EXPECT_EQ(hexOf(parsed("00A40000023F00").data), "3F00");
    EXPECT_EQ(parsed("00A40000023F0005").expected, 5u);
    EXPECT_EQ(parsed("00B00000000000").expected, 65536u);
    EXPECT_EQ(parsed("00B00000000101").expected, 257u);
    EXPECT_EQ(hexOf(parsed("00D60000000002AABB").data), "AABB");
    EXPECT_EQ(parsed("00D60000000002AABB0000").expected, 65536u);
    EXPECT_TRUE(parsed("00D60000000002AABB").extended);
    EXPECT_FALSE(parsed("00A4000000").extended);
}

TEST(CommandApdu, RefusesLengthsThatContradictEachOther) {
    for (const char* hex :
         {"", "00A400", "00A40000023F", "00A40000023F000000", "00A400000000", "00D600000000010000",
          "00D60000000002AA", "00D60000000002AABB00", "00D60000000000AA"}) {
        CommandApdu command;
        EXPECT_FALSE(CommandApdu::parse(octets(hex), command)) << hex;
    }
}

TEST(ResponseApdu, SplitsOffTheStatusWord) {
    ResponseApdu response;
    ASSERT_TRUE(ResponseApdu::parse(octets("01029000"), response));
    EXPECT_EQ(hexOf(response.data), "0102");
    EXPECT_EQ(response.status, 0x9000);
    EXPECT_EQ(hexOf(response.encode()), "01029000");
    EXPECT_FALSE(ResponseApdu::parse(octets("90"), response));
    EXPECT_FALSE(ResponseApdu::parse({}, response));
}

}  // namespace
}  // namespace tovi::test
