#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tovi/Export.h"
#include "tovi/asn1/Tag.h"

namespace ASN1 {

struct Type;

/// The first thing that went wrong while decoding: what, at which octet of the input, in which
/// member.
struct TOVI_API Error {
    /// What went wrong, by what a caller can do about it.
    enum Kind {
        none,
        truncated,      ///< an element runs past the end of what holds it
        badTag,         ///< malformed identifier octets, or end-of-contents where nothing ends
        badLength,      ///< malformed length octets
        tooDeep,        ///< nested beyond Reader::maxDepth
        unexpectedTag,  ///< a well-formed element that does not belong here
        missing,        ///< the input ends where a mandatory member should begin
        trailing,       ///< octets follow where nothing may follow
        badValue,       ///< the content is not a value of its type
        notConfigured,  ///< the coder environment knows no module
    };
    Kind kind = none;        ///< none: nothing went wrong
    std::size_t offset = 0;  ///< octets from the start of the input
    std::string path;        ///< for example "PrivateKeyType.privateRSAKey.classAttributes.iD"
    Tag found;               ///< with unexpectedTag
    const Type* expected = nullptr;  ///< with unexpectedTag, when one type was expected
    Tag expectedTag;                 ///< likewise, the context tag in front of that type, if any

    /// Whether something went wrong.
    explicit operator bool() const { return kind != none; }
};

/// One line for people: "Path.efidOrPath: found INTEGER, expected OCTET STRING, at octet 2".
TOVI_API std::string toString(const Error& error);

}  // namespace ASN1
