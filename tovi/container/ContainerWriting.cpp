#include "tovi/container/WriteProtocol.h"

namespace tovi {

namespace {

/// The exchange record if there is one, else the signature record; 0 for neither. Only one of the
/// two is linked.
unsigned long linkedRecord(std::uint64_t exchange, std::uint64_t signature) {
    return recordNumberOf(exchange != 0 ? exchange : signature);
}

}  // namespace

unsigned long PKCS15Container::writeContainerInfo(PKCS15ObjectInfo<ContainerInfo>& info) {
    const unsigned long recordNumber = writeInfo(nullptr, info, containerInfos, containerObject);
    const auto link = static_cast<std::int64_t>(recordNumber);
    if (const auto key = linkedRecord(info.exchangeKeyRecord, info.signatureKeyRecord)) {
        PKCS15ObjectInfo<PrivateKeyInfo>& privateKey = refPrivateKeyInfo(key);
        privateKey.auxValue2 = link;
        // All ones when the key has no public key, which no lookup accepts.
        const auto publicKey = static_cast<std::uint64_t>(privateKey.auxValue1);
        refPublicKeyInfo(recordNumberOf(publicKey)).auxValue2 = link;
    }
    if (const auto certificate =
            linkedRecord(info.exchangeCertificateRecord, info.signatureCertificateRecord))
        refCertificateInfo(certificate).auxValue2 = link;
    return recordNumber;
}

void PKCS15Container::updateContainerInfo(const PKCS15ObjectInfo<ContainerInfo>& info) {
    updateInfo(nullptr, info, containerInfos, containerObject);
}

}  // namespace tovi
