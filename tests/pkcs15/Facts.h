#pragma once

#include <nlohmann/json.hpp>

#include "tovi/asn1/AbstractData.h"

namespace pkcs15test {

/// What is in a decoded directory record, in the form of the facts under tests/data/vectors: only
/// what is there, bit strings as octets and numbers, and octets in hex.
nlohmann::json facts(const ASN1::AbstractData& record);

}  // namespace pkcs15test
