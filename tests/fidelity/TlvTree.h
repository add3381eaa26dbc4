#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "tovi/interfaces/Blob.h"

/// BER data objects as a tree of tags, lengths and values (ISO/IEC 7816-4:2005, 5.2.2). It knows no
/// type of any standard, so what it says about a record owes nothing to the coders.
namespace tovi::test {

/// One data object. A constructed one has members, a primitive one contents.
struct Tlv {
    Blob tag;
    Blob contents = {};
    std::vector<Tlv> members = {};

    bool isConstructed() const { return (tag.front() & 0x20) != 0; }
    bool is(std::uint8_t octet) const { return tag == Blob{octet}; }
    /// With lengths as short as they can be.
    Blob encoded() const;
};

/// The data objects that stand one behind the other. Throws std::runtime_error for octets that are
/// no data objects of definite length.
std::vector<Tlv> parseTlvs(ASN1::View octets);
/// The only data object that there is.
Tlv parseTlv(ASN1::View octets);

/// One data object that is another one afterwards.
struct Difference {
    std::string where;  ///< positions before the change from the root on: "1.2"
    Blob before = {};   ///< empty: was inserted here
    Blob after = {};    ///< empty: is gone

    friend bool operator==(const Difference&, const Difference&) = default;
};
/// "1.2: 020105 -> 020106"; "nothing" stands for no octets.
std::ostream& operator<<(std::ostream& out, const Difference& difference);

/// The smallest data objects in which two trees differ; lengths that follow from them are none.
std::vector<Difference> differences(const Tlv& before, const Tlv& after);
std::vector<Difference> differences(ASN1::View before, ASN1::View after);

}  // namespace tovi::test
