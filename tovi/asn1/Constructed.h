#pragma once

#include "tovi/asn1/Type.h"

/// The steps of the interpreter from one element to the next, for all that hold other values.
namespace ASN1 {

/// Decodes an element as a value of `type`, whose own tag it must have.
bool decodeElement(const Type& type, const Element& element, void* value, Reader& in);
/// Decodes the element that the row has taken.
bool decodeMember(const Member& member, const Element& element, void* value, Reader& in);
/// Writes a whole element; `tag` replaces that of the type unless it is none.
void encodeElement(const Type& type, const void* value, Tag tag, Writer& out);
void encodeMember(const Member& member, const void* value, Writer& out);

}  // namespace ASN1
