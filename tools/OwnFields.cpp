#include "tools/OwnFields.h"

#include "tools/AuthFields.h"
#include "tools/FieldNames.h"
#include "tools/FieldValues.h"

namespace tovi {
namespace {

using Place = JsonPlace;

constexpr std::size_t mostRecords = 0xFFFFFFFE;
constexpr std::size_t mostKeyLength = 0x1FFFFFFF;  // in octets; records hold 32 bits of bits
constexpr std::size_t mostOfALong = 0xFFFFFFFF;

bool setAttribute(PKCS11Attrs& info, const std::string& name, const Place& value) {
    if (name == "attributes") addAttributes(info, value);
    return name == "attributes";
}

/// Of private and public keys.
template <class Info>
bool setOwnOfKey(PKCS15ObjectInfo<Info>& info, const std::string& name, const Place& value) {
    if (name == "id") {
        info.id = octetsField(value);
    } else if (name == "keyType") {
        const auto keyType = value.isNull() ? noKeyType : keyTypeNumber(value.text());
        if (!keyType) value.fail("RSA, DSA, DH or EC");
        info.keyType = *keyType;
    } else if (name == "modulusLength") {
        info.modulusLength = optionalNumberField(value, noModulusLength);
    } else if (name == "native") {
        info.native = value.boolean();
    } else {
        return setReference(info, name, value) || setAttribute(info, name, value);
    }
    return true;
}

bool setOwnOfCertificate(CertificateInfo& info, PKCS15Object& object, const std::string& name,
                         const Place& value) {
    if (name == "id") {
        info.id = octetsField(value);
    } else if (name == "certificateType") {
        info.certificateType = value.number(mostOfALong);
    } else if (name == "trustedUsage") {
        info.trustedUsage = optionalNumberField(value, noTrustedUsage, noTrustedUsage - 1);
    } else if (name == "serialNumber") {
        info.serialNumber = octetsField(value);
    } else {
        return setReference(object, name, value) || setAttribute(info, name, value);
    }
    return true;
}

}  // namespace

bool setReference(PKCS15Object& object, const std::string& name, const Place& value) {
    if (name == "reference") object.reference = optionalNumberField(value, noReference);
    return name == "reference";
}

bool setOwnField(PKCS15ObjectInfo<PrivateKeyInfo>& info, const std::string& name,
                 const Place& value) {
    return setOwnOfKey(info, name, value);
}
bool setOwnField(PKCS15ObjectInfo<PublicKeyInfo>& info, const std::string& name,
                 const Place& value) {
    return setOwnOfKey(info, name, value);
}
bool setOwnField(PKCS15ObjectInfo<TrustedPublicKeyInfo>& info, const std::string& name,
                 const Place& value) {
    return setOwnOfKey(info, name, value);
}

bool setOwnField(PKCS15ObjectInfo<BlockCipherKeyInfo>& info, const std::string& name,
                 const Place& value) {
    if (name == "id") {
        info.id = octetsField(value);
    } else if (name == "algorithmName") {
        info.algorithmName = textField(value);
    } else if (name == "keyLength") {
        info.keyLength = value.number(mostKeyLength);
    } else {
        return setReference(info, name, value) || setAttribute(info, name, value);
    }
    return true;
}

bool setOwnField(PKCS15ObjectInfo<CertificateInfo>& info, const std::string& name,
                 const Place& value) {
    return setOwnOfCertificate(info, info, name, value);
}
bool setOwnField(PKCS15ObjectInfo<TrustedCertificateInfo>& info, const std::string& name,
                 const Place& value) {
    return setOwnOfCertificate(info, info, name, value);
}
bool setOwnField(PKCS15ObjectInfo<UsefulCertificateInfo>& info, const std::string& name,
                 const Place& value) {
    return setOwnOfCertificate(info, info, name, value);
}

bool setOwnField(PKCS15ObjectInfo<DataInfo>& info, const std::string& name, const Place& value) {
    if (name == "applicationName") {
        info.applicationName = textField(value);
        return true;
    }
    return setReference(info, name, value) || setAttribute(info, name, value);
}

/// Record numbers of a container; 0 stands for none.
bool setOwnField(PKCS15ObjectInfo<ContainerInfo>& info, const std::string& name,
                 const Place& value) {
    const auto record = [&] { return optionalNumberField(value, std::uint64_t{0}, mostRecords); };
    if (name == "exchangeKeyRecord") {
        info.exchangeKeyRecord = record();
    } else if (name == "exchangeCertificateRecord") {
        info.exchangeCertificateRecord = record();
    } else if (name == "signatureKeyRecord") {
        info.signatureKeyRecord = record();
    } else if (name == "signatureCertificateRecord") {
        info.signatureCertificateRecord = record();
    } else if (name == "logonCertificate") {
        info.logonCertificate = value.boolean();
    } else {
        return false;
    }
    return true;
}

bool setOwnField(PKCS15ObjectInfo<AuthInfo>& info, const std::string& name, const Place& value) {
    return setAuthField(info, name, value);
}

}  // namespace tovi
