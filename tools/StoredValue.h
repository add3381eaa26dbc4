#pragma once

#include <cstdint>
#include <optional>

#include "tovi/asn1/AbstractData.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Where a directory record says that the value of its object is (ObjectValue, PKCS#15 v1.1, 6.1).
struct StoredValue {
    enum class Kind : std::uint8_t {
        none,       ///< the record has no such member, as those of authentication objects
        file,       ///< `path`, `index` and `length` say where
        inRecord,   ///< `octets` are its DER encoding
        url,        ///< somewhere else
        enveloped,  ///< enciphered, in the record or anywhere
        unknown     ///< of a form that this edition does not know
    };
    Kind kind = Kind::none;
    Blob path = {};
    std::optional<std::uint64_t> index = {};
    std::optional<std::uint64_t> length = {};
    Blob octets = {};
};

/// `record` is a decoded record of any directory file.
StoredValue storedValueOf(ASN1::AbstractData record);

}  // namespace tovi
