#include "tovi/container/FreeFID.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

namespace {

FATInfo usedRow(std::size_t index, unsigned char objectType, bool isPrivate) {
    const auto low = static_cast<std::uint16_t>(index);
    return {objectType, isPrivate, low, low};
}

/// The row of an object, or a free row when there is no object type.
FATInfo rowFor(std::size_t index, unsigned char objectType, bool isPrivate) {
    return objectType == freeRow ? FATInfo{} : usedRow(index, objectType, isPrivate);
}

}  // namespace

unsigned long PKCS15Container::newFATRecord(unsigned char objectType, bool isPrivate) {
    const std::size_t index = fatRecords.size();
    fatRecords.push_back(usedRow(index, objectType, isPrivate));
    return static_cast<std::uint16_t>(index);
}

unsigned long PKCS15Container::makeFATRecord(unsigned char objectType, bool isPrivate) {
    for (std::size_t i = 1; i < fatRecords.size(); ++i) {
        if (fatRecords[i].objectType != freeRow) continue;
        fatRecords[i] = rowFor(i, objectType, isPrivate);
        return static_cast<unsigned long>(i);
    }
    return newFATRecord(objectType, isPrivate);
}

unsigned long PKCS15Container::updateFATRecord(unsigned long recordNumber, unsigned char objectType,
                                               bool isPrivate) {
    fatRecords[recordNumber] = rowFor(recordNumber, objectType, isPrivate);
    return recordNumber;
}

std::uint16_t PKCS15Container::getFreeFID(std::uint16_t startFID, unsigned char objectType) const {
    switch (objectType) {
        case privateKeyObject:
            return getNextFreeFID(privateKeyInfos, startFID);
        case publicKeyObject:
            return getNextFreeFID(publicKeyInfos, startFID);
        case certificateObject:
            return getNextFreeFID(certificateInfos, startFID);
        case dataObject:
            return getNextFreeFID(dataInfos, startFID);
        case secretKeyObject:
            return getNextFreeFID(blockCipherKeyInfos, startFID);
        case trustedPublicKeyObject:
            return getNextFreeFID(trustedPublicKeyInfos, startFID);
        case trustedCertificateObject:
            return getNextFreeFID(trustedCertificateInfos, startFID);
        case usefulCertificateObject:
            return getNextFreeFID(usefulCertificateInfos, startFID);
        case authObject:
        case authObjectAlternate:
            return getNextFreeFID(authInfos, startFID);
        default:
            throw SmartcardException("unsupported object type", "PKCS15Container::getFreeFID");
    }
}

}  // namespace tovi
