#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tovi {

/// "CKA_SIGN" for 0x108; "CKA_0x1234" for a number without a name here.
std::string attributeName(unsigned long attribute);
/// The number for either form of a name; none for others.
std::optional<unsigned long> attributeNumber(std::string_view name);
/// Whether PKCS#11 makes the attribute a CK_BBOOL.
bool isBooleanAttribute(unsigned long attribute);

/// "RSA", "DSA", "DH" or "EC" for a CKK_ number; none for others.
std::optional<std::string_view> keyTypeName(std::uint64_t keyType);

std::optional<std::uint64_t> keyTypeNumber(std::string_view name);

/// The names of the set bits, bit n being 1 << n; "bit12" for one without a name.
std::vector<std::string> pinFlagNames(std::uint32_t flags);
std::vector<std::string> biometricFlagNames(std::uint32_t flags);
/// The bit that one of these names stands for; none for others.
std::optional<unsigned> pinFlagBit(std::string_view name);
std::optional<unsigned> biometricFlagBit(std::string_view name);
/// The name of an operation bit of AlgorithmInfo, 0 to 7.
std::string_view operationName(std::size_t bit);
std::optional<unsigned> operationBit(std::string_view name);

/// The standard's name of a PinType; none for others.
std::optional<std::string_view> pinTypeName(std::uint32_t pinType);
std::optional<unsigned> pinTypeNumber(std::string_view name);
/// The name of the alternative of BiometricType; none for others.
std::optional<std::string_view> biometricTypeName(std::uint64_t position);
std::optional<unsigned> biometricTypeNumber(std::string_view name);

}  // namespace tovi
