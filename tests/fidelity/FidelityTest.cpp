// Every record under tests/data that the library can update: of cards in use, and of samples. One
// attribute is changed through the container, and the octets on the card are compared with those
// that were there.

#include <gtest/gtest.h>

#include <cctype>
#include <map>

#include "tests/fidelity/ExpectedUpdate.h"
#include "tests/fidelity/TlvTree.h"
#include "tests/pkcs15/Records.h"
#include "tests/support/Failure.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/ProfileDFHandler.h"

namespace tovi::test {
namespace {

using Differences = std::vector<Difference>;
using Records = std::vector<Blob>;

constexpr Attribute allAttributes[] = {Attribute::label, Attribute::authId, Attribute::flags};

// ---- the records ----

/// One record of a directory file.
struct RecordCase {
    std::string name;
    Directory kind;
    Blob file;        ///< as it lies on the card, with whatever stands behind the records
    Records records;  ///< all that are in it
    std::size_t position = 0;

    const Blob& record() const { return records[position]; }
    friend void PrintTo(const RecordCase& each, std::ostream* out) { *out << each.name; }
};

/// The kinds of file whose records are of a type.
std::vector<Directory> kindsOf(std::string_view type) {
    static const std::map<std::string_view, std::vector<Directory>> kinds = {
        {"PrivateKeyType", {Directory::privateKeys}},
        {"PublicKeyType", {Directory::publicKeys, Directory::trustedPublicKeys}},
        {"SecretKeyType", {Directory::secretKeys}},
        {"CertificateType",
         {Directory::certificates, Directory::trustedCertificates, Directory::usefulCertificates}},
        {"DataType", {Directory::dataObjects}},
        {"AuthenticationType", {Directory::authObjects}}};
    const auto found = kinds.find(type);
    return found == kinds.end() ? std::vector<Directory>() : found->second;
}

/// Adds a case for every record of the file, in every kind of file that it could be.
void addCases(std::vector<RecordCase>& cases, const std::string& name, std::string_view type,
              const Blob& file, const Records& records) {
    for (const Directory kind : kindsOf(type))
        for (std::size_t i = 0; i < records.size(); ++i)
            cases.push_back({name, kind, file, records, i});
}

Records recordsOf(const pkcs15test::Vector& vector) {
    Records records;
    for (const auto& facts : vector.facts.at("records"))
        records.emplace_back(ASN1::View(vector.file).subspan(facts.at("offset"), facts.at("size")));
    return records;
}

std::vector<RecordCase> readCases() {
    std::vector<RecordCase> cases;
    for (const auto& sample : pkcs15test::readSamples())
        addCases(cases, sample.name, sample.type->name, sample.octets, {sample.octets});
    for (const auto& vector : pkcs15test::readVectors())
        addCases(cases, vector.name, vector.type->name, vector.file, recordsOf(vector));
    return cases;
}

/// The records that cannot be updated, and why.
const std::map<std::string, Failure>& refusals() {
    const Failure unknown = smartcardFailure("invalid object type", "PKCS15Container::updateInfo");
    static const std::map<std::string, Failure> all = {
        {"prk-kea", unknown},
        {"sk-rc6Key", unknown},
        {"sk-otherKey", unknown},
        {"cert-cv", unknown},
        {"data-external", unknown},
        {"data-oid", unknown},
        {"pub-dodf", unknown},
        {"card-i-dodf", unknown},
        // 256 bits are neither DES nor triple DES.
        {"sk-genericSecretKey",
         smartcardFailure("invalid key type", "PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase")},
        {"auth-ext-key",
         smartcardFailure("ASN1 encoding error", "PKCS15AuthCT::encodeAuthInfoBase")}};
    return all;
}

// ---- the container ----

/// A card with the file of a case, and a container that has read it.
class UpdatedCard {
public:
    explicit UpdatedCard(const RecordCase& its)
        : kind_(its.kind),
          position_(its.position),
          card_(CardBuilder().room(200).directory(its.kind, {its.file})) {
        container_->readFromCard(card_.os());
    }

    void update(Attribute attribute) {
        PKCS15Container& model = *container_;
        ISCardOS* os = card_.os();
        const auto edit = [&](const auto& infos, auto write) {
            auto info = infos.at(position_);
            change(attribute, info, info.label);
            write(info);
        };
        switch (kind_) {
            case Directory::privateKeys:
                return edit(model.getPrivateKeyInfos(),
                            [&](const auto& info) { model.updatePrivateKeyInfo(os, info); });
            case Directory::publicKeys:
                return edit(model.getPublicKeyInfos(),
                            [&](const auto& info) { model.updatePublicKeyInfo(os, info); });
            case Directory::trustedPublicKeys:
                return edit(model.getTrustedPublicKeyInfos(),
                            [&](const auto& info) { model.updateTrustedPublicKeyInfo(os, info); });
            case Directory::secretKeys:
                return edit(model.getBlockCipherKeyInfos(),
                            [&](const auto& info) { model.updateBlockCipherKeyInfo(os, info); });
            case Directory::certificates:
                return edit(model.getCertificateInfos(),
                            [&](const auto& info) { model.updateCertificateInfo(os, info); });
            case Directory::trustedCertificates:
                return edit(model.getTrustedCertificateInfos(), [&](const auto& info) {
                    model.updateTrustedCertificateInfo(os, info);
                });
            case Directory::usefulCertificates:
                return edit(model.getUsefulCertificateInfos(),
                            [&](const auto& info) { model.updateUsefulCertificateInfo(os, info); });
            case Directory::dataObjects:
                return edit(model.getDataInfos(),
                            [&](const auto& info) { model.updateDataInfo(os, info); });
            case Directory::authObjects:
                return edit(model.getAuthInfos(),
                            [&](const auto& info) { model.updateAuthInfo(os, info); });
        }
    }

    Records records() {
        ProfileDFHandler reader(PKCS15_DF);
        reader.SetFilePath(absolutePath(directoryFID(kind_)), nullptr);
        reader.ReadFile(card_.os(), IGNORE_TAG, false);
        return reader.records();
    }

private:
    Directory kind_;
    std::size_t position_;
    TestCard card_;
    std::unique_ptr<PKCS15Container> container_ = makeContainer();
};

// ---- all of them ----

class Fidelity : public testing::TestWithParam<RecordCase> {
protected:
    const RecordCase& its = GetParam();
    bool canBeUpdated() const { return !refusals().contains(its.name); }
};

TEST_P(Fidelity, ChangesNoOctetOfARecordThatTheAttributeAndTheRulesDoNotAccountFor) {
    if (!canBeUpdated()) return;
    for (const Attribute attribute : allAttributes) {
        SCOPED_TRACE(testing::PrintToString(attribute));
        UpdatedCard card(its);
        card.update(attribute);
        Records expected = its.records;
        expected[its.position] = expectedUpdate(its.kind, its.record(), attribute);
        const Records after = card.records();
        EXPECT_EQ(after, expected);
        ASSERT_EQ(after.size(), expected.size());
        EXPECT_EQ(differences(its.record(), after[its.position]),
                  differences(its.record(), expected[its.position]));
    }
}

TEST_P(Fidelity, ChangesNothingOfARecordThatCannotBeUpdated) {
    if (canBeUpdated()) return;
    for (const Attribute attribute : allAttributes) {
        UpdatedCard card(its);
        EXPECT_EQ(failureOf([&] { card.update(attribute); }), refusals().at(its.name));
        EXPECT_EQ(card.records(), its.records);
    }
}

// What the first update of a record had to settle stays settled.
TEST_P(Fidelity, ChangesTheAttributeAloneFromTheSecondUpdateOn) {
    if (!canBeUpdated()) return;
    UpdatedCard card(its);
    card.update(Attribute::authId);
    const Records before = card.records();
    card.update(Attribute::label);
    const Blob label = parseTlv(before[its.position]).members[0].members[0].encoded();
    EXPECT_EQ(differences(before[its.position], card.records().at(its.position)),
              (Differences{{"0.0", label, element(0x0C, newLabel)}}));
}

std::string nameOf(const testing::TestParamInfo<RecordCase>& info) {
    static constexpr const char* kinds[] = {
        "PrKDF", "PuKDF", "TrustedPuKDF", "SKDF", "CDF", "TrustedCDF", "UsefulCDF", "DODF", "AODF"};
    std::string name;
    for (const char c : info.param.name)
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    return name + '_' + std::to_string(info.param.position) + "_in_" +
           kinds[static_cast<unsigned>(info.param.kind)];
}

INSTANTIATE_TEST_SUITE_P(Records, Fidelity, testing::ValuesIn(readCases()), nameOf);

TEST(FidelityOfAll, IsTriedOnRecordsOfEveryKindFromSamplesAndCards) {
    std::map<Directory, int> samples, cards;
    for (const RecordCase& each : readCases())
        ++(each.name.starts_with("card-") ? cards : samples)[each.kind];
    EXPECT_EQ(samples.size(), directoryCount);
    for (const Directory kind :
         {Directory::privateKeys, Directory::certificates, Directory::authObjects})
        EXPECT_GT(cards[kind], 1);
}

// ---- some of them in full ----

Differences differencesOf(const std::string& name, Directory kind, std::size_t position,
                          Attribute attribute) {
    for (const RecordCase& each : readCases()) {
        if (each.name != name || each.kind != kind || each.position != position) continue;
        UpdatedCard card(each);
        card.update(attribute);
        return differences(each.record(), card.records().at(position));
    }
    ADD_FAILURE() << "no record " << name;
    return {};
}

const Blob newLabelElement = element(0x0C, newLabel);
const Blob newAuthIdElement = octetString(newAuthId);
const Difference becomesNotNative = {"1.2", {}, boolean(false)};

TEST(FidelityOf, AKeyWithEverythingChangesItsLabelAlone) {
    EXPECT_EQ(differencesOf("prk-rsa-full", Directory::privateKeys, 0, Attribute::label),
              (Differences{{"0.0", utf8String("Sig"), newLabelElement}}));
}

TEST(FidelityOf, AKeyOfACardIsNoLongerTakenForNative) {
    EXPECT_EQ(differencesOf("card-a-prkdf", Directory::privateKeys, 0, Attribute::authId),
              (Differences{{"0.2", octetString({0x01}), newAuthIdElement}, becomesNotNative}));
}

TEST(FidelityOf, AKeyOfTheLaterEditionKeepsItsAccessRulesAndAlgorithms) {
    EXPECT_EQ(
        differencesOf("card-c-auth-prkdf", Directory::privateKeys, 0, Attribute::label),
        (Differences{{"0.0", utf8String("Authentication 02"), newLabelElement}, becomesNotNative}));
}

TEST(FidelityOf, ACertificateKeepsEveryClassAttribute) {
    EXPECT_EQ(
        differencesOf("cert-class-full", Directory::certificates, 0, Attribute::label),
        (Differences{{"0.0", utf8String("C"), newLabelElement}, {"0.1", {}, namedBits({1})}}));
}

TEST(FidelityOf, ACertificateHeldInTheRecordBecomesAPath) {
    const Differences found =
        differencesOf("cert-direct", Directory::usefulCertificates, 0, Attribute::label);
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[2].where, "2.0.0");
    EXPECT_EQ(found[2].before.front(), 0xA0);
    EXPECT_EQ(found[3], (Difference{"2.0.1", {}, path("")}));
}

TEST(FidelityOf, ASecretKeyGetsItsLength) {
    EXPECT_EQ(differencesOf("sk-direct", Directory::secretKeys, 0, Attribute::flags),
              (Differences{{"0.1", {}, namedBits({0})},
                           {"2", {}, context(0, sequence(integer(64)))},
                           {"2.0.0", context(0, octetString(hex("0011223344556677"))), {}},
                           {"2.0.1", {}, path("")}}));
}

TEST(FidelityOf, APinOfACardChangesItsLabelAlone) {
    EXPECT_EQ(differencesOf("card-a-aodf", Directory::authObjects, 0, Attribute::label),
              (Differences{{"0.0", utf8String("Basic PIN"), newLabelElement}}));
}

// ---- EF(TokenInfo) ----

/// The record after its label was changed through the container.
Blob relabelledToken(const Blob& record) {
    TestCard card(CardBuilder().tokenInfo(record).room(200));
    const auto container = makeContainer();
    container->readFromCard(card.os());
    PKCS15TokenInfo token = container->getTokenInfo();
    token.info.label = newLabel;
    container->updateTokenInfo(card.os(), token);
    ProfileDFHandler reader(PKCS15_DF);
    reader.SetFilePath(PKCS15_EF_TOKEN_INFO, nullptr);
    reader.ReadFile(card.os(), IGNORE_TAG, false);
    return reader.records().at(0);
}

Blob tokenInfoOf(const std::string& card) {
    for (const auto& vector : pkcs15test::readVectors())
        if (vector.name == card) return recordsOf(vector).at(0);
    return {};
}

TEST(FidelityOfTokenInfo, ChangesTheLabelAlone) {
    for (const Blob& record : {pkcs15test::sample("ti-min"), pkcs15test::sample("ti-label"),
                               tokenInfoOf("card-a-tokeninfo")}) {
        const Blob expected = expectedTokenInfo(record);
        EXPECT_EQ(relabelledToken(record), expected);
        EXPECT_EQ(differences(record, expected).size(), 1u);
    }
}

TEST(FidelityOfTokenInfo, RefusesAlgorithmsWithoutIdentifierSinceNoneCanBeWritten) {
    EXPECT_EQ(failureOf([] { relabelledToken(pkcs15test::sample("ti-full")); }),
              smartcardFailure("encoding error", "PKCS15Container::encodeTokenInfo"));
}

}  // namespace
}  // namespace tovi::test
