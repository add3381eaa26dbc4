#include <gtest/gtest.h>

#include "tests/container/WritableKinds.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"

namespace tovi::test {
namespace {

constexpr const char* encodeOperation = "PKCS15Container::encodeTokenInfo";

/// Everything that TokenInfo can hold and more: members that the model does not know.
Blob richTokenInfo() {
    return sequence(integer(0), octetString(hex("0102")), utf8String("Maker"),
                    contextPrimitive(0, text("Label")), namedBits({1}),
                    context(2, sequence(integer(1), integer(0x1041), null(), namedBits({1, 5}),
                                        objectIdentifier({1, 2, 3}), integer(9))),
                    contextPrimitive(3, text("issuer")), contextPrimitive(9, hex("AA")));
}

CardBuilder cardWith(const Blob& record) { return CardBuilder().tokenInfo(record).room(200); }

/// The first octets of EF(TokenInfo).
Blob contents(WrittenCard& card, std::size_t length) {
    card.os()->selectFile(absolutePath(PKCS15_EF_TOKEN_INFO));
    Blob octets;
    while (octets.size() < length)
        octets.append(card.os()->readBinary(octets.size(), length - octets.size()));
    return octets;
}

PKCS15TokenInfo withLabel(PKCS15TokenInfo info, std::string_view label) {
    info.info.label = text(label);
    return info;
}

/// The update of a card that holds `before`, made by `edit`, must leave `after`.
template <class Edit>
void expectUpdate(const Blob& before, const Blob& after, Edit edit) {
    WrittenCard card(cardWith(before));
    PKCS15TokenInfo info = card->getTokenInfo();
    info.supportedAlgorithms.clear();
    edit(info);
    card->updateTokenInfo(card.os(), info);
    EXPECT_EQ(contents(card, after.size()), after);
}

Blob simple(const Blob& label) {
    return sequence(integer(0), octetString(hex("2A")), label, namedBits({}));
}

TEST(UpdateTokenInfo, SetsAndRemovesTheLabel) {
    const Blob labelled = simple(contextPrimitive(0, text("new")));
    expectUpdate(simple({}), labelled, [](auto& token) { token.info.label = text("new"); });
    expectUpdate(labelled, simple({}), [](auto& token) { token.info.label.clear(); });
}

TEST(UpdateTokenInfo, SetsAndRemovesTheManufacturer) {
    const Blob named =
        sequence(integer(0), octetString(hex("2A")), utf8String("tovi"), namedBits({}));
    const auto unlabelled = [](auto& token) { token.info.label.clear(); };
    expectUpdate(simple({}), named, [&](auto& token) {
        unlabelled(token);
        token.manufacturerID = text("tovi");
    });
    expectUpdate(named, simple({}), [&](auto& token) {
        unlabelled(token);
        token.manufacturerID.clear();
    });
}

TEST(UpdateTokenInfo, SetsSerialNumberAndVersion) {
    expectUpdate(simple({}), sequence(integer(300), octetString(hex("112233")), namedBits({})),
                 [](auto& token) {
                     token.info.label.clear();
                     token.info.serialNumber = hex("112233");
                     token.version = 300;
                 });
}

TEST(UpdateTokenInfo, LeavesASerialNumberOutThatTheCardLeavesOut) {
    const Blob without = sequence(integer(0), namedBits({}));
    expectUpdate(without, without, [](auto& token) { token.info.label.clear(); });
    expectUpdate(simple({}), sequence(integer(0), octetString({}), namedBits({})), [](auto& token) {
        token.info.label.clear();
        token.info.serialNumber.clear();
    });
}

TEST(UpdateTokenInfo, SetsEachFlag) {
    for (unsigned bit = 0; bit < 4; ++bit) {
        expectUpdate(simple({}), sequence(integer(0), octetString(hex("2A")), namedBits({bit})),
                     [bit](auto& token) {
                         token.info.label.clear();
                         bool* const flags[] = {&token.readonly, &token.loginRequired,
                                                &token.prnGeneration, &token.eidCompliant};
                         for (unsigned i = 0; i < 4; ++i) *flags[i] = i == bit;
                     });
    }
}

TEST(UpdateTokenInfo, KeepsWhatTheModelDoesNotKnow) {
    const Blob after =
        sequence(integer(0), octetString(hex("0102")), utf8String("Maker"),
                 contextPrimitive(0, text("other")), namedBits({1}),
                 context(2, sequence(integer(1), integer(0x1041), null(), namedBits({1, 5}),
                                     objectIdentifier({1, 2, 3}), integer(9))),
                 contextPrimitive(3, text("issuer")), contextPrimitive(9, hex("AA")));
    expectUpdate(richTokenInfo(), after, [](auto& token) { token.info.label = text("other"); });
}

TEST(UpdateTokenInfo, WritesAlgorithmsOverTheEntries) {
    WrittenCard card(cardWith(richTokenInfo()));
    PKCS15TokenInfo info = withLabel(card->getTokenInfo(), "Label");
    ASSERT_EQ(info.supportedAlgorithms.size(), 1u);
    info.supportedAlgorithms[0].algorithm = 0x0251;
    info.supportedAlgorithms[0].algId = hex("020501");
    info.supportedAlgorithms[0].supportedOperations = {true,  false, false, false,
                                                       false, false, false, true};
    info.supportedAlgorithms.push_back(
        {.algorithm = 1, .algId = hex("0102"), .supportedOperations = {}});
    card->updateTokenInfo(card.os(), info);
    // Of the entry that was there reference, parameters and algRef stay.
    const Blob after = sequence(
        integer(0), octetString(hex("0102")), utf8String("Maker"),
        contextPrimitive(0, text("Label")), namedBits({1}),
        context(2,
                sequence(integer(1), integer(0x0251), null(), namedBits({0, 7}),
                         objectIdentifier({2, 5, 1}), integer(9)),
                sequence(integer(0), integer(1), null(), namedBits({}), objectIdentifier({1, 2}))),
        contextPrimitive(3, text("issuer")), contextPrimitive(9, hex("AA")));
    EXPECT_EQ(contents(card, after.size()), after);
    EXPECT_EQ(card.again()->getTokenInfo().supportedAlgorithms.size(), 2u);
}

TEST(UpdateTokenInfo, DropsEntriesBeyondTheRows) {
    const AlgorithmRecord algorithm = {.algId = objectIdentifier({1, 2, 3})};
    WrittenCard card(
        cardWith(tokenInfo({.supportedAlgorithms = {{algorithm, algorithm, algorithm}}})));
    PKCS15TokenInfo info = card->getTokenInfo();
    info.supportedAlgorithms.resize(1);
    card->updateTokenInfo(card.os(), info);
    EXPECT_EQ(card.again()->getTokenInfo().supportedAlgorithms.size(), 1u);
}

TEST(UpdateTokenInfo, KeepsTheAlgorithmsOfTheCardForNone) {
    WrittenCard card(cardWith(richTokenInfo()));
    PKCS15TokenInfo info = card->getTokenInfo();
    info.supportedAlgorithms.clear();
    info.info.label.clear();
    card->updateTokenInfo(card.os(), info);
    EXPECT_TRUE(card->getTokenInfo().supportedAlgorithms.empty());
    EXPECT_EQ(card.again()->getTokenInfo().supportedAlgorithms.size(), 1u);
    EXPECT_EQ(card.again()->getTokenInfo().info.label, text("PKCS#15 Token"));
}

TEST(UpdateTokenInfo, AdoptsEveryMember) {
    WrittenCard card(cardWith(richTokenInfo()));
    PKCS15TokenInfo info = withLabel(card->getTokenInfo(), "mine");
    info.manufacturerID = text("me");
    info.readonly = info.prnGeneration = info.eidCompliant = true;
    info.loginRequired = false;
    info.version = 1;
    info.supportedAlgorithms.clear();
    info.info.SetParam(CKA_PRIVATE, B_CK_TRUE);
    info.info.serialNumber = hex("77");
    info.info.tokenAux1 = 1;
    info.info.tokenAux2 = 2;
    info.info.tokenAux3 = 3;
    card->updateTokenInfo(card.os(), info);
    const PKCS15TokenInfo& adopted = card->getTokenInfo();
    EXPECT_EQ(adopted.manufacturerID, text("me"));
    EXPECT_TRUE(adopted.readonly && adopted.prnGeneration && adopted.eidCompliant);
    EXPECT_FALSE(adopted.loginRequired);
    EXPECT_EQ(adopted.version, 1u);
    EXPECT_TRUE(adopted.supportedAlgorithms.empty());
    EXPECT_EQ(adopted.info.GetParam(CKA_PRIVATE), 1);
    EXPECT_EQ(adopted.info.label, text("mine"));
    EXPECT_EQ(adopted.info.serialNumber, hex("77"));
    EXPECT_EQ(adopted.info.tokenAux1, 1);
    EXPECT_EQ(adopted.info.tokenAux2, 2);
    EXPECT_EQ(adopted.info.tokenAux3, 3);
}

TEST(UpdateTokenInfo, IsFollowedByAReadThatSetsTwoOfTheValuesForCallers) {
    WrittenCard card(cardWith(richTokenInfo()));
    PKCS15TokenInfo info = card->getTokenInfo();
    info.info.tokenAux1 = 1;
    info.info.tokenAux2 = 2;
    info.info.tokenAux3 = 3;
    card->updateTokenInfo(card.os(), info);
    card->clear();
    card->readFromCard(card.os());
    EXPECT_EQ(card->getTokenInfo().info.tokenAux1, 0xFF);
    EXPECT_EQ(card->getTokenInfo().info.tokenAux2, 0);
    EXPECT_EQ(card->getTokenInfo().info.tokenAux3, 3);
}

TEST(UpdateTokenInfo, RefusesAnInfoThatIsNotValid) {
    WrittenCard card(cardWith(richTokenInfo()));
    PKCS15TokenInfo info = withLabel(card->getTokenInfo(), "mine");
    EXPECT_FALSE(info.info.Import(hex("00")));
    ScriptedCardOS os(*card.os());
    EXPECT_EQ(failureOf([&] { card->updateTokenInfo(&os, info); }),
              smartcardFailure("invalid TokenInfo", "PKCS15Container::updateTokenInfo"));
    EXPECT_EQ(os.calls().size(), 0u);
    EXPECT_EQ(card->getTokenInfo().info.label, text("Label"));
}

TEST(UpdateTokenInfo, NeedsATokenInfoThatWasRead) {
    const auto container = makeContainer();
    TestCard card(cardWith(richTokenInfo()));
    PKCS15TokenInfo info;
    info.info.label = text("mine");
    EXPECT_EQ(failureOf([&] { container->updateTokenInfo(card.os(), info); }),
              smartcardFailure("invalid TokenInfo", encodeOperation));
    EXPECT_TRUE(container->getTokenInfo().info.label.empty());
}

/// `failure` of an update with `info` must leave model, decoded value and card as they were.
void expectRefusal(WrittenCard& card, ISCardOS* os, const PKCS15TokenInfo& info,
                   const Failure& failure) {
    const auto* const value = card->getRawTokenInfos()[0].value;
    const Blob label = card->getTokenInfo().info.label;
    EXPECT_EQ(failureOf([&] { card->updateTokenInfo(os, info); }), failure);
    EXPECT_EQ(card->getTokenInfo().info.label, label);
    EXPECT_EQ(card->getRawTokenInfos()[0].value, value);
    EXPECT_EQ(contents(card, richTokenInfo().size()), richTokenInfo());
}

TEST(UpdateTokenInfo, WritesNothingThatBreaksAConstraint) {
    WrittenCard card(cardWith(richTokenInfo()));
    const Failure failure = smartcardFailure("encoding error", encodeOperation);
    expectRefusal(card, card.os(), withLabel(card->getTokenInfo(), std::string(256, 'a')), failure);
    PKCS15TokenInfo nameless = card->getTokenInfo();
    nameless.supportedAlgorithms[0].algId.clear();
    expectRefusal(card, card.os(), nameless, failure);
    PKCS15TokenInfo oneArc = card->getTokenInfo();
    oneArc.supportedAlgorithms[0].algId = hex("01");
    expectRefusal(card, card.os(), oneArc, failure);
}

const Failure updateFailed = smartcardFailure("update file failed", encodeOperation);

TEST(UpdateTokenInfo, FailsWhenTheCardRefuses) {
    for (const std::int64_t status : {0x6581, 0x6982, 0x6A84, 0x6B00, 0x6F00}) {
        WrittenCard card(cardWith(richTokenInfo()));
        ScriptedCardOS os(*card.os(), [status](std::size_t, const std::string& call) {
            if (call.starts_with("update"))
                throw SmartcardException("refused", "test", statusWordCode + status);
        });
        const PKCS15TokenInfo info = withLabel(card->getTokenInfo(), "mine");
        expectRefusal(card, &os, info, updateFailed);
        // What was read is edited again, not what was refused.
        PKCS15TokenInfo other = withLabel(card->getTokenInfo(), "other");
        other.manufacturerID.clear();
        card->updateTokenInfo(card.os(), other);
        EXPECT_EQ(card.again()->getTokenInfo().info.label, text("other"));
    }
}

TEST(UpdateTokenInfo, LetsFailuresThroughThatAreNotOfTheCard) {
    WrittenCard card(cardWith(richTokenInfo()));
    const PKCS15TokenInfo info = withLabel(card->getTokenInfo(), "mine");
    expectRefusal(card, nullptr, info,
                  smartcardFailure("no card", "ProfileDFHandler::UpdateSequence"));
    ScriptedCardOS lost(*card.os(), [](std::size_t, const std::string&) {
        throw SmartcardException("lost", "test", 0x6982);
    });
    expectRefusal(card, &lost, info, {smartcardId, "lost", "test", 0x6982});
}

TEST(UpdateTokenInfo, FindsNoRoomInAFullFile) {
    WrittenCard card(CardBuilder().tokenInfo(richTokenInfo()));
    expectRefusal(card, card.os(), withLabel(card->getTokenInfo(), "longer label"), updateFailed);
}

TEST(EncodeTokenInfo, WritesWithoutAdopting) {
    WrittenCard card(cardWith(richTokenInfo()));
    card->encodeTokenInfo(card.os(), withLabel(card->getTokenInfo(), "mine"));
    EXPECT_EQ(card->getTokenInfo().info.label, text("Label"));
    EXPECT_EQ(card.again()->getTokenInfo().info.label, text("mine"));
}

// The card may break a rule that its holder cannot mend by an edit of something else.
TEST(EncodeTokenInfo, WritesBackWhatWasReadInvalid) {
    const auto rich = [](std::string_view label) {
        return sequence(integer(0), octetString(hex("2A")), utf8String(std::string(300, 'm')),
                        contextPrimitive(0, text(label)), namedBits({}));
    };
    WrittenCard card(cardWith(rich("old")));
    ASSERT_FALSE(card->getRawTokenInfos()[0].isValid);
    card->updateTokenInfo(card.os(), withLabel(card->getTokenInfo(), "new"));
    EXPECT_EQ(contents(card, rich("new").size()), rich("new"));
    card->updateTokenInfo(card.os(), withLabel(card->getTokenInfo(), "two"));
    EXPECT_EQ(contents(card, rich("two").size()), rich("two"));
}

}  // namespace
}  // namespace tovi::test
