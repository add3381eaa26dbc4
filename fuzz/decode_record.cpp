// Whatever decodes must check, print and encode, and its encoding must decode to the same encoding;
// whatever does not must say why, within the input. The first octet chooses the type, the rest is
// the record.
#include <cstddef>
#include <cstdint>

#include "fuzz/require.h"
#include "tovi/asn1/Coding.h"
#include "tovi/asn1/Print.h"
#include "tovi/pkcs15/Module.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto types = PKCS15::getModule().types();
    const ASN1::Type& type = *types[data[0] % types.size()];
    const ASN1::View record(data + 1, size - 1);

    ASN1::AnyValue value(type);
    ASN1::Error error;
    if (!ASN1::decode(record, value, error)) {
        require(error.kind != ASN1::Error::none && error.offset <= record.size());
        require(!ASN1::toString(error).empty());
        return 0;
    }
    const bool isValid = ASN1::isValid(value);
    require(ASN1::print(value).size() <= 400 + 100 * record.size());

    ASN1::Octets der;
    require(ASN1::encode(value, der));
    ASN1::AnyValue again(type);
    require(ASN1::decode(der, again, error));
    require(ASN1::encode(again) == der);
    require(ASN1::isValid(again) == isValid);
    const ASN1::AnyValue clone = value;
    require(ASN1::encode(clone) == der);
    return 0;
}
