#include "tools/PinBlock.h"

#include <algorithm>

namespace tovi {
namespace {

// PinType and PinFlags of PKCS#15 v1.1, 6.8.2.
enum PinType : std::uint32_t { bcd, asciiNumeric, utf8, halfNibbleBcd, iso9564 };
enum PinFlag : std::uint32_t {
    caseSensitive = 1 << 0,
    needsPadding = 1 << 5,
    integrityProtected = 1 << 9,
    confidentialityProtected = 1 << 10,
};

constexpr std::size_t isoBlockSize = 8;  // ISO 9564-1, format 2
constexpr std::size_t isoMostDigits = 12;

bool has(const AuthInfo& pin, PinFlag flag) {
    return pin.pinFlags != noAuthValue && (pin.pinFlags & flag) != 0;
}

bool isDigit(std::uint8_t octet) { return octet >= '0' && octet <= '9'; }

std::size_t characters(const Secret& entered) {
    const ASN1::View octets = entered.octets();
    return static_cast<std::size_t>(std::count_if(
        octets.begin(), octets.end(), [](std::uint8_t octet) { return (octet & 0xC0) != 0x80; }));
}

/// A length of the record that says something.
bool isTold(std::uint32_t length) { return length != noAuthValue && length != 0; }

std::size_t codedSize(const AuthInfo& pin, const Secret& entered) {
    if (pin.pinType == bcd) return (entered.size() + 1) / 2;
    return pin.pinType == iso9564 ? isoBlockSize : entered.size();
}

std::string reasonAgainstKind(const AuthInfo& pin) {
    if (pin.type != AuthType::pin) return "is no PIN";
    if (has(pin, integrityProtected) || has(pin, confidentialityProtected))
        return "has to be presented under secure messaging, which is not supported";
    if (pin.pinType > iso9564) return "has a PIN type that is not known";
    return "";
}

std::string reasonAgainstLength(const AuthInfo& pin, const Secret& entered) {
    const std::size_t count = characters(entered);
    if (entered.empty()) return "cannot be empty";
    if (isTold(pin.minLength) && count < pin.minLength)
        return "has at least " + std::to_string(pin.minLength) + " characters";
    if (isTold(pin.maxLength) && count > pin.maxLength)
        return "has at most " + std::to_string(pin.maxLength) + " characters";
    if (pin.pinType == iso9564 && count > isoMostDigits) return "has at most 12 digits";
    if (isTold(pin.storedLength) && codedSize(pin, entered) > pin.storedLength)
        return "takes at most " + std::to_string(pin.storedLength) + " octets";
    return "";
}

std::string reasonAgainstPadding(const AuthInfo& pin) {
    if (!has(pin, needsPadding) || pin.pinType == iso9564) return "";
    if (!pin.hasPadChar) return "needs padding, and the card does not say with what";
    if (!isTold(pin.storedLength)) return "needs padding, and the card does not say how much";
    return pin.storedLength > Secret::capacity ? "is padded to more than 255 octets" : "";
}

std::uint8_t upperCase(std::uint8_t octet) {
    return octet >= 'a' && octet <= 'z' ? static_cast<std::uint8_t>(octet - 'a' + 'A') : octet;
}

class Encoder {
public:
    Encoder(const AuthInfo& pin, const Secret& entered, Secret& block)
        : pin_(pin), entered_(entered), block_(block) {}

    void encode() {
        block_.clear();
        switch (pin_.pinType) {
            case bcd:
                packDigits(pin_.hasPadChar ? pin_.padChar & 0x0F : 0x0F);
                break;
            case halfNibbleBcd:
                for (const std::uint8_t digit : entered_.octets()) add(0xF0 | (digit & 0x0F));
                break;
            case iso9564:
                add(static_cast<std::uint8_t>(0x20 | entered_.size()));
                packDigits(0x0F);
                while (block_.size() < isoBlockSize) add(0xFF);
                return;
            default:
                for (const std::uint8_t octet : entered_.octets())
                    add(has(pin_, caseSensitive) ? octet : upperCase(octet));
        }
        if (!has(pin_, needsPadding)) return;
        while (block_.size() < pin_.storedLength) add(pin_.padChar);
    }

private:
    /// A block too long for the card was refused before.
    void add(unsigned octet) {
        if (!block_.push_back(static_cast<std::uint8_t>(octet))) block_.clear();
    }

    void packDigits(unsigned filler) {
        for (std::size_t i = 0; i < entered_.size(); i += 2) {
            const unsigned low = i + 1 < entered_.size() ? entered_[i + 1] & 0x0Fu : filler;
            add((entered_[i] & 0x0Fu) << 4 | low);
        }
    }

    const AuthInfo& pin_;
    const Secret& entered_;
    Secret& block_;
};

}  // namespace

std::string reasonAgainst(const AuthInfo& pin) {
    const std::string reason = reasonAgainstKind(pin);
    return reason.empty() ? reasonAgainstPadding(pin) : reason;
}

std::string reasonAgainst(const AuthInfo& pin, const Secret& entered) {
    std::string reason = reasonAgainst(pin);
    const ASN1::View octets = entered.octets();
    const bool isDigits = std::all_of(octets.begin(), octets.end(), isDigit);
    if (reason.empty() && pin.pinType != utf8 && !isDigits) reason = "has digits only";
    if (reason.empty()) reason = reasonAgainstLength(pin, entered);
    return reason;
}

void encodePin(const AuthInfo& pin, const Secret& entered, Secret& block) {
    Encoder(pin, entered, block).encode();
}

}  // namespace tovi
