#pragma once

#include <cstddef>

#include "tovi/interfaces/Blob.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// Reads octets of the selected transparent file from cards of all manners.
///
/// A card stack that reports the end of the file as a failure loses what came before it, and some
/// cards refuse a length that passes the end: then half as much is asked for, until something
/// comes.
class BinaryReader {
public:
    explicit BinaryReader(ISCardOS& os);

    /// The most octets that one command is asked for; less after a refusal.
    std::size_t most() const { return most_; }

    /// What the file holds at `offset`, up to `length` octets in one response; empty at its end.
    ///
    /// Throws what `os` throws, but for the status words 6B00, 6282 and 6700 that say where the
    /// file ends (ISO/IEC 7816-4:2005, 5.1.3).
    Blob read(std::size_t offset, std::size_t length);

private:
    ISCardOS& os_;
    std::size_t most_;
};

}  // namespace tovi
