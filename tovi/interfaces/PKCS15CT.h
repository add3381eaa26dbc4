#pragma once

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace PKCS15 {
struct CommonObjectAttributes;
}

namespace tovi {

/// The access-control part of an object (accessControlRules, PKCS#15 v1.1).
class TOVI_API PKCS15CT {
public:
    /// True unless accessControlRules is present and breaks a constraint of its type.
    static bool decodeAuthConstraints(const PKCS15::CommonObjectAttributes& attributes);

    /// Sets accessControlRules from its DER; null leaves it as it stands. False, and `attributes`
    /// as they were, when the octets are not the DER of that member or break a constraint of it.
    static bool encodeAuthConstraints(const byte_array* constraints,
                                      PKCS15::CommonObjectAttributes& attributes);
};

}  // namespace tovi
