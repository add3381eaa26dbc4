#include "tovi/asn1/Tag.h"

#include <iterator>

namespace ASN1 {

namespace {

/// By universal tag number (X.680 8.4, table 1).
constexpr const char* universalNames[] = {
    "end of contents",
    "BOOLEAN",
    "INTEGER",
    "BIT STRING",
    "OCTET STRING",
    "NULL",
    "OBJECT IDENTIFIER",
    "ObjectDescriptor",
    "EXTERNAL",
    "REAL",
    "ENUMERATED",
    "EMBEDDED PDV",
    "UTF8String",
    "RELATIVE-OID",
    "TIME",
    nullptr,
    "SEQUENCE",
    "SET",
    "NumericString",
    "PrintableString",
    "TeletexString",
    "VideotexString",
    "IA5String",
    "UTCTime",
    "GeneralizedTime",
    "GraphicString",
    "VisibleString",
    "GeneralString",
    "UniversalString",
    "CHARACTER STRING",
    "BMPString",
};

std::string bracketed(const char* cls, std::uint32_t number) {
    std::string text = "[";
    return text.append(cls).append(std::to_string(number)).append("]");
}

}  // namespace

std::string toString(Tag tag) {
    if (tag.isNone()) return "any type";
    switch (tag.cls()) {
        case Tag::universal:
            if (tag.number() < std::size(universalNames) && universalNames[tag.number()])
                return universalNames[tag.number()];
            return bracketed("UNIVERSAL ", tag.number());
        case Tag::application:
            return bracketed("APPLICATION ", tag.number());
        case Tag::context:
            return bracketed("", tag.number());
        case Tag::privateUse:
            break;
    }
    return bracketed("PRIVATE ", tag.number());
}

}  // namespace ASN1
