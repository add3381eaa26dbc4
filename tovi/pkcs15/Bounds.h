#pragma once

#include <cstdint>

/// The bounds of the module (PKCS#15 v1.1, Annex A), and where cards in use go beyond them.
namespace PKCS15 {

constexpr std::int64_t ubIdentifier = 255;
constexpr std::int64_t ubReference = 255;
constexpr std::int64_t ubIndex = 65535;
constexpr std::int64_t ubLabel = ubIdentifier;
constexpr std::int64_t lbMinPinLength = 4;
constexpr std::int64_t ubMinPinLength = 8;
constexpr std::int64_t ubStoredPinLength = 64;
constexpr std::int64_t ubRecordLength = 16383;
constexpr std::int64_t ubUserConsent = 15;
constexpr std::int64_t ubSecurityConditions = 255;
constexpr std::int64_t ubSeInfo = 255;

/// Key references have 16 bits here, and some cards put a key length where a reference belongs.
constexpr std::int64_t acceptedReference = 65535;
/// ISO/IEC 7816-15:2016 has 32767; 0 is written for "no consent needed".
constexpr std::int64_t acceptedUserConsent = 32767;

}  // namespace PKCS15
