#include "tovi/interfaces/PKCS15CT.h"

#include <algorithm>

#include "tovi/pkcs15/CommonObjectAttributes.h"

namespace tovi {

bool PKCS15CT::decodeAuthConstraints(const PKCS15::CommonObjectAttributes& attributes) {
    if (!attributes.accessControlRules) return true;
    // SEQUENCE SIZE (1..MAX) OF AccessControlRule
    const auto& rules = *attributes.accessControlRules;
    return !rules.empty() &&
           std::all_of(rules.begin(), rules.end(), [](const auto& rule) { return rule.isValid(); });
}

}  // namespace tovi
