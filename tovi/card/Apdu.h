#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Instructions of ISO/IEC 7816-4 that this library sends or serves.
namespace Instruction {
/// The octet INS of the command of that name; `Odd` is the form with data objects.
inline constexpr std::uint8_t eraseRecord = 0x0C;
inline constexpr std::uint8_t eraseBinary = 0x0E;
inline constexpr std::uint8_t eraseBinaryOdd = 0x0F;
inline constexpr std::uint8_t verify = 0x20;
inline constexpr std::uint8_t select = 0xA4;
inline constexpr std::uint8_t readBinary = 0xB0;
inline constexpr std::uint8_t readBinaryOdd = 0xB1;
inline constexpr std::uint8_t readRecord = 0xB2;
inline constexpr std::uint8_t getResponse = 0xC0;
inline constexpr std::uint8_t updateBinary = 0xD6;
inline constexpr std::uint8_t updateBinaryOdd = 0xD7;
inline constexpr std::uint8_t updateRecord = 0xDC;
inline constexpr std::uint8_t appendRecord = 0xE2;
}  // namespace Instruction

/// The bit of CLA that says: more commands of this chain follow (ISO/IEC 7816-4).
inline constexpr std::uint8_t chainingBit = 0x10;

/// One command: header, data field, and how many octets are expected back.
struct TOVI_API CommandApdu {
    static constexpr std::size_t shortData = 255;       ///< the most data of a short command
    static constexpr std::size_t shortExpected = 256;   ///< the most a short command can ask for
    static constexpr std::size_t extendedData = 65535;  ///< the same with extended length fields
    /// The most that an extended command can ask for.
    static constexpr std::size_t extendedExpected = 65536;

    /// The header (ISO/IEC 7816-4:2005, 5.1).
    std::uint8_t cla = 0;
    std::uint8_t ins = 0;
    std::uint8_t p1 = 0;
    std::uint8_t p2 = 0;
    Blob data;                 ///< the data field; empty: none
    std::size_t expected = 0;  ///< 0: no Le field
    bool extended = false;     ///< after parse: the length fields were extended ones

    /// True when data or expected need extended length fields.
    bool needsExtended() const { return data.size() > shortData || expected > shortExpected; }

    /// The octets of the command; with extended length fields only where short ones do not do.
    Blob encode() const;

    /// Reads a command; false when the lengths contradict each other.
    [[nodiscard]] static bool parse(ASN1::View octets, CommandApdu& command);
};

/// One response: data and status word.
struct TOVI_API ResponseApdu {
    Blob data;                 ///< the data field
    std::uint16_t status = 0;  ///< SW1 and SW2

    /// The octets of the response.
    Blob encode() const;

    /// Splits off the status word; false for fewer than two octets.
    [[nodiscard]] static bool parse(ASN1::View octets, ResponseApdu& response);
};

}  // namespace tovi
