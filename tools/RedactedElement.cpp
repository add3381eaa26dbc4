#include "tools/RedactedElement.h"

#include <algorithm>
#include <vector>

namespace tovi {
namespace {

constexpr std::size_t longestObjectIdentifier = 64;

// Universal tags (X.680, 8.4).
enum Number : std::uint32_t {
    boolean = 1,
    integer = 2,
    bitString = 3,
    objectIdentifier = 6,
    enumerated = 10,
    utf8String = 12,
    firstString = 18,
    lastString = 22,
    utcTime = 23,
    generalizedTime = 24,
    graphicString = 25,
    generalString = 27
};

bool isTextOfOctets(std::uint32_t tag) {
    return tag == utf8String || (tag >= firstString && tag <= lastString) ||
           (tag >= graphicString && tag <= generalString);
}

/// All elements of a level; nothing when they do not fill it.
std::optional<std::vector<ASN1::Element>> elementsOf(ASN1::Reader& level) {
    std::vector<ASN1::Element> elements;
    while (!level.atEnd()) {
        if (!level.next(elements.emplace_back())) return std::nullopt;
    }
    return elements;
}

}  // namespace

void blankText(Octets octets) { std::fill(octets.begin(), octets.end(), std::uint8_t{'x'}); }

void blankInteger(Octets octets) { std::fill(octets.begin(), octets.end(), std::uint8_t{1}); }

void blankTime(Octets octets) {
    for (std::uint8_t& octet : octets) {
        const bool isMark = octet == 'Z' || octet == '+' || octet == '-' || octet == '.';
        if (!isMark) octet = '0';
    }
}

void blankBits(Octets octets) {
    if (octets.empty()) return;
    octets[0] = std::min<std::uint8_t>(octets[0], 7);
    blankOctets(octets.subspan(1));
}

void blankOctets(Octets octets) { std::fill(octets.begin(), octets.end(), std::uint8_t{0}); }

void BlankedBuffer::blankPrimitive(const ASN1::Element& element) const {
    const Octets content = writable(element.content);
    if (element.tag.cls() != ASN1::Tag::universal) return blankOctets(content);
    const std::uint32_t tag = element.tag.number();
    if (tag == objectIdentifier && content.size() <= longestObjectIdentifier) return;
    if (tag == boolean && content.size() == 1) return;
    if (tag == integer || tag == enumerated) return blankInteger(content);
    if (tag == bitString) return blankBits(content);
    if (tag == utcTime || tag == generalizedTime) return blankTime(content);
    if (isTextOfOctets(tag)) return blankText(content);
    blankOctets(content);
}

void BlankedBuffer::blankAny(const ASN1::Element& element, const ASN1::Reader& in) const {
    if (element.constructed) {
        blankContents(element, in);
    } else {
        blankPrimitive(element);
    }
}

void BlankedBuffer::blankContents(const ASN1::Element& element, const ASN1::Reader& in) const {
    auto level = in.enter(element);
    const auto elements = level ? elementsOf(*level) : std::nullopt;
    if (!elements) return blankOctets(writable(element.content));
    for (const ASN1::Element& inner : *elements) blankAny(inner, *level);
}

}  // namespace tovi
