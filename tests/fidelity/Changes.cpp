#include "tests/fidelity/Changes.h"

#include <map>
#include <memory>

#include "tests/fidelity/ChangeList.h"

namespace tovi::test {

namespace {

// ---- what all objects have ----

const Place label{commonOf, tags::commonObject, 0, "common.label"};
const Place flags{commonOf, tags::commonObject, 1, "common.flags"};
const Place authId{commonOf, tags::commonObject, 2, "common.authId"};
const Place userConsent{commonOf, tags::commonObject, 3, "common.userConsent"};
const Place rules{commonOf, tags::commonObject, 4, "common.accessControlRules"};

void addLabelChanges(ChangeList& list) {
    const Blob other = text("a label that was not there before");
    list.set("label", label, element(0x0C, other), [=](Fields& fields) { fields.label = other; });
    const Blob name = text(kindName(list.kind(), list.settled()));
    if (list.at(label))
        list.set("no label", label, {}, [](Fields& fields) { fields.label.clear(); }).readsAs =
            [=](Fields& fields) { fields.label = name; };
}

void addFlagChanges(ChangeList& list) {
    const auto addFlags = [&](std::string name, std::vector<unsigned> bits, const Edit& apply) {
        Tlv common = commonOf(list.settled());
        putFlags(common, bits);
        const Tlv* said = member(common, tags::commonObject, 1);
        Change& change = list.set(std::move(name), flags, said ? said->encoded() : Blob(), apply);
        // Where there are none, the object counts as modifiable.
        if (!said)
            change.readsAs = [](Fields& fields) {
                fields.object.isPrivate = false;
                fields.object.isModifiable = true;
            };
    };
    const Edit togglePrivate = [](Fields& fields) {
        fields.object.isPrivate = !fields.object.isPrivate;
    };
    const Edit toggleModifiable = [](Fields& fields) {
        fields.object.isModifiable = !fields.object.isModifiable;
    };
    const std::vector<unsigned> bits = list.bitsAt(flags);
    addFlags("isPrivate", toggled(bits, 0), togglePrivate);
    addFlags("isModifiable", toggled(bits, 1), toggleModifiable);
    addFlags("isPrivate and isModifiable", toggled(toggled(bits, 0), 1), [=](Fields& fields) {
        togglePrivate(fields);
        toggleModifiable(fields);
    });
}

void addUserConsentChanges(ChangeList& list) {
    for (const std::int32_t value : {0, 200, 32767})
        list.set("userConsent " + std::to_string(value), userConsent, integer(value),
                 [=](Fields& fields) { fields.object.userConsent = value; });
    list.remove("no userConsent", userConsent,
                [](Fields& fields) { fields.object.userConsent = noUserConsent; });
}

void addAuthIdChanges(ChangeList& list) {
    const Blob other = hex("A5 5A");
    list.set("authId", authId, octetString(other),
             [=](Fields& fields) { fields.object.authId = other; });
    list.remove("no authId", authId, [](Fields& fields) { fields.object.authId.clear(); });
}

/// Access rules are written and never removed: an info without them leaves those that are there.
void addRulesChange(ChangeList& list) {
    static const Blob others = sequence(sequence(namedBits({1}), octetString({0x05})),
                                        sequence(namedBits({0, 2}), context(0, octetString({6}))));
    const Edit apply = [](Fields& fields) { fields.object.auxValue3 = &others; };
    Change& change = list.add(
        "auxValue3", rules.where,
        {{rules.where + ".?1.accessMode", "(2)40"},
         {rules.where + ".?1.securityCondition", "040105"},
         {rules.where + ".?2.accessMode", "(3)a0"},
         {rules.where + ".?2.securityCondition", "a003040106"}},
        apply, [](Tlv& object) { put(commonOf(object), tags::commonObject, rules.slot, others); });
    if (const Tlv* old = list.at(rules)) {
        const auto held = std::make_shared<Blob>(old->encoded());
        change.takeBack = [held](Fields& fields) { fields.object.auxValue3 = held.get(); };
    } else {
        change.restored = change.expected;
    }
}

void addCommonChanges(ChangeList& list) {
    addLabelChanges(list);
    addFlagChanges(list);
    addAuthIdChanges(list);
    addUserConsentChanges(list);
    addRulesChange(list);
}

// ---- certificates ----

const Place certificateId{classOf, tags::commonCertificate, 0, "class.iD"};
const Place trustedUsage{classOf, tags::commonCertificate, 4, "class.trustedUsage.extKeyUsage"};
const Place serialNumber{typeOf, tags::x509Certificate, 3, "type.serialNumber"};

const Blob& logon() {
    static const Blob identifier = smartcardLogon();
    return identifier;
}

/// Makes the purposes of a certificate's trusted usage these; an empty usage is none.
void putPurposes(Tlv& object, const std::vector<Tlv>& purposes) {
    Tlv& attributes = classOf(object);
    const Tlv* old = member(attributes, tags::commonCertificate, 4);
    Tlv usage = old ? *old : parseTlv(context(1));
    Tlv list = parseTlv(sequence());
    list.members = purposes;
    put(usage, tags::usage, 1, purposes.empty() ? Blob() : list.encoded());
    put(attributes, tags::commonCertificate, 4, usage.members.empty() ? Blob() : usage.encoded());
}

DecodedValues inWordsOf(const std::vector<Tlv>& purposes) {
    DecodedValues values;
    for (std::size_t i = 0; i < purposes.size(); ++i)
        values[trustedUsage.where + ".?" + std::to_string(i + 1)] = inItsWords(purposes[i]);
    return values;
}

void addTrustedUsageChange(ChangeList& list) {
    const auto setUsage = [](std::uint64_t usage) {
        return [=](Fields& fields) { fields.certificate->trustedUsage = usage; };
    };
    const Tlv* usage = list.at(trustedUsage);
    const Tlv* held = usage ? member(*usage, tags::usage, 1) : nullptr;
    std::vector<Tlv> purposes = held ? held->members : std::vector<Tlv>();
    const auto isLogon = [](const Tlv& purpose) { return purpose.encoded() == logon(); };
    const bool had = std::erase_if(purposes, isLogon) != 0;
    if (!had) purposes.push_back(parseTlv(logon()));
    Change& change = list.add("trustedUsage", trustedUsage.where, inWordsOf(purposes),
                              setUsage(had ? 0 : trustedUsageLogon),
                              [&](Tlv& object) { putPurposes(object, purposes); });
    change.readsAs = setUsage(had ? noTrustedUsage : trustedUsageLogonDecoded);
    // To leave the usage as it is would not take it back.
    if (!had) change.takeBack = setUsage(0);
}

Tlv& valueOf(Tlv& object) { return typeOf(object).members.at(0); }

void addCertificateChanges(ChangeList& list) {
    const Blob other = hex("C0FFEE01"), serial = hex("00FEDCBA98");
    list.set("id", certificateId, octetString(other), [=](Fields& fields) { *fields.id = other; });
    list.set("serialNumber", serialNumber, element(0x02, serial),
             [=](Fields& fields) { fields.certificate->serialNumber = serial; });
    list.remove("no serialNumber", serialNumber,
                [](Fields& fields) { fields.certificate->serialNumber.clear(); });
    addTrustedUsageChange(list);
    addPathChanges(list, valueOf, "type.value.path");
}

// ---- data objects ----

const Place applicationName{classOf, tags::commonData, 0, "class.applicationName"};

void addDataChanges(ChangeList& list) {
    const Blob other = text("another application");
    list.set("applicationName", applicationName, element(0x0C, other),
             [=](Fields& fields) { fields.data->applicationName = other; });
    list.remove("no applicationName", applicationName,
                [](Fields& fields) { fields.data->applicationName.clear(); });
    addPathChanges(list, typeOf, "type.path");
}

void addKindChanges(ChangeList& list) {
    switch (list.kind()) {
        case Directory::privateKeys:
        case Directory::publicKeys:
        case Directory::trustedPublicKeys:
            return addKeyChanges(list);
        case Directory::secretKeys:
            return addSecretKeyChanges(list);
        case Directory::dataObjects:
            return addDataChanges(list);
        case Directory::authObjects:
            return addAuthChanges(list);
        default:
            return addCertificateChanges(list);
    }
}

}  // namespace

void addPathChanges(ChangeList& list, Tlv& (*path)(Tlv& object), const std::string& where) {
    const Tlv held = path(list.settled());
    const auto numberAt = [&](std::size_t slot) {
        const Tlv* number = member(held, tags::path, slot);
        return static_cast<std::uint16_t>(number ? numberOf(number->contents) : 0);
    };
    const PKCS15Path before{member(held, tags::path, 0)->contents, numberAt(1), numberAt(2)};
    const auto addPath = [&](std::string name, const PKCS15Path& after) {
        Blob octets = octetString(after.path);
        DecodedValues values = {{where + ".path", inItsWords(parseTlv(octets))}};
        if (after.index != 0 || after.length != 0) {
            const Blob index = integer(after.index), length = integer(after.length);
            octets = join({octets, index, retagged(0x80, length)});
            values[where + ".index"] = inItsWords(parseTlv(index));
            values[where + ".length"] = inItsWords(parseTlv(length));
        }
        list.add(
            std::move(name), where, values, [=](Fields& fields) { fields.object.path = after; },
            [&](Tlv& object) { path(object) = parseTlv(element(0x30, octets)); });
    };
    addPath("path", {hex("3F00 5015 A1B2"), before.index, before.length});
    addPath("path.index", {before.path, 0x0181, before.length});
    addPath("path.length", {before.path, before.index, 0xFEDC});
    if (before.index != 0 || before.length != 0) addPath("whole file", {before.path, 0, 0});
}

std::vector<Change> changesOf(Directory kind, const Blob& record) {
    ChangeList list(kind, record);
    addCommonChanges(list);
    addKindChanges(list);
    return list.taken();
}

std::string independentType(Directory kind, const Blob& record) {
    using Names = std::map<std::uint8_t, std::string>;
    static const Names privateKeys = {{0x30, "PrivateRSAKey"},
                                      {0xA0, "PrivateECKey"},
                                      {0xA1, "PrivateDHKey"},
                                      {0xA2, "PrivateDSAKey"}};
    static const Names publicKeys = {{0x30, "PublicRSAKey"},
                                     {0xA0, "PublicECKey"},
                                     {0xA1, "PublicDHKey"},
                                     {0xA2, "PublicDSAKey"}};
    static const Names secretKeys = {
        {0x30, "SecretKey"}, {0xA2, "DESKey"}, {0xA3, "DES2Key"}, {0xA4, "DES3Key"}};
    static const Names authObjects = {
        {0x30, "Pin"}, {0xA0, "Biometric"}, {0xA1, "AuthKey"}, {0xA2, "External"}};
    const std::uint8_t tag = record.front();
    switch (kind) {
        case Directory::privateKeys:
            return privateKeys.at(tag);
        case Directory::publicKeys:
        case Directory::trustedPublicKeys:
            return publicKeys.at(tag);
        case Directory::secretKeys:
            return secretKeys.at(tag);
        case Directory::dataObjects:
            return "OpaqueDO";
        case Directory::authObjects:
            return authObjects.at(tag);
        default:
            return "X509Certificate";
    }
}

}  // namespace tovi::test
