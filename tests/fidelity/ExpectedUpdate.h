#pragma once

#include <ostream>

#include "tests/support/CardBuilder.h"

/// What a record has to be after one attribute of its object was changed. Everything that the
/// library's rules for writing do not touch is as it was, octet for octet.
namespace tovi::test {

/// The attribute that is changed.
enum class Attribute { label, authId, flags };
inline void PrintTo(Attribute attribute, std::ostream* out) {
    static constexpr const char* names[] = {"label", "authId", "flags"};
    *out << names[static_cast<int>(attribute)];
}

inline const Blob newLabel = text("a label that was not there before");
inline const Blob newAuthId = hex("A5 5A");

/// Changes the attribute of an info; flags are turned into their opposites.
void change(Attribute attribute, PKCS15Object& object, Blob& label);

/// The record afterwards, worked out from its octets alone.
Blob expectedUpdate(Directory kind, const Blob& record, Attribute attribute);
/// The same for a TokenInfo whose label is changed to newLabel; it has no algorithms.
Blob expectedTokenInfo(const Blob& record);

}  // namespace tovi::test
