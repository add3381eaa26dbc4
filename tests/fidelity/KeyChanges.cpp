#include "tests/fidelity/ChangeList.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {

namespace {

const Place id{classOf, tags::commonKey, 0, "class.iD"};
const Place usage{classOf, tags::commonKey, 1, "class.usage"};
const Place native{classOf, tags::commonKey, 2, "class.native"};
const Place keyReference{classOf, tags::commonKey, 4, "class.keyReference"};
const Place modulusLength{typeOf, tags::rsaKey, 1, "type.modulusLength"};

/// The only member of the sub-class attributes that is varied: keyLen of a secret key.
Tlv& subClassOf(Tlv& object) { return object.members.at(2).members.at(0); }
const Place keyLen{subClassOf, tags::commonSecretKey, 0, "subClass.keyLen"};

Tlv& valueOf(Tlv& object) { return typeOf(object).members.at(0); }

/// The attributes in the order of the bits of KeyUsageFlags.
constexpr unsigned long usages[] = {
    CKA_ENCRYPT, CKA_DECRYPT, CKA_SIGN,           CKA_SIGN_RECOVER, CKA_WRAP,
    CKA_UNWRAP,  CKA_VERIFY,  CKA_VERIFY_RECOVER, CKA_DERIVE,       CKA_ALWAYS_AUTHENTICATE};

void addUsageChanges(ChangeList& list) {
    const std::vector<unsigned> bits = list.bitsAt(usage);
    for (unsigned bit = 0; bit < std::size(usages); ++bit) {
        const std::vector<unsigned> others = toggled(bits, bit);
        const Blob& value = others.size() > bits.size() ? B_CK_TRUE : B_CK_FALSE;
        list.set("usage bit " + std::to_string(bit), usage, namedBits(others),
                 [=](Fields& fields) { fields.attributes.SetParam(usages[bit], value); });
    }
}

void addReferenceChanges(ChangeList& list) {
    for (const std::uint16_t number : std::initializer_list<std::uint16_t>{0, 199, 0xFFFE})
        list.set("reference " + std::to_string(number), keyReference, integer(number),
                 [=](Fields& fields) { fields.object.reference = number; });
    list.remove("no reference", keyReference,
                [](Fields& fields) { fields.object.reference = noReference; });
}

/// FALSE is written, but nothing is for a key that is native: a record that says that it is not
/// keeps saying so, one that says nothing keeps silent.
void addNativeChange(ChangeList& list) {
    const Tlv* before = member(classOf(list.before()), tags::commonKey, 2);
    const bool wasNative = before && before->contents != Blob{0x00};
    const Edit toggle = [](Fields& fields) { fields.object.native = !fields.object.native; };
    Blob after;
    if (wasNative)
        after = boolean(false);
    else if (before)
        after = before->encoded();
    Change& change = list.set("native", native, after, toggle);
    if (wasNative) change.restored = change.expected;
}

void addIdChange(ChangeList& list) {
    const Blob other = hex("C0FFEE02");
    list.set("id", id, octetString(other), [=](Fields& fields) { *fields.id = other; });
}

}  // namespace

void addKeyChanges(ChangeList& list) {
    addIdChange(list);
    addUsageChanges(list);
    addReferenceChanges(list);
    addNativeChange(list);
    addPathChanges(list, valueOf, "type.value.path");
    if (list.settled().is(0x30))
        list.set("modulusLength", modulusLength, integer(4095),
                 [](Fields& fields) { fields.object.modulusLength = 4095; });
}

void addSecretKeyChanges(ChangeList& list) {
    addIdChange(list);
    addUsageChanges(list);
    addReferenceChanges(list);
    addPathChanges(list, valueOf, "type.value.path");
    const bool is24 = numberOf(list.at(keyLen)->contents) == 192;
    const std::uint64_t length = is24 ? 16 : 24;
    // A DES key is updated under another name and remains what it is.
    const bool isDES = list.settled().is(0xA2);
    list.set("keyLength", keyLen, integer(static_cast<std::int64_t>(8 * length)),
             [=](Fields& fields) {
                 fields.secretKey->keyLength = length;
                 fields.secretKey->algorithmName = text("TripleDES");
             })
        .readsAs = [=](Fields& fields) {
        fields.secretKey->keyLength = length;
        fields.secretKey->algorithmName = text(isDES ? "DES" : "TripleDES");
    };
}

}  // namespace tovi::test
