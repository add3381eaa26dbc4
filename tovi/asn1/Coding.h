#pragma once

#include "tovi/Export.h"
#include "tovi/asn1/AbstractData.h"
#include "tovi/asn1/Error.h"
#include "tovi/asn1/Octets.h"
#include "tovi/asn1/Values.h"

namespace ASN1 {

/// What may stand behind the value in the octets given.
enum class Rest { nothing, anything };

/// Decodes the BER value at the beginning of `input`. False when the octets are no such value;
/// `error` then says why and where, and `value` is as it was. Time and memory are linear in the
/// octets given.
TOVI_API bool decode(View input, AbstractData value, Error& error, Rest rest = Rest::nothing);

/// The same for a type known to the compiler, without a detour over the heap.
template <Described T>
bool decode(View input, T& value, Error& error, Rest rest = Rest::nothing);

/// Writes the DER encoding of `value` into `out`. False, and `out` as it was, when a CHOICE has
/// nothing selected. Constraints are not looked at.
TOVI_API bool encode(AbstractData value, Octets& out);
/// The DER encoding, empty when a CHOICE has nothing selected.
TOVI_API Octets encode(AbstractData value);

/// Whether the value keeps every size and range of its type, in all its parts. Where cards in use
/// are known to go beyond the module, their values count as valid; see the tables.
TOVI_API bool isValid(AbstractData value);

/// Decodes into a fresh value, which a failure leaves half filled.
TOVI_API bool decodeFresh(View input, const Type& type, void* fresh, Error& error, Rest rest);

template <Described T>
bool decode(View input, T& value, Error& error, Rest rest) {
    if constexpr (std::is_base_of_v<Choice<T>, T>) {
        // With nothing selected it is fresh itself, and is easily made so again.
        if (value.selection() == T::none) {
            if (decodeFresh(input, T::type, &value, error, rest)) return true;
            value.value = std::monostate();
            return false;
        }
    }
    T fresh{};
    if (!decodeFresh(input, *TypeOf<T>::value, &fresh, error, rest)) return false;
    value = static_cast<T&&>(fresh);
    return true;
}

}  // namespace ASN1
