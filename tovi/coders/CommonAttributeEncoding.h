#pragma once

#include "tovi/pkcs15/CommonKeyAttributes.h"
#include "tovi/pkcs15/CommonObjectAttributes.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/records/PKCS15Object.h"

namespace PKCS15 {
struct X509CertificateAttributes;
}

namespace tovi {

// The mirror of CommonAttributes.h. An optional member is there afterwards exactly when the info
// has a value for it, so that an updated record keeps nothing that the info has cleared.

/// Sets flags, authId and userConsent of an object (CommonObjectAttributes, PKCS#15 v1.1).
///
/// An object that is neither private nor modifiable has no flags at all.
void setCommonAttributes(const PKCS15Object& object, PKCS15::CommonObjectAttributes& common);

template <class T>
void setPKCS15Attributes(const PKCS15ObjectInfo<T>& info, PKCS15::CommonObjectAttributes& common) {
    setCommonAttributes(info, common);
}

/// Sets the label, or removes it when `label` is empty.
void setPKCS15Label(const Blob& label, PKCS15::CommonObjectAttributes& common);

/// Sets keyReference, or removes it for noReference.
void setPKCS15KeyReference(std::uint16_t reference, PKCS15::CommonKeyAttributes& attributes);

/// Sets index and length together, or removes both when both are 0.
void setReferencedPath(PKCS15::Path& value, const PKCS15Path& path);

/// Makes the value one that lies in a file: whatever it was before, in place or elsewhere, is gone.
template <class Value>
void setPKCS15Path(Value& value, const PKCS15Path& path) {
    setReferencedPath(value.template select<Value::indirect>().select_path(), path);
}

/// Sets the serial number from big-endian two's complement octets, or removes it when there are
/// none.
void setPKCS15SerialNumber(const Blob& serial, PKCS15::X509CertificateAttributes& attributes);

}  // namespace tovi
