#pragma once

#include <cstddef>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Overwrites `size` octets with 00, even when nobody reads them again: a PIN must not outlive its
/// use in memory that is given back.
inline void wipe(void* octets, std::size_t size) noexcept {
    for (auto* octet = static_cast<volatile unsigned char*>(octets); size > 0; --size) *octet++ = 0;
}

/// Wipes the octets of a buffer; its length stays.
inline void wipe(Blob& octets) noexcept { wipe(octets.data(), octets.size()); }

}  // namespace tovi
