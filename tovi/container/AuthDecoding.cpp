#include "tovi/container/FirstIndex.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/PKCS15AuthCT.h"

namespace tovi {

/// The secret keys by id, for authentication keys.
struct PKCS15Container::SecretKeyIndex : FirstIndex<&BlockCipherKeyInfo::id, BlockCipherKeyInfo> {
    using FirstIndex::FirstIndex;
};

namespace {

void setFid16(PKCS15Object& object, std::uint16_t fid) {
    object.fid = (object.fid & ~std::uint64_t{0xFFFF}) | fid;
}

}  // namespace

void PKCS15Container::initAuthObjs() {
    authInfos.reserve(rawAuthObjects.size());
    const SecretKeyIndex secretKeys(blockCipherKeyInfos);
    for (auto& record : rawAuthObjects) initAuth(record, authInfos, secretKeys);
}

bool PKCS15Container::initAuth(ASN1Object<PKCS15::AuthenticationType>& record,
                               InfoList<AuthInfo>& infos, const SecretKeyIndex& secretKeys) {
    PKCS15ObjectInfo<AuthInfo> info;
    const bool understood = record.value && decodeAuth(record, info, secretKeys);
    infos.push_back(info);
    record.isDecoded = understood;
    return understood;
}

bool PKCS15Container::decodeAuth(ASN1Object<PKCS15::AuthenticationType>& record,
                                 PKCS15ObjectInfo<AuthInfo>& info,
                                 const SecretKeyIndex& secretKeys) {
    using Auth = PKCS15::AuthenticationType;
    using External = PKCS15::ExternalAuthObjectAttributes;
    const Auth& value = *record.value;
    if (const auto* pin = value.getIf<Auth::pin>()) return PKCS15AuthCT::decodePinInfo(info, *pin);
    if (const auto* bio = value.getIf<Auth::biometricTemplate>()) {
        // A template that is not understood is an invalid record.
        record.isValid = PKCS15AuthCT::decodeBioInfo(info, *bio);
        return record.isValid;
    }
    if (const auto* key = value.getIf<Auth::authKey>()) {
        const bool understood = PKCS15AuthCT::decodeAuthKeyInfo(info, *key);
        if (understood) takeKeyFile(info, secretKeys);
        return understood;
    }
    if (const auto* external = value.getIf<Auth::external>())
        return external->typeAttributes.selection() == External::certBasedAttributes &&
               PKCS15AuthCT::decodeExternalInfo(info, *external);
    return false;
}

// The file of the secret key passes to the authentication object that is made of it.
void PKCS15Container::takeKeyFile(PKCS15ObjectInfo<AuthInfo>& info,
                                  const SecretKeyIndex& secretKeys) {
    const unsigned long position = secretKeys.find(info.authKeyId);
    if (position == noPosition) return;
    PKCS15ObjectInfo<BlockCipherKeyInfo>& key = blockCipherKeyInfos[position];
    info.reference = key.reference;
    setFid16(info, fid16(key));
    setFid16(key, noFID16);
}

}  // namespace tovi
