#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/support/ObjectKinds.h"

/// The objects of a container by kind of directory file, so that a test can treat all kinds alike.
namespace tovi::test {

/// What such tests care about of an object. All kinds of object take it.
struct Content {
    std::string label;
    std::string name = "n";  ///< id; applicationName of a data object, authId of a PIN
    bool isPrivate = false;
    std::uint16_t number = 0x4B01;  ///< file of the value; pinReference of a PIN, below 256 then
};

/// The record of such an object as this library writes it, put together by hand: an EC key, a DES
/// key, an X.509 certificate, an opaque data object, a PIN.
Blob recordOf(Directory kind, const Content& content);

/// The object-type code of the kind; freeRow for authentication objects, which have no row.
std::uint8_t objectTypeOf(Directory kind);

// What the container does, whatever the kind; failures pass through. Positions are those of the
// info list.

/// Adds an object. Returns its record number; of an authentication object, the index of its record.
unsigned long writeObject(PKCS15Container& container, ISCardOS* os, Directory kind,
                          const Content& content);
/// Takes the object at `position` and writes it with another content. That of an authentication
/// object keeps its number, by which it is found.
void updateObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position,
                  const Content& content);
/// Takes the object at `position` and writes it with another label, which may be the same.
void relabelObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position,
                   const std::string& label);
void deleteObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position);

std::string labelOf(const PKCS15Container& container, Directory kind, std::size_t position);

/// Writes EF(TokenInfo) with that label.
void updateTokenLabel(PKCS15Container& container, ISCardOS* os, const std::string& label);

/// Calls `look(infos, raws)` with the two lists of the kind.
template <class Look>
decltype(auto) lookAt(const PKCS15Container& container, Directory kind, Look look) {
    return withKind(kind, [&](auto object) -> decltype(auto) {
        return look(object.infos(container), object.raws(container));
    });
}

}  // namespace tovi::test
