#include "tools/ValueText.h"

#include "tools/Text.h"
#include "tovi/asn1/Print.h"

namespace tovi {

std::string valueText(ASN1::AbstractData value) {
    return forTerminal(ASN1::print(value), Lines::keep);
}

std::string indented(std::string_view text, std::size_t spaces) {
    std::string lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines += std::string(spaces, ' ') + std::string(text.substr(0, end)) + '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

}  // namespace tovi
