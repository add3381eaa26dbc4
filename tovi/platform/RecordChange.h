#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// What is to become of the records of a directory file.
struct RecordChange {
    enum class Kind : std::uint8_t {
        none,     ///< gaps are closed, nothing else
        insert,   ///< `record` comes in front of record `place`, or behind the last one
        replace,  ///< `record` comes in the place of record `place`
        remove    ///< record `place` goes
    };
    Kind kind = Kind::none;
    std::size_t place = 0;  ///< counts the records of the file, from 0
    ASN1::View record;      ///< must outlive its use
};

}  // namespace tovi
