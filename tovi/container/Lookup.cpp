#include <algorithm>

#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

namespace {

constexpr const char* getOperation = "PKCS15Container::getInfo";
constexpr const char* refOperation = "PKCS15Container::refInfo";

/// The first info with that record number, whose row has to be of `type`; `Infos` is a list or a
/// constant one.
template <class Infos>
auto& find(const PKCS15Container& container, Infos& infos, ObjectType type,
           unsigned long recordNumber, const char* where) {
    container.checkObjectType(recordNumber, type, where);
    const auto found = std::find_if(infos.begin(), infos.end(), [recordNumber](const auto& info) {
        return info.recordNumber == recordNumber;
    });
    if (found == infos.end()) throw SmartcardException("invalid record number", where);
    return *found;
}

}  // namespace

void PKCS15Container::checkRecordNumber(unsigned long recordNumber, const char* where) const {
    if (recordNumber >= fatRecords.size()) throw SmartcardException("invalid record number", where);
}

void PKCS15Container::checkObjectType(unsigned long recordNumber, unsigned char type,
                                      const char* where) const {
    checkRecordNumber(recordNumber, "PKCS15Container::checkObjectType");
    if (fatRecords[recordNumber].objectType != type)
        throw SmartcardException("invalid object type", where);
}

const PKCS15ObjectInfo<PrivateKeyInfo>& PKCS15Container::getPrivateKeyInfo(
    unsigned long recordNumber) const {
    return find(*this, privateKeyInfos, privateKeyObject, recordNumber, getOperation);
}

PKCS15ObjectInfo<PrivateKeyInfo>& PKCS15Container::refPrivateKeyInfo(unsigned long recordNumber) {
    return find(*this, privateKeyInfos, privateKeyObject, recordNumber, refOperation);
}

const PKCS15ObjectInfo<PublicKeyInfo>& PKCS15Container::getPublicKeyInfo(
    unsigned long recordNumber) const {
    return find(*this, publicKeyInfos, publicKeyObject, recordNumber, getOperation);
}

PKCS15ObjectInfo<PublicKeyInfo>& PKCS15Container::refPublicKeyInfo(unsigned long recordNumber) {
    return find(*this, publicKeyInfos, publicKeyObject, recordNumber, refOperation);
}

const PKCS15ObjectInfo<TrustedPublicKeyInfo>& PKCS15Container::getTrustedPublicKeyInfo(
    unsigned long recordNumber) const {
    return find(*this, trustedPublicKeyInfos, trustedPublicKeyObject, recordNumber, getOperation);
}

const PKCS15ObjectInfo<CertificateInfo>& PKCS15Container::getCertificateInfo(
    unsigned long recordNumber) const {
    return find(*this, certificateInfos, certificateObject, recordNumber, getOperation);
}

PKCS15ObjectInfo<CertificateInfo>& PKCS15Container::refCertificateInfo(unsigned long recordNumber) {
    return find(*this, certificateInfos, certificateObject, recordNumber, refOperation);
}

const PKCS15ObjectInfo<TrustedCertificateInfo>& PKCS15Container::getTrustedCertificateInfo(
    unsigned long recordNumber) const {
    return find(*this, trustedCertificateInfos, trustedCertificateObject, recordNumber,
                getOperation);
}

const PKCS15ObjectInfo<UsefulCertificateInfo>& PKCS15Container::getUsefulCertificateInfo(
    unsigned long recordNumber) const {
    return find(*this, usefulCertificateInfos, usefulCertificateObject, recordNumber, getOperation);
}

const PKCS15ObjectInfo<BlockCipherKeyInfo>& PKCS15Container::getBlockCipherKeyInfo(
    unsigned long recordNumber) const {
    return find(*this, blockCipherKeyInfos, secretKeyObject, recordNumber, getOperation);
}

const PKCS15ObjectInfo<DataInfo>& PKCS15Container::getDataInfo(unsigned long recordNumber) const {
    return find(*this, dataInfos, dataObject, recordNumber, getOperation);
}

const PKCS15ObjectInfo<ContainerInfo>& PKCS15Container::getContainerInfo(
    unsigned long recordNumber) const {
    return find(*this, containerInfos, containerObject, recordNumber, getOperation);
}

const PKCS15ObjectInfo<AuthInfo>& PKCS15Container::getAuthInfo(unsigned char reference) const {
    const auto found = std::find_if(authInfos.begin(), authInfos.end(), [reference](const auto& a) {
        return a.reference == std::uint16_t{reference};
    });
    if (found == authInfos.end())
        throw SmartcardException("invalid object reference", "PKCS15Container::getAuthInfo");
    return *found;
}

}  // namespace tovi
