#include "tovi/card/Apdu.h"

namespace tovi {
namespace {

void appendTwo(Blob& out, std::size_t value) {
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}

std::size_t two(ASN1::View octets) { return std::size_t{octets[0]} << 8 | octets[1]; }

/// In an Le field nought stands for the most that it can ask for.
std::size_t orAll(std::size_t field, std::size_t all) { return field == 0 ? all : field; }

bool parseShort(ASN1::View body, CommandApdu& command) {
    if (body.size() == 1) {
        command.expected = orAll(body[0], CommandApdu::shortExpected);
        return true;
    }
    const std::size_t length = body[0];
    if (body.size() != 1 + length && body.size() != 2 + length) return false;
    command.data = Blob(body.subspan(1, length));
    if (body.size() == 2 + length)
        command.expected = orAll(body[1 + length], CommandApdu::shortExpected);
    return true;
}

bool parseExtended(ASN1::View body, CommandApdu& command) {
    if (body.size() < 3) return false;
    command.extended = true;
    const std::size_t field = two(body.subspan(1));
    if (body.size() == 3) {
        command.expected = orAll(field, CommandApdu::extendedExpected);
        return true;
    }
    if (field == 0 || (body.size() != 3 + field && body.size() != 5 + field)) return false;
    command.data = Blob(body.subspan(3, field));
    if (body.size() == 5 + field)
        command.expected = orAll(two(body.subspan(3 + field)), CommandApdu::extendedExpected);
    return true;
}

}  // namespace

Blob CommandApdu::encode() const {
    Blob out{cla, ins, p1, p2};
    const bool wide = needsExtended();
    if (wide) out.push_back(0);
    if (!data.empty()) {
        wide ? appendTwo(out, data.size()) : out.push_back(static_cast<std::uint8_t>(data.size()));
        out.append(data);
    }
    if (expected != 0)
        wide ? appendTwo(out, expected) : out.push_back(static_cast<std::uint8_t>(expected));
    return out;
}

bool CommandApdu::parse(ASN1::View octets, CommandApdu& command) {
    if (octets.size() < 4) return false;
    command = CommandApdu{octets[0], octets[1], octets[2], octets[3], {}, 0, false};
    const ASN1::View body = octets.subspan(4);
    if (body.empty()) return true;
    return body[0] != 0 || body.size() == 1 ? parseShort(body, command)
                                            : parseExtended(body, command);
}

Blob ResponseApdu::encode() const {
    Blob out = data;
    appendTwo(out, status);
    return out;
}

bool ResponseApdu::parse(ASN1::View octets, ResponseApdu& response) {
    if (octets.size() < 2) return false;
    const std::size_t size = octets.size() - 2;
    response.data = Blob(octets.first(size));
    response.status = static_cast<std::uint16_t>(two(octets.subspan(size)));
    return true;
}

}  // namespace tovi
