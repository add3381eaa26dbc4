#include "tovi/asn1/Coding.h"

#include "tovi/asn1/Constructed.h"

namespace ASN1 {

bool decodeFresh(View input, const Type& type, void* fresh, Error& error, Rest rest) {
    error = {};
    Reader in(input, error);
    Element element;
    if (!in.next(element)) return in.within(type.name);
    if (!decodeElement(type, element, fresh, in)) return in.within(type.name);
    return in.atEnd() || rest == Rest::anything || in.fail(Error::trailing) || in.within(type.name);
}

bool decode(View input, AbstractData value, Error& error, Rest rest) {
    AnyValue fresh(value.type());
    if (!decodeFresh(input, value.type(), fresh.get(), error, rest)) return false;
    value.type().lifetime->moveAssign(value.value(), fresh.get());
    return true;
}

bool encode(AbstractData value, Octets& out) {
    Writer writer;
    encodeElement(value.type(), value.value(), {}, writer);
    if (writer.failed()) return false;
    out.assign(writer.written());
    return true;
}

Octets encode(AbstractData value) {
    Octets out;
    encode(value, out);
    return out;
}

}  // namespace ASN1
