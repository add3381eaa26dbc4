#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tovi {

/// "CKA_SIGN" for 0x108; "CKA_0x1234" for a number without a name here.
std::string attributeName(unsigned long attribute);
/// Whether PKCS#11 makes the attribute a CK_BBOOL.
bool isBooleanAttribute(unsigned long attribute);

/// "RSA", "DSA", "DH" or "EC" for a CKK_ number; none for others.
std::optional<std::string_view> keyTypeName(std::uint64_t keyType);

/// The names of the set bits, bit n being 1 << n; "bit12" for one without a name.
std::vector<std::string> pinFlagNames(std::uint32_t flags);
std::vector<std::string> biometricFlagNames(std::uint32_t flags);
/// The name of an operation bit of AlgorithmInfo, 0 to 7.
std::string_view operationName(std::size_t bit);

/// The standard's name of a PinType; none for others.
std::optional<std::string_view> pinTypeName(std::uint32_t pinType);
/// The name of the alternative of BiometricType; none for others.
std::optional<std::string_view> biometricTypeName(std::uint64_t position);

}  // namespace tovi
