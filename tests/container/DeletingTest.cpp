#include <gtest/gtest.h>

#include "tests/container/WritableKinds.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"

namespace tovi::test {
namespace {

constexpr const char* deleteObject = "PKCS15Container::deleteObjectInfo";
constexpr const char* deleteAuth = "PKCS15Container::deleteAuthInfo";
constexpr const char* handlerOperation = "ProfileDFHandler::DeleteSequence";
using Labels = std::vector<Blob>;
const FATInfo freed{};

ScriptedCardOS::Script refusingWrites() {
    return [](std::size_t, const std::string& call) {
        if (call.starts_with("update"))
            throw SmartcardException("refused", "test", statusWordCode + 0x6982);
    };
}

Failure failureOfDeleting(PKCS15Container& container, ISCardOS* os, unsigned long recordNumber) {
    return failureOf([&] { container.deleteObjectInfo(os, recordNumber); });
}

template <class Kind>
CardBuilder threeRecords() {
    return CardBuilder().directory(
        Kind::directory, {Kind::record("one"), Kind::record("two"), Kind::record("three")});
}

template <class Kind>
void expectLabels(const PKCS15Container& container, const Labels& labels) {
    EXPECT_EQ(Kind::labels(container), labels);
    EXPECT_EQ(Kind::rawLabels(container), labels);
}

template <class Kind>
class DeleteEveryKind : public testing::Test {};
TYPED_TEST_SUITE(DeleteEveryKind, WritableKinds);

TYPED_TEST(DeleteEveryKind, FreesTheRowAndKeepsOtherRecordNumbers) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    const auto rows = card->getFATRecords();
    card->deleteObjectInfo(card.os(), 1);
    expectLabels<Kind>(*card, {text("two"), text("three")});
    EXPECT_EQ(Kind::infos(*card)[0].recordNumber, 2u);
    EXPECT_EQ(Kind::infos(*card)[1].recordNumber, 3u);
    ASSERT_EQ(card->getFATRecords().size(), rows.size());
    EXPECT_EQ(card->getFATRecords()[1], freed);
    EXPECT_EQ(card->getFATRecords()[2], rows[2]);
    expectLabels<Kind>(*card.again(), {text("two"), text("three")});
}

TYPED_TEST(DeleteEveryKind, FindsTheRecordsBehindADeletedOne) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    card->deleteObjectInfo(card.os(), 1);
    card->deleteObjectInfo(card.os(), 3);
    expectLabels<Kind>(*card, {text("two")});
    expectLabels<Kind>(*card.again(), {text("two")});
}

TYPED_TEST(DeleteEveryKind, RefusesASecondTime) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    card->deleteObjectInfo(card.os(), 2);
    EXPECT_EQ(failureOfDeleting(*card, card.os(), 2),
              smartcardFailure("object is already empty", deleteObject));
}

TYPED_TEST(DeleteEveryKind, ChangesNothingWhenTheCardRefuses) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    const auto rows = card->getFATRecords();
    ScriptedCardOS os(*card.os(), refusingWrites());
    EXPECT_EQ(failureOfDeleting(*card, &os, 3),
              smartcardFailure("failed to delete object", deleteObject));
    expectLabels<Kind>(*card, {text("one"), text("two"), text("three")});
    EXPECT_EQ(card->getFATRecords(), rows);
    EXPECT_TRUE(Kind::raws(*card)[2].isDecoded);
}

TYPED_TEST(DeleteEveryKind, LetsFailuresOfTheFileThrough) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    const auto rows = card->getFATRecords();
    EXPECT_EQ(failureOfDeleting(*card, nullptr, 2), smartcardFailure("no card", handlerOperation));
    expectLabels<Kind>(*card, {text("one"), text("two"), text("three")});
    EXPECT_EQ(card->getFATRecords(), rows);
}

TYPED_TEST(DeleteEveryKind, GivesTheRowToTheNextNewObject) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>().room(100));
    card->deleteObjectInfo(card.os(), 2);
    auto info = Kind::make("new");
    EXPECT_EQ(Kind::write(*card, card.os(), info), 2u);
    expectLabels<Kind>(*card, {text("one"), text("three"), text("new")});
    EXPECT_EQ(Kind::infos(*card)[1].recordNumber, 3u);
}

TYPED_TEST(DeleteEveryKind, NeedsAnInfoWithTheNumber) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    const unsigned long row = card->newFATRecord(Kind::code, false);
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOfDeleting(*card, &os, row),
              smartcardFailure("failed to delete object", deleteObject));
    EXPECT_EQ(os.calls().size(), 0u);
    EXPECT_EQ(card->getFATRecords()[row].objectType, Kind::code);
}

TYPED_TEST(DeleteEveryKind, NoticesThatSomebodyElseWroteToTheCard) {
    using Kind = TypeParam;
    WrittenCard card(threeRecords<Kind>());
    card.again()->deleteObjectInfo(card.os(), 1);
    EXPECT_EQ(failureOfDeleting(*card, card.os(), 1),
              smartcardFailure("directory file changed", handlerOperation));
    expectLabels<Kind>(*card, {text("one"), text("two"), text("three")});
    expectLabels<Kind>(*card.again(), {text("two"), text("three")});
}

TEST(DeleteObjectInfo, RefusesNumbersBeyondTheTable) {
    WrittenCard card(fullCard());
    const auto rows = card->getFATRecords().size();
    EXPECT_EQ(failureOfDeleting(*card, card.os(), rows),
              smartcardFailure("invalid record number", deleteObject));
    EXPECT_EQ(failureOfDeleting(*card, card.os(), allOnes),
              smartcardFailure("invalid record number", deleteObject));
    EXPECT_EQ(failureOfDeleting(*card, card.os(), rows - 1), Failure{});
}

TEST(DeleteObjectInfo, KeepsTheTokenInfo) {
    WrittenCard card(fullCard());
    const auto rows = card->getFATRecords();
    EXPECT_EQ(failureOfDeleting(*card, card.os(), 0),
              smartcardFailure("object is the TokenInfo", deleteObject));
    EXPECT_EQ(card->getFATRecords(), rows);
    EXPECT_EQ(card->getRawTokenInfos().size(), 1u);
}

TEST(DeleteObjectInfo, KeepsRecordsThatAreNotRecognised) {
    WrittenCard card(CardBuilder().privateKeys({undecodable()}));
    EXPECT_EQ(failureOfDeleting(*card, card.os(), 1),
              smartcardFailure("unknown object", deleteObject));
    EXPECT_EQ(card->getRawPrivateKeys().size(), 1u);
}

TEST(DeleteObjectInfo, HasNoRuleForOtherTypes) {
    WrittenCard card(fullCard());
    for (const std::uint8_t type :
         std::initializer_list<std::uint8_t>{8, 17, 34, 63, 65, 254, 255}) {
        const unsigned long row = card->newFATRecord(type, false);
        EXPECT_EQ(failureOfDeleting(*card, card.os(), row),
                  smartcardFailure("failed to delete object", deleteObject));
    }
}

TEST(DeleteObjectInfo, TakesAKeyContainerOutOfMemoryOnly) {
    WrittenCard card(fullCard());
    ASSERT_EQ(card->getContainerInfos().size(), 1u);
    const auto recordNumber = static_cast<unsigned long>(card->getContainerInfos()[0].recordNumber);
    ScriptedCardOS os(*card.os());
    card->deleteObjectInfo(&os, recordNumber);
    EXPECT_EQ(os.calls().size(), 0u);
    EXPECT_TRUE(card->getContainerInfos().empty());
    EXPECT_EQ(card->getFATRecords()[recordNumber], freed);
    // Links to it stay as they were.
    const auto link = static_cast<std::int64_t>(recordNumber);
    EXPECT_EQ(card->getPrivateKeyInfos()[0].auxValue2, link);
    EXPECT_EQ(card->getCertificateInfos()[0].auxValue2, link);
}

TEST(DeleteObjectInfo, NeedsAContainerWithTheNumber) {
    WrittenCard card(fullCard());
    const unsigned long row = card->newFATRecord(containerObject, false);
    EXPECT_EQ(failureOfDeleting(*card, nullptr, row),
              smartcardFailure("failed to delete object", deleteObject));
    EXPECT_EQ(card->getContainerInfos().size(), 1u);
}

TEST(DeleteObjectInfo, LeavesContainersAndLinksThatNameTheObject) {
    WrittenCard card(fullCard());
    const auto before = card->getContainerInfos()[0];
    const auto publicKeyLink = card->getPrivateKeyInfos()[1].auxValue1;
    card->deleteObjectInfo(card.os(), static_cast<unsigned long>(before.exchangeKeyRecord));
    ASSERT_EQ(card->getContainerInfos().size(), 1u);
    EXPECT_EQ(card->getContainerInfos()[0].exchangeKeyRecord, before.exchangeKeyRecord);
    card->deleteObjectInfo(card.os(), static_cast<unsigned long>(publicKeyLink));
    EXPECT_EQ(card->getPrivateKeyInfos()[0].auxValue1, publicKeyLink);
}

TEST(DeleteObjectInfo, LeavesTheSharedMarkOfWhatSharedItsFile) {
    WrittenCard card(CardBuilder().dataObjects(
        {dataRecord({.value = path("4B01")}), dataRecord({.value = path("4B01", 8, 8)})}));
    ASSERT_TRUE(card->getDataInfos()[1].sharesFile);
    card->deleteObjectInfo(card.os(), 1);
    EXPECT_TRUE(card->getDataInfos()[0].sharesFile);
}

TEST(DeleteObjectInfo, LeavesTheFileOfTheValue) {
    const Blob value = text("value");
    WrittenCard card(
        CardBuilder().dataObjects({dataRecord({.value = path("4E01")})}).file(hex("4E01"), value));
    card->deleteObjectInfo(card.os(), 1);
    card.os()->selectFile(absolutePath(hex("4E01")));
    EXPECT_EQ(Blob(ASN1::View(card.os()->readBinary(0, value.size()))), value);
    EXPECT_EQ(card->getFreeFID(0x4E01, dataObject), 0x4E01);
}

TEST(DeleteAuthInfo, TakesTheFirstWithTheReference) {
    WrittenCard card(CardBuilder().authObjects({pin({.common = {.label = "other"}, .reference = 9}),
                                                pin({.common = {.label = "first"}}),
                                                pin({.common = {.label = "second"}})}));
    const auto rows = card->getFATRecords();
    card->deleteAuthInfo(card.os(), 1);
    ASSERT_EQ(card->getAuthInfos().size(), 2u);
    EXPECT_EQ(card->getRawAuthObjects().size(), 2u);
    EXPECT_EQ(card->getAuthInfos()[0].label, text("other"));
    EXPECT_EQ(card->getAuthInfos()[1].label, text("second"));
    EXPECT_EQ(card->getFATRecords(), rows);
    EXPECT_EQ(card.again()->getAuthInfo(1).label, text("second"));
}

TEST(DeleteAuthInfo, ComparesAllSixteenBitsOfTheReference) {
    WrittenCard card(CardBuilder().authObjects({pin({.reference = 0x101})}));
    EXPECT_EQ(failureOf([&] { card->deleteAuthInfo(card.os(), 1); }),
              smartcardFailure("invalid object reference", deleteAuth));
}

TEST(DeleteAuthInfo, ChangesNothingWhenTheCardRefuses) {
    WrittenCard card(CardBuilder().authObjects({pin()}));
    ScriptedCardOS os(*card.os(), refusingWrites());
    EXPECT_EQ(failureOf([&] { card->deleteAuthInfo(&os, 1); }),
              smartcardFailure("failed to delete auth info", deleteAuth));
    EXPECT_EQ(card->getAuthInfos().size(), 1u);
    EXPECT_EQ(card->getRawAuthObjects().size(), 1u);
}

TEST(DeleteAuthInfo, LetsFailuresOfTheFileThrough) {
    WrittenCard card(CardBuilder().authObjects({pin()}));
    EXPECT_EQ(failureOf([&] { card->deleteAuthInfo(nullptr, 1); }),
              smartcardFailure("no card", handlerOperation));
    EXPECT_EQ(card->getAuthInfos().size(), 1u);
    EXPECT_EQ(card->getRawAuthObjects().size(), 1u);
}

TEST(DeleteAuthInfo, CountsRecordsThatDidNotDecode) {
    WrittenCard card(CardBuilder().authObjects({undecodable(), pin()}));
    ASSERT_EQ(card->getAuthInfos()[0].reference, noReference);
    card->deleteAuthInfo(card.os(), 1);
    EXPECT_EQ(card->getAuthInfos().size(), 1u);
    EXPECT_EQ(card->getRawAuthObjects()[0].value, nullptr);
}

}  // namespace
}  // namespace tovi::test
