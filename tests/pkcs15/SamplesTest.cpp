#include <gtest/gtest.h>

#include <cctype>

#include "tests/asn1/TestTools.h"
#include "tests/pkcs15/Records.h"
#include "tovi/asn1/Print.h"

namespace {

using namespace asn1test;
using ASN1::AnyValue, ASN1::Error;
using pkcs15test::Sample;

class SampleRecord : public testing::TestWithParam<Sample> {
protected:
    const Sample& sample = GetParam();
    AnyValue value{*sample.type};
    Error error;
};

std::string nameOf(const testing::TestParamInfo<Sample>& info) {
    std::string name;
    for (char c : info.param.name) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

TEST_P(SampleRecord, ComesBackOctetForOctet) {
    ASSERT_TRUE(ASN1::decode(sample.octets, value, error)) << toString(error);
    EXPECT_TRUE(ASN1::isValid(value));
    EXPECT_EQ(toHex(ASN1::encode(value)), toHex(sample.octets));
    const AnyValue clone = value;
    EXPECT_EQ(toHex(ASN1::encode(clone)), toHex(sample.octets));
    EXPECT_EQ(ASN1::print(value).find("--"), std::string::npos) << "something is not understood";
}

TEST_P(SampleRecord, IsRefusedWhereverItIsCut) {
    for (std::size_t size = 0; size < sample.octets.size(); ++size) {
        EXPECT_FALSE(ASN1::decode(ASN1::View(sample.octets).first(size), value, error)) << size;
        EXPECT_LE(error.offset, size);
        EXPECT_NE(toString(error), "");
    }
}

TEST_P(SampleRecord, IsRefusedOrStableWhereverAnOctetDiffers) {
    for (std::size_t at = 0; at < sample.octets.size(); ++at)
        for (const int change : {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xFF, 0x7F}) {
            ASN1::Octets mutant = sample.octets;
            mutant[at] ^= static_cast<std::uint8_t>(change);
            if (!ASN1::decode(mutant, value, error)) {
                EXPECT_LE(error.offset, mutant.size());
                continue;
            }
            const bool isValid = ASN1::isValid(value);
            const ASN1::Octets der = ASN1::encode(value);
            AnyValue again(*sample.type);
            ASSERT_TRUE(ASN1::decode(der, again, error)) << toHex(mutant) << toString(error);
            EXPECT_EQ(ASN1::encode(again), der) << toHex(mutant);
            EXPECT_EQ(ASN1::isValid(again), isValid) << toHex(mutant);
        }
}

TEST_P(SampleRecord, ReadsTheSameWithIndefiniteLengths) {
    // The outermost length made indefinite.
    ASN1::Octets ber = {sample.octets[0], 0x80};
    const std::size_t header = sample.octets[1] < 0x80 ? 2 : 2 + (sample.octets[1] & 0x7F);
    ber.append(ASN1::View(sample.octets).subspan(header));
    ber.append(ASN1::Octets{0, 0});
    ASSERT_TRUE(ASN1::decode(ber, value, error)) << toString(error);
    EXPECT_EQ(toHex(ASN1::encode(value)), toHex(sample.octets));
}

INSTANTIATE_TEST_SUITE_P(PKCS15, SampleRecord, testing::ValuesIn(pkcs15test::readSamples()),
                         nameOf);

}  // namespace
