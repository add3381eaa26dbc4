#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tovi/interfaces/Blob.h"

namespace tovi {

/// What one UPDATE BINARY writes.
struct WriteStep {
    std::size_t offset = 0;
    Blob octets;
};

/// The way of a transparent file from what it holds to what it is to hold, command by command.
///
/// Work is linear in the octets of the file and of the steps, as long as steps go through the file
/// in one direction and then in the other.
class PlannedWrites {
public:
    /// `target` has as many octets as `file`; `most` is what one command writes.
    PlannedWrites(ASN1::View file, std::vector<std::uint8_t> target, std::size_t most);

    /// What the file holds after the steps so far.
    ASN1::View now() const { return now_; }
    ASN1::View target() const { return target_; }
    std::size_t most() const { return most_; }

    /// Adds the step after which `octets`, at most most() of them, stand at `offset`. Only the part
    /// from the first to the last octet that differs is written; none when nothing does.
    void put(std::size_t offset, ASN1::View octets);

    /// Adds the steps that write `octets` at `offset`, all but the first, where `mark` comes to
    /// stand and stays: it makes one entry of what is behind it.
    void putHidden(std::size_t offset, const Blob& mark, ASN1::View octets);

    /// The same, and then a last step that replaces the mark.
    void putLong(std::size_t offset, const Blob& mark, ASN1::View octets);

    /// Adds the steps that write `octets` at `offset` from their end on. The beginning of what they
    /// replace says how it is to be read, so it stays to the last. True when the target is reached.
    bool putBackwards(std::size_t offset, ASN1::View octets);

    /// Adds the step that reaches the target, if one command can; true when the file is there.
    bool finish();

    std::size_t size() const { return steps_.size(); }
    std::vector<WriteStep> take() { return std::move(steps_); }

private:
    bool wouldBareSequence(std::size_t offset) const;

    std::vector<std::uint8_t> now_;
    std::vector<std::uint8_t> target_;
    std::vector<WriteStep> steps_;
    std::size_t most_;
    std::size_t first_ = 0;  // now_ and target_ agree before it
    std::size_t last_;       // and from here on
};

}  // namespace tovi
