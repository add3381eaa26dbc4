#include "tovi/container/PKCS15Container.h"

#include <ostream>

#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {

PKCS15Container::PKCS15Container(const byte_array& path)
    : appPath(path),
      tokenInfoHandler(appPath),
      odfHandler(appPath),
      prkdfHandler(appPath),
      pukdfHandler(appPath),
      trustedPukdfHandler(appPath),
      skdfHandler(appPath),
      cdfHandler(appPath),
      trustedCdfHandler(appPath),
      usefulCdfHandler(appPath),
      dodfHandler(appPath),
      aodfHandler(appPath) {
    ASN1_configureCoderEnv(&coderEnv, ASN1_getPKCS15());
}

PKCS15Container::~PKCS15Container() { clear(); }

void PKCS15Container::clear() {
    fatRecords.clear();

    privateKeyInfos.clear();
    publicKeyInfos.clear();
    trustedPublicKeyInfos.clear();
    certificateInfos.clear();
    trustedCertificateInfos.clear();
    usefulCertificateInfos.clear();
    blockCipherKeyInfos.clear();
    dataInfos.clear();
    containerInfos.clear();
    authInfos.clear();

    clearObjects(rawTokenInfos);
    clearObjects(rawODF);
    clearObjects(rawPrivateKeys);
    clearObjects(rawPublicKeys);
    clearObjects(rawTrustedPublicKeys);
    clearObjects(rawSecretKeys);
    clearObjects(rawCertificates);
    clearObjects(rawTrustedCertificates);
    clearObjects(rawUsefulCertificates);
    clearObjects(rawDataObjects);
    clearObjects(rawAuthObjects);

    isRead = false;
}

Blob PKCS15Container::getRootPath() const {
    if (appPath == PKCS15_DF) return PKCS15_PATH;
    Blob path = PKCS15_MF;
    path.append(appPath);
    return path;
}

void PKCS15Container::print(std::ostream&) const {}

std::ostream& operator<<(std::ostream& stream, PKCS15Container& container) {
    container.print(stream);
    return stream;
}

}  // namespace tovi
