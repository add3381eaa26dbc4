#pragma once

#include <vector>

#include "tovi/interfaces/Blob.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {

/// What `record`, the only one of EF(ODF), holds when it is an outer SEQUENCE of entries.
///
/// Some cards have the entries of EF(ODF) inside one SEQUENCE, a tag that no entry has (PKCS#15
/// v1.1, 5.5.1: they are alternatives with context tags). The entries, and padding between them,
/// come back in their order and without gaps; offsets count from the first octet of `record`.
/// Empty: the record is an entry itself, or anything else.
std::vector<FileEntry> entriesInOuterSequence(ASN1::View record);

}  // namespace tovi
