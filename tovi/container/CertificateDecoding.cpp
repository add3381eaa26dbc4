#include "tovi/coders/PKCS15CertCT.h"
#include "tovi/container/InitInfos.h"

namespace tovi {

void PKCS15Container::initCertificateInfos() {
    certificateInfos.reserve(rawCertificates.size());
    usefulCertificateInfos.reserve(rawUsefulCertificates.size());
    trustedCertificateInfos.reserve(rawTrustedCertificates.size());
    // Record numbers are given out in this order: useful certificates before trusted ones.
    InfoAppender<CertificateInfo> infos(certificateInfos);
    for (auto& record : rawCertificates) initCertificateInfo(record, infos);
    InfoAppender<UsefulCertificateInfo> useful(usefulCertificateInfos);
    for (auto& record : rawUsefulCertificates) initUsefulCertificateInfo(record, useful);
    InfoAppender<TrustedCertificateInfo> trusted(trustedCertificateInfos);
    for (auto& record : rawTrustedCertificates) initTrustedCertificateInfo(record, trusted);
}

bool PKCS15Container::initCertificateInfo(ASN1Object<PKCS15::CertificateType>& record,
                                          InfoAppender<CertificateInfo>& infos) {
    return initInfo(record, infos, certificateObject, PKCS15CertCT::decodeCertificate);
}

bool PKCS15Container::initUsefulCertificateInfo(ASN1Object<PKCS15::CertificateType>& record,
                                                InfoAppender<UsefulCertificateInfo>& infos) {
    return initInfo(record, infos, usefulCertificateObject, PKCS15CertCT::decodeUsefulCertificate);
}

bool PKCS15Container::initTrustedCertificateInfo(ASN1Object<PKCS15::CertificateType>& record,
                                                 InfoAppender<TrustedCertificateInfo>& infos) {
    return initInfo(record, infos, trustedCertificateObject,
                    PKCS15CertCT::decodeTrustedCertificate);
}

}  // namespace tovi
