#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tovi/asn1/AbstractData.h"

namespace tovi {

/// The value in value notation (X.680), with its member names, fit for a terminal.
std::string valueText(ASN1::AbstractData value);

/// The text with each line indented and ended by a line feed.
std::string indented(std::string_view text, std::size_t spaces);

}  // namespace tovi
