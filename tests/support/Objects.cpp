#include "tests/support/Objects.h"

#include <type_traits>

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {

namespace {

template <class T>
using Info = PKCS15ObjectInfo<T>;
using C = PKCS15Container;

constexpr std::uint32_t initializedPin = 1u << 4;  // a bit of PinFlags
constexpr std::uint32_t asciiNumeric = 1;          // a PinType
constexpr unsigned desKeyBits = 64;

Blob fidOf(std::uint16_t number) {
    return {static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

/// What every object has, whatever stood there.
template <class T>
void setContent(Info<T>& info, const Content& content) {
    info.label = text(content.label);
    info.isPrivate = content.isPrivate;
    if constexpr (requires { info.id; }) info.id = text(content.name);
    if constexpr (requires { info.applicationName; }) info.applicationName = text(content.name);
    if constexpr (std::is_same_v<T, AuthInfo>) {
        info.authObjectId = text(content.name);
        info.reference = content.number;
    } else {
        info.path.path = fidOf(content.number);
        getFID(info);
    }
}

template <class T>
void setKind(Info<T>& info) {
    if constexpr (requires { info.keyType; }) info.keyType = CKK_EC;
    if constexpr (std::is_same_v<T, BlockCipherKeyInfo>) {
        info.algorithmName = text("DES");
        info.keyLength = desKeyBits / 8;
    }
    if constexpr (std::is_same_v<T, AuthInfo>) {
        info.type = AuthType::pin;
        info.pinFlags = initializedPin;
        info.pinType = asciiNumeric;
        info.minLength = 4;
        info.storedLength = 8;
    }
}

// One name for what the container calls differently for each kind.

unsigned long write(C& container, ISCardOS* os, Info<PrivateKeyInfo>& info) {
    return container.writePrivateKeyInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<PublicKeyInfo>& info) {
    constexpr unsigned long noPrivateKey = ~0UL;
    return container.writePublicKeyInfo(os, info, noPrivateKey);
}
unsigned long write(C& container, ISCardOS* os, Info<TrustedPublicKeyInfo>& info) {
    return container.writeTrustedPublicKeyInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<BlockCipherKeyInfo>& info) {
    return container.writeBlockCipherKeyInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<CertificateInfo>& info) {
    return container.writeCertificateInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<TrustedCertificateInfo>& info) {
    return container.writeTrustedCertificateInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<UsefulCertificateInfo>& info) {
    return container.writeUsefulCertificateInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<DataInfo>& info) {
    return container.writeDataInfo(os, info);
}
unsigned long write(C& container, ISCardOS* os, Info<AuthInfo>& info) {
    return container.writeAuthInfo(os, info);
}

void update(C& container, ISCardOS* os, const Info<PrivateKeyInfo>& info) {
    container.updatePrivateKeyInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<PublicKeyInfo>& info) {
    container.updatePublicKeyInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<TrustedPublicKeyInfo>& info) {
    container.updateTrustedPublicKeyInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<BlockCipherKeyInfo>& info) {
    container.updateBlockCipherKeyInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<CertificateInfo>& info) {
    container.updateCertificateInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<TrustedCertificateInfo>& info) {
    container.updateTrustedCertificateInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<UsefulCertificateInfo>& info) {
    container.updateUsefulCertificateInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<DataInfo>& info) {
    container.updateDataInfo(os, info);
}
void update(C& container, ISCardOS* os, const Info<AuthInfo>& info) {
    container.updateAuthInfo(os, info);
}

}  // namespace

Blob recordOf(Directory kind, const Content& content) {
    // A new object is modifiable, so its flags are always there.
    const Common common = {
        .label = content.label.empty() ? std::nullopt : std::optional(content.label),
        .flags = content.isPrivate ? namedBits({0, 1}) : namedBits({1})};
    const Blob id = text(content.name);
    const Blob path = sequence(octetString(fidOf(content.number)));
    switch (kind) {
        case Directory::privateKeys:
            return privateKey(
                {.type = Key::ec, .common = common, .id = id, .native = false, .value = path});
        case Directory::publicKeys:
        case Directory::trustedPublicKeys:
            return publicKey(
                {.type = Key::ec, .common = common, .id = id, .native = false, .value = path});
        case Directory::secretKeys:
            return secretKey({.type = SecretKey::des,
                              .common = common,
                              .id = id,
                              .keyLen = desKeyBits,
                              .value = path});
        case Directory::certificates:
        case Directory::trustedCertificates:
        case Directory::usefulCertificates:
            return certificate({.common = common, .id = id, .value = path});
        case Directory::dataObjects:
            return dataRecord({.common = common, .applicationName = content.name, .value = path});
        default:
            return pin({.common = common, .authId = id, .reference = content.number});
    }
}

std::uint8_t objectTypeOf(Directory kind) {
    constexpr std::uint8_t types[directoryCount] = {
        privateKeyObject,        publicKeyObject,   trustedPublicKeyObject,
        secretKeyObject,         certificateObject, trustedCertificateObject,
        usefulCertificateObject, dataObject,        freeRow};
    return types[static_cast<unsigned>(kind)];
}

unsigned long writeObject(PKCS15Container& container, ISCardOS* os, Directory kind,
                          const Content& content) {
    return lookAt(container, kind, [&](const auto& infos, const auto&) {
        typename std::decay_t<decltype(infos)>::value_type info;
        setKind(info);
        setContent(info, content);
        return write(container, os, info);
    });
}

void updateObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position,
                  const Content& content) {
    lookAt(container, kind, [&](const auto& infos, const auto&) {
        auto info = infos.at(position);
        const std::uint16_t reference = info.reference;
        setContent(info, content);
        info.reference = reference;
        update(container, os, info);
    });
}

void relabelObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position,
                   const std::string& label) {
    lookAt(container, kind, [&](const auto& infos, const auto&) {
        auto info = infos.at(position);
        info.label = text(label);
        update(container, os, info);
    });
}

void deleteObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position) {
    lookAt(container, kind, [&](const auto& infos, const auto&) {
        const auto& info = infos.at(position);
        if constexpr (std::is_same_v<std::decay_t<decltype(info)>, Info<AuthInfo>>)
            container.deleteAuthInfo(os, static_cast<unsigned char>(info.reference));
        else
            container.deleteObjectInfo(os, static_cast<unsigned long>(info.recordNumber));
    });
}

std::string labelOf(const PKCS15Container& container, Directory kind, std::size_t position) {
    return lookAt(container, kind, [&](const auto& infos, const auto&) {
        const Blob& label = infos.at(position).label;
        return std::string(label.begin(), label.end());
    });
}

void updateTokenLabel(PKCS15Container& container, ISCardOS* os, const std::string& label) {
    PKCS15TokenInfo token = container.getTokenInfo();
    token.info.label = text(label);
    container.updateTokenInfo(os, token);
}

}  // namespace tovi::test
