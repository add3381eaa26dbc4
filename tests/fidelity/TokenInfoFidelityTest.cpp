// EF(TokenInfo) with one attribute changed through the container: octet by octet, and read by
// somebody else.

#include <gtest/gtest.h>

#include <functional>

#include "tests/fidelity/ExpectedUpdate.h"
#include "tests/fidelity/IndependentDecoder.h"
#include "tests/fidelity/Members.h"
#include "tests/fidelity/UpdatedCard.h"
#include "tests/pkcs15/Records.h"

namespace tovi::test {
namespace {

using Apply = std::function<void(PKCS15TokenInfo&)>;
using Differences = std::vector<Difference>;

const Apply nothing = [](PKCS15TokenInfo&) {};

/// Algorithms that an info does not have stay on the card as they are.
const Apply forgetAlgorithms = [](PKCS15TokenInfo& token) { token.supportedAlgorithms.clear(); };

/// A card with an EF(TokenInfo).
class TokenOnCard {
public:
    explicit TokenOnCard(const Blob& record)
        : card_(CardBuilder().tokenInfo(record).room(300)), container_(makeContainer()) {
        container_->readFromCard(card_.os());
        first_ = container_->getTokenInfo();
    }

    /// Writes the info as it was first read with two edits.
    void update(const Apply& one, const Apply& other = nothing) {
        PKCS15TokenInfo token = first_;
        one(token);
        other(token);
        container_->updateTokenInfo(card_.os(), token);
    }
    Blob record() { return tokenInfoRecord(card_); }

    /// What somebody reads who comes later.
    PKCS15TokenInfo readAgain() {
        container_ = makeContainer();
        container_->readFromCard(card_.os());
        return container_->getTokenInfo();
    }

private:
    TestCard card_;
    std::unique_ptr<PKCS15Container> container_;
    PKCS15TokenInfo first_;
};

/// The first two have no label, the last has everything.
std::vector<Blob> plainTokenInfos() {
    return {pkcs15test::sample("ti-min"), hex("30 0C 02 01 00 04 01 AA 0C 01 4D 03 01 00"),
            pkcs15test::sample("ti-label"), pkcs15test::sample("ti-full")};
}

/// Those and others with elements that PKCS#15 does not know: of a card in use, of ISO/IEC 7816-15.
std::vector<Blob> tokenInfos() {
    std::vector<Blob> records = plainTokenInfos();
    records.push_back(tokenInfoOfCard("card-a-tokeninfo"));
    records.push_back(
        hex("30 1D 02 01 00 04 01 AA 80 01 4C 03 01 00 9E 02 03 00"
            "A5 05 18 03 32 30 32 A6 04 06 02 2A 03"));
    return records;
}

// ---- one attribute of all records ----

struct TokenChange {
    const char* name;
    Apply apply;
    std::size_t slot;
    Blob encoded;
    const char* where;
    std::string value;
};

std::vector<unsigned> flagsOf(const Tlv& token) {
    return bitsOf(member(token, tags::tokenInfo, 4)->contents);
}

std::vector<TokenChange> changesOf(const Tlv& token) {
    std::vector<TokenChange> changes = {
        {"label", [](auto& info) { info.info.label = text("Changed"); }, 3,
         contextPrimitive(0, text("Changed")), "label", "Changed"},
        {"no label", [](auto& info) { info.info.label.clear(); }, 3, {}, "label", ""},
        {"serialNumber", [](auto& info) { info.info.serialNumber = hex("00C0FFEE"); }, 1,
         octetString(hex("00C0FFEE")), "serialNumber", "00c0ffee"},
        {"manufacturerID", [](auto& info) { info.manufacturerID = text("Maker"); }, 2,
         utf8String("Maker"), "manufacturerID", "Maker"},
        {"no manufacturerID",
         [](auto& info) { info.manufacturerID.clear(); },
         2,
         {},
         "manufacturerID",
         ""}};
    const Apply toggles[] = {[](auto& info) { info.readonly = !info.readonly; },
                             [](auto& info) { info.loginRequired = !info.loginRequired; },
                             [](auto& info) { info.prnGeneration = !info.prnGeneration; },
                             [](auto& info) { info.eidCompliant = !info.eidCompliant; }};
    for (unsigned bit = 0; bit < std::size(toggles); ++bit) {
        const Blob flags = namedBits(toggled(flagsOf(token), bit));
        changes.push_back(
            {"flag", toggles[bit], 4, flags, "tokenflags", inItsWords(parseTlv(flags))});
    }
    return changes;
}

TEST(TokenInfoFidelity, ChangesTheAttributeAlone) {
    for (const Blob& record : tokenInfos()) {
        const Tlv settled = settledTokenInfo(record);
        for (const TokenChange& change : changesOf(settled)) {
            SCOPED_TRACE(testing::Message() << testing::PrintToString(record) << change.name);
            TokenOnCard card(record);
            card.update(change.apply, forgetAlgorithms);
            Tlv expected = settled;
            put(expected, tags::tokenInfo, change.slot, change.encoded);
            EXPECT_EQ(card.record(), expected.encoded());
            EXPECT_EQ(differences(record, card.record()), differences(record, expected.encoded()));
        }
    }
}

TEST(TokenInfoFidelity, HasTheOldOctetsAgainOnceAChangeIsTakenBack) {
    for (const Blob& record : tokenInfos())
        for (const TokenChange& change : changesOf(settledTokenInfo(record))) {
            SCOPED_TRACE(change.name);
            TokenOnCard card(record);
            card.update(change.apply, forgetAlgorithms);
            card.readAgain();
            card.update(forgetAlgorithms);
            EXPECT_EQ(card.record(), settledTokenInfo(record).encoded());
        }
}

TEST(TokenInfoFidelity, HoldsForAnIndependentDecoderWhatWasPutInAndAllElseAsItWas) {
    for (const Blob& record : plainTokenInfos()) {
        const Tlv settled = settledTokenInfo(record);
        const std::vector<TokenChange> changes = changesOf(settled);
        std::vector<Blob> updated = {settled.encoded()};
        for (const TokenChange& change : changes) {
            TokenOnCard card(record);
            card.update(change.apply, forgetAlgorithms);
            updated.push_back(card.record());
        }
        const std::vector<DecodedValues> found = decodedIndependently("TokenInfo", updated);
        for (std::size_t i = 0; i < changes.size(); ++i) {
            SCOPED_TRACE(changes[i].name);
            DecodedValues expected = found[0];
            expected.erase(changes[i].where);
            if (!changes[i].encoded.empty()) expected[changes[i].where] = changes[i].value;
            EXPECT_EQ(found[i + 1], expected);
        }
    }
}

// ---- algorithms ----

const Blob fullest = pkcs15test::sample("ti-full");

/// Its second and third algorithm have no identifier on the card; any is written. The number of the
/// third is -1.
const Apply nameAlgorithms = [](PKCS15TokenInfo& token) {
    token.supportedAlgorithms[2].algorithm = 255;
    for (PKCS15AlgorithmInfo& row : token.supportedAlgorithms)
        if (row.algId.empty()) row.algId = hex("020501");
};

/// The record after that: arcs above 255 of the first identifier, 1.2.840.113549.1.1.1, have lost
/// their high bits, for an info holds one octet an arc.
Tlv named(const Blob& record) {
    Tlv token = parseTlv(record);
    Tlv& list = *member(token, tags::tokenInfo, 7);
    put(list.members.at(0), tags::algorithm, 4, objectIdentifier({1, 2, 0x48, 0x8D, 1, 1, 1}));
    put(list.members.at(1), tags::algorithm, 4, objectIdentifier({2, 5, 1}));
    put(list.members.at(2), tags::algorithm, 4, objectIdentifier({2, 5, 1}));
    put(list.members.at(2), tags::algorithm, 1, integer(255));
    return token;
}

/// The record after `edit` of its algorithms.
Blob namedAnd(const std::function<void(std::vector<Tlv>&)>& edit) {
    Tlv token = named(fullest);
    edit(member(token, tags::tokenInfo, 7)->members);
    return token.encoded();
}

Blob fullestAfter(const Apply& apply) {
    TokenOnCard card(fullest);
    card.update(nameAlgorithms, apply);
    return card.record();
}

TEST(TokenInfoFidelity, RefusesAlgorithmsWithoutIdentifierSinceNoneCanBeWritten) {
    TokenOnCard card(fullest);
    EXPECT_EQ(failureOf([&] { card.update([](auto& info) { info.info.label = text("L2"); }); }),
              smartcardFailure("encoding error", "PKCS15Container::encodeTokenInfo"));
    EXPECT_EQ(card.record(), fullest);
}

TEST(TokenInfoFidelity, KeepsReferencesAndParametersOfAlgorithmsThatGetAnIdentifier) {
    EXPECT_EQ(differences(fullest, fullestAfter(nothing)),
              differences(fullest, named(fullest).encoded()));
    EXPECT_EQ(fullestAfter(nothing), named(fullest).encoded());
}

// The number of the NULL algorithm (PKCS#15 v1.1) is -1, which the model has as 2^64 - 1.
TEST(TokenInfoFidelity, KeepsANegativeNumberOfAnAlgorithm) {
    const Blob record = tokenInfo({.supportedAlgorithms = std::vector<AlgorithmRecord>{
                                       {.algorithm = -1, .algId = objectIdentifier({1, 2, 3})}}});
    TokenOnCard card(record);
    card.update(nothing);
    EXPECT_EQ(card.record(), settledTokenInfo(record).encoded());
}

TEST(TokenInfoFidelity, ChangesTheNumberOfAnAlgorithmAlone) {
    EXPECT_EQ(
        fullestAfter([](auto& info) { info.supportedAlgorithms[1].algorithm = 0x1234; }),
        namedAnd([](auto& entries) { put(entries[1], tags::algorithm, 1, integer(0x1234)); }));
}

TEST(TokenInfoFidelity, ChangesTheIdentifierOfAnAlgorithmAlone) {
    EXPECT_EQ(fullestAfter([](auto& info) { info.supportedAlgorithms[2].algId = hex("01020304"); }),
              namedAnd([](auto& entries) {
                  put(entries[2], tags::algorithm, 4, objectIdentifier({1, 2, 3, 4}));
              }));
}

TEST(TokenInfoFidelity, ChangesAnOperationOfAnAlgorithmAlone) {
    for (unsigned bit = 0; bit < 8; ++bit)
        EXPECT_EQ(fullestAfter([=](auto& info) {
                      bool& operation = info.supportedAlgorithms[0].supportedOperations[bit];
                      operation = !operation;
                  }),
                  namedAnd([=](auto& entries) {
                      const Blob& old = member(entries[0], tags::algorithm, 3)->contents;
                      put(entries[0], tags::algorithm, 3, namedBits(toggled(bitsOf(old), bit)));
                  }));
}

TEST(TokenInfoFidelity, DropsAlgorithmsFromTheEndAndKeepsTheOthersAsTheyWere) {
    EXPECT_EQ(fullestAfter([](auto& info) { info.supportedAlgorithms.resize(1); }),
              namedAnd([](auto& entries) { entries.resize(1); }));
}

TEST(TokenInfoFidelity, LeavesTheAlgorithmsOfTheCardWhenAnInfoHasNone) {
    EXPECT_EQ(fullestAfter(forgetAlgorithms), fullest);
}

TEST(TokenInfoFidelity, HoldsChangedAlgorithmsForAnIndependentDecoder) {
    const Blob record = fullestAfter([](auto& info) {
        info.supportedAlgorithms.resize(2);
        info.supportedAlgorithms[1] = {0x1234, hex("01020304"), {true, false, false, true}};
    });
    DecodedValues expected = decodedIndependently("TokenInfo", fullest);
    std::erase_if(expected, [](const auto& value) {
        return value.first.starts_with("supportedAlgorithms.?2.") ||
               value.first.starts_with("supportedAlgorithms.?3.");
    });
    expected["supportedAlgorithms.?1.algId"] = "1.2.72.141.1.1.1";
    expected["supportedAlgorithms.?2.reference"] = "0x02";
    expected["supportedAlgorithms.?2.algorithm"] = "0x1234";
    expected["supportedAlgorithms.?2.parameters"] = "0500";
    expected["supportedAlgorithms.?2.supportedOperations"] = "(4)90";
    expected["supportedAlgorithms.?2.algId"] = "1.2.3.4";
    EXPECT_EQ(decodedIndependently("TokenInfo", record), expected);
}

TEST(TokenInfoFidelity, HoldsEverythingOfAnAlgorithmThatIsAddedWhereThereWasNone) {
    TokenOnCard card(pkcs15test::sample("ti-label"));
    card.update([](auto& info) {
        info.supportedAlgorithms = {{1, hex("020501"), {false, true, true}}};
    });
    const PKCS15TokenInfo token = card.readAgain();
    ASSERT_EQ(token.supportedAlgorithms.size(), 1u);
    EXPECT_EQ(token.supportedAlgorithms[0].algId, hex("020501"));
    DecodedValues expected = decodedIndependently("TokenInfo", pkcs15test::sample("ti-label"));
    expected["supportedAlgorithms.?1.reference"] = "0x00";
    expected["supportedAlgorithms.?1.algorithm"] = "0x01";
    expected["supportedAlgorithms.?1.parameters"] = "0500";
    expected["supportedAlgorithms.?1.supportedOperations"] = "(3)60";
    expected["supportedAlgorithms.?1.algId"] = "2.5.1";
    EXPECT_EQ(decodedIndependently("TokenInfo", card.record()), expected);
}

// ---- the version ----

TEST(TokenInfoFidelity, ChangesTheVersionAlone) {
    TokenOnCard card(pkcs15test::sample("ti-label"));
    card.update([](auto& info) { info.version = 1; });
    EXPECT_EQ(differences(pkcs15test::sample("ti-label"), card.record()),
              (Differences{{"0", integer(0), integer(1)}}));
}

// ---- some of them in full ----

TEST(TokenInfoFidelity, ChangesTheLabelAloneOfTheFullestRecord) {
    TokenOnCard card(fullest);
    card.update([](auto& info) { info.info.label = text("Changed"); }, forgetAlgorithms);
    EXPECT_EQ(
        differences(fullest, card.record()),
        (Differences{{"3", contextPrimitive(0, text("L")), contextPrimitive(0, text("Changed"))}}));
}

}  // namespace
}  // namespace tovi::test
