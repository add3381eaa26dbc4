#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "tovi/asn1/Octets.h"
#include "tovi/asn1/Type.h"

/// The records that lie under tests/data.
namespace pkcs15test {

/// A row of pkcs15-samples.txt.
struct Sample {
    std::string name;
    const ASN1::Type* type;
    ASN1::Octets octets;

    friend std::ostream& operator<<(std::ostream& out, const Sample& s) { return out << s.name; }
};

/// All sample records; throws std::runtime_error for a row that cannot be read.
std::vector<Sample> readSamples();
/// The octets of one sample.
ASN1::Octets sample(const std::string& name);

/// An elementary file of a card in use, and what is known to be in it.
struct Vector {
    std::string name;
    const ASN1::Type* type;
    ASN1::Octets file;
    nlohmann::json facts;

    friend std::ostream& operator<<(std::ostream& out, const Vector& v) { return out << v.name; }
};

std::vector<Vector> readVectors();

}  // namespace pkcs15test
