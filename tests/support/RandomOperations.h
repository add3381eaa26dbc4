#pragma once

#include <cstddef>
#include <string>

#include "tovi/interfaces/Blob.h"

namespace tovi::test {

/// What was done, to see that a source of choices reaches everything.
struct OperationCounts {
    std::size_t writes = 0;
    std::size_t updates = 0;
    std::size_t deletions = 0;
    std::size_t tokenInfos = 0;
    std::size_t containers = 0;   ///< operations on key containers
    std::size_t reads = 0;        ///< of the whole card, beside those that look at it
    std::size_t rejected = 0;     ///< operations that name nothing or are not valid
    std::size_t refused = 0;      ///< of all: no room, or no file
    std::size_t interrupted = 0;  ///< of all: some command failed
    std::size_t failed = 0;       ///< of the interrupted: reported as failed
    std::size_t all() const {
        return writes + updates + deletions + tokenInfos + containers + reads + rejected;
    }
};

/// Makes a card, and performs operations on it with one container and on a CardModel, all as the
/// octets choose. After each, what the container holds, what a new container reads from
/// the card, and the octets of its files must be what the model says.
///
/// Some operations are interrupted at a command: the container then holds what it held, the card
/// that or what the operation makes of it, and the operation is performed again.
///
/// Returns where they differ first, for people; empty when they never do.
std::string performRandomOperations(ASN1::View octets, OperationCounts& counts);

}  // namespace tovi::test
