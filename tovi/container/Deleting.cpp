#include "tovi/container/InStep.h"
#include "tovi/container/WriteProtocol.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {

namespace {

/// Removes record `position` from its directory file and then from the two lists; false, with
/// nothing changed, when the card refuses or the lists do not stand for the same records.
template <class Raws, class Infos>
bool deleteRecord(ISCardOS* os, ProfileDFHandler& handler, Raws& raws, Infos& infos,
                  std::size_t position) {
    if (position >= infos.size() || !inStep(infos, raws, handler)) return false;
    if (!handler.DeleteSequence(os, static_cast<unsigned long>(position))) return false;
    deleteObject(raws[position]);
    raws.erase(iteratorAt(raws, position));
    infos.erase(iteratorAt(infos, position));
    return true;
}

template <class Infos>
std::size_t positionOfRecord(const Infos& infos, unsigned long recordNumber) {
    return positionOf(infos, [=](const auto& info) { return info.recordNumber == recordNumber; });
}

/// The same for the record of the info with that record number.
template <class Raws, class Infos>
bool deleteInfo(ISCardOS* os, unsigned long recordNumber, ProfileDFHandler& handler, Raws& raws,
                Infos& infos) {
    return deleteRecord(os, handler, raws, infos, positionOfRecord(infos, recordNumber));
}

}  // namespace

bool PKCS15Container::deleteContainer(unsigned long recordNumber) {
    const std::size_t position = positionOfRecord(containerInfos, recordNumber);
    if (position == containerInfos.size()) return false;
    containerInfos.erase(iteratorAt(containerInfos, position));
    return true;
}

/// False for a type that has no directory file, too.
bool PKCS15Container::deleteFromFile(ISCardOS* os, unsigned long recordNumber) {
    switch (fatRecords[recordNumber].objectType) {
        case privateKeyObject:
            return deleteInfo(os, recordNumber, prkdfHandler, rawPrivateKeys, privateKeyInfos);
        case publicKeyObject:
            return deleteInfo(os, recordNumber, pukdfHandler, rawPublicKeys, publicKeyInfos);
        case trustedPublicKeyObject:
            return deleteInfo(os, recordNumber, trustedPukdfHandler, rawTrustedPublicKeys,
                              trustedPublicKeyInfos);
        case secretKeyObject:
            return deleteInfo(os, recordNumber, skdfHandler, rawSecretKeys, blockCipherKeyInfos);
        case certificateObject:
            return deleteInfo(os, recordNumber, cdfHandler, rawCertificates, certificateInfos);
        case trustedCertificateObject:
            return deleteInfo(os, recordNumber, trustedCdfHandler, rawTrustedCertificates,
                              trustedCertificateInfos);
        case usefulCertificateObject:
            return deleteInfo(os, recordNumber, usefulCdfHandler, rawUsefulCertificates,
                              usefulCertificateInfos);
        case dataObject:
            return deleteInfo(os, recordNumber, dodfHandler, rawDataObjects, dataInfos);
        default:
            return false;
    }
}

void PKCS15Container::deleteObjectInfo(ISCardOS* os, unsigned long recordNumber) {
    constexpr const char* HERE = "PKCS15Container::deleteObjectInfo";
    checkRecordNumber(recordNumber, HERE);
    const std::uint8_t objectType = fatRecords[recordNumber].objectType;
    if (objectType == freeRow) throw SmartcardException("object is already empty", HERE);
    if (objectType == tokenInfoObject) throw SmartcardException("object is the TokenInfo", HERE);
    if (objectType == unrecognisedObjectType) throw SmartcardException("unknown object", HERE);
    const bool deleted = objectType == containerObject ? deleteContainer(recordNumber)
                                                       : deleteFromFile(os, recordNumber);
    if (!deleted) throw SmartcardException("failed to delete object", HERE);
    updateFATRecord(recordNumber, freeRow, false);
}

void PKCS15Container::deleteAuthInfo(ISCardOS* os, unsigned char reference) {
    constexpr const char* HERE = "PKCS15Container::deleteAuthInfo";
    const std::size_t position = positionOf(authInfos, [reference](const auto& info) {
        return info.reference == std::uint16_t{reference};
    });
    if (position == authInfos.size()) throw SmartcardException("invalid object reference", HERE);
    if (!deleteRecord(os, aodfHandler, rawAuthObjects, authInfos, position))
        throw SmartcardException("failed to delete auth info", HERE);
}

}  // namespace tovi
