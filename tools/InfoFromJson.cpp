#include "tools/InfoFromJson.h"

#include <string>
#include <type_traits>

#include "tools/AuthFields.h"
#include "tools/FieldNames.h"
#include "tools/FieldValues.h"
#include "tools/ObjectKinds.h"
#include "tools/OwnFields.h"
#include "tools/TokenInfoFields.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {
namespace {

using Place = JsonPlace;

constexpr std::size_t mostUserConsent = 0x7FFFFFFF;

constexpr AuthType authTypes[] = {AuthType::pin, AuthType::biometric, AuthType::authKey,
                                  AuthType::external};

// Each sets one field, if it is one of its kind of info; false when it is none.

bool setLabel(Blob& label, const std::string& name, const Place& value) {
    if (name == "label") {
        label = textField(value);
    } else if (name == "labelHex") {
        label = octetsField(value);
    } else {
        return false;
    }
    return true;
}

/// What all objects have that are records on the card.
bool setCommon(PKCS15Object& object, const std::string& name, const Place& value) {
    if (name == "path") {
        object.path = pathField(value);
        getFID(object);
    } else if (name == "authId") {
        object.authId = octetsField(value);
    } else if (name == "isPrivate") {
        object.isPrivate = value.boolean();
    } else if (name == "isModifiable") {
        object.isModifiable = value.boolean();
    } else if (name == "userConsent") {
        object.userConsent = optionalNumberField(value, noUserConsent, mostUserConsent);
    } else {
        return false;
    }
    return true;
}

void expectObject(const Place& fields) {
    if (!fields.json().is_object()) fields.fail("an object");
    if (fields.has("label") && fields.has("labelHex")) {
        fields.at("labelHex").refuse("label and labelHex exclude each other");
    }
}

template <class Info>
bool setField(PKCS15ObjectInfo<Info>& info, const std::string& name, const Place& value) {
    if (setLabel(info.label, name, value) || setOwnField(info, name, value)) return true;
    constexpr bool isContainer = std::is_same_v<Info, ContainerInfo>;
    return !isContainer && setCommon(info, name, value);
}

/// Flags of the object and the attributes that say the same follow one another, as in an object
/// that was read, unless the fields name both.
template <class Info>
void followFlags(PKCS15ObjectInfo<Info>& info, const Place& fields) {
    const auto follow = [&](const char* name, unsigned long attribute, bool& flag) {
        const bool isNamed =
            fields.has("attributes") && fields.at("attributes").has(attributeName(attribute));
        if (isNamed == fields.has(name)) return;
        if (isNamed)
            flag = info.GetParam(attribute) == CK_TRUE;
        else
            info.SetParam(attribute, flag ? B_CK_TRUE : B_CK_FALSE);
    };
    follow("isPrivate", CKA_PRIVATE, info.isPrivate);
    follow("isModifiable", CKA_MODIFIABLE, info.isModifiable);
}

bool setField(PKCS15TokenInfo& info, const std::string& name, const Place& value) {
    return setLabel(info.info.label, name, value) || setTokenInfoField(info, name, value);
}

template <class Object>
void setEachField(Object& object, const Place& fields) {
    expectObject(fields);
    for (const auto& [name, value] : fields.json().items()) {
        const Place field = fields.at(name);
        if (!setField(object, name, field)) field.refuse("no such field");
    }
}

}  // namespace

template <class Info>
void setFields(PKCS15ObjectInfo<Info>& info, const JsonPlace& fields) {
    setEachField(info, fields);
    followFlags(info, fields);
}

void setFields(PKCS15TokenInfo& info, const JsonPlace& fields) { setEachField(info, fields); }

template <class Info>
PKCS15ObjectInfo<Info> newObject(const JsonPlace& fields) {
    PKCS15ObjectInfo<Info> info;
    setFields(info, fields);
    return info;
}

template <>
PKCS15ObjectInfo<AuthInfo> newObject<AuthInfo>(const JsonPlace& fields) {
    if (!fields.json().is_object()) fields.fail("an object");
    if (!fields.has("type")) fields.fail("'type'");
    PKCS15ObjectInfo<AuthInfo> info;
    info.type = authTypeField(fields.at("type"));
    if (fields.has("reference")) setReference(info, "reference", fields.at("reference"));
    JsonPlace::Json others = fields.json();
    others.erase("type");
    others.erase("reference");
    setFields(info, JsonPlace(others, fields.where()));
    return info;
}

void checkFieldsOfAnyKind(const JsonPlace& fields) {
    expectObject(fields);
    for (const auto& [name, value] : fields.json().items()) {
        bool isField = false;
        const auto trySet = [&, &field = name](const auto& kind) {
            typename std::remove_cvref_t<decltype(kind)>::Object scratch;
            isField = isField || setField(scratch, field, fields.at(field));
        };
        forEachObjectKind(trySet);
        if (!isField) fields.at(name).refuse("no such field");
    }
}

void checkFieldsOfAnyAuthObject(const JsonPlace& fields) {
    expectObject(fields);
    for (const auto& [name, value] : fields.json().items()) {
        bool isField = false;
        for (const AuthType type : authTypes) {
            PKCS15ObjectInfo<AuthInfo> scratch;
            scratch.type = type;
            isField = isField || setField(scratch, name, fields.at(name));
        }
        if (!isField) fields.at(name).refuse("no such field");
    }
}

template void setFields(PKCS15ObjectInfo<PrivateKeyInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<PublicKeyInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<TrustedPublicKeyInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<BlockCipherKeyInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<CertificateInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<TrustedCertificateInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<UsefulCertificateInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<DataInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<ContainerInfo>&, const JsonPlace&);
template void setFields(PKCS15ObjectInfo<AuthInfo>&, const JsonPlace&);

template PKCS15ObjectInfo<PrivateKeyInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<PublicKeyInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<TrustedPublicKeyInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<BlockCipherKeyInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<CertificateInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<TrustedCertificateInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<UsefulCertificateInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<DataInfo> newObject(const JsonPlace&);
template PKCS15ObjectInfo<ContainerInfo> newObject(const JsonPlace&);

}  // namespace tovi
