#include "tovi/coders/EntryWriting.h"
#include "tovi/coders/PKCS15CertCT.h"
#include "tovi/coders/PKCS15DataCT.h"
#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/coders/PKCS15SecKeyCT.h"
#include "tovi/container/InStep.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<PrivateKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(privateKeyInfos, rawPrivateKeys, prkdfHandler)) return noIndex;
    return PKCS15KeyCT::encodeKeyInfoBase(&coderEnv, os, prkdfHandler, info, rawPrivateKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<PublicKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(publicKeyInfos, rawPublicKeys, pukdfHandler)) return noIndex;
    return PKCS15KeyCT::encodeKeyInfoBase(&coderEnv, os, pukdfHandler, info, rawPublicKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<TrustedPublicKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(trustedPublicKeyInfos, rawTrustedPublicKeys, trustedPukdfHandler)) return noIndex;
    return PKCS15KeyCT::encodeKeyInfoBase(&coderEnv, os, trustedPukdfHandler, info,
                                          rawTrustedPublicKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(blockCipherKeyInfos, rawSecretKeys, skdfHandler)) return noIndex;
    return PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase(&coderEnv, os, skdfHandler, info,
                                                        rawSecretKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<CertificateInfo>& info,
                                          unsigned long index) {
    if (!inStep(certificateInfos, rawCertificates, cdfHandler)) return noIndex;
    return PKCS15CertCT::encodeCertInfoBase(&coderEnv, os, cdfHandler, info, rawCertificates,
                                            index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<TrustedCertificateInfo>& info,
                                          unsigned long index) {
    if (!inStep(trustedCertificateInfos, rawTrustedCertificates, trustedCdfHandler)) return noIndex;
    return PKCS15CertCT::encodeCertInfoBase(&coderEnv, os, trustedCdfHandler, info,
                                            rawTrustedCertificates, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<UsefulCertificateInfo>& info,
                                          unsigned long index) {
    if (!inStep(usefulCertificateInfos, rawUsefulCertificates, usefulCdfHandler)) return noIndex;
    return PKCS15CertCT::encodeCertInfoBase(&coderEnv, os, usefulCdfHandler, info,
                                            rawUsefulCertificates, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<DataInfo>& info,
                                          unsigned long index) {
    if (!inStep(dataInfos, rawDataObjects, dodfHandler)) return noIndex;
    return PKCS15DataCT::encodeDataInfoBase(&coderEnv, os, dodfHandler, info, rawDataObjects,
                                            index);
}

// Key containers are on no card: a new one goes behind the last.
unsigned long PKCS15Container::encodeInfo(ISCardOS* /*os*/,
                                          const PKCS15ObjectInfo<ContainerInfo>& /*info*/,
                                          unsigned long index) {
    return index != noIndex ? index : static_cast<unsigned long>(containerInfos.size());
}

}  // namespace tovi
