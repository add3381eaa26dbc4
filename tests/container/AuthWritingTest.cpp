#include <gtest/gtest.h>

#include "tests/container/WritableKinds.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"

namespace tovi::test {
namespace {

const Failure encodingError =
    smartcardFailure("ASN1 encoding error", "PKCS15AuthCT::encodeAuthInfoBase");

constexpr const char* writeOperation = "PKCS15Container::writeAuthInfo";
using Info = PKCS15ObjectInfo<AuthInfo>;

CardBuilder twoPins() {
    return CardBuilder()
        .authObjects(
            {pin({.common = {.label = "one"}}), pin({.common = {.label = "two"}, .reference = 2})})
        .room(200);
}

/// A PIN like the one that was read.
Info newPin(const PKCS15Container& container, std::uint16_t reference) {
    Info info = container.getAuthInfo(1);
    info.label = text("new");
    info.reference = reference;
    return info;
}

std::vector<Blob> labels(const PKCS15Container& container) {
    std::vector<Blob> labels;
    for (const Info& info : container.getAuthInfos()) labels.push_back(info.label);
    return labels;
}

ScriptedCardOS::Script refusingWrites() {
    return [](std::size_t, const std::string& call) {
        if (call.starts_with("update"))
            throw SmartcardException("refused", "test", statusWordCode + 0x6982);
    };
}

TEST(WriteAuthInfo, AddsARecordAndAnInfoButNoRow) {
    WrittenCard card(twoPins());
    const auto rows = card->getFATRecords();
    const Info info = newPin(*card, 3);
    EXPECT_EQ(card->writeAuthInfo(card.os(), info), 2u);
    EXPECT_EQ(card->getFATRecords(), rows);
    EXPECT_EQ(card->getAuthInfo(3).recordNumber, info.recordNumber);
    EXPECT_EQ(card->getRawAuthObjects().size(), 3u);
    EXPECT_EQ(labels(*card.again()), (std::vector<Blob>{text("one"), text("two"), text("new")}));
    EXPECT_EQ(card.again()->getAuthInfo(3).label, text("new"));
}

TEST(WriteAuthInfo, OverwritesARecordByItsIndex) {
    WrittenCard card(twoPins());
    EXPECT_EQ(card->writeAuthInfo(card.os(), newPin(*card, 7), 1), 1u);
    EXPECT_EQ(labels(*card), (std::vector<Blob>{text("one"), text("new")}));
    EXPECT_EQ(card.again()->getAuthInfo(7).label, text("new"));
    EXPECT_EQ(card.again()->getAuthInfos().size(), 2u);
}

TEST(WriteAuthInfo, AddsForAllOnes) {
    WrittenCard card(twoPins());
    EXPECT_EQ(card->writeAuthInfo(card.os(), newPin(*card, 7), allOnes), 2u);
    EXPECT_EQ(card->getAuthInfos().size(), 3u);
}

TEST(WriteAuthInfo, InsertsWhereTheFileHasTheRecord) {
    WrittenCard card(
        CardBuilder()
            .odfRecord(odfEntry(8, path("4B10")))
            .file(hex("4B10"), join({pin({.common = {.label = "one"}}), times(200, 0)}))
            .odfRecord(odfEntry(8, path("4B20")))
            .file(hex("4B20"), pin({.common = {.label = "two"}})));
    EXPECT_EQ(card->writeAuthInfo(card.os(), newPin(*card, 3)), 1u);
    EXPECT_EQ(labels(*card), (std::vector<Blob>{text("one"), text("new"), text("two")}));
    EXPECT_EQ(labels(*card.again()), labels(*card));
}

TEST(WriteAuthInfo, RefusesAnInfoThatIsNotValid) {
    WrittenCard card(twoPins());
    Info info = newPin(*card, 3);
    EXPECT_FALSE(info.Import(hex("00")));
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { card->writeAuthInfo(&os, info); }),
              smartcardFailure("encode info failed", writeOperation));
    EXPECT_EQ(os.calls().size(), 0u);
    EXPECT_EQ(card->getAuthInfos().size(), 2u);
}

TEST(WriteAuthInfo, RefusesAnIndexWithoutRecord) {
    WrittenCard card(twoPins());
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { card->writeAuthInfo(&os, newPin(*card, 3), 2); }), encodingError);
    EXPECT_EQ(os.calls().size(), 0u);
}

TEST(WriteAuthInfo, RefusesAnIndexOfARecordThatDidNotDecode) {
    WrittenCard card(CardBuilder().authObjects({undecodable(), pin()}).room(100));
    EXPECT_EQ(failureOf([&] { card->writeAuthInfo(card.os(), newPin(*card, 3), 0); }),
              encodingError);
}

TEST(WriteAuthInfo, ReportsWhatTheCardRefusesAsNoMemoryWithoutTheMark) {
    WrittenCard card(twoPins());
    ScriptedCardOS os(*card.os(), refusingWrites());
    const Failure expected{smartcardId, "not enough memory", writeOperation, 0x6A84};
    EXPECT_EQ(failureOf([&] { card->writeAuthInfo(&os, newPin(*card, 3)); }), expected);
    EXPECT_EQ(failureOf([&] { card->updateAuthInfo(&os, newPin(*card, 2)); }), expected);
    EXPECT_EQ(labels(*card), (std::vector<Blob>{text("one"), text("two")}));
}

TEST(WriteAuthInfo, PassesOtherFailuresOn) {
    WrittenCard card(twoPins());
    ScriptedCardOS os(*card.os(), [](std::size_t, const std::string&) {
        throw SmartcardException("lost", "test", 0x6A84);
    });
    EXPECT_EQ(failureOf([&] { card->writeAuthInfo(&os, newPin(*card, 3)); }),
              (Failure{smartcardId, "lost", "test", 0x6A84}));
}

TEST(WriteAuthInfo, WritesNothingBehindAReadThatFailed) {
    TestCard card(twoPins().tokenInfo(undecodable()));
    const auto container = makeContainer();
    EXPECT_THROW(container->readFromCard(card.os()), SmartcardException);
    EXPECT_EQ(failureOf([&] { container->writeAuthInfo(card.os(), Info()); }),
              smartcardFailure("encode info failed", writeOperation));
}

TEST(UpdateAuthInfo, RewritesTheFirstWithTheReference) {
    WrittenCard card(CardBuilder()
                         .authObjects({pin({.reference = 9}), pin({.common = {.label = "first"}}),
                                       pin({.common = {.label = "second"}})})
                         .room(100));
    EXPECT_EQ(card->updateAuthInfo(card.os(), newPin(*card, 1)), 1u);
    const auto again = card.again();
    EXPECT_EQ(again->getAuthInfos()[1].label, text("new"));
    EXPECT_EQ(again->getAuthInfos()[2].label, text("second"));
}

TEST(UpdateAuthInfo, UpdatesTheModelAloneWithoutACard) {
    WrittenCard card(twoPins());
    EXPECT_EQ(card->updateAuthInfo(nullptr, newPin(*card, 2)), 1u);
    EXPECT_EQ(card->getAuthInfo(2).label, text("new"));
    EXPECT_EQ(card.again()->getAuthInfo(2).label, text("two"));
}

TEST(UpdateAuthInfo, NeedsAnObjectWithTheReference) {
    WrittenCard card(twoPins());
    const Failure expected =
        smartcardFailure("invalid object reference", "PKCS15Container::updateAuthInfo");
    EXPECT_EQ(failureOf([&] { card->updateAuthInfo(card.os(), newPin(*card, 3)); }), expected);
    EXPECT_EQ(failureOf([&] { card->updateAuthInfo(card.os(), newPin(*card, 0x101)); }), expected);
}

}  // namespace
}  // namespace tovi::test
