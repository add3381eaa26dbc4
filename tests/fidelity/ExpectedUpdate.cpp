#include "tests/fidelity/ExpectedUpdate.h"

#include <algorithm>

#include "tests/fidelity/Members.h"

namespace tovi::test {

namespace {

Blob contentsOf(const Tlv* element, const Blob& otherwise = {}) {
    return element ? element->contents : otherwise;
}

// ---- CommonObjectAttributes ----

void settleCommon(Tlv& common, const std::string& kindName) {
    // An object without a label is known by the name of its kind, and keeps it.
    const Tlv* label = member(common, tags::commonObject, 0);
    if (label == nullptr)
        put(common, tags::commonObject, 0, utf8String(kindName));
    else if (label->contents.empty())
        put(common, tags::commonObject, 0, {});
    // An object without flags is modifiable, and says so from now on.
    const Tlv* flags = member(common, tags::commonObject, 1);
    putFlags(common, flags ? bitsOf(flags->contents) : std::vector<unsigned>{1});
    if (contentsOf(member(common, tags::commonObject, 2)).empty())
        put(common, tags::commonObject, 2, {});
}

// ---- class and type attributes ----

/// A value becomes a path: an empty one unless it was a path before. Index and length stand
/// together or not at all.
Tlv settledValue(Tlv value) {
    const Tlv* const steps = value.is(0x30) ? member(value, tags::path, 0) : nullptr;
    if (steps == nullptr) return parseTlv(path(""));
    const Blob none = {0x00};
    const Blob index = contentsOf(member(value, tags::path, 1), none);
    const Blob length = contentsOf(member(value, tags::path, 2), none);
    const bool isWhole = index == none && length == none;
    put(value, tags::path, 1, isWhole ? Blob() : element(0x02, index));
    put(value, tags::path, 2, isWhole ? Blob() : element(0x80, length));
    return value;
}

/// The explicit [1], the last member of every object.
Tlv& typeOf(Tlv& object) { return object.members.back().members.at(0); }

/// Type attributes that begin with a value.
void settleValue(Tlv& object) {
    Tlv& value = typeOf(object).members.at(0);
    value = settledValue(value);
}

/// A key that does not say whether it is native was read as one that is not, and says so; DER does
/// not write that it is.
void settleNative(Tlv& attributes) {
    const Tlv* native = member(attributes, tags::commonKey, 2);
    if (native == nullptr)
        put(attributes, tags::commonKey, 2, boolean(false));
    else if (native->contents != Blob{0x00})
        put(attributes, tags::commonKey, 2, {});
}

/// The length of a key is always written; without a stored one it is that of its kind.
void settleKeyLen(Tlv& object) {
    const Tags objectTags = {0x30, 0x30, 0xA0, 0xA1};
    if (member(object, objectTags, 2) != nullptr) return;
    const std::int64_t bits = object.is(0xA2) ? 64 : 128;
    put(object, objectTags, 2, context(0, sequence(integer(bits))));
}

}  // namespace

std::string kindName(Directory kind, const Tlv& object) {
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

void putFlags(Tlv& common, const std::vector<unsigned>& bits) {
    const bool isSaid =
        std::any_of(bits.begin(), bits.end(), [](unsigned bit) { return bit <= 1; });
    put(common, tags::commonObject, 1, isSaid ? namedBits(bits) : Blob());
}

Tlv settledRecord(Directory kind, const Blob& record) {
    Tlv object = parseTlv(record);
    settleCommon(object.members.at(0), kindName(kind, object));
    switch (kind) {
        case Directory::privateKeys:
        case Directory::publicKeys:
        case Directory::trustedPublicKeys:
            settleNative(object.members.at(1));
            settleValue(object);
            break;
        case Directory::secretKeys:
            settleKeyLen(object);
            settleValue(object);
            break;
        case Directory::dataObjects:
            typeOf(object) = settledValue(typeOf(object));
            break;
        case Directory::authObjects:
            break;
        default:
            settleValue(object);
    }
    return object;
}

Tlv settledTokenInfo(const Blob& record) {
    Tlv token = parseTlv(record);
    if (member(token, tags::tokenInfo, 3) == nullptr)
        put(token, tags::tokenInfo, 3, contextPrimitive(0, text("PKCS#15 Token")));
    return token;
}

}  // namespace tovi::test
