#include "tovi/coders/PKCS15SecKeyCT.h"

#include <cstdint>
#include <cstring>

#include "tovi/coders/CommonAttributes.h"
#include "tovi/coders/KeyUsage.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

namespace {

constexpr const char* des = "DES";
constexpr const char* tripleDES = "TripleDES";

/// keyLen in octets, bits rounded up; nothing when the record has none.
std::optional<std::int32_t> measuredLength(const PKCS15SecKeyCT::Object& object) {
    if (!object.subClassAttributes || !object.subClassAttributes->keyLen) return std::nullopt;
    const std::uint32_t bits = object.subClassAttributes->keyLen->toUInt32();
    return static_cast<std::int32_t>(bits + 7) / 8;
}

/// The length that the kind of key implies; 0 when it implies none.
std::uint64_t impliedLength(const std::string& choiceName) {
    if (choiceName == "desKey") return 8;
    if (choiceName == "des2Key") return 16;
    if (choiceName == "des3Key") return 32;  // not 24: callers know such keys by this length
    return 0;
}

const char* nameOfLength(std::int32_t length) {
    if (length == 16 || length == 24) return tripleDES;
    return length == 8 ? des : "";
}

}  // namespace

bool PKCS15SecKeyCT::decodeBlockCipherKeyInfo(const std::string& choiceName,
                                              const char* algorithmName,
                                              PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                                              const Object& object) {
    getPKCS15Attributes(info, object.commonObjectAttributes);
    getPKCS15Label(info.label, object.commonObjectAttributes, choiceName.c_str());
    ASN1_assign(info.id, object.classAttributes.iD);
    decodeKeyUsageFlags(object.classAttributes.usage, info);

    const std::optional<std::int32_t> length = measuredLength(object);
    const std::int32_t measured = length.value_or(0);
    if (length) info.keyLength = static_cast<std::uint64_t>(std::int64_t{measured});
    if (const std::uint64_t implied = impliedLength(choiceName); measured == 0 && implied != 0)
        info.keyLength = implied;
    const char* name = algorithmName ? algorithmName : nameOfLength(measured);
    const auto* text = reinterpret_cast<const std::uint8_t*>(name);
    info.algorithmName.assign(ASN1::View(text, std::strlen(name)));

    if (object.classAttributes.keyReference)
        info.reference = static_cast<std::uint16_t>(*object.classAttributes.keyReference);
    getPKCS15Path(info.path, object.typeAttributes.value);
    getFID(info);
    return PKCS15CT::decodeAuthConstraints(object.commonObjectAttributes);
}

std::optional<bool> PKCS15SecKeyCT::decodeSecretKey(const PKCS15::SecretKeyType& record,
                                                    PKCS15ObjectInfo<BlockCipherKeyInfo>& info) {
    using Key = PKCS15::SecretKeyType;
    const std::string name(record.selectionName());
    if (const auto* key = record.getIf<Key::genericSecretKey>())
        return decodeBlockCipherKeyInfo(name, nullptr, info, *key);
    if (const auto* key = record.getIf<Key::desKey>())
        return decodeBlockCipherKeyInfo(name, des, info, *key);
    if (const auto* key = record.getIf<Key::des2Key>())
        return decodeBlockCipherKeyInfo(name, tripleDES, info, *key);
    if (const auto* key = record.getIf<Key::des3Key>())
        return decodeBlockCipherKeyInfo(name, tripleDES, info, *key);
    return std::nullopt;
}

}  // namespace tovi
