#pragma once

#include <string>
#include <vector>

#include "tovi/asn1/Octets.h"

namespace tovi::bench {

/// One record as a directory file holds it.
struct SampleRecord {
    std::string name;
    std::string type;  ///< ASN.1 name, as "PrivateKeyType"
    ASN1::Octets octets;
};

/// The sample records and the records of real cards' files that the tests use, in a fixed order.
/// Throws std::runtime_error when `folder` does not hold them.
std::vector<SampleRecord> sampleRecords(const std::string& folder);

}  // namespace tovi::bench
