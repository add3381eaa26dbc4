#include <optional>
#include <string_view>

#include "tovi/coders/CommonAttributeEncoding.h"
#include "tovi/coders/EntryWriting.h"
#include "tovi/coders/KeyUsage.h"
#include "tovi/coders/PKCS15SecKeyCT.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

namespace {

constexpr const char* HERE = "PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase";
constexpr std::uint32_t bitsPerOctet = 8;

using Key = PKCS15::SecretKeyType;

/// The alternative of a key of this name and length; nothing for a key that cannot be written.
std::optional<Key::Alternative> alternativeOf(const BlockCipherKeyInfo& info) {
    const Blob& octets = info.algorithmName;
    const std::string_view name(reinterpret_cast<const char*>(octets.data()), octets.size());
    if (name == "DES" && info.keyLength == 8) return Key::desKey;
    if (name == "TripleDES" && info.keyLength == 16) return Key::des2Key;
    if (name == "TripleDES" && info.keyLength == 24) return Key::des3Key;
    return std::nullopt;
}

/// The object of the alternative that the record has; they are all of one shape but for otherKey.
PKCS15SecKeyCT::Object* storedObject(Key& key) {
    PKCS15SecKeyCT::Object* object = nullptr;
    std::visit(
        [&object](auto& value) {
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, PKCS15SecKeyCT::Object>)
                object = &value;
        },
        key.value);
    return object;
}

}  // namespace

bool PKCS15SecKeyCT::encodeBlockCipherKeyInfo(const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                                              Object& object) {
    PKCS15::CommonSecretKeyAttributes& secretKey = object.set_subClassAttributes();
    setPKCS15Attributes(info, object.commonObjectAttributes);
    setPKCS15Label(info.label, object.commonObjectAttributes);
    object.classAttributes.iD = info.id.empty() ? info.label : info.id;
    encodeKeyUsageFlags(object.classAttributes.usage, info);
    setPKCS15KeyReference(info.reference, object.classAttributes);
    secretKey.set_keyLen(static_cast<std::uint32_t>(info.keyLength * bitsPerOctet));
    setPKCS15Path(object.typeAttributes.value, info.path);
    return PKCS15CT::encodeAuthConstraints(info.auxValue3, object.commonObjectAttributes);
}

unsigned long PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase(
    ASN1::CoderEnv* env, ISCardOS* os, ProfileDFHandler& handler,
    const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
    std::vector<ASN1Object<PKCS15::SecretKeyType>>& raws, unsigned long index) {
    return encodeEntry(env, os, handler, info, raws, index, HERE, [&](Key& key, bool isNew) {
        const std::optional<Key::Alternative> alternative = alternativeOf(info);
        if (!alternative) throw SmartcardException("invalid key type", HERE);
        if (isNew) key.setSelection(*alternative);
        Object* object = storedObject(key);
        return object && encodeBlockCipherKeyInfo(info, *object);
    });
}

}  // namespace tovi
