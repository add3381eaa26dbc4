#include "tovi/asn1/Error.h"

#include "tovi/asn1/Type.h"

namespace ASN1 {

namespace {

std::string nameOfExpected(const Error& error) {
    if (!error.expectedTag.isNone()) return toString(error.expectedTag);
    if (!error.expected->tag.isNone()) return toString(error.expected->tag);
    return std::string(error.expected->name);
}

std::string describe(const Error& error) {
    switch (error.kind) {
        case Error::none:
            return "no error";
        case Error::truncated:
            return "content runs past the end of the data";
        case Error::badTag:
            return "malformed tag";
        case Error::badLength:
            return "malformed length";
        case Error::tooDeep:
            return "nested too deeply";
        case Error::unexpectedTag:
            if (!error.expected) return "unexpected " + toString(error.found);
            return "found " + toString(error.found) + ", expected " + nameOfExpected(error);
        case Error::missing:
            return "mandatory member is missing";
        case Error::trailing:
            return "unexpected octets follow";
        case Error::badValue:
            return "content is not a value of this type";
        case Error::notConfigured:
            return "the coder environment is not configured";
    }
    return "unknown error";
}

}  // namespace

std::string toString(const Error& error) {
    std::string text = error.path.empty() ? "" : error.path + ": ";
    text += describe(error);
    if (error.kind != Error::none && error.kind != Error::notConfigured)
        text += ", at octet " + std::to_string(error.offset);
    return text;
}

}  // namespace ASN1
