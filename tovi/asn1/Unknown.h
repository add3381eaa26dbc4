#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"
#include "tovi/asn1/Tag.h"

namespace ASN1 {

/// The elements of a SEQUENCE that its table does not know: members of later versions of the type,
/// kept octet for octet and each at its place among the known ones. Takes one pointer while there
/// are none.
class TOVI_API Unknown {
public:
    /// Elements that follow one another without a known member between them.
    struct Run {
        std::size_t row = 0;  ///< the table row in front of which they stand
        Octets elements;      ///< their encodings, one behind the other
    };

    Unknown() noexcept = default;
    Unknown(const Unknown& other) {
        if (other.runs_) runs_ = std::make_unique<std::vector<Run>>(*other.runs_);
    }
    Unknown(Unknown&&) noexcept = default;
    Unknown& operator=(const Unknown& other) {
        Unknown copy(other);
        runs_.swap(copy.runs_);
        return *this;
    }
    Unknown& operator=(Unknown&&) noexcept = default;
    ~Unknown() = default;

    /// Whether there are no such elements.
    bool empty() const { return !runs_; }
    /// Adds an element behind all others and in front of `row`, whose number does not fall.
    void add(std::size_t row, View element);
    /// Moves the elements that stand in front of row `from` to the front of row `to`, which is
    /// lower.
    void move(std::size_t from, std::size_t to);
    /// In the order of their rows.
    std::span<const Run> runs() const;
    /// Whether one of the elements has this tag.
    bool contain(Tag tag) const;
    /// Removes all elements.
    void clear() { runs_.reset(); }

private:
    std::unique_ptr<std::vector<Run>> runs_;
};

}  // namespace ASN1
