#pragma once

#include <cstdint>
#include <tuple>
#include <type_traits>

#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// A kind of object with a record number, as operations name it.
template <class InfoType>
struct ObjectKind {
    using Info = InfoType;
    using Object = PKCS15ObjectInfo<Info>;

    const char* name;
    std::uint8_t objectType;  ///< of its rows
    const Object& (PKCS15Container::*get)(unsigned long recordNumber) const;
    // Null where the operation takes other arguments; see writeObject and updateObject.
    unsigned long (PKCS15Container::*write)(ISCardOS* os, Object& object);
    void (PKCS15Container::*update)(ISCardOS* os, const Object& object);
};

inline constexpr std::tuple objectKinds{
    ObjectKind<PrivateKeyInfo>{"privateKey", privateKeyObject, &PKCS15Container::getPrivateKeyInfo,
                               &PKCS15Container::writePrivateKeyInfo,
                               &PKCS15Container::updatePrivateKeyInfo},
    ObjectKind<PublicKeyInfo>{"publicKey", publicKeyObject, &PKCS15Container::getPublicKeyInfo,
                              nullptr, &PKCS15Container::updatePublicKeyInfo},
    ObjectKind<TrustedPublicKeyInfo>{
        "trustedPublicKey", trustedPublicKeyObject, &PKCS15Container::getTrustedPublicKeyInfo,
        &PKCS15Container::writeTrustedPublicKeyInfo, &PKCS15Container::updateTrustedPublicKeyInfo},
    ObjectKind<BlockCipherKeyInfo>{
        "secretKey", secretKeyObject, &PKCS15Container::getBlockCipherKeyInfo,
        &PKCS15Container::writeBlockCipherKeyInfo, &PKCS15Container::updateBlockCipherKeyInfo},
    ObjectKind<CertificateInfo>{
        "certificate", certificateObject, &PKCS15Container::getCertificateInfo,
        &PKCS15Container::writeCertificateInfo, &PKCS15Container::updateCertificateInfo},
    ObjectKind<TrustedCertificateInfo>{"trustedCertificate", trustedCertificateObject,
                                       &PKCS15Container::getTrustedCertificateInfo,
                                       &PKCS15Container::writeTrustedCertificateInfo,
                                       &PKCS15Container::updateTrustedCertificateInfo},
    ObjectKind<UsefulCertificateInfo>{"usefulCertificate", usefulCertificateObject,
                                      &PKCS15Container::getUsefulCertificateInfo,
                                      &PKCS15Container::writeUsefulCertificateInfo,
                                      &PKCS15Container::updateUsefulCertificateInfo},
    ObjectKind<DataInfo>{"dataObject", dataObject, &PKCS15Container::getDataInfo,
                         &PKCS15Container::writeDataInfo, &PKCS15Container::updateDataInfo},
    ObjectKind<ContainerInfo>{"container", containerObject, &PKCS15Container::getContainerInfo,
                              nullptr, nullptr},
};

/// Calls `visit(kind)` for each of them, in this order.
template <class Visit>
void forEachObjectKind(Visit visit) {
    std::apply([&](const auto&... kind) { (visit(kind), ...); }, objectKinds);
}

/// The kind without record numbers.
inline constexpr const char* authObjectKind = "authObject";

/// No record number, as writePublicKeyInfo takes it.
inline constexpr unsigned long noPrivateKey = ~0ul;

/// Writes a new object; a public key is linked to the private key of that number.
template <class Info>
unsigned long writeObject(const ObjectKind<Info>& kind, PKCS15Container& model, ISCardOS& os,
                          PKCS15ObjectInfo<Info>& object, unsigned long privateKey) {
    if constexpr (std::is_same_v<Info, PublicKeyInfo>) {
        return model.writePublicKeyInfo(&os, object, privateKey);
    } else if constexpr (std::is_same_v<Info, ContainerInfo>) {
        return model.writeContainerInfo(object);
    } else {
        return (model.*kind.write)(&os, object);
    }
}

/// Rewrites the object of the same record number.
template <class Info>
void updateObject(const ObjectKind<Info>& kind, PKCS15Container& model, ISCardOS& os,
                  const PKCS15ObjectInfo<Info>& object) {
    if constexpr (std::is_same_v<Info, ContainerInfo>) {
        model.updateContainerInfo(object);
    } else {
        (model.*kind.update)(&os, object);
    }
}

}  // namespace tovi
