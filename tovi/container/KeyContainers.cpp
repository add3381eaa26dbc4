#include <set>
#include <utility>

#include "tovi/container/FirstIndex.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {

namespace {

struct KeyUse {
    bool sign, decrypt;
    explicit KeyUse(const PKCS11Attrs& key)
        : sign(key.GetParam(CKA_SIGN) == 1), decrypt(key.GetParam(CKA_DECRYPT) == 1) {}
    bool both() const { return sign && decrypt; }
};

/// A signature key whose id is this octet and the id of an exchange key belongs to its container.
constexpr std::uint8_t signatureIdPrefix = 'S';

/// A joined container carries the labels of both of its keys.
void joinLabel(Blob& label, const Blob& keyLabel) {
    static constexpr std::uint8_t separator[] = {' ', '&', ' '};
    if (label.empty()) {
        label = keyLabel;
    } else if (label != keyLabel) {
        label.append(separator);
        label.append(keyLabel);
    }
}

std::int64_t link(std::uint64_t recordNumber) { return static_cast<std::int64_t>(recordNumber); }

/// Finds the first container whose exchange key has a given id, while containers are added and
/// change.
class ExchangeKeys {
public:
    explicit ExchangeKeys(const std::vector<PKCS15ObjectInfo<PrivateKeyInfo>>& keys)
        : keys_(keys), byRecord_(keys) {}

    /// The container at `position` names this exchange key from now on; 0 is none.
    void set(unsigned long position, std::uint64_t recordNumber) {
        if (const Blob* id = idOf(recordNumber)) containers_.emplace(*id, position);
    }
    void replace(unsigned long position, std::uint64_t before, std::uint64_t after) {
        if (before == after) return;
        if (const Blob* id = idOf(before)) containers_.erase({*id, position});
        set(position, after);
    }
    unsigned long find(const Blob& id) const {
        const auto at = containers_.lower_bound({id, 0});
        return at != containers_.end() && at->first == id ? at->second : noPosition;
    }

private:
    const Blob* idOf(std::uint64_t recordNumber) const {
        if (recordNumber == 0) return nullptr;
        const unsigned long key = byRecord_.find(recordNumber);
        return key == noPosition ? nullptr : &keys_[key].id;
    }

    const std::vector<PKCS15ObjectInfo<PrivateKeyInfo>>& keys_;
    FirstIndex<&PKCS15Object::recordNumber, PrivateKeyInfo> byRecord_;
    std::set<std::pair<Blob, unsigned long>> containers_;
};

}  // namespace

/// What the keys are paired with, by id.
struct PKCS15Container::PairingIndexes {
    explicit PairingIndexes(const PKCS15Container& container)
        : certificates(container.certificateInfos), publicKeys(container.publicKeyInfos) {}

    FirstIndex<&CertificateInfo::id, CertificateInfo> certificates;
    FirstIndex<&PublicKeyInfo::id, PublicKeyInfo> publicKeys;
};

bool PKCS15Container::isRecognised(const PKCS15Object& object) const {
    return object.recordNumber < fatRecords.size() &&
           fatRecords[static_cast<std::size_t>(object.recordNumber)].objectType !=
               unrecognisedObjectType;
}

unsigned long PKCS15Container::updateContainerCertificate(const PairingIndexes& indexes,
                                                          ContainerInfo& container, const Blob& id,
                                                          bool sign, bool decrypt) {
    const unsigned long position = indexes.certificates.find(id);
    if (position == noPosition) return noPosition;
    PKCS15ObjectInfo<CertificateInfo>& certificate = certificateInfos[position];
    const bool signatureOnly = sign && !decrypt;
    (signatureOnly ? container.signatureCertificateRecord : container.exchangeCertificateRecord) =
        certificate.recordNumber;
    if (certificate.trustedUsage == noTrustedUsage)
        certificate.trustedUsage =
            (sign ? trustedUsageSign : 0) + (decrypt ? trustedUsageDecrypt : 0);
    else if (certificate.trustedUsage & trustedUsageLogon)
        container.logonCertificate = true;
    return position;
}

unsigned long PKCS15Container::updateContainerPrivateKey(const PairingIndexes& indexes,
                                                         PKCS15ObjectInfo<PrivateKeyInfo>& key) {
    const unsigned long position = indexes.publicKeys.find(key.id);
    if (position != noPosition) key.auxValue1 = link(publicKeyInfos[position].recordNumber);
    return position;
}

unsigned long PKCS15Container::addContainer(PKCS15ObjectInfo<ContainerInfo>& container) {
    container.recordNumber = newFATRecord(containerObject, container.isPrivate);
    containerInfos.push_back(container);
    return static_cast<unsigned long>(containerInfos.size() - 1);
}

void PKCS15Container::linkToContainer(unsigned long publicKey, unsigned long certificate,
                                      std::uint64_t recordNumber) {
    if (publicKey != noPosition) publicKeyInfos[publicKey].auxValue2 = link(recordNumber);
    if (certificate != noPosition) certificateInfos[certificate].auxValue2 = link(recordNumber);
}

// The first pass: keys that both sign and decrypt have a container each.
void PKCS15Container::initContainerInfos() {
    const PairingIndexes indexes(*this);
    containerInfos.reserve(privateKeyInfos.size());
    for (PKCS15ObjectInfo<PrivateKeyInfo>& key : privateKeyInfos) {
        if (!isRecognised(key) || !KeyUse(key).both()) continue;
        PKCS15ObjectInfo<ContainerInfo> container;
        container.label = key.label;
        container.exchangeKeyRecord = key.recordNumber;
        const unsigned long certificate =
            updateContainerCertificate(indexes, container, key.id, true, true);
        const unsigned long publicKey = updateContainerPrivateKey(indexes, key);
        addContainer(container);
        key.auxValue2 = link(container.recordNumber);
        linkToContainer(publicKey, certificate, container.recordNumber);
    }
    updateContainerInfos(indexes);
}

// The second pass: all other keys; a signature key joins the container of the exchange key whose id
// it extends, if that stands before it.
void PKCS15Container::updateContainerInfos(const PairingIndexes& indexes) {
    ExchangeKeys exchangeKeys(privateKeyInfos);
    for (unsigned long i = 0; i < containerInfos.size(); ++i)
        exchangeKeys.set(i, containerInfos[i].exchangeKeyRecord);

    for (PKCS15ObjectInfo<PrivateKeyInfo>& key : privateKeyInfos) {
        const KeyUse use(key);
        if (!isRecognised(key) || use.both()) continue;
        unsigned long position = noPosition;
        if (!key.id.empty() && key.id[0] == signatureIdPrefix)
            position = exchangeKeys.find(Blob(key.id.begin() + 1, key.id.end()));
        const bool joins = position != noPosition;
        // A key that joins changes the container where it stands: copying it for every key that
        // joins, with a label that grows, would cost quadratic time.
        PKCS15ObjectInfo<ContainerInfo> fresh;
        PKCS15ObjectInfo<ContainerInfo>& container = joins ? containerInfos[position] : fresh;
        const std::uint64_t exchangeKeyBefore = container.exchangeKeyRecord;

        joinLabel(container.label, key.label);
        (use.sign ? container.signatureKeyRecord : container.exchangeKeyRecord) = key.recordNumber;
        const unsigned long certificate =
            updateContainerCertificate(indexes, container, key.id, use.sign, use.decrypt);
        const unsigned long publicKey = updateContainerPrivateKey(indexes, key);

        std::uint64_t recordNumber = container.recordNumber;
        if (joins) {
            // The key's own link stays as it was: callers find a joined key through its container.
            exchangeKeys.replace(position, exchangeKeyBefore, container.exchangeKeyRecord);
        } else {
            exchangeKeys.set(addContainer(fresh), fresh.exchangeKeyRecord);
            recordNumber = fresh.recordNumber;
            key.auxValue2 = link(recordNumber);
        }
        linkToContainer(publicKey, certificate, recordNumber);
    }
}

}  // namespace tovi
