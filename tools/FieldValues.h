#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "tools/JsonPlace.h"
#include "tovi/interfaces/PKCS11Attrs.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

// Values of fields as JsonInfos shows them, read back. All throw UsageError that names the place.

// How long a value may be, the records say: what they cannot hold fails when it is written.

/// A text, as octets; "" or null for none.
Blob textField(const JsonPlace& place);
/// Octets in hexadecimal; "" or null for none.
Blob octetsField(const JsonPlace& place);
/// {"path", "index", "length"}; the last two may be left out. null for none.
PKCS15Path pathField(const JsonPlace& place);
/// An object identifier with dots, as arcs of four octets each; "" or null for
/// none.
Blob arcsField(const JsonPlace& place);

/// A number up to the largest but one of its type, which stands for null.
template <class Number>
Number optionalNumberField(const JsonPlace& place, Number none,
                           std::size_t most = std::numeric_limits<Number>::max() - 1) {
    if (place.isNull()) return none;
    return static_cast<Number>(place.number(most));
}

/// Finds the number of a name; none for what is no name.
using NumberOfName = std::optional<unsigned> (*)(std::string_view name);

/// A name.
unsigned nameField(const JsonPlace& place, NumberOfName numberOf);
/// A list of names of bits, as a mask.
std::uint32_t bitsField(const JsonPlace& place, NumberOfName bitOf);

/// Adds attributes, by name, to those that there are.
void addAttributes(PKCS11Attrs& attributes, const JsonPlace& place);

}  // namespace tovi
