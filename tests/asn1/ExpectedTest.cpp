#include "tovi/asn1/Expected.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::Octets;

constexpr std::string_view withoutSerial = "30 03 0A 01 01";

TEST(Expected, StaysLeftOutWhenItIsWrittenBackEmpty) {
    auto value = decoded<Strict>(withoutSerial);
    EXPECT_TRUE(value.serial.isLeftOut());
    EXPECT_TRUE(value.serial.empty());
    value.serial = Octets();
    EXPECT_EQ(encoded(value), "30030A0101");
    EXPECT_TRUE(value.isValid());
}

TEST(Expected, ComesBackWithAValue) {
    auto value = decoded<Strict>(withoutSerial);
    value.serial = Octets{0xAA};
    EXPECT_FALSE(value.serial.isLeftOut());
    EXPECT_EQ(encoded(value), "30060401AA0A0101");
}

TEST(Expected, IsWrittenEmptyWhereNobodyReadIt) {
    Strict value;
    EXPECT_EQ(encoded(value), "300504000A0100");
}

TEST(Expected, IsWrittenEmptyWhereItWasReadEmpty) {
    EXPECT_EQ(encoded(decoded<Strict>("30 05 04 00 0A 01 01")), "300504000A0101");
}

TEST(Expected, RemembersAcrossACopy) {
    const Strict copy = decoded<Strict>(withoutSerial);
    EXPECT_EQ(encoded(copy), "30030A0101");
}

TEST(Expected, IsNoOptionalMember) {
    const auto value = decoded<Strict>(withoutSerial);
    EXPECT_FALSE(value.hasOptionalField(0));  // flags
    EXPECT_EQ(ASN1::optionalAt(Strict::type, 0)->name, "flags");
    EXPECT_EQ(ASN1::memberAt(Strict::type, 0)->name, "serial");
}

}  // namespace
