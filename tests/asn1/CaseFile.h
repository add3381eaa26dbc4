#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tovi/asn1/Octets.h"
#include "tovi/asn1/Type.h"

/// Cases of decoding that differ in data only, as rows of a text file:
///
///     # what this case is about
///     type   = BOOLEAN
///     octets = 01 01 01
///     value  = TRUE             printed, with white space collapsed
///     again  = 01 01 FF         the encoding, where it differs from octets
///     valid  = no               where it breaks a constraint
///     error  = BOOLEAN: ...     in place of value, where decoding fails
namespace asn1test {

struct Case {
    std::string about;
    std::string type;
    ASN1::Octets octets;
    std::string value;
    std::optional<ASN1::Octets> again;
    bool isValid = true;
    std::string error;

    friend std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.about; }
};

/// All cases of the file below the test data; throws std::runtime_error with the line that cannot
/// be read.
std::vector<Case> readCases(const std::string& file);

/// Decodes the octets and expects what the case says.
void check(const Case& c, const ASN1::Type& type);

/// Letters and digits of what the case is about, as the name of its test.
std::string caseName(const testing::TestParamInfo<Case>& info);

}  // namespace asn1test
