#include "tovi/interfaces/PKCS15CT.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/CommonObjectAttributes.h"

namespace tovi {
namespace {

using Rules = std::vector<PKCS15::AccessControlRule>;

/// Of accessControlRules: SEQUENCE SIZE (1..MAX) OF AccessControlRule.
bool areValid(const Rules& rules) {
    return !rules.empty() &&
           std::all_of(rules.begin(), rules.end(), [](const auto& rule) { return rule.isValid(); });
}

}  // namespace

bool PKCS15CT::decodeAuthConstraints(const PKCS15::CommonObjectAttributes& attributes) {
    return !attributes.accessControlRules || areValid(*attributes.accessControlRules);
}

bool PKCS15CT::encodeAuthConstraints(const byte_array* constraints,
                                     PKCS15::CommonObjectAttributes& attributes) {
    if (constraints == nullptr) return true;
    Rules rules;
    ASN1::Error error;
    if (!ASN1::decode(*constraints, rules, error) || !areValid(rules)) return false;
    // Octets in another form of BER would not be written as they were given.
    if (ASN1::encode(rules) != *constraints) return false;
    attributes.accessControlRules.emplace(std::move(rules));
    return true;
}

}  // namespace tovi
