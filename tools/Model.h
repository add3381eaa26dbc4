#pragma once

#include <type_traits>

#include "tools/JsonInfos.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// One list of the model: how the command calls it, and the directory file it is read from.
struct ListKind {
    const char* key;    ///< in JSON: "privateKeys"
    const char* title;  ///< "Private keys"
    const char* noun;   ///< "private key"
    const char* file;   ///< "PrKDF"
};

inline constexpr ListKind privateKeys{"privateKeys", "Private keys", "private key", "PrKDF"};
inline constexpr ListKind publicKeys{"publicKeys", "Public keys", "public key", "PuKDF"};
inline constexpr ListKind trustedPublicKeys{"trustedPublicKeys", "Trusted public keys",
                                            "trusted public key", "TrustedPuKDF"};
inline constexpr ListKind secretKeys{"secretKeys", "Secret keys", "secret key", "SKDF"};
inline constexpr ListKind certificates{"certificates", "Certificates", "certificate", "CDF"};
inline constexpr ListKind trustedCertificates{"trustedCertificates", "Trusted certificates",
                                              "trusted certificate", "TrustedCDF"};
inline constexpr ListKind usefulCertificates{"usefulCertificates", "Useful certificates",
                                             "useful certificate", "UsefulCDF"};
inline constexpr ListKind dataObjects{"dataObjects", "Data objects", "data object", "DODF"};
inline constexpr ListKind authObjects{"authObjects", "Authentication objects",
                                      "authentication object", "AODF"};
inline constexpr ListKind keyContainers{"containers", "Key containers", "key container", ""};

/// Calls `visit(kind, infos, raws)` for each list that comes from directory files, in the order of
/// EF(ODF)'s alternatives. Element i of both lists is one object.
template <class Visit>
void forEachList(const PKCS15Container& model, Visit visit) {
    visit(privateKeys, model.getPrivateKeyInfos(), model.getRawPrivateKeys());
    visit(publicKeys, model.getPublicKeyInfos(), model.getRawPublicKeys());
    visit(trustedPublicKeys, model.getTrustedPublicKeyInfos(), model.getRawTrustedPublicKeys());
    visit(secretKeys, model.getBlockCipherKeyInfos(), model.getRawSecretKeys());
    visit(certificates, model.getCertificateInfos(), model.getRawCertificates());
    visit(trustedCertificates, model.getTrustedCertificateInfos(),
          model.getRawTrustedCertificates());
    visit(usefulCertificates, model.getUsefulCertificateInfos(), model.getRawUsefulCertificates());
    visit(dataObjects, model.getDataInfos(), model.getRawDataObjects());
    visit(authObjects, model.getAuthInfos(), model.getRawAuthObjects());
}

/// The row type of an object; none for what has no row.
inline std::optional<std::uint8_t> objectTypeOf(const PKCS15Container& model,
                                                const PKCS15Object& object) {
    const auto& rows = model.getFATRecords();
    if (object.recordNumber >= rows.size()) return std::nullopt;
    return rows[object.recordNumber].objectType;
}

template <class Raw>
ObjectState stateOf(const PKCS15Container& model, const PKCS15Object& object, const Raw& raw) {
    return {objectTypeOf(model, object), raw.isDecoded};
}

/// Whether the record became an object with fields of its own.
template <class Raw>
bool isKnown(const PKCS15Container& model, const PKCS15Object& object, const Raw& raw) {
    const auto type = objectTypeOf(model, object);
    return type ? *type != unrecognisedObjectType : raw.isDecoded;
}

/// The JSON of an object of any kind.
template <class Info>
Json objectJson(const PKCS15ObjectInfo<Info>& info, const ObjectState& state) {
    if constexpr (std::is_base_of_v<PublicKeyInfo, Info>) {
        return toJson(info, static_cast<const PublicKeyInfo&>(info), state);
    } else if constexpr (std::is_base_of_v<CertificateInfo, Info>) {
        return toJson(info, static_cast<const CertificateInfo&>(info), state);
    } else {
        return toJson(info, state);
    }
}

/// An identifier of the object, "" for kinds without: `id`, of an authentication object its own.
template <class Info>
Blob identifierOf(const PKCS15ObjectInfo<Info>& info) {
    if constexpr (requires { info.authObjectId; }) {
        return info.authObjectId;
    } else if constexpr (requires { info.id; }) {
        return info.id;
    } else {
        return {};
    }
}

/// "private key 3", "authentication object auth:1": how people are told of an object. `identifier`
/// stands in where there is neither record number nor reference.
std::string nameOf(const ListKind& kind, const PKCS15Object& object, const Blob& identifier);

template <class Info>
std::string nameOf(const ListKind& kind, const PKCS15ObjectInfo<Info>& info) {
    return nameOf(kind, info, identifierOf(info));
}

/// Gives back the reference that a pointer holds.
struct ContainerRelease {
    void operator()(PKCS15Container* container) const { container->Release(); }
};
using ContainerPointer = std::unique_ptr<PKCS15Container, ContainerRelease>;

/// A container for the application at `applicationPath`, not read yet.
ContainerPointer makeContainer(const Blob& applicationPath);

}  // namespace tovi
