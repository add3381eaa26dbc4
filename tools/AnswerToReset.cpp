#include "tools/AnswerToReset.h"

#include <bit>

namespace tovi {
namespace {

constexpr std::size_t longest = 33;
constexpr unsigned direct = 0x3B, inverse = 0x3F;  // TS

/// What T0 and the interface bytes announce.
struct Announced {
    std::size_t size = 0;  ///< of the whole answer; 0: it ends within the interface bytes
    bool hasCheck = false;
};

/// The upper half of T0 and of each TD says which of TA, TB, TC and TD come next, the lower half of
/// TD names a protocol. Any other than T=0 brings a check character.
Announced announcedBy(ASN1::View atr) {
    constexpr unsigned hasTd = 0x80, others = 0x70;
    Announced announced;
    std::size_t end = 2;
    for (unsigned indicator = atr[1];;) {
        end += static_cast<std::size_t>(std::popcount(indicator & others));
        if ((indicator & hasTd) == 0) break;
        if (end >= atr.size()) return {};
        indicator = atr[end++];
        announced.hasCheck |= (indicator & 0x0F) != 0;
    }
    announced.size = end + (atr[1] & 0x0Fu) + (announced.hasCheck ? 1 : 0);
    return announced;
}

/// T0 to the check character have to come to nought.
bool isChecked(ASN1::View atr) {
    unsigned sum = 0;
    for (const std::uint8_t octet : atr.subspan(1)) sum ^= octet;
    return sum == 0;
}

}  // namespace

Blob virtualCardAtr() {
    return {
        0x3B,  // TS, direct convention
        0x85,  // T0, TD1 and five historical bytes
        0x01,  // TD1, protocol T=1
        0x80,  // historical bytes in COMPACT-TLV
        0x73,  //   card capabilities, three octets
        0xF6,  //     SELECT by name and its beginning, path, identifier; short identifiers, record
               //     numbers
        0x21,  //     data units of one octet
        0xC0,  //     command chaining, extended length
        0x60,  // TCK
    };
}

std::string findAtrFault(ASN1::View atr) {
    if (atr.size() < 2 || atr.size() > longest) return "an ATR is 2 to 33 octets in hexadecimal";
    if (atr[0] != direct && atr[0] != inverse) return "an ATR begins with 3B or 3F";
    const Announced announced = announcedBy(atr);
    if (announced.size == 0) return "the ATR ends within its interface bytes";
    if (announced.size != atr.size())
        return "the ATR has " + std::to_string(atr.size()) + " octets and announces " +
               std::to_string(announced.size);
    if (announced.hasCheck && !isChecked(atr)) return "the check character of the ATR is wrong";
    return "";
}

}  // namespace tovi
