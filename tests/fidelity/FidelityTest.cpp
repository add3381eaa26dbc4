// Every record under tests/data that the library can update: of cards in use, and of samples. One
// attribute is changed through the container, and the octets on the card are compared with those
// that were there.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "tests/fidelity/Changes.h"
#include "tests/fidelity/ExpectedUpdate.h"
#include "tests/fidelity/TlvTree.h"
#include "tests/fidelity/UpdatedCard.h"

namespace tovi::test {
namespace {

using Differences = std::vector<Difference>;

const Blob newLabel = text("a label that was not there before");
const Edit relabel = [](Fields& fields) { fields.label = newLabel; };
const Edit reguard = [](Fields& fields) { fields.object.authId = hex("A55A"); };
const Edit publish = [](Fields& fields) { fields.object.isPrivate = !fields.object.isPrivate; };

std::string nameOf(const testing::TestParamInfo<RecordCase>& info) { return testName(info.param); }

// ---- all of them ----

class Fidelity : public testing::TestWithParam<RecordCase> {
protected:
    const RecordCase& its = GetParam();
    const std::vector<Change> changes = changesOf(its.kind, its.record());

    /// All records of the file with one of them in the place of the case's.
    RecordList with(const Blob& record) const {
        RecordList records = its.records;
        records[its.position] = record;
        return records;
    }
};

TEST_P(Fidelity, ChangesNoOctetOfARecordThatTheAttributeAndTheRulesDoNotAccountFor) {
    for (const Change& change : changes) {
        SCOPED_TRACE(change.name);
        UpdatedCard card(its);
        card.update(change.apply);
        EXPECT_EQ(card.records(), with(change.expected));
        EXPECT_EQ(differences(its.record(), card.record()),
                  differences(its.record(), change.expected));
    }
}

// Octets that the first update of a record had to settle stay settled. That a key is native is the
// DEFAULT, which DER does not write and no reader takes for granted.
TEST_P(Fidelity, ReadsWhatWasPutInAndHasTheOldOctetsAgainOnceThatIsTakenBack) {
    for (const Change& change : changes) {
        SCOPED_TRACE(change.name);
        UpdatedCard card(its);
        card.update(change.apply);
        card.readAgain();
        EXPECT_EQ(card.lastRead(), card.firstRead([&](Fields& fields) {
            change.readsAs(fields);
            fields.object.native = false;
        }));
        card.update(change.takeBack);
        EXPECT_EQ(card.records(), with(change.restored));
    }
}

TEST_P(Fidelity, ChangesNothingMoreInAnUpdateThatChangesNothing) {
    const Edit nothing = [](Fields&) {};
    UpdatedCard card(its);
    card.update(nothing);
    const RecordList settled = with(settledRecord(its.kind, its.record()).encoded());
    EXPECT_EQ(card.records(), settled);
    card.readAgain();
    card.update(nothing);
    EXPECT_EQ(card.records(), settled);
}

TEST_P(Fidelity, ChangesTheAttributeAloneFromTheSecondUpdateOn) {
    UpdatedCard card(its);
    card.update(reguard);
    const Blob before = card.record();
    card.update([](Fields& fields) {
        reguard(fields);
        relabel(fields);
    });
    const Blob label = parseTlv(before).members[0].members[0].encoded();
    EXPECT_EQ(differences(before, card.record()),
              (Differences{{"0.0", label, element(0x0C, newLabel)}}));
}

INSTANTIATE_TEST_SUITE_P(Records, Fidelity, testing::ValuesIn(updatableCases()), nameOf);

// ---- those that cannot be updated ----

class RefusedFidelity : public testing::TestWithParam<RecordCase> {};

TEST_P(RefusedFidelity, ChangesNothingOfARecordThatCannotBeUpdated) {
    for (const Edit& edit : {relabel, reguard, publish}) {
        UpdatedCard card(GetParam());
        EXPECT_EQ(failureOf([&] { card.update(edit); }), GetParam().refusal());
        EXPECT_EQ(card.records(), GetParam().records);
    }
}

INSTANTIATE_TEST_SUITE_P(Records, RefusedFidelity, testing::ValuesIn(refusedCases()), nameOf);

// ---- what is tried ----

TEST(FidelityOfAll, IsTriedOnRecordsOfEveryKindFromSamplesAndCards) {
    std::map<Directory, int> samples, cards;
    for (const RecordCase& each : recordCases())
        ++(each.name.starts_with("card-") ? cards : samples)[each.kind];
    EXPECT_EQ(samples.size(), directoryCount);
    for (const Directory kind :
         {Directory::privateKeys, Directory::certificates, Directory::authObjects})
        EXPECT_GT(cards[kind], 1);
}

// That a key is native from now on is not written, and a key without access rules keeps those that
// it was given.
TEST(FidelityOfAll, IsTriedWithValuesThatWereNotThereBefore) {
    for (const RecordCase& each : updatableCases()) {
        const Blob settled = settledRecord(each.kind, each.record()).encoded();
        for (const Change& change : changesOf(each.kind, each.record())) {
            const bool isOfNoUse = change.expected == settled ||
                                   (change.restored != settled && change.name != "auxValue3");
            EXPECT_TRUE(!isOfNoUse || change.name == "native" || change.name == "userConsent 0" ||
                        change.name == "reference 0")
                << each.name << ' ' << change.name;
        }
    }
}

/// The names of all changes that records of the kind were tried with.
std::set<std::string> changesTriedOn(Directory kind) {
    std::set<std::string> names;
    for (const RecordCase& each : updatableCases())
        if (each.kind == kind)
            for (const Change& change : changesOf(kind, each.record())) names.insert(change.name);
    return names;
}

TEST(FidelityOfAll, IsTriedWithEveryAttributeOfAKind) {
    const std::set<std::string> common = {"label",        "no label", "isPrivate",
                                          "isModifiable", "authId",   "userConsent 32767",
                                          "auxValue3"};
    const std::set<std::string> keys = {"id",   "usage bit 0", "usage bit 9", "reference 199",
                                        "path", "path.index",  "path.length"};
    const std::set<std::string> certificates = {"id", "serialNumber", "trustedUsage", "path"};
    const std::map<Directory, std::vector<std::set<std::string>>> needed = {
        {Directory::privateKeys,
         {common,
          keys,
          {"native", "modulusLength"},
          {"no authId", "no userConsent", "no reference"}}},
        {Directory::publicKeys, {common, keys, {"native", "modulusLength"}}},
        {Directory::trustedPublicKeys, {common, keys, {"native", "modulusLength"}}},
        {Directory::secretKeys, {common, keys, {"keyLength"}}},
        {Directory::certificates, {common, certificates, {"no serialNumber"}}},
        {Directory::trustedCertificates, {common, certificates, {"no serialNumber"}}},
        {Directory::usefulCertificates, {common, certificates, {"no serialNumber"}}},
        {Directory::dataObjects, {common, {"applicationName", "no applicationName", "path"}}},
        {Directory::authObjects,
         {common,
          {"authObjectId",
           "flag 11",
           "pinType",
           "minLength",
           "storedLength",
           "maxLength",
           "no maxLength",
           "padChar",
           "no padChar",
           "reference",
           "lastChange",
           "path",
           "no path",
           "templateId",
           "hand",
           "finger",
           "iris in place of a finger",
           "eye",
           "finger in place of an iris",
           "derivedKey",
           "authKeyId",
           "cha"}}}};
    for (const auto& [kind, groups] : needed) {
        const std::set<std::string> tried = changesTriedOn(kind);
        for (const auto& names : groups)
            for (const std::string& name : names)
                EXPECT_TRUE(tried.contains(name)) << name << " in file " << static_cast<int>(kind);
    }
}

// ---- some of them in full ----

Differences differencesOf(const std::string& name, Directory kind, std::size_t position,
                          const Edit& edit) {
    for (const RecordCase& each : recordCases()) {
        if (each.name != name || each.kind != kind || each.position != position || each.isExtended)
            continue;
        UpdatedCard card(each);
        card.update(edit);
        return differences(each.record(), card.record());
    }
    ADD_FAILURE() << "no record " << name;
    return {};
}

const Blob newLabelElement = element(0x0C, newLabel);
const Blob newAuthIdElement = octetString(hex("A55A"));
const Difference becomesNotNative = {"1.2", {}, boolean(false)};

TEST(FidelityOf, AKeyWithEverythingChangesItsLabelAlone) {
    EXPECT_EQ(differencesOf("prk-rsa-full", Directory::privateKeys, 0, relabel),
              (Differences{{"0.0", utf8String("Sig"), newLabelElement}}));
}

TEST(FidelityOf, AKeyOfACardIsNoLongerTakenForNative) {
    EXPECT_EQ(differencesOf("card-a-prkdf", Directory::privateKeys, 0, reguard),
              (Differences{{"0.2", octetString({0x01}), newAuthIdElement}, becomesNotNative}));
}

TEST(FidelityOf, AKeyOfTheLaterEditionKeepsItsAccessRulesAndAlgorithms) {
    EXPECT_EQ(
        differencesOf("card-c-auth-prkdf", Directory::privateKeys, 0, relabel),
        (Differences{{"0.0", utf8String("Authentication 02"), newLabelElement}, becomesNotNative}));
}

TEST(FidelityOf, ACertificateKeepsEveryClassAttribute) {
    EXPECT_EQ(
        differencesOf("cert-class-full", Directory::certificates, 0, relabel),
        (Differences{{"0.0", utf8String("C"), newLabelElement}, {"0.1", {}, namedBits({1})}}));
}

TEST(FidelityOf, ACertificateHeldInTheRecordBecomesAPath) {
    const Differences found =
        differencesOf("cert-direct", Directory::usefulCertificates, 0, relabel);
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[2].where, "2.0.0");
    EXPECT_EQ(found[2].before.front(), 0xA0);
    EXPECT_EQ(found[3], (Difference{"2.0.1", {}, path("")}));
}

TEST(FidelityOf, ASecretKeyGetsItsLength) {
    EXPECT_EQ(differencesOf("sk-direct", Directory::secretKeys, 0, publish),
              (Differences{{"0.1", {}, namedBits({0, 1})},
                           {"2", {}, context(0, sequence(integer(64)))},
                           {"2.0.0", context(0, octetString(hex("0011223344556677"))), {}},
                           {"2.0.1", {}, path("")}}));
}

TEST(FidelityOf, APinOfACardChangesItsLabelAlone) {
    EXPECT_EQ(differencesOf("card-a-aodf", Directory::authObjects, 0, relabel),
              (Differences{{"0.0", utf8String("Basic PIN"), newLabelElement}}));
}

}  // namespace
}  // namespace tovi::test
