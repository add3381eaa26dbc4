#include "tovi/asn1/Tag.h"

namespace ASN1 {

namespace {

/// By universal tag number (X.680 8.4, table 1).
constexpr const char* universalNames[] = {
    "end of contents", "BOOLEAN",       "INTEGER",          "BIT STRING",      "OCTET STRING",
    "NULL",            "OBJECT IDENTIFIER", "ObjectDescriptor", "EXTERNAL",    "REAL",
    "ENUMERATED",      "EMBEDDED PDV",  "UTF8String",       "RELATIVE-OID",    "TIME",
    nullptr,           "SEQUENCE",      "SET",              "NumericString",   "PrintableString",
    "TeletexString",   "VideotexString", "IA5String",       "UTCTime",         "GeneralizedTime",
    "GraphicString",   "VisibleString", "GeneralString",    "UniversalString", "CHARACTER STRING",
    "BMPString",
};

}  // namespace

std::string toString(Tag tag) {
    const std::string number = std::to_string(tag.number);
    switch (tag.cls) {
        case Tag::universal:
            if (tag.number < std::size(universalNames) && universalNames[tag.number])
                return universalNames[tag.number];
            return "[UNIVERSAL " + number + "]";
        case Tag::application: return "[APPLICATION " + number + "]";
        case Tag::context: return "[" + number + "]";
        case Tag::privateUse: return "[PRIVATE " + number + "]";
        case Tag::none: break;
    }
    return "any type";
}

}  // namespace ASN1
