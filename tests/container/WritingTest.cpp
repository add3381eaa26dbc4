#include <gtest/gtest.h>

#include <functional>

#include "tests/container/WritableKinds.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"

namespace tovi::test {
namespace {

constexpr const char* handlerWriteOperation = "ProfileDFHandler::WriteSequence";
constexpr const char* writeOperation = "PKCS15Container::writeInfo";
constexpr const char* updateOperation = "PKCS15Container::updateInfo";
const Failure beyondTable =
    smartcardFailure("invalid record number", "PKCS15Container::checkObjectType");
using Labels = std::vector<Blob>;

/// A card with records "one" and "two" of the kind.
template <class Kind>
CardBuilder twoRecords() {
    return CardBuilder()
        .directory(Kind::directory, {Kind::record("one"), Kind::record("two")})
        .room(200);
}

template <class Info>
void invalidate(Info& info) {
    EXPECT_FALSE(info.Import(hex("00")));
}

template <class Kind>
class WriteEveryKind : public testing::Test {};
TYPED_TEST_SUITE(WriteEveryKind, WritableKinds);

template <class Kind>
void expectLabels(const PKCS15Container& container, const Labels& labels) {
    EXPECT_EQ(Kind::labels(container), labels);
    EXPECT_EQ(Kind::rawLabels(container), labels);
}

TYPED_TEST(WriteEveryKind, AddsARecordARowAndAnInfo) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::make("new");
    const std::size_t rows = card->getFATRecords().size();
    const unsigned long recordNumber = Kind::write(*card, card.os(), info);
    EXPECT_EQ(recordNumber, rows);
    EXPECT_EQ(info.recordNumber, rows);
    const auto low = static_cast<std::uint16_t>(rows);
    EXPECT_EQ(card->getFATRecords().back(), (FATInfo{Kind::code, 0, low, low}));
    expectLabels<Kind>(*card, {text("one"), text("two"), text("new")});
    EXPECT_EQ(Kind::infos(*card).back().recordNumber, rows);
    EXPECT_TRUE(Kind::raws(*card).back().isValid);
    EXPECT_FALSE(Kind::raws(*card).back().isDecoded);
    expectLabels<Kind>(*card.again(), {text("one"), text("two"), text("new")});
}

TYPED_TEST(WriteEveryKind, TakesThePrivateFlagIntoTheRow) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::make("new");
    info.isPrivate = true;
    Kind::write(*card, card.os(), info);
    EXPECT_EQ(card->getFATRecords().back().isPrivate, 1);
}

TYPED_TEST(WriteEveryKind, GivesTheLowestFreeRecordNumber) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    card->updateFATRecord(1, freeRow, false);
    auto info = Kind::make("new");
    EXPECT_EQ(Kind::write(*card, card.os(), info), 1u);
    EXPECT_EQ(card->getFATRecords()[1], (FATInfo{Kind::code, 0, 1, 1}));
}

TYPED_TEST(WriteEveryKind, RefusesAnInfoThatIsNotValid) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    const auto rows = card->getFATRecords();
    auto info = Kind::make("new");
    invalidate(info);
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { Kind::write(*card, &os, info); }),
              smartcardFailure("encode info failed", writeOperation));
    EXPECT_EQ(os.calls().size(), 0u);
    EXPECT_EQ(card->getFATRecords(), rows);
    EXPECT_EQ(info.recordNumber, noRecord);
    expectLabels<Kind>(*card, {text("one"), text("two")});
}

TYPED_TEST(WriteEveryKind, ReportsWhatTheCardRefusesAsNoMemory) {
    using Kind = TypeParam;
    for (const std::int64_t status : {0x6581, 0x6982, 0x6A84, 0x6B00, 0x6F00}) {
        WrittenCard card(twoRecords<Kind>());
        const auto rows = card->getFATRecords();
        auto info = Kind::make("new");
        ScriptedCardOS os(*card.os(), [status](std::size_t, const std::string& call) {
            if (call.starts_with("update"))
                throw SmartcardException("refused", "test", statusWordCode + status);
        });
        EXPECT_EQ(failureOf([&] { Kind::write(*card, &os, info); }),
                  (Failure{smartcardId, "not enough memory", writeOperation, 0x16A84}));
        EXPECT_EQ(card->getFATRecords(), rows);
        expectLabels<Kind>(*card, {text("one"), text("two")});
    }
}

TYPED_TEST(WriteEveryKind, PassesOtherFailuresOn) {
    using Kind = TypeParam;
    for (const std::int64_t code :
         {std::int64_t{0}, std::int64_t{0x6A84}, std::int64_t{0x20000}, std::int64_t{-1}}) {
        WrittenCard card(twoRecords<Kind>());
        auto info = Kind::make("new");
        ScriptedCardOS os(*card.os(), [code](std::size_t, const std::string&) {
            throw SmartcardException("lost", "test", code);
        });
        EXPECT_EQ(failureOf([&] { Kind::write(*card, &os, info); }),
                  (Failure{smartcardId, "lost", "test", code}));
        expectLabels<Kind>(*card, {text("one"), text("two")});
    }
}

TYPED_TEST(WriteEveryKind, LooksAtTheLow32BitsOfACode) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::make("new");
    ScriptedCardOS os(*card.os(), [](std::size_t, const std::string&) {
        throw SmartcardException("lost", "test", 0x700016F00);
    });
    EXPECT_EQ(failureOf([&] { Kind::write(*card, &os, info); }).message, "not enough memory");
}

TYPED_TEST(WriteEveryKind, FindsNoRoomInAFullFile) {
    using Kind = TypeParam;
    WrittenCard card(
        CardBuilder().directory(Kind::directory, {Kind::record("one"), Kind::record("two")}));
    auto info = Kind::make("new");
    EXPECT_EQ(failureOf([&] { Kind::write(*card, card.os(), info); }),
              (Failure{smartcardId, "not enough memory", writeOperation, 0x16A84}));
    expectLabels<Kind>(*card, {text("one"), text("two")});
    expectLabels<Kind>(*card.again(), {text("one"), text("two")});
}

TYPED_TEST(WriteEveryKind, NeedsADirectoryFile) {
    using Kind = TypeParam;
    WrittenCard card(CardBuilder{});
    auto info = Kind::make("new");
    EXPECT_EQ(failureOf([&] { Kind::write(*card, card.os(), info); }),
              smartcardFailure("no directory file", handlerWriteOperation));
    EXPECT_EQ(card->getFATRecords().size(), 1u);
}

TYPED_TEST(WriteEveryKind, NeedsACard) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::make("new");
    EXPECT_EQ(failureOf([&] { Kind::write(*card, nullptr, info); }),
              smartcardFailure("no card", handlerWriteOperation));
    expectLabels<Kind>(*card, {text("one"), text("two")});
}

// A second file with room for some octets only sends a new record into the first one, before the
// records of the second.
TYPED_TEST(WriteEveryKind, InsertsWhereTheFileHasTheRecord) {
    using Kind = TypeParam;
    const Blob second = Kind::record("two"), other = hex("4B20");
    const auto choice = static_cast<unsigned>(Kind::directory);
    WrittenCard card(CardBuilder()
                         .odfRecord(odfEntry(choice, path("4B10")))
                         .file(hex("4B10"), join({Kind::record("one"), times(200, 0)}))
                         .odfRecord(odfEntry(choice, path("4B20")))
                         .file(other, join({second, times(20, 0)})));
    auto info = Kind::make("new");
    const std::size_t rows = card->getFATRecords().size();
    EXPECT_EQ(Kind::write(*card, card.os(), info), rows);
    expectLabels<Kind>(*card, {text("one"), text("new"), text("two")});
    EXPECT_EQ(Kind::infos(*card)[1].recordNumber, rows);
    expectLabels<Kind>(*card.again(), {text("one"), text("new"), text("two")});

    auto changed = Kind::infos(*card)[2];
    changed.label = text("TWO");
    Kind::update(*card, card.os(), changed);
    expectLabels<Kind>(*card.again(), {text("one"), text("new"), text("TWO")});
}

TYPED_TEST(WriteEveryKind, UpdatesTheRecordOfTheNumber) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    const auto rows = card->getFATRecords();
    auto info = Kind::infos(*card)[1];
    info.label = text("changed");
    info.authId = hex("07");
    Kind::update(*card, card.os(), info);
    expectLabels<Kind>(*card, {text("one"), text("changed")});
    EXPECT_EQ(Kind::infos(*card)[1].authId, hex("07"));
    EXPECT_EQ(Kind::infos(*card)[1].recordNumber, info.recordNumber);
    EXPECT_EQ(card->getFATRecords(), rows);
    expectLabels<Kind>(*card.again(), {text("one"), text("changed")});
}

TYPED_TEST(WriteEveryKind, UpdatesTheModelAloneWithoutACard) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::infos(*card)[0];
    info.label = text("changed");
    Kind::update(*card, nullptr, info);
    expectLabels<Kind>(*card, {text("changed"), text("two")});
    expectLabels<Kind>(*card.again(), {text("one"), text("two")});
}

TYPED_TEST(WriteEveryKind, RefusesToUpdateNumbersBeyondTheTable) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::infos(*card)[0];
    info.recordNumber = card->getFATRecords().size();
    EXPECT_EQ(failureOf([&] { Kind::update(*card, card.os(), info); }), beyondTable);
    info.recordNumber = noRecord;
    EXPECT_EQ(failureOf([&] { Kind::update(*card, card.os(), info); }), beyondTable);
    info.recordNumber = 0x100000001;
    EXPECT_EQ(failureOf([&] { Kind::update(*card, card.os(), info); }), beyondTable);
}

TYPED_TEST(WriteEveryKind, RefusesToUpdateARowOfAnotherType) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::infos(*card)[0];
    info.recordNumber = 0;
    EXPECT_EQ(failureOf([&] { Kind::update(*card, card.os(), info); }),
              smartcardFailure("invalid object type", updateOperation));
}

TYPED_TEST(WriteEveryKind, RefusesToUpdateARowWithoutInfo) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::infos(*card)[0];
    info.recordNumber = card->newFATRecord(Kind::code, false);
    EXPECT_EQ(failureOf([&] { Kind::update(*card, card.os(), info); }),
              smartcardFailure("invalid record number", updateOperation));
}

TYPED_TEST(WriteEveryKind, RefusesAnUpdateThatIsNotValid) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::infos(*card)[0];
    info.label = text("changed");
    invalidate(info);
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { Kind::update(*card, &os, info); }),
              smartcardFailure("encode info failed", updateOperation));
    EXPECT_EQ(os.calls().size(), 0u);
    expectLabels<Kind>(*card, {text("one"), text("two")});
}

TYPED_TEST(WriteEveryKind, ReportsARefusedUpdateAsNoMemory) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::infos(*card)[0];
    info.label = text("changed");
    ScriptedCardOS os(*card.os(), [](std::size_t, const std::string& call) {
        if (call.starts_with("update"))
            throw SmartcardException("refused", "test", statusWordCode + 0x6982);
    });
    EXPECT_EQ(failureOf([&] { Kind::update(*card, &os, info); }),
              (Failure{smartcardId, "not enough memory", updateOperation, 0x16A84}));
    expectLabels<Kind>(*card, {text("one"), text("two")});
    expectLabels<Kind>(*card.again(), {text("one"), text("two")});
}

TYPED_TEST(WriteEveryKind, NoticesThatSomebodyElseWroteToTheCard) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    const auto other = card.again();
    auto theirs = Kind::infos(*other)[0];
    theirs.label = text("theirs");
    Kind::update(*other, card.os(), theirs);
    auto ours = Kind::infos(*card)[0];
    ours.label = text("ours");
    const Failure failure = failureOf([&] { Kind::update(*card, card.os(), ours); });
    EXPECT_EQ(failure,
              smartcardFailure("directory file changed", "ProfileDFHandler::UpdateSequence"));
    EXPECT_EQ(failure.code, 0);
    expectLabels<Kind>(*card.again(), {text("theirs"), text("two")});
}

TYPED_TEST(WriteEveryKind, WritesAfterClearAndASecondRead) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    auto info = Kind::make("three");
    Kind::write(*card, card.os(), info);
    card->clear();
    card->readFromCard(card.os());
    expectLabels<Kind>(*card, {text("one"), text("two"), text("three")});
    auto changed = Kind::infos(*card)[2];
    changed.label = text("THREE");
    Kind::update(*card, card.os(), changed);
    auto four = Kind::make("four");
    Kind::write(*card, card.os(), four);
    expectLabels<Kind>(*card.again(), {text("one"), text("two"), text("THREE"), text("four")});
}

// The file holds records then that the model does not.
TYPED_TEST(WriteEveryKind, WritesNothingFromAClearedModel) {
    using Kind = TypeParam;
    WrittenCard card(twoRecords<Kind>());
    card->clear();
    auto info = Kind::make("new");
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { Kind::write(*card, &os, info); }),
              smartcardFailure("encode info failed", writeOperation));
    EXPECT_EQ(os.calls().size(), 0u);
    EXPECT_TRUE(card->getFATRecords().empty());
    expectLabels<Kind>(*card.again(), {text("one"), text("two")});
}

TYPED_TEST(WriteEveryKind, WritesNothingBehindAReadThatFailed) {
    using Kind = TypeParam;
    TestCard card(twoRecords<Kind>().tokenInfo(undecodable()));
    const auto container = makeContainer();
    EXPECT_THROW(container->readFromCard(card.os()), SmartcardException);
    ASSERT_EQ(Kind::raws(*container).size(), 2u);
    auto info = Kind::make("new");
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { Kind::write(*container, &os, info); }),
              smartcardFailure("encode info failed", writeOperation));
    EXPECT_EQ(os.calls().size(), 0u);
}

PrivateKeyKind::Info privateKeyOf(PKCS15Container& container) {
    return container.getPrivateKeyInfos().at(0);
}

CardBuilder keyPair() { return CardBuilder().privateKeys({privateKey()}).publicKeys({}).room(200); }

TEST(WritePublicKeyInfo, LinksThePrivateKey) {
    WrittenCard card(keyPair());
    auto info = PublicKeyKind::make("public");
    const unsigned long recordNumber = card->writePublicKeyInfo(card.os(), info, 1);
    EXPECT_EQ(privateKeyOf(*card).auxValue1, static_cast<std::int64_t>(recordNumber));
}

TEST(WritePublicKeyInfo, LinksNothingForAllOnes) {
    WrittenCard card(keyPair());
    auto info = PublicKeyKind::make("public");
    card->writePublicKeyInfo(card.os(), info, allOnes);
    EXPECT_EQ(privateKeyOf(*card).auxValue1, noLink);
}

TEST(WritePublicKeyInfo, HasWrittenTheKeyWhenThePrivateKeyIsMissing) {
    WrittenCard card(keyPair());
    auto info = PublicKeyKind::make("public");
    EXPECT_EQ(failureOf([&] { card->writePublicKeyInfo(card.os(), info, 99); }), beyondTable);
    EXPECT_EQ(PublicKeyKind::labels(*card), Labels{text("public")});
    EXPECT_EQ(PublicKeyKind::labels(*card.again()), Labels{text("public")});
    EXPECT_EQ(failureOf([&] { card->writePublicKeyInfo(card.os(), info, 0); }),
              smartcardFailure("invalid object type", "PKCS15Container::refInfo"));
    EXPECT_EQ(card->getPublicKeyInfos().size(), 2u);
}

// What ref...Info gives stands in the list, which moves when it grows.
TEST(WritePrivateKeyInfo, TakesAnInfoOfTheListItself) {
    WrittenCard card(
        CardBuilder().privateKeys({privateKey({.common = {.label = "twin"}})}).room(900));
    for (unsigned i = 0; i < 9; ++i) {
        const std::size_t rows = card->getFATRecords().size();
        EXPECT_EQ(card->writePrivateKeyInfo(card.os(), card->refPrivateKeyInfo(1)), rows);
        EXPECT_EQ(card->getPrivateKeyInfo(1).recordNumber, 1u);
        EXPECT_EQ(card->getPrivateKeyInfos().back().recordNumber, rows);
    }
    EXPECT_EQ(PrivateKeyKind::labels(*card), Labels(10, text("twin")));
    EXPECT_EQ(PrivateKeyKind::labels(*card.again()), Labels(10, text("twin")));
}

TEST(WritePrivateKeyInfo, LetsTheCodersFailuresThrough) {
    WrittenCard card(keyPair());
    auto info = PrivateKeyKind::make("key");
    info.keyType = 4;
    EXPECT_EQ(failureOf([&] { card->writePrivateKeyInfo(card.os(), info); }),
              smartcardFailure("invalid key type", "PKCS15KeyCT::encodeKeyInfoBase"));
    EXPECT_EQ(card->getPrivateKeyInfos().size(), 1u);
}

// Records that were not recognised keep their place among the others.
TEST(WritePrivateKeyInfo, CountsRecordsThatAreNotRecognised) {
    WrittenCard card(CardBuilder()
                         .privateKeys({undecodable(), privateKey({.common = {.label = "one"}})})
                         .room(200));
    auto changed = card->getPrivateKeyInfo(2);
    changed.label = text("changed");
    card->updatePrivateKeyInfo(card.os(), changed);
    const auto again = card.again();
    EXPECT_EQ(again->getFATRecords()[1].objectType, unrecognisedObjectType);
    EXPECT_EQ(again->getPrivateKeyInfo(2).label, text("changed"));
}

}  // namespace
}  // namespace tovi::test
