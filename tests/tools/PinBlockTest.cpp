#include "tools/PinBlock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/Text.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

enum Type : std::uint32_t { bcd, asciiNumeric, utf8, halfNibble, iso9564 };
constexpr std::uint32_t caseSensitive = 1, needsPadding = 1 << 5;

AuthInfo pinOf(std::uint32_t type, std::uint32_t flags = 0) {
    AuthInfo pin;
    pin.type = AuthType::pin;
    pin.pinType = type;
    pin.pinFlags = flags;
    pin.minLength = 4;
    pin.storedLength = 8;
    pin.hasPadChar = true;
    pin.padChar = 0xFF;
    return pin;
}

void enter(Secret& secret, std::string_view text) {
    for (const char c : text) ASSERT_TRUE(secret.push_back(static_cast<std::uint8_t>(c)));
}

/// The octets that are compared, or the reason why not.
std::string coded(const AuthInfo& pin, std::string_view text) {
    Secret entered, block;
    enter(entered, text);
    const std::string reason = reasonAgainst(pin, entered);
    if (!reason.empty()) return reason;
    encodePin(pin, entered, block);
    return toHex(Blob(block.octets()));
}

TEST(PinBlock, WritesDigitsAsText) {
    EXPECT_EQ(coded(pinOf(asciiNumeric), "12345"), "3132333435");
    EXPECT_EQ(coded(pinOf(asciiNumeric, needsPadding), "12345"), "3132333435FFFFFF");
    EXPECT_EQ(coded(pinOf(asciiNumeric, needsPadding), "12345678"), "3132333435363738");
}

TEST(PinBlock, PacksDigits) {
    EXPECT_EQ(coded(pinOf(bcd), "1234"), "1234");
    EXPECT_EQ(coded(pinOf(bcd), "12345"), "12345F");
    AuthInfo pin = pinOf(bcd, needsPadding);
    pin.padChar = 0x00;
    EXPECT_EQ(coded(pin, "12345"), "1234500000000000");
    pin = pinOf(bcd);
    pin.hasPadChar = false;
    EXPECT_EQ(coded(pin, "12345"), "12345F");
}

TEST(PinBlock, PutsADigitIntoTheLowHalfOfEachOctet) {
    EXPECT_EQ(coded(pinOf(halfNibble), "1290"), "F1F2F9F0");
}

TEST(PinBlock, MakesTheBlockOfISO9564) {
    EXPECT_EQ(coded(pinOf(iso9564), "1234"), "241234FFFFFFFFFF");
    EXPECT_EQ(coded(pinOf(iso9564, needsPadding), "12345"), "2512345FFFFFFFFF");
    AuthInfo pin = pinOf(iso9564);
    EXPECT_EQ(coded(pin, "123456789012"), "2C123456789012FF");
    EXPECT_EQ(coded(pin, "1234567890123"), "has at most 12 digits");
}

TEST(PinBlock, WritesInUpperCaseUnlessThePinIsCaseSensitive) {
    EXPECT_EQ(coded(pinOf(utf8), "aBz9"), "41425A39");
    EXPECT_EQ(coded(pinOf(utf8, caseSensitive), "aBz9"), "61427A39");
    EXPECT_EQ(coded(pinOf(utf8),
                    "\xC3\xA4"
                    "bcd"),
              "C3A4424344");
}

TEST(PinBlock, TakesDigitsOnlyWhereTheTypeSaysSo) {
    for (const std::uint32_t type : {bcd, asciiNumeric, halfNibble, iso9564})
        EXPECT_EQ(coded(pinOf(type), "12a4"), "has digits only") << type;
    EXPECT_EQ(coded(pinOf(utf8, caseSensitive), "12a4"), "31326134");
}

TEST(PinBlock, CountsCharacters) {
    AuthInfo pin = pinOf(utf8, caseSensitive);
    pin.maxLength = 5;
    EXPECT_EQ(coded(pin, "abc"), "has at least 4 characters");
    EXPECT_EQ(coded(pin, "\xC3\xA4\xC3\xA4\xC3\xA4"), "has at least 4 characters");
    EXPECT_EQ(coded(pin, "abcdef"), "has at most 5 characters");
    pin.maxLength = noAuthValue;
    EXPECT_EQ(coded(pin, "abcdefghi"), "takes at most 8 octets");
    EXPECT_EQ(coded(pin, "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4x"), "takes at most 8 octets");
    pin.minLength = 0;
    EXPECT_EQ(coded(pin, ""), "cannot be empty");
}

TEST(PinBlock, MeasuresPackedDigitsInOctets) {
    AuthInfo pin = pinOf(bcd);
    pin.storedLength = 4;
    EXPECT_EQ(coded(pin, "12345678"), "12345678");
    EXPECT_EQ(coded(pin, "123456789"), "takes at most 4 octets");
}

TEST(PinBlock, TakesALengthThatIsNotToldForNoLimit) {
    AuthInfo pin = pinOf(utf8, caseSensitive);
    pin.minLength = pin.storedLength = noAuthValue;
    EXPECT_EQ(coded(pin, "1"), "31");
    pin.storedLength = 0;
    EXPECT_EQ(coded(pin, "123456789"), "313233343536373839");
}

TEST(PinBlock, NeedsToKnowHowToPad) {
    AuthInfo pin = pinOf(asciiNumeric, needsPadding);
    pin.hasPadChar = false;
    EXPECT_THAT(coded(pin, "1234"), HasSubstr("not say with what"));
    pin = pinOf(asciiNumeric, needsPadding);
    pin.storedLength = 0;
    EXPECT_THAT(coded(pin, "1234"), HasSubstr("not say how much"));
    pin.storedLength = 256;
    EXPECT_THAT(coded(pin, "1234"), HasSubstr("more than 255"));
    pin.storedLength = 255;
    EXPECT_EQ(coded(pin, "1234").size(), 2 * 255u);
}

TEST(PinBlock, RefusesWhatVerifyCannotCarry) {
    EXPECT_THAT(coded(pinOf(utf8, 1 << 9), "1234"), HasSubstr("secure messaging"));
    EXPECT_THAT(coded(pinOf(utf8, 1 << 10), "1234"), HasSubstr("secure messaging"));
    EXPECT_THAT(coded(pinOf(5), "1234"), HasSubstr("not known"));
    EXPECT_THAT(coded(pinOf(noAuthValue), "1234"), HasSubstr("not known"));
    AuthInfo template_ = pinOf(utf8);
    template_.type = AuthType::biometric;
    EXPECT_EQ(coded(template_, "1234"), "is no PIN");
}

}  // namespace
}  // namespace tovi::test
