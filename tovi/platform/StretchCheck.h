#pragma once

#include <cstddef>
#include <vector>

#include "tovi/platform/BinaryReader.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {

/// Looks whether the selected transparent file still holds what was read, and reads what was not.
class StretchCheck {
public:
    /// `file` must know its size and outlive the check.
    StretchCheck(ISCardOS& os, DirectoryFile& file) : reader_(os), file_(file) {}

    /// Reads octets `from` to `to`, so far as this check has not read them yet, and all octets of
    /// the file that were not read before, with as few commands as do it. The latter are added to
    /// the file, which is then whole. False when an octet that was read before has changed.
    bool see(std::size_t from, std::size_t to);

private:
    struct Stretch {
        std::size_t from = 0;
        std::size_t to = 0;
    };

    std::vector<Stretch> unseen(std::size_t from, std::size_t to) const;
    std::size_t endOfCommand(const std::vector<Stretch>& stretches, std::size_t i,
                             std::size_t from) const;
    bool take(std::size_t offset, ASN1::View octets);

    BinaryReader reader_;
    DirectoryFile& file_;
    std::vector<Stretch> seen_;  // in order of offset, apart from each other
};

}  // namespace tovi
