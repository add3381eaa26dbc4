#include "tests/fidelity/ExpectedUpdate.h"

#include <algorithm>
#include <iterator>

#include "tests/fidelity/TlvTree.h"

namespace tovi::test {

namespace {

// ---- elements of a tree ----

using Members = std::vector<Tlv>;

Members::iterator find(Tlv& parent, std::uint8_t tag) {
    return std::find_if(parent.members.begin(), parent.members.end(),
                        [tag](const Tlv& member) { return member.is(tag); });
}
bool has(Tlv& parent, std::uint8_t tag) { return find(parent, tag) != parent.members.end(); }

/// The contents of a member; `otherwise` when there is none.
Blob contentsOf(Tlv& parent, std::uint8_t tag, const Blob& otherwise = {}) {
    return has(parent, tag) ? find(parent, tag)->contents : otherwise;
}

void remove(Tlv& parent, std::uint8_t tag) {
    if (has(parent, tag)) parent.members.erase(find(parent, tag));
}

/// Puts a member in the place of the one with its tag, or in front of position `otherwise`.
void put(Tlv& parent, const Blob& encoded, std::size_t otherwise) {
    const Tlv member = parseTlv(encoded);
    if (const auto old = find(parent, member.tag.front()); old != parent.members.end())
        *old = member;
    else
        parent.members.insert(
            std::next(parent.members.begin(), static_cast<std::ptrdiff_t>(otherwise)), member);
}

/// The bits that are set in the contents of a BIT STRING.
std::vector<unsigned> bitsOf(const Blob& contents) {
    std::vector<unsigned> bits;
    for (unsigned i = 0; i + 8 < 8 * contents.size(); ++i)
        if ((contents[1 + i / 8] & 0x80 >> i % 8) != 0) bits.push_back(i);
    return bits;
}

// ---- CommonObjectAttributes ----

Blob labelAfter(Tlv& common, Attribute attribute, const char* kindName) {
    if (attribute == Attribute::label) return newLabel;
    // An object without a label is known by the name of its kind, and keeps it.
    return contentsOf(common, 0x0C, text(has(common, 0x0C) ? "" : kindName));
}

/// An object without flags is modifiable, and says so from now on.
std::vector<unsigned> flagsAfter(Tlv& common, Attribute attribute) {
    std::vector<unsigned> bits = {1};
    if (has(common, 0x03)) bits = bitsOf(contentsOf(common, 0x03));
    if (attribute != Attribute::flags) return bits;
    std::vector<unsigned> opposite;
    for (unsigned bit : {0u, 1u})
        if (std::find(bits.begin(), bits.end(), bit) == bits.end()) opposite.push_back(bit);
    return opposite;
}

void expectCommon(Tlv& common, Attribute attribute, const char* kindName) {
    const Blob label = labelAfter(common, attribute, kindName);
    const std::vector<unsigned> flags = flagsAfter(common, attribute);
    const Blob authId = attribute == Attribute::authId ? newAuthId : contentsOf(common, 0x04);

    if (label.empty())
        remove(common, 0x0C);
    else
        put(common, element(0x0C, label), 0);
    const std::size_t behindLabel = has(common, 0x0C) ? 1 : 0;
    if (flags.empty())
        remove(common, 0x03);
    else
        put(common, namedBits(flags), behindLabel);
    if (authId.empty())
        remove(common, 0x04);
    else
        put(common, octetString(authId), behindLabel + (has(common, 0x03) ? 1 : 0));
}

// ---- class and type attributes ----

constexpr std::uint8_t path30 = 0x30, octets04 = 0x04;

/// A value becomes a path: an empty one unless it was a path before. Index and length stand
/// together or not at all.
Tlv valueAfter(Tlv value) {
    if (!value.is(path30) || value.members.empty() || !value.members[0].is(octets04))
        return parseTlv(path(""));
    const Blob none = {0x00};
    const Blob index = contentsOf(value, 0x02, none), length = contentsOf(value, 0x80, none);
    value.members.resize(1);
    if (index == none && length == none) return value;
    value.members.push_back(parseTlv(element(0x02, index)));
    value.members.push_back(parseTlv(element(0x80, length)));
    return value;
}

/// The explicit [1], the last member of every object.
Tlv& typeOf(Tlv& object) { return object.members.back(); }

/// Type attributes that begin with a value.
void expectValue(Tlv& object) {
    Tlv& value = typeOf(object).members.at(0).members.at(0);
    value = valueAfter(value);
}

/// A key that does not say whether it is native was read as one that is not, and says so; DER does
/// not write that it is.
void expectNative(Tlv& attributes) {
    const Blob native = contentsOf(attributes, 0x01);
    if (native.empty())
        put(attributes, boolean(false), 2);
    else if (native != Blob{0x00})
        remove(attributes, 0x01);
}

/// The length of a key is always written; without a stored one it is that of its kind.
void expectKeyLen(Tlv& object) {
    if (has(object, 0xA0)) return;
    const std::int64_t bits = object.is(0xA2) ? 64 : 128;
    put(object, context(0, sequence(integer(bits))), 2);
}

const char* kindName(Directory kind, const Tlv& object) {
    static constexpr const char* privateKeys[] = {"privateECKey", "privateDHKey", "privateDSAKey"};
    static constexpr const char* publicKeys[] = {"publicECKey", "publicDHKey", "publicDSAKey"};
    static constexpr const char* secretKeys[] = {"", "", "desKey", "des2Key", "des3Key"};
    static constexpr const char* authObjects[] = {"biometricTemplate", "authKey", "external"};
    const bool isFirst = object.is(0x30);
    const std::size_t number = object.tag.front() & 0x1F;
    switch (kind) {
        case Directory::privateKeys:
            return isFirst ? "privateRSAKey" : privateKeys[number];
        case Directory::publicKeys:
        case Directory::trustedPublicKeys:
            return isFirst ? "publicRSAKey" : publicKeys[number];
        case Directory::secretKeys:
            return isFirst ? "genericSecretKey" : secretKeys[number];
        case Directory::dataObjects:
            return "opaqueDO";
        case Directory::authObjects:
            return isFirst ? "pin" : authObjects[number];
        default:
            return "x509Certificate";
    }
}

}  // namespace

void change(Attribute attribute, PKCS15Object& object, Blob& label) {
    if (attribute == Attribute::label) label = newLabel;
    if (attribute == Attribute::authId) object.authId = newAuthId;
    if (attribute != Attribute::flags) return;
    object.isPrivate = !object.isPrivate;
    object.isModifiable = !object.isModifiable;
}

Blob expectedUpdate(Directory kind, const Blob& record, Attribute attribute) {
    Tlv object = parseTlv(record);
    expectCommon(object.members.at(0), attribute, kindName(kind, object));
    switch (kind) {
        case Directory::privateKeys:
        case Directory::publicKeys:
        case Directory::trustedPublicKeys:
            expectNative(object.members.at(1));
            expectValue(object);
            break;
        case Directory::secretKeys:
            expectKeyLen(object);
            expectValue(object);
            break;
        case Directory::dataObjects:
            typeOf(object).members.at(0) = valueAfter(typeOf(object).members.at(0));
            break;
        case Directory::authObjects:
            break;
        default:
            expectValue(object);
    }
    return object.encoded();
}

Blob expectedTokenInfo(const Blob& record) {
    Tlv token = parseTlv(record);
    const auto flags = find(token, 0x03);
    put(token, contextPrimitive(0, newLabel),
        static_cast<std::size_t>(flags - token.members.begin()));
    return token.encoded();
}

}  // namespace tovi::test
