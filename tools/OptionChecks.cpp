#include "tools/OptionChecks.h"

#include "tools/PinChoice.h"
#include "tools/Text.h"
#include "tovi/asn1/Strings.h"

namespace tovi {
namespace {

constexpr std::size_t longestPath = 8;     // in file identifiers
constexpr std::size_t longestLabel = 255;  // pkcs15-ub-label, in characters

bool isHex(const std::string& text, std::size_t least, std::size_t most) {
    const auto octets = fromHex(text);
    return octets && octets->size() >= least && octets->size() <= most;
}

}  // namespace

std::string checkedAid(const std::string& text) {
    return isHex(text, 1, 16) ? "" : "an AID is 1 to 16 octets in hex";
}

std::string checkedPath(const std::string& text) {
    const bool isPath = isHex(text, 2, 2 * longestPath) && text.size() % 4 == 0;
    return isPath ? "" : "a path is file identifiers of 2 octets each, in hex such as 3F005015";
}

std::string checkedLabel(const std::string& text) {
    const ASN1::View octets(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    return ASN1::isUTF8(octets) && ASN1::countCharacters(octets) <= longestLabel
               ? ""
               : "a label is UTF-8 of up to 255 characters";
}

std::string checkedSerial(const std::string& text) {
    return isHex(text, 1, 255) ? "" : "a serial number is 1 to 255 octets in hexadecimal";
}

std::string checkedFid(const std::string& text) {
    return isHex(text, 2, 2) ? "" : "a file identifier is 2 octets in hexadecimal";
}

std::string checkedLogin(const std::string& text) {
    return parseLogin(text) ? "" : "a PIN is named by its reference or identifier: 1 or id=0A";
}

std::string checkedSeconds(const std::string& text) {
    constexpr std::size_t mostDigits = 6;
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber && text.size() <= mostDigits ? "" : "a time is a number of seconds";
}

std::string checkedNotEmpty(const std::string& text) {
    return text.empty() ? "the name is empty" : "";
}

}  // namespace tovi
