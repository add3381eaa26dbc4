#pragma once

#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {

/// A bit of KeyUsageFlags (PKCS#15 v1.1) and the attribute that it stands for.
struct UsageRow {
    unsigned bit;
    unsigned long attribute;
};

inline constexpr UsageRow usageRows[] = {{0, CKA_ENCRYPT}, {1, CKA_DECRYPT},
                                         {2, CKA_SIGN},    {3, CKA_SIGN_RECOVER},
                                         {4, CKA_WRAP},    {5, CKA_UNWRAP},
                                         {6, CKA_VERIFY},  {7, CKA_VERIFY_RECOVER},
                                         {8, CKA_DERIVE},  {9, CKA_ALWAYS_AUTHENTICATE}};

}  // namespace tovi::test
