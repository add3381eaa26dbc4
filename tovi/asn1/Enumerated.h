#pragma once

#include <cstdint>

#include "tovi/Export.h"

namespace ASN1 {

/// A value of an ENUMERATED type; the types derived from this name their numbers. It may hold a
/// number without a name: a card written to a later version of the type.
struct TOVI_API ENUMERATED {
    std::int64_t value = 0;  ///< one of the numbers of the type, or another

    ENUMERATED() = default;
    /// Has the number given.
    ENUMERATED(std::int64_t number) : value(number) {}
    friend bool operator==(const ENUMERATED&, const ENUMERATED&) = default;
};

/// The only value of NULL.
struct TOVI_API Null {
    friend bool operator==(Null, Null) = default;
};

}  // namespace ASN1
