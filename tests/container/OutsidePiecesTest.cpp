#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"
#include "tovi/interfaces/PKCS15AuthCT.h"
#include "tovi/interfaces/PKCS15CT.h"

// What the container makes of the answers of outside pieces. This executable has pieces of its own
// in place of the library's: access-control parts are never acceptable, and the coder of
// authentication objects looks at the container that calls it.
namespace tovi {

namespace test {
namespace {

PKCS15Container* reader = nullptr;
std::vector<std::size_t> containersSeen;  // by each call of a decoder of authentication objects

bool look() {
    containersSeen.push_back(reader ? reader->getContainerInfos().size() : 0);
    return false;
}

}  // namespace
}  // namespace test

bool PKCS15CT::decodeAuthConstraints(const PKCS15::CommonObjectAttributes&) { return false; }
bool PKCS15CT::encodeAuthConstraints(const byte_array*, PKCS15::CommonObjectAttributes&) {
    return false;
}

template <class Attributes>
using AuthObject = PKCS15::AuthenticationObject<Attributes>;

bool PKCS15AuthCT::decodePinInfo(Info&, const AuthObject<PKCS15::PinAttributes>&) {
    return test::look();
}
bool PKCS15AuthCT::decodeBioInfo(Info&, const AuthObject<PKCS15::BiometricAttributes>&) {
    return test::look();
}
bool PKCS15AuthCT::decodeAuthKeyInfo(Info&, const AuthObject<PKCS15::AuthKeyAttributes>&) {
    return test::look();
}
bool PKCS15AuthCT::decodeExternalInfo(Info&,
                                      const AuthObject<PKCS15::ExternalAuthObjectAttributes>&) {
    return test::look();
}

namespace test {
namespace {

TEST(OutsidePieces, GiveARecordARowOfItsKindThoughItsAccessControlIsNotAcceptable) {
    const auto container = containerOf(fullCard());
    const std::vector<unsigned> expected = {6, 1, 1, 2, 2, 18, 3, 3, 35, 19, 7, 4, 5};
    ASSERT_EQ(container->getFATRecords().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(container->getFATRecords()[i].objectType, expected[i]) << i;
}

template <class Raws>
void expectNoneDecoded(const Raws& raws) {
    EXPECT_FALSE(raws.empty());
    for (const auto& raw : raws) {
        EXPECT_FALSE(raw.isDecoded);
        EXPECT_TRUE(raw.isValid);
    }
}

TEST(OutsidePieces, LeaveARecordUndecodedWhoseAccessControlIsNotAcceptable) {
    const auto container = containerOf(fullCard());
    expectNoneDecoded(container->getRawPrivateKeys());
    expectNoneDecoded(container->getRawPublicKeys());
    expectNoneDecoded(container->getRawTrustedPublicKeys());
    expectNoneDecoded(container->getRawSecretKeys());
    expectNoneDecoded(container->getRawCertificates());
    expectNoneDecoded(container->getRawTrustedCertificates());
    expectNoneDecoded(container->getRawUsefulCertificates());
    expectNoneDecoded(container->getRawDataObjects());
}

TEST(OutsidePieces, GetTheRestOfARecordDecodedAllTheSame) {
    const auto container = containerOf(CardBuilder().privateKeys(
        {privateKey({.common = {.label = "mine"}, .usage = namedBits({sign, decrypt})})}));
    EXPECT_EQ(container->getPrivateKeyInfo(1).label, text("mine"));
    EXPECT_EQ(container->getPrivateKeyInfo(1).fid, 0x4B01u);
    EXPECT_EQ(container->getContainerInfos().size(), 1u) << "it takes part in pairing";
}

TEST(OutsidePieces, SeeAuthenticationObjectsLast) {
    TestCard card(CardBuilder()
                      .authObjects({pin(), biometricTemplate(), authKey(), externalByCertificate()})
                      .privateKeys({privateKey({.usage = namedBits({sign, decrypt})})}));
    const auto container = makeContainer();
    reader = container.get();
    containersSeen.clear();
    container->readFromCard(card.os());
    reader = nullptr;
    EXPECT_EQ(containersSeen, std::vector<std::size_t>(4, 1));
}

}  // namespace
}  // namespace test
}  // namespace tovi
