#include "tovi/coders/EntryWriting.h"
#include "tovi/coders/PKCS15CertCT.h"
#include "tovi/coders/PKCS15DataCT.h"
#include "tovi/coders/PKCS15KeyCT.h"
#include "tovi/coders/PKCS15SecKeyCT.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

namespace {

/// Whether the infos of a kind stand for its records, one for one. They do not after a read that
/// failed between the two, and an index of the one is no index of the other then.
template <class Infos, class Raws>
bool inStep(const Infos& infos, const Raws& raws) {
    return infos.size() == raws.size();
}

}  // namespace

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<PrivateKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(privateKeyInfos, rawPrivateKeys)) return noIndex;
    return PKCS15KeyCT::encodeKeyInfoBase(&coderEnv, os, prkdfHandler, info, rawPrivateKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<PublicKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(publicKeyInfos, rawPublicKeys)) return noIndex;
    return PKCS15KeyCT::encodeKeyInfoBase(&coderEnv, os, pukdfHandler, info, rawPublicKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<TrustedPublicKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(trustedPublicKeyInfos, rawTrustedPublicKeys)) return noIndex;
    return PKCS15KeyCT::encodeKeyInfoBase(&coderEnv, os, trustedPukdfHandler, info,
                                          rawTrustedPublicKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                                          unsigned long index) {
    if (!inStep(blockCipherKeyInfos, rawSecretKeys)) return noIndex;
    return PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase(&coderEnv, os, skdfHandler, info,
                                                        rawSecretKeys, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<CertificateInfo>& info,
                                          unsigned long index) {
    if (!inStep(certificateInfos, rawCertificates)) return noIndex;
    return PKCS15CertCT::encodeCertInfoBase(&coderEnv, os, cdfHandler, info, rawCertificates,
                                            index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<TrustedCertificateInfo>& info,
                                          unsigned long index) {
    if (!inStep(trustedCertificateInfos, rawTrustedCertificates)) return noIndex;
    return PKCS15CertCT::encodeCertInfoBase(&coderEnv, os, trustedCdfHandler, info,
                                            rawTrustedCertificates, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os,
                                          const PKCS15ObjectInfo<UsefulCertificateInfo>& info,
                                          unsigned long index) {
    if (!inStep(usefulCertificateInfos, rawUsefulCertificates)) return noIndex;
    return PKCS15CertCT::encodeCertInfoBase(&coderEnv, os, usefulCdfHandler, info,
                                            rawUsefulCertificates, index);
}

unsigned long PKCS15Container::encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<DataInfo>& info,
                                          unsigned long index) {
    if (!inStep(dataInfos, rawDataObjects)) return noIndex;
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
