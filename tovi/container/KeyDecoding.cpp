#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/coders/PKCS15SecKeyCT.h"
#include "tovi/container/InitInfos.h"

namespace tovi {

void PKCS15Container::initPrivateKeyInfos() {
    privateKeyInfos.reserve(rawPrivateKeys.size());
    initInfos(privateKeyInfos, rawPrivateKeys, privateKeyObject, PKCS15KeyCT::decodePrivateKey);
}

void PKCS15Container::initPublicKeyInfos() {
    publicKeyInfos.reserve(rawPublicKeys.size());
    trustedPublicKeyInfos.reserve(rawTrustedPublicKeys.size());
    initInfos(publicKeyInfos, rawPublicKeys, publicKeyObject, PKCS15KeyCT::decodePublicKey);
    initInfos(trustedPublicKeyInfos, rawTrustedPublicKeys, trustedPublicKeyObject,
              PKCS15KeyCT::decodeTrustedPublicKey);
}

void PKCS15Container::initBlockCipherKeyInfos() {
    blockCipherKeyInfos.reserve(rawSecretKeys.size());
    initInfos(blockCipherKeyInfos, rawSecretKeys, secretKeyObject, PKCS15SecKeyCT::decodeSecretKey);
}

}  // namespace tovi
