#pragma once

#include "tovi/interfaces/PKCS11Attrs.h"
#include "tovi/pkcs15/CommonObjectAttributes.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// Takes flags, authId and userConsent of an object, absent ones keeping their defaults, and sets
/// CKA_PRIVATE and CKA_MODIFIABLE (CommonObjectAttributes, PKCS#15 v1.1).
///
/// A flags string that is there but too short makes the object not modifiable.
void getCommonAttributes(PKCS15Object& object, PKCS11Attrs& attributes,
                         const PKCS15::CommonObjectAttributes& common);

template <class T>
void getPKCS15Attributes(PKCS15ObjectInfo<T>& info, const PKCS15::CommonObjectAttributes& common) {
    getCommonAttributes(info, info, common);
}

/// Takes the label, or the text `defaultLabel` when there is none; with neither, `label` stays.
void getPKCS15Label(Blob& label, const PKCS15::CommonObjectAttributes& common,
                    const char* defaultLabel);

/// Takes a Path: index and length are 0 when absent, else the low 16 bits.
void getPath(PKCS15Path& path, const PKCS15::Path& value);

/// Takes the path of a value that lies in a file; any other value leaves no path, index 0 and
/// length 0.
template <class Value>
void getPKCS15Path(PKCS15Path& path, const Value& value) {
    path = {};
    if (const PKCS15::Path* file = PKCS15::indirectPath(value)) getPath(path, *file);
}

/// Copies octets.
inline void ASN1_assign(Blob& blob, const ASN1::Octets& octets) { blob = octets; }

}  // namespace tovi
