#pragma once

#include <vector>

#include "tovi/Export.h"
#include "tovi/card/VirtualFileSystem.h"

namespace tovi {

/// Where a virtual card keeps what has to survive the process.
///
/// Each operation has stored everything when it returns. When it throws, the card answers 6581 and
/// goes on with what it had before.
class TOVI_API VirtualCardStorage {
public:
    virtual ~VirtualCardStorage() = default;

    /// Stores new contents of a transparent file.
    virtual void storeContents(const VirtualFile& file, const Blob& contents) = 0;
    /// Stores new records of a linear file.
    virtual void storeRecords(const VirtualFile& file, const std::vector<Blob>& records) = 0;
    /// Stores how many tries the PIN has left.
    virtual void storeTriesLeft(std::uint8_t reference, unsigned left) = 0;
};

}  // namespace tovi
