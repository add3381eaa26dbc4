#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>

#include "tools/FileKind.h"
#include "tovi/asn1/Type.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// Takes out of a card's files what tells of a person or a secret, and keeps what a defect may hang
/// on: every length, tag and place, paths, references, flags, object identifiers.
///
/// Texts become "xxx", octet strings and bit strings 00, INTEGERs 01 01 ..., the digits of times 0;
/// what is not understood keeps its tags and lengths alone. Identifiers that tie objects together
/// (iD, authId) of up to two octets stay, since people choose those; longer ones, which are often a
/// hash of the key, become running numbers of the same length behind the letters S that they begin
/// with, the same for all files that go through one Redaction, so that keys still find their
/// certificates and each other.
class Redaction {
public:
    /// `octets` is one record that decodes as `type`. The result decodes as well, and has the same
    /// elements.
    Blob record(const ASN1::Type& type, ASN1::View octets);
    /// A directory file that was read to its end: records, erased ones and stale octets stand where
    /// they did. A record that does not decode keeps tag and length.
    DirectoryFile file(const FileKind& kind, const DirectoryFile& file);
    /// What a value file, or one record of it, holds: of DER the tags and lengths stay.
    Blob value(ASN1::View octets);

    /// What stands in the place of an identifier.
    Blob identifier(const Blob& whole);

private:
    Blob plainIdentifier(const Blob& id);

    std::map<Blob, Blob> identifiers_;
    std::map<std::size_t, std::uint64_t> lastNumbers_;  ///< by the length of the identifiers
};

}  // namespace tovi
