// A directory handler may decline to write a record. The library's own never does; one that takes
// its place might, and the container has always taken it so.

#include <gtest/gtest.h>

#include "tests/coders/ScriptedHandler.h"
#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

/// A container with one private key, "old": record 1, and 2 for the key container made of it.
class DeclinedWrites : public testing::Test {
protected:
    DeclinedWrites() {
        const Blob keys = absolutePath(directoryFID(Directory::privateKeys));
        handlerScript() = {};
        handlerScript().files = {
            {PKCS15_EF_TOKEN_INFO, {tokenInfo()}},
            {PKCS15_EF_ODF, {odfEntry(0, sequence(octetString(keys)))}},
            {keys, {privateKey({.type = Key::ec, .common = {.label = "old"}})}}};
        container->readFromCard(card.os());
    }

    TestCard card{CardBuilder()};
    std::unique_ptr<PKCS15Container> container = makeContainer();
};

TEST_F(DeclinedWrites, OfANewRecordAreAFailure) {
    handlerScript().answer = false;
    PKCS15ObjectInfo<PrivateKeyInfo> info;
    info.keyType = CKK_EC;
    EXPECT_EQ(failureOf([&] { container->writePrivateKeyInfo(card.os(), info); }),
              smartcardFailure("encode info failed", "PKCS15Container::writeInfo"));
    EXPECT_EQ(container->getPrivateKeyInfos().size(), 1u);
    EXPECT_EQ(container->getRawPrivateKeys().size(), 1u);
    EXPECT_EQ(container->getFATRecords().size(), 3u);
    EXPECT_EQ(info.recordNumber, noRecord);
}

TEST_F(DeclinedWrites, OfAnUpdateLeaveTheNewInfoInMemory) {
    handlerScript().answer = false;
    const PKCS15::PrivateKeyType* const before = container->getRawPrivateKeys().at(0).value;
    PKCS15ObjectInfo<PrivateKeyInfo> info = container->getPrivateKeyInfo(1);
    info.label = text("new");
    container->updatePrivateKeyInfo(card.os(), info);
    EXPECT_EQ(container->getPrivateKeyInfo(1).label, text("new"));
    EXPECT_EQ(container->getRawPrivateKeys().at(0).value, before);
}

TEST_F(DeclinedWrites, OfTokenInfoAreAFailure) {
    handlerScript().answer = false;
    const PKCS15::TokenInfo* const before = container->getRawTokenInfos().at(0).value;
    const Blob label = container->getTokenInfo().info.label;
    PKCS15TokenInfo info = container->getTokenInfo();
    info.info.label = text("new");
    EXPECT_EQ(failureOf([&] { container->updateTokenInfo(card.os(), info); }),
              smartcardFailure("update file failed", "PKCS15Container::encodeTokenInfo"));
    EXPECT_EQ(container->getTokenInfo().info.label, label);
    EXPECT_EQ(container->getRawTokenInfos().at(0).value, before);
}

TEST_F(DeclinedWrites, OfADeletionAreAFailure) {
    handlerScript().answer = false;
    EXPECT_EQ(failureOf([&] { container->deleteObjectInfo(card.os(), 1); }),
              smartcardFailure("failed to delete object", "PKCS15Container::deleteObjectInfo"));
    EXPECT_EQ(container->getPrivateKeyInfo(1).label, text("old"));
}

TEST_F(DeclinedWrites, AreToldFromWrites) {
    PKCS15ObjectInfo<PrivateKeyInfo> info = container->getPrivateKeyInfo(1);
    info.label = text("new");
    handlerScript().position = 0;
    EXPECT_EQ(container->writePrivateKeyInfo(card.os(), info), 3u);
    ASSERT_EQ(container->getPrivateKeyInfos().size(), 2u);
    EXPECT_EQ(container->getPrivateKeyInfos()[0].label, text("new"));
    EXPECT_EQ(container->getPrivateKeyInfos()[1].label, text("old"));
}

}  // namespace
}  // namespace tovi::test
