#include "tests/fidelity/RecordCases.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "tests/fidelity/TlvTree.h"
#include "tests/pkcs15/Records.h"

namespace tovi::test {

namespace {

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
              const Blob& file, const RecordList& records) {
    for (const Directory kind : kindsOf(type))
        for (std::size_t i = 0; i < records.size(); ++i)
            cases.push_back({name, kind, file, records, i});
}

RecordList recordsOf(const pkcs15test::Vector& vector) {
    RecordList records;
    for (const auto& facts : vector.facts.at("records"))
        records.emplace_back(ASN1::View(vector.file).subspan(facts.at("offset"), facts.at("size")));
    return records;
}

/// Puts a member that no version knows behind those of each type: of the common, class, sub-class
/// and type attributes. The type attributes of a data object are a path, which has no others.
RecordCase extended(RecordCase its) {
    const Tlv unknown = parseTlv(hex("9E 03 C0FFEE")), nested = parseTlv(hex("BF64 03 020107"));
    Tlv object = parseTlv(its.record());
    std::vector<Tlv*> types = {&object.members[0], &object.members[1]};
    for (Tlv& member : object.members)
        if ((member.is(0xA0) || (member.is(0xA1) && its.kind != Directory::dataObjects)) &&
            member.members.front().isConstructed())
            types.push_back(&member.members.front());
    for (Tlv* type : types) {
        type->members.push_back(unknown);
        type->members.push_back(nested);
    }
    its.file = object.encoded();
    its.records = {its.file};
    its.isExtended = true;
    return its;
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

std::vector<RecordCase> readCases() {
    std::vector<RecordCase> cases;
    for (const auto& sample : pkcs15test::readSamples())
        addCases(cases, sample.name, sample.type->name, sample.octets, {sample.octets});
    std::vector<RecordCase> others;
    for (const RecordCase& each : cases)
        if (each.canBeUpdated()) others.push_back(extended(each));
    cases.insert(cases.end(), others.begin(), others.end());
    for (const auto& vector : pkcs15test::readVectors())
        addCases(cases, vector.name, vector.type->name, vector.file, recordsOf(vector));
    return cases;
}

template <class Condition>
std::vector<RecordCase> casesWhere(Condition condition) {
    std::vector<RecordCase> found;
    std::ranges::copy_if(recordCases(), std::back_inserter(found), condition);
    return found;
}

}  // namespace

bool RecordCase::canBeUpdated() const { return !refusals().contains(name); }
const Failure& RecordCase::refusal() const { return refusals().at(name); }

const std::vector<RecordCase>& recordCases() {
    static const std::vector<RecordCase> cases = readCases();
    return cases;
}

std::vector<RecordCase> updatableCases() { return casesWhere(&RecordCase::canBeUpdated); }

std::vector<RecordCase> refusedCases() {
    return casesWhere([](const RecordCase& each) { return !each.canBeUpdated(); });
}

std::string testName(const RecordCase& each) {
    static constexpr const char* kinds[] = {
        "PrKDF", "PuKDF", "TrustedPuKDF", "SKDF", "CDF", "TrustedCDF", "UsefulCDF", "DODF", "AODF"};
    std::string name;
    for (const char c : each.name)
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    return name + (each.isExtended ? "_extended_" : "_") + std::to_string(each.position) + "_in_" +
           kinds[static_cast<unsigned>(each.kind)];
}

Blob tokenInfoOfCard(const std::string& name) {
    for (const auto& vector : pkcs15test::readVectors())
        if (vector.name == name) return recordsOf(vector).at(0);
    return {};
}

}  // namespace tovi::test
