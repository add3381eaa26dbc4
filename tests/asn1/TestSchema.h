#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "tovi/asn1/Schema.h"

/// A small module that has one of everything the tables can say.
namespace asn1test {

///     Colour ::= ENUMERATED { red, green, ..., blue }
struct Colour : ASN1::ENUMERATED {
    using ASN1::ENUMERATED::ENUMERATED;
    static const ASN1::Type type;
};

///     Flags ::= BIT STRING { up (0), down (1), deep (9) }
struct Flags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    static const ASN1::Type type;
};

///     Point ::= SEQUENCE {
///         x      INTEGER,
///         y      INTEGER (0..100) OPTIONAL,
///         name   [0] UTF8String (SIZE (1..3)) OPTIONAL,
///         ...,
///         later  [1] BOOLEAN DEFAULT TRUE,
///         last   [2] EXPLICIT OCTET STRING OPTIONAL }
struct Point : ASN1::Sequence<Point> {
    ASN1::INTEGER x;
    std::optional<std::uint64_t> y;
    std::optional<ASN1::UTF8String> name;
    ASN1::Unknown unknown;
    std::optional<bool> later;
    std::optional<ASN1::OCTET_STRING> last;
    static const ASN1::Type type;
};

///     Shape ::= CHOICE {
///         point   Point,
///         points  [0] SEQUENCE SIZE (1..MAX) OF Point,
///         inner   [1] EXPLICIT Shape,
///         ... }
struct Shape : ASN1::Choice<Shape> {
    enum Alternative : std::size_t { point, points, inner, unknown, none };
    std::variant<Point, std::vector<Point>, ASN1::Boxed<Shape>, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;
};

///     Number ::= CHOICE { small INTEGER (0..255), text PrintableString, any ANY }
struct Number : ASN1::Choice<Number> {
    enum Alternative : std::size_t { small, text, any, none };
    std::variant<std::uint64_t, ASN1::PrintableString, ASN1::OpenData, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

/// Without extension marker; the serial number is mandatory here and optional in another edition.
///
///     Strict ::= SEQUENCE {
///         serial  OCTET STRING,
///         colour  Colour,
///         flags   Flags OPTIONAL,
///         shape   Shape OPTIONAL,
///         set     SET OF INTEGER OPTIONAL }
struct Strict : ASN1::Sequence<Strict> {
    ASN1::Expected<ASN1::OCTET_STRING> serial;
    Colour colour;
    std::optional<Flags> flags;
    ASN1::Boxed<Shape> shape;
    std::optional<std::vector<ASN1::INTEGER>> set;
    static const ASN1::Type type;
};

}  // namespace asn1test
