#pragma once

#include <string_view>

#include "tovi/asn1/Octets.h"

struct asn_TYPE_descriptor_s;

namespace tovi::bench {

/// The decoder that asn1c generates for one of the types in pkcs15.asn1.
class Peer {
public:
    /// `type` is one of the ten types that records have.
    explicit Peer(std::string_view type);

    /// Decodes `record` and releases the result; false when it is no value, or less than the whole.
    bool decode(ASN1::View record) const;
    /// Decodes `record` and encodes it again as DER; empty when either is refused.
    ASN1::Octets recode(ASN1::View record) const;

private:
    asn_TYPE_descriptor_s* type_;
};

}  // namespace tovi::bench
