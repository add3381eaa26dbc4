#include "tovi/coders/PKCS15CertCT.h"
#include "tovi/container/InitInfos.h"

namespace tovi {

void PKCS15Container::initCertificateInfos() {
    certificateInfos.reserve(rawCertificates.size());
    usefulCertificateInfos.reserve(rawUsefulCertificates.size());
    trustedCertificateInfos.reserve(rawTrustedCertificates.size());
    // Record numbers are given out in this order: useful certificates before trusted ones.
    initInfos(certificateInfos, rawCertificates, certificateObject,
              PKCS15CertCT::decodeCertificate);
    initInfos(usefulCertificateInfos, rawUsefulCertificates, usefulCertificateObject,
              PKCS15CertCT::decodeUsefulCertificate);
    initInfos(trustedCertificateInfos, rawTrustedCertificates, trustedCertificateObject,
              PKCS15CertCT::decodeTrustedCertificate);
}

}  // namespace tovi
