#include "tovi/container/ASN1Decode.h"

#include <gtest/gtest.h>

#include "tests/support/Records.h"
#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

template <class T>
class Decoder {
public:
    Decoder() { ASN1_configureCoderEnv(&env_, ASN1_getPKCS15()); }
    ~Decoder() { clearObjects(out); }

    bool decode(const std::vector<Blob>& records) { return ASN1_decode<T>(&env_, records, out); }

    std::vector<ASN1Object<T>> out;

private:
    ASN1::CoderEnv env_;
};

TEST(ASN1Decode, MakesAValueOfEveryRecordInOrder) {
    Decoder<PKCS15::PrivateKeyType> decoder;
    EXPECT_TRUE(decoder.decode({privateKey(), privateKey({.type = Key::dsa})}));
    ASSERT_EQ(decoder.out.size(), 2u);
    EXPECT_EQ(decoder.out[0].value->selectionName(), "privateRSAKey");
    EXPECT_EQ(decoder.out[1].value->selectionName(), "privateDSAKey");
    for (const auto& object : decoder.out) {
        EXPECT_TRUE(object.isValid);
        EXPECT_FALSE(object.isDecoded);
    }
}

TEST(ASN1Decode, LeavesAnElementWithoutValueForARecordThatDoesNotDecode) {
    Decoder<PKCS15::DataType> decoder;
    EXPECT_TRUE(decoder.decode({dataRecord(), undecodable(), Blob(), dataRecord()}));
    ASSERT_EQ(decoder.out.size(), 4u);
    EXPECT_NE(decoder.out[0].value, nullptr);
    EXPECT_NE(decoder.out[3].value, nullptr);
    for (const std::size_t i : {1u, 2u}) {
        EXPECT_EQ(decoder.out[i].value, nullptr);
        EXPECT_FALSE(decoder.out[i].isValid);
        EXPECT_FALSE(decoder.out[i].isDecoded);
    }
}

TEST(ASN1Decode, KeepsAValueThatBreaksAConstraintAndSaysSo) {
    Decoder<PKCS15::CertificateType> decoder;
    EXPECT_TRUE(decoder.decode({certificate({.id = times(256, 0x45)})}));
    ASSERT_EQ(decoder.out.size(), 1u);
    EXPECT_NE(decoder.out[0].value, nullptr);
    EXPECT_FALSE(decoder.out[0].isValid);
}

TEST(ASN1Decode, AppendsBehindWhatIsThere) {
    Decoder<PKCS15::PKCS15Objects> decoder;
    decoder.decode({odfEntry(0, path("4401"))});
    auto* first = decoder.out[0].value;
    decoder.decode({odfEntry(4, path("4405")), odfEntry(8, path("4409"))});
    ASSERT_EQ(decoder.out.size(), 3u);
    EXPECT_EQ(decoder.out[0].value, first);
    EXPECT_EQ(decoder.out[2].value->selectionName(), "authObjects");
}

TEST(ASN1Decode, MakesNothingOfNoRecords) {
    Decoder<PKCS15::TokenInfo> decoder;
    EXPECT_TRUE(decoder.decode({}));
    EXPECT_TRUE(decoder.out.empty());
}

TEST(ASN1Decode, MakesRoomForAllRecordsAtOnce) {
    Decoder<PKCS15::SecretKeyType> decoder;
    decoder.decode(std::vector<Blob>(5, secretKey()));
    EXPECT_EQ(decoder.out.capacity(), 5u);
}

template <class T>
bool decodesAlone(const Blob& record) {
    Decoder<T> decoder;
    return decoder.decode({record}) && decoder.out[0].value && decoder.out[0].isValid;
}

TEST(ASN1Decode, DecodesRecordsOfEveryFile) {
    EXPECT_TRUE(decodesAlone<PKCS15::TokenInfo>(tokenInfo()));
    EXPECT_TRUE(decodesAlone<PKCS15::PKCS15Objects>(odfEntry(0, path("4401"))));
    EXPECT_TRUE(decodesAlone<PKCS15::PrivateKeyType>(privateKey()));
    EXPECT_TRUE(decodesAlone<PKCS15::PublicKeyType>(publicKey()));
    EXPECT_TRUE(decodesAlone<PKCS15::SecretKeyType>(secretKey()));
    EXPECT_TRUE(decodesAlone<PKCS15::CertificateType>(certificate()));
    EXPECT_TRUE(decodesAlone<PKCS15::DataType>(dataRecord()));
    EXPECT_TRUE(decodesAlone<PKCS15::AuthenticationType>(pin()));
}

TEST(ASN1Decode, MakesNoValueWithAnEnvironmentWithoutModule) {
    ASN1::CoderEnv env;
    std::vector<ASN1Object<PKCS15::DataType>> out;
    EXPECT_TRUE(ASN1_decode<PKCS15::DataType>(&env, {dataRecord()}, out));
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0].value, nullptr);
    clearObjects(out);
}

TEST(ASN1Decode, MakesNoValueOfARecordWithOctetsBehindIt) {
    Decoder<PKCS15::DataType> decoder;
    const Blob record = dataRecord();
    EXPECT_TRUE(decoder.decode({join({record, Blob{0x00}}), join({record, record}), record}));
    ASSERT_EQ(decoder.out.size(), 3u);
    EXPECT_EQ(decoder.out[0].value, nullptr);
    EXPECT_EQ(decoder.out[1].value, nullptr);
    EXPECT_NE(decoder.out[2].value, nullptr);
}

}  // namespace
}  // namespace tovi::test
