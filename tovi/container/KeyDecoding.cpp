#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/coders/PKCS15SecKeyCT.h"
#include "tovi/container/InitInfos.h"

namespace tovi {

void PKCS15Container::initPrivateKeyInfos() {
    privateKeyInfos.reserve(rawPrivateKeys.size());
    InfoAppender<PrivateKeyInfo> infos(privateKeyInfos);
    for (auto& record : rawPrivateKeys) initPrivateKeyInfo(record, infos);
}

bool PKCS15Container::initPrivateKeyInfo(ASN1Object<PKCS15::PrivateKeyType>& record,
                                         InfoAppender<PrivateKeyInfo>& infos) {
    return initInfo(record, infos, privateKeyObject, PKCS15KeyCT::decodePrivateKey);
}

void PKCS15Container::initPublicKeyInfos() {
    publicKeyInfos.reserve(rawPublicKeys.size());
    trustedPublicKeyInfos.reserve(rawTrustedPublicKeys.size());
    InfoAppender<PublicKeyInfo> infos(publicKeyInfos);
    for (auto& record : rawPublicKeys) initPublicKeyInfo(record, infos);
    InfoAppender<TrustedPublicKeyInfo> trusted(trustedPublicKeyInfos);
    for (auto& record : rawTrustedPublicKeys) initTrustedPublicKeyInfo(record, trusted);
}

bool PKCS15Container::initPublicKeyInfo(ASN1Object<PKCS15::PublicKeyType>& record,
                                        InfoAppender<PublicKeyInfo>& infos) {
    return initInfo(record, infos, publicKeyObject, PKCS15KeyCT::decodePublicKey);
}

bool PKCS15Container::initTrustedPublicKeyInfo(ASN1Object<PKCS15::PublicKeyType>& record,
                                               InfoAppender<TrustedPublicKeyInfo>& infos) {
    return initInfo(record, infos, trustedPublicKeyObject, PKCS15KeyCT::decodeTrustedPublicKey);
}

void PKCS15Container::initBlockCipherKeyInfos() {
    blockCipherKeyInfos.reserve(rawSecretKeys.size());
    InfoAppender<BlockCipherKeyInfo> infos(blockCipherKeyInfos);
    for (auto& record : rawSecretKeys) initBlockCipherKeyInfo(record, infos);
}

bool PKCS15Container::initBlockCipherKeyInfo(ASN1Object<PKCS15::SecretKeyType>& record,
                                             InfoAppender<BlockCipherKeyInfo>& infos) {
    return initInfo(record, infos, secretKeyObject, PKCS15SecKeyCT::decodeSecretKey);
}

}  // namespace tovi
