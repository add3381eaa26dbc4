#include "tools/StoredValue.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tools/Text.h"
#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

using Kind = StoredValue::Kind;

template <class Type>
StoredValue valueIn(std::string hex) {
    hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
    Type record;
    ASN1::Error error;
    EXPECT_TRUE(ASN1::decode(*fromHex(hex), record, error)) << ASN1::toString(error);
    return storedValueOf(record);
}

TEST(StoredValueOf, TellsPathIndexAndLengthAsTheyStandInTheRecord) {
    const StoredValue whole = valueIn<PKCS15::PrivateKeyType>(
        "3019 3000 3007 040145 03020264 A10C 300A 3004 04024B01 02020400");
    EXPECT_EQ(whole.kind, Kind::file);
    EXPECT_EQ(whole.path, (Blob{0x4B, 0x01}));
    EXPECT_FALSE(whole.index);
    EXPECT_FALSE(whole.length);
    const StoredValue part =
        valueIn<PKCS15::DataType>("3013 3000 3000 A10D 300B 04024F01 02020100 800105");
    EXPECT_EQ(part.index, 256u);
    EXPECT_EQ(part.length, 5u);
    EXPECT_EQ(valueIn<PKCS15::DataType>("300F 3000 3000 A109 3007 04024F01 020107").length,
              std::nullopt);
}

TEST(StoredValueOf, LooksIntoEveryShapeOfRecord) {
    EXPECT_EQ(valueIn<PKCS15::DataType>("A114 3000 3000 A10E 300C 06022A03 30060404 3F004F01").path,
              (Blob{0x3F, 0x00, 0x4F, 0x01}))
        << "an object under an identifier";
    EXPECT_EQ(valueIn<PKCS15::SecretKeyType>(
                  "AE1B 06022A03 3015 3000 3007 040145 03020780 A108 3006 3004 04024D01")
                  .path,
              (Blob{0x4D, 0x01}))
        << "a key of any other algorithm";
    EXPECT_EQ(
        valueIn<PKCS15::CertificateType>("3011 3000 3003 040101 A108 3006 3004 04024E01").kind,
        Kind::file);
}

TEST(StoredValueOf, TakesTheValueThatStandsInTheRecord) {
    const StoredValue value = valueIn<PKCS15::DataType>("300B 3000 3000 A105 A003 020107");
    EXPECT_EQ(value.kind, Kind::inRecord);
    EXPECT_EQ(value.octets, (Blob{0x02, 0x01, 0x07}));
}

TEST(StoredValueOf, TellsValuesThatAreOutOfReach) {
    EXPECT_EQ(valueIn<PKCS15::DataType>("300B 3000 3000 A105 1303 612F62").kind, Kind::url);
    EXPECT_EQ(valueIn<PKCS15::DataType>("300E 3000 3000 A108 A106 3004 04024F01").kind,
              Kind::enveloped);
    EXPECT_EQ(valueIn<PKCS15::DataType>("300C 3000 3000 A106 3004 A0020500").kind, Kind::unknown)
        << "a path of ISO/IEC 7816-15";
    EXPECT_EQ(valueIn<PKCS15::DataType>("AB00").kind, Kind::none) << "an unknown alternative";
    EXPECT_EQ(valueIn<PKCS15::AuthenticationType>(
                  "301B 3000 3003 040101 A112 3010 03020640 0A0101 020104 020108 800181")
                  .kind,
              Kind::none);
}

}  // namespace
}  // namespace tovi::test
