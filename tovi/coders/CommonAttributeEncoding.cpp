#include "tovi/coders/CommonAttributeEncoding.h"

#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/pkcs15/Certificate.h"

namespace tovi {

namespace {

constexpr unsigned int privateBit = 0;
constexpr unsigned int modifiableBit = 1;

}  // namespace

void setCommonAttributes(const PKCS15Object& object, PKCS15::CommonObjectAttributes& common) {
    PKCS15::CommonObjectFlags& flags = common.set_flags();
    ASN1_encodeBit(flags, modifiableBit, object.isModifiable);
    ASN1_encodeBit(flags, privateBit, object.isPrivate);
    if (!object.isModifiable && !object.isPrivate) common.flags.reset();

    if (object.authId.empty())
        common.authId.reset();
    else
        common.set_authId() = object.authId;

    if (object.userConsent == noUserConsent)
        common.userConsent.reset();
    else
        common.set_userConsent(static_cast<unsigned>(object.userConsent));
}

void setPKCS15Label(const Blob& label, PKCS15::CommonObjectAttributes& common) {
    if (label.empty())
        common.label.reset();
    else
        common.set_label() = label;
}

void setPKCS15KeyReference(std::uint16_t reference, PKCS15::CommonKeyAttributes& attributes) {
    if (reference == noReference)
        attributes.keyReference.reset();
    else
        attributes.set_keyReference(reference);
}

void setReferencedPath(PKCS15::Path& value, const PKCS15Path& path) {
    value.efidOrPath = path.path;
    if (path.index == 0 && path.length == 0) {
        value.index.reset();
        value.length.reset();
    } else {
        value.set_index(path.index);
        value.set_length(path.length);
    }
}

void setPKCS15SerialNumber(const Blob& serial, PKCS15::X509CertificateAttributes& attributes) {
    if (serial.empty())
        attributes.serialNumber.reset();
    else
        attributes.serialNumber.emplace().setValue(serial);
}

}  // namespace tovi
