#pragma once

#include <cstddef>
#include <vector>

#include "tovi/Export.h"

namespace tovi {

/// One decoded record of a directory file, before it is turned into an info.
///
/// The record does not free its value: copies share the pointer, and the owner of a vector of
/// records releases them with clearObjects.
template <class T>
struct TOVI_API ASN1Object {
    T* value = nullptr;      ///< null when the octets did not decode
    bool isValid = false;    ///< decoded, and within the constraints of its type
    bool isDecoded = false;  ///< became a complete info
};

/// Deletes the value of one record.
template <class T>
void deleteObject(ASN1Object<T>& object) {
    delete object.value;
    object.value = nullptr;
}

/// Deletes every value, from the first on, and empties the vector.
template <class T>
void clearObjects(std::vector<ASN1Object<T>>& objects) {
    for (ASN1Object<T>& object : objects) deleteObject(object);
    objects.clear();
}

}  // namespace tovi
