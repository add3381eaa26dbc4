#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tovi/asn1/AbstractData.h"

namespace tovi {

/// The member under which a value keeps what is in a form of a later edition of the standard.
inline constexpr const char* otherForm = "otherForm";

/// Values of the PKCS#15 module as JSON, and back, by the member names of the module.
///
///     {"privateRSAKey": {"commonObjectAttributes": {"label": "KEY1", "flags": ["private"]}, ...}}
///
/// A SEQUENCE is an object, a CHOICE an object with the one alternative, a SEQUENCE OF an array. An
/// OCTET STRING is hexadecimal; an INTEGER a number, or "0x..." with its octets when it is longer
/// than 64 bits; a BIT STRING with names is an array of them, and numbers where there is no name,
/// without names hexadecimal or {"hex", "unused"}; a character string is text, or {"hex"} when it
/// is not UTF-8; an ENUMERATED its name or number; an OBJECT IDENTIFIER dotted; NULL null; an open
/// type, and what a later edition added under "...", hexadecimal with its header; a Name and the
/// like, which are not looked into, hexadecimal without.
nlohmann::ordered_json asnToJson(ASN1::AbstractData value);

/// Fills a fresh value. Throws UsageError, which begins with `where` and the member's path, for
/// what does not belong into the type, and for a mandatory member that is missing.
void asnFromJson(ASN1::AnyValue& value, const nlohmann::ordered_json& json,
                 const std::string& where);

}  // namespace tovi
