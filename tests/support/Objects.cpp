#include "tests/support/Objects.h"

#include <type_traits>

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {

namespace {

template <class T>
using Info = PKCS15ObjectInfo<T>;

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
    return withKind(kind, [](auto object) { return object.code; });
}

unsigned long writeObject(PKCS15Container& container, ISCardOS* os, Directory kind,
                          const Content& content) {
    return withKind(kind, [&](auto object) {
        typename decltype(object)::Info info;
        setKind(info);
        setContent(info, content);
        return object.write(container, os, info);
    });
}

void updateObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position,
                  const Content& content) {
    withKind(kind, [&](auto object) {
        auto info = object.infos(container).at(position);
        const std::uint16_t reference = info.reference;
        setContent(info, content);
        info.reference = reference;
        object.update(container, os, info);
    });
}

void relabelObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position,
                   const std::string& label) {
    withKind(kind, [&](auto object) {
        auto info = object.infos(container).at(position);
        info.label = text(label);
        object.update(container, os, info);
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
