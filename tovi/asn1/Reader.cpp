#include "tovi/asn1/Reader.h"

namespace ASN1 {

namespace {

constexpr Tag endOfContents = universal(0);  // X.690 8.1.5
constexpr std::uint8_t constructedBit = 0x20;
constexpr std::uint8_t longForm = 0x1F;          // of a tag number (X.690 8.1.2.4)
constexpr std::uint8_t indefiniteLength = 0x80;  // X.690 8.1.3.6
constexpr unsigned maxLengthOctets = 4;

}  // namespace

bool Reader::fail(Error::Kind kind, const std::uint8_t* at) const {
    if (error_->kind == Error::none) {
        error_->kind = kind;
        error_->offset = static_cast<std::size_t>(at - origin_);
    }
    return false;
}

bool Reader::failUnexpected(const Element& found, const Type* expected, Tag expectedTag) const {
    if (error_->kind == Error::none) {
        error_->found = found.tag;
        error_->expected = expected;
        error_->expectedTag = expectedTag;
    }
    return fail(Error::unexpectedTag, found.whole.data());
}

bool Reader::within(std::string_view name) const {
    if (name.empty()) return false;
    std::string path(name);
    if (!error_->path.empty() && error_->path[0] != '[') path += '.';
    error_->path = path.append(error_->path);
    return false;
}

bool Reader::withinItem(std::size_t index) const {
    std::string item = "[";
    return within(item.append(std::to_string(index)).append("]"));
}

void Reader::forgive() const { *error_ = {}; }

std::nullopt_t Reader::failToEnter(const Element& element) const {
    fail(element.constructed ? Error::tooDeep : Error::badValue, element.whole.data());
    return std::nullopt;
}

bool Reader::parseAnyHeader(Element& out) const {
    if (rest_.size() < 2) return fail(Error::truncated);
    const std::uint8_t lead = rest_[0];
    out.constructed = (lead & constructedBit) != 0;
    std::uint32_t number = lead & longForm;
    std::size_t at = 1;
    if (number == longForm && !parseLongTag(at, number)) return false;
    out.tag = {Tag::Class(lead & 0xC0), number};
    if (at == rest_.size()) return fail(Error::truncated);
    std::size_t length = rest_[at++];
    if (length >= indefiniteLength) {
        if (length == indefiniteLength) return measureIndefinite(at, out);
        if (!parseLongLength(at, length)) return false;
    }
    if (length > rest_.size() - at) return fail(Error::truncated);
    out.content = rest_.subspan(at, length);
    out.whole = rest_.first(at + length);
    return true;
}

bool Reader::parseLongTag(std::size_t& at, std::uint32_t& number) const {
    number = 0;
    std::uint8_t octet = 0;
    do {
        if (at == rest_.size()) return fail(Error::truncated);
        octet = rest_[at++];
        if (number >> (Tag::numberBits - 7) != 0 || (number == 0 && octet == 0x80))
            return fail(Error::badTag);
        number = number << 7 | (octet & 0x7Fu);
    } while ((octet & 0x80) != 0);
    // Numbers up to 30 have the short form alone (X.690 8.1.2.2).
    return number >= longForm || fail(Error::badTag);
}

bool Reader::parseLongLength(std::size_t& at, std::size_t& length) const {
    std::size_t count = length & 0x7F;
    if (count == 0x7F) return fail(Error::badLength);  // X.690 8.1.3.5 c
    length = 0;
    for (; count > 0; --count) {
        if (at == rest_.size()) return fail(Error::truncated);
        // BER allows any number of leading zero octets; a value of more octets is longer than any
        // input.
        if (length >> (8 * (maxLengthOctets - 1)) != 0) return fail(Error::badLength);
        length = length << 8 | rest_[at++];
    }
    return true;
}

bool Reader::measureIndefinite(std::size_t headerSize, Element& out) const {
    if (!out.constructed) return fail(Error::badLength);
    if (depth_ == 0) return fail(Error::tooDeep);
    Reader body(rest_.subspan(headerSize), origin_, depth_ - 1, *error_);
    for (Element element;;) {
        if (!body.parse(element)) return false;
        body.skip(element);
        if (element.tag != endOfContents) continue;
        if (element.constructed || element.whole.size() != 2)
            return fail(Error::badTag, element.whole.data());
        out.whole = rest_.first(rest_.size() - body.rest_.size());
        out.content = out.whole.subspan(headerSize, out.whole.size() - headerSize - 2);
        return true;
    }
}

}  // namespace ASN1
