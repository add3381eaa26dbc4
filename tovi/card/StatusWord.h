#pragma once

#include <cstdint>

/// Status words by meaning (ISO/IEC 7816-4:2005, 5.1.3).
namespace tovi::StatusWord {

/// The status word of that meaning (SW1 and SW2).
inline constexpr std::uint16_t success = 0x9000;
inline constexpr std::uint16_t moreData = 0x6100;  ///< low octet: octets still there, 0 for 256
inline constexpr std::uint16_t endOfFile = 0x6282;
inline constexpr std::uint16_t triesLeft = 0x63C0;  ///< low four bits: how many
inline constexpr std::uint16_t memoryFailure = 0x6581;
inline constexpr std::uint16_t wrongLength = 0x6700;
inline constexpr std::uint16_t lastOfChainExpected = 0x6883;
inline constexpr std::uint16_t chainingNotSupported = 0x6884;
inline constexpr std::uint16_t wrongFileStructure = 0x6981;
inline constexpr std::uint16_t securityNotSatisfied = 0x6982;
inline constexpr std::uint16_t blocked = 0x6983;
inline constexpr std::uint16_t conditionsNotSatisfied = 0x6985;
inline constexpr std::uint16_t noCurrentFile = 0x6986;
inline constexpr std::uint16_t wrongData = 0x6A80;
inline constexpr std::uint16_t functionNotSupported = 0x6A81;
inline constexpr std::uint16_t fileNotFound = 0x6A82;
inline constexpr std::uint16_t recordNotFound = 0x6A83;
inline constexpr std::uint16_t noSpaceInFile = 0x6A84;
inline constexpr std::uint16_t wrongParameters = 0x6A86;
inline constexpr std::uint16_t lengthAgainstParameters = 0x6A87;
inline constexpr std::uint16_t referenceNotFound = 0x6A88;
inline constexpr std::uint16_t wrongOffset = 0x6B00;
inline constexpr std::uint16_t wrongExpectedLength = 0x6C00;  ///< low octet: the right Le
inline constexpr std::uint16_t unknownInstruction = 0x6D00;
inline constexpr std::uint16_t unknownClass = 0x6E00;

/// The high octet, which alone says what 61XX and 6CXX mean.
constexpr std::uint16_t kind(std::uint16_t status) { return status & 0xFF00; }

}  // namespace tovi::StatusWord
