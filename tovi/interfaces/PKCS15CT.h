#pragma once

namespace PKCS15 {
struct CommonObjectAttributes;
}

namespace tovi {

/// The access-control part of an object (accessControlRules, PKCS#15 v1.1).
class PKCS15CT {
public:
    /// True unless accessControlRules is present and breaks a constraint of its type.
    static bool decodeAuthConstraints(const PKCS15::CommonObjectAttributes& attributes);
};

}  // namespace tovi
