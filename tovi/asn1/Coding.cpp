#include "tovi/asn1/Coding.h"

#include "tovi/asn1/Constructed.h"

namespace ASN1 {

bool decodeFresh(View input, const Type& type, void* fresh, Error& error, Rest rest) {
    if (error || !error.path.empty()) error = {};
    Reader in(input, error);
    Element element;
    if (!in.next(element)) return in.within(type.name);
    if (!decodeElement(type, element, fresh, in)) return in.within(type.name);
    return in.atEnd() || rest == Rest::anything || in.fail(Error::trailing) || in.within(type.name);
}

bool decode(View input, AbstractData value, Error& error, Rest rest) {
    const Type& type = value.type();
    // A CHOICE with nothing selected is fresh itself, and is easily made so again.
    if (type.kind == Kind::choice && !type.otherForm && !chosen(type, value.value())) {
        if (decodeFresh(input, type, value.value(), error, rest)) return true;
        type.members[0].clear(value.value());
        return false;
    }
    AnyValue fresh(type);
    if (!decodeFresh(input, type, fresh.get(), error, rest)) return false;
    type.lifetime->moveAssign(value.value(), fresh.get());
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
