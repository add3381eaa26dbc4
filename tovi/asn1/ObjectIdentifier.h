#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"

namespace ASN1 {

/// An OBJECT IDENTIFIER, held as its encoded content octets (X.690 8.19), so arcs of any size
/// survive.
///
/// Without arcs it is empty, and not a valid value. Arcs that have no encoding (fewer than two, a
/// first arc above 2, a second one above 39 below arcs 0 and 1) give an empty one too.
class TOVI_API OBJECT_IDENTIFIER {
public:
    /// One number of an object identifier.
    using Arc = std::uint64_t;

    OBJECT_IDENTIFIER() = default;
    /// Has the arcs given.
    OBJECT_IDENTIFIER(std::initializer_list<Arc> arcs) { assign(arcs.begin(), arcs.end()); }
    template <std::input_iterator It>
    OBJECT_IDENTIFIER(It first, It last) {
        assign(first, last);
    }

    /// Takes the arcs given.
    template <std::input_iterator It>
    void assign(It first, It last) {
        setArcs(std::vector<Arc>(first, last));
    }
    void setArcs(std::span<const Arc> arcs);
    /// Removes all arcs.
    void clear() { content_.clear(); }

    /// Whether there are no arcs.
    bool empty() const { return content_.empty(); }
    /// Number of arcs.
    std::size_t size() const;
    /// All arcs; one that needs more than 64 bits shows as all ones.
    std::vector<Arc> arcs() const;
    /// "1.2.840.113549"; an arc that needs more than 64 bits in hex, "0x1F...".
    std::string toString() const;

    /// The content octets of the encoding.
    const Octets& content() const { return content_; }
    /// Takes content octets; false, and nothing changed, when they are not whole arcs in shortest
    /// form.
    [[nodiscard]] bool setContent(View content);

    /// Equal when they have the same arcs in the same order.
    friend bool operator==(const OBJECT_IDENTIFIER&, const OBJECT_IDENTIFIER&) = default;
    friend auto operator<=>(const OBJECT_IDENTIFIER&, const OBJECT_IDENTIFIER&) = default;

private:
    Octets content_;
};

}  // namespace ASN1
