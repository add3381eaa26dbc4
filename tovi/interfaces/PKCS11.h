#pragma once

namespace tovi {

/// What PKCS11Attrs::GetParam gives for a boolean attribute that is true.
inline constexpr unsigned char CK_TRUE = 1;

/// Key types (PKCS#11 v2.20).
inline constexpr unsigned long CKK_RSA = 0;
inline constexpr unsigned long CKK_DSA = 1;
inline constexpr unsigned long CKK_DH = 2;
inline constexpr unsigned long CKK_EC = 3;

/// Certificate types (PKCS#11 v2.20).
inline constexpr unsigned long CKC_X_509 = 0;

/// Attributes that the model uses (PKCS#11 v2.20).
inline constexpr unsigned long CKA_PRIVATE = 0x2;
inline constexpr unsigned long CKA_ENCRYPT = 0x104;
inline constexpr unsigned long CKA_DECRYPT = 0x105;
inline constexpr unsigned long CKA_WRAP = 0x106;
inline constexpr unsigned long CKA_UNWRAP = 0x107;
inline constexpr unsigned long CKA_SIGN = 0x108;
inline constexpr unsigned long CKA_SIGN_RECOVER = 0x109;
inline constexpr unsigned long CKA_VERIFY = 0x10A;
inline constexpr unsigned long CKA_VERIFY_RECOVER = 0x10B;
inline constexpr unsigned long CKA_DERIVE = 0x10C;
inline constexpr unsigned long CKA_MODIFIABLE = 0x170;
inline constexpr unsigned long CKA_ALWAYS_AUTHENTICATE = 0x202;

}  // namespace tovi
