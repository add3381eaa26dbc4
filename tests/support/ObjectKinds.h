#pragma once

#include <cstdint>
#include <type_traits>

#include "tests/support/CardBuilder.h"

/// What a container calls differently for each kind of object, under one name.
namespace tovi::test {

inline constexpr unsigned long allOnes = ~0UL;

using Container = PKCS15Container;

/// The operations of a container on one kind of object, by which a test treats all kinds alike;
/// failures pass through. Get to Infos are members of the container.
template <class InfoType, std::uint8_t Code, auto Get, auto Write, auto Update, auto Infos>
struct ObjectOperations {
    using Info = PKCS15ObjectInfo<InfoType>;
    /// The type of its rows, as a number, so that it owes nothing to the names of the library.
    static constexpr std::uint8_t code = Code;

    /// The object with that record number; the authentication object with that reference.
    template <class Number>
    static const Info& get(const Container& container, Number number) {
        return (container.*Get)(number);
    }
    /// Adds an object; a public key is linked to no private key.
    static unsigned long write(Container& container, ISCardOS* os, Info& info) {
        if constexpr (std::is_invocable_v<decltype(Write), Container&, ISCardOS*, Info&>)
            return (container.*Write)(os, info);
        else if constexpr (std::is_invocable_v<decltype(Write), Container&, Info&>)
            return (container.*Write)(info);
        else
            return (container.*Write)(os, info, allOnes);
    }
    static void update(Container& container, ISCardOS* os, const Info& info) {
        if constexpr (std::is_invocable_v<decltype(Update), Container&, const Info&>)
            (container.*Update)(info);
        else
            (container.*Update)(os, info);
    }
    static const auto& infos(const Container& container) { return (container.*Infos)(); }
};

/// The same for a kind that has directory files.
template <Directory Kind, auto Raws, class Operations>
struct DirectoryKind : Operations {
    static constexpr Directory directory = Kind;
    static const auto& raws(const Container& container) { return (container.*Raws)(); }
};

/// The kind of an info class.
template <class InfoType>
struct ObjectKind;

template <>
struct ObjectKind<PrivateKeyInfo>
    : DirectoryKind<
          Directory::privateKeys, &Container::getRawPrivateKeys,
          ObjectOperations<PrivateKeyInfo, 1, &Container::getPrivateKeyInfo,
                           &Container::writePrivateKeyInfo, &Container::updatePrivateKeyInfo,
                           &Container::getPrivateKeyInfos>> {};
template <>
struct ObjectKind<PublicKeyInfo>
    : DirectoryKind<
          Directory::publicKeys, &Container::getRawPublicKeys,
          ObjectOperations<PublicKeyInfo, 2, &Container::getPublicKeyInfo,
                           &Container::writePublicKeyInfo, &Container::updatePublicKeyInfo,
                           &Container::getPublicKeyInfos>> {};
template <>
struct ObjectKind<TrustedPublicKeyInfo>
    : DirectoryKind<Directory::trustedPublicKeys, &Container::getRawTrustedPublicKeys,
                    ObjectOperations<TrustedPublicKeyInfo, 18, &Container::getTrustedPublicKeyInfo,
                                     &Container::writeTrustedPublicKeyInfo,
                                     &Container::updateTrustedPublicKeyInfo,
                                     &Container::getTrustedPublicKeyInfos>> {};
template <>
struct ObjectKind<BlockCipherKeyInfo>
    : DirectoryKind<Directory::secretKeys, &Container::getRawSecretKeys,
                    ObjectOperations<BlockCipherKeyInfo, 7, &Container::getBlockCipherKeyInfo,
                                     &Container::writeBlockCipherKeyInfo,
                                     &Container::updateBlockCipherKeyInfo,
                                     &Container::getBlockCipherKeyInfos>> {};
template <>
struct ObjectKind<CertificateInfo>
    : DirectoryKind<
          Directory::certificates, &Container::getRawCertificates,
          ObjectOperations<CertificateInfo, 3, &Container::getCertificateInfo,
                           &Container::writeCertificateInfo, &Container::updateCertificateInfo,
                           &Container::getCertificateInfos>> {};
template <>
struct ObjectKind<TrustedCertificateInfo>
    : DirectoryKind<
          Directory::trustedCertificates, &Container::getRawTrustedCertificates,
          ObjectOperations<TrustedCertificateInfo, 19, &Container::getTrustedCertificateInfo,
                           &Container::writeTrustedCertificateInfo,
                           &Container::updateTrustedCertificateInfo,
                           &Container::getTrustedCertificateInfos>> {};
template <>
struct ObjectKind<UsefulCertificateInfo>
    : DirectoryKind<
          Directory::usefulCertificates, &Container::getRawUsefulCertificates,
          ObjectOperations<UsefulCertificateInfo, 35, &Container::getUsefulCertificateInfo,
                           &Container::writeUsefulCertificateInfo,
                           &Container::updateUsefulCertificateInfo,
                           &Container::getUsefulCertificateInfos>> {};
template <>
struct ObjectKind<DataInfo>
    : DirectoryKind<
          Directory::dataObjects, &Container::getRawDataObjects,
          ObjectOperations<DataInfo, 4, &Container::getDataInfo, &Container::writeDataInfo,
                           &Container::updateDataInfo, &Container::getDataInfos>> {};
/// Authentication objects have no row.
template <>
struct ObjectKind<AuthInfo>
    : DirectoryKind<Directory::authObjects, &Container::getRawAuthObjects,
                    ObjectOperations<AuthInfo, 0, &Container::getAuthInfo,
                                     static_cast<unsigned long (Container::*)(
                                         ISCardOS*, const PKCS15ObjectInfo<AuthInfo>&)>(
                                         &Container::writeAuthInfo),
                                     &Container::updateAuthInfo, &Container::getAuthInfos>> {};
/// Key containers are in memory only.
template <>
struct ObjectKind<ContainerInfo>
    : ObjectOperations<ContainerInfo, 5, &Container::getContainerInfo,
                       &Container::writeContainerInfo, &Container::updateContainerInfo,
                       &Container::getContainerInfos> {};

/// Calls `act` with the ObjectKind of a kind of directory file.
template <class Act>
decltype(auto) withKind(Directory kind, Act act) {
    switch (kind) {
        case Directory::privateKeys:
            return act(ObjectKind<PrivateKeyInfo>());
        case Directory::publicKeys:
            return act(ObjectKind<PublicKeyInfo>());
        case Directory::trustedPublicKeys:
            return act(ObjectKind<TrustedPublicKeyInfo>());
        case Directory::secretKeys:
            return act(ObjectKind<BlockCipherKeyInfo>());
        case Directory::certificates:
            return act(ObjectKind<CertificateInfo>());
        case Directory::trustedCertificates:
            return act(ObjectKind<TrustedCertificateInfo>());
        case Directory::usefulCertificates:
            return act(ObjectKind<UsefulCertificateInfo>());
        case Directory::dataObjects:
            return act(ObjectKind<DataInfo>());
        default:
            return act(ObjectKind<AuthInfo>());
    }
}

}  // namespace tovi::test
