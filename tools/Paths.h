#pragma once

#include "tovi/interfaces/Blob.h"

namespace tovi {

bool beginsWith(ASN1::View octets, ASN1::View beginning);

/// `path` from the master file on; a relative one begins at `rootPath`.
Blob absolutePath(const Blob& rootPath, const Blob& path);

}  // namespace tovi
