#include "tovi/container/WriteProtocol.h"

namespace tovi {

unsigned long PKCS15Container::writePrivateKeyInfo(ISCardOS* os,
                                                   PKCS15ObjectInfo<PrivateKeyInfo>& info) {
    return writeInfo(os, info, privateKeyInfos, privateKeyObject);
}

void PKCS15Container::updatePrivateKeyInfo(ISCardOS* os,
                                           const PKCS15ObjectInfo<PrivateKeyInfo>& info) {
    updateInfo(os, info, privateKeyInfos, privateKeyObject);
}

unsigned long PKCS15Container::writePublicKeyInfo(ISCardOS* os,
                                                  PKCS15ObjectInfo<PublicKeyInfo>& info,
                                                  unsigned long privateKeyRecordNumber) {
    constexpr unsigned long noPrivateKey = ~0UL;
    const unsigned long recordNumber = writeInfo(os, info, publicKeyInfos, publicKeyObject);
    if (privateKeyRecordNumber != noPrivateKey)
        refPrivateKeyInfo(privateKeyRecordNumber).auxValue1 =
            static_cast<std::int64_t>(recordNumber);
    return recordNumber;
}

void PKCS15Container::updatePublicKeyInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<PublicKeyInfo>& info) {
    updateInfo(os, info, publicKeyInfos, publicKeyObject);
}

unsigned long PKCS15Container::writeTrustedPublicKeyInfo(
    ISCardOS* os, PKCS15ObjectInfo<TrustedPublicKeyInfo>& info) {
    return writeInfo(os, info, trustedPublicKeyInfos, trustedPublicKeyObject);
}

void PKCS15Container::updateTrustedPublicKeyInfo(
    ISCardOS* os, const PKCS15ObjectInfo<TrustedPublicKeyInfo>& info) {
    updateInfo(os, info, trustedPublicKeyInfos, trustedPublicKeyObject);
}

unsigned long PKCS15Container::writeBlockCipherKeyInfo(ISCardOS* os,
                                                       PKCS15ObjectInfo<BlockCipherKeyInfo>& info) {
    return writeInfo(os, info, blockCipherKeyInfos, secretKeyObject);
}

void PKCS15Container::updateBlockCipherKeyInfo(ISCardOS* os,
                                               const PKCS15ObjectInfo<BlockCipherKeyInfo>& info) {
    updateInfo(os, info, blockCipherKeyInfos, secretKeyObject);
}

unsigned long PKCS15Container::writeCertificateInfo(ISCardOS* os,
                                                    PKCS15ObjectInfo<CertificateInfo>& info) {
    return writeInfo(os, info, certificateInfos, certificateObject);
}

void PKCS15Container::updateCertificateInfo(ISCardOS* os,
                                            const PKCS15ObjectInfo<CertificateInfo>& info) {
    updateInfo(os, info, certificateInfos, certificateObject);
}

unsigned long PKCS15Container::writeTrustedCertificateInfo(
    ISCardOS* os, PKCS15ObjectInfo<TrustedCertificateInfo>& info) {
    return writeInfo(os, info, trustedCertificateInfos, trustedCertificateObject);
}

void PKCS15Container::updateTrustedCertificateInfo(
    ISCardOS* os, const PKCS15ObjectInfo<TrustedCertificateInfo>& info) {
    updateInfo(os, info, trustedCertificateInfos, trustedCertificateObject);
}

unsigned long PKCS15Container::writeUsefulCertificateInfo(
    ISCardOS* os, PKCS15ObjectInfo<UsefulCertificateInfo>& info) {
    return writeInfo(os, info, usefulCertificateInfos, usefulCertificateObject);
}

void PKCS15Container::updateUsefulCertificateInfo(
    ISCardOS* os, const PKCS15ObjectInfo<UsefulCertificateInfo>& info) {
    updateInfo(os, info, usefulCertificateInfos, usefulCertificateObject);
}

unsigned long PKCS15Container::writeDataInfo(ISCardOS* os, PKCS15ObjectInfo<DataInfo>& info) {
    return writeInfo(os, info, dataInfos, dataObject);
}

void PKCS15Container::updateDataInfo(ISCardOS* os, const PKCS15ObjectInfo<DataInfo>& info) {
    updateInfo(os, info, dataInfos, dataObject);
}

}  // namespace tovi
