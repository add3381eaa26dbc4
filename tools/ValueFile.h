#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>

#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// A value that does not lie where its record says: beyond the end of its file, say.
class ValueError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What of a file is the value (Path, PKCS#15 v1.1, 6.1.5).
///
/// Of a transparent file `index` is the offset of the first octet, of a linear one the number of
/// the record. Both absent: the whole file, of a linear one all records one behind the other.
/// Without a length the value goes to the end of the file or record. A length of 0 is none, since
/// writers that know none write 0; so is index 0 of a linear file, whose records count from 1.
struct ValueExtent {
    std::optional<std::uint64_t> index = {};
    std::optional<std::uint64_t> length = {};
};

/// Selects the file at the absolute `path` and reads the value in it, and no octet besides that a
/// READ BINARY brings. At most maxDirectoryFileSize octets of a file are read.
///
/// Throws ValueError for what does not lie in the file, and for what is no elementary file; and
/// what `os` throws.
Blob readValueFile(ISCardOS& os, const Blob& path, const ValueExtent& extent);

}  // namespace tovi
