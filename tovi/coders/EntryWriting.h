#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

#include "tovi/asn1/CoderEnv.h"
#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/ISCardOS.h"
#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// The index of a record that is not in its file yet; also the result of an entry coder for an info
/// that is not valid.
inline constexpr unsigned long noIndex = ~0UL;

/// Sees to it that the next insertion allocates nothing, so that memory cannot run out between the
/// card and the model. Growth is geometric.
template <class Element>
void makeRoomForOne(std::vector<Element>& elements) {
    constexpr std::size_t first = 8;
    if (elements.size() == elements.capacity())
        elements.reserve(std::max(first, 2 * elements.size()));
}

/// Writes `record`, the encoding of `value`, and takes `value` over into `raws`.
///
/// `update` false adds a record to the directory file; true replaces record `index`, in memory only
/// when `os` is null. Returns the index of the record. `value` is taken exactly when the handler
/// returned true; false is answered with `index` and changes nothing. A new record that the
/// handler puts behind the end of `raws` belongs to records that were never read into it: the
/// answer is noIndex then.
template <class Type>
unsigned long writeFileAndObject(ISCardOS* os, ProfileDFHandler& handler,
                                 std::unique_ptr<Type>& value, const Blob& record,
                                 std::vector<ASN1Object<Type>>& raws, unsigned long index,
                                 bool update) {
    const ASN1Object<Type> element{value.get(), true, false};
    unsigned long position = index;
    if (update) {
        if (os && !handler.UpdateSequence(os, index, record)) return position;
        deleteObject(raws[index]);
        raws[index] = element;
    } else {
        makeRoomForOne(raws);
        if (!handler.WriteSequence(os, record, position)) return position;
        if (position > raws.size()) return noIndex;
        raws.insert(std::next(raws.begin(), static_cast<std::ptrdiff_t>(position)), element);
    }
    value.release();  // the element owns it now
    return position;
}

/// What is filled for `index`: a deep copy of the record that stands there, so that what infos do
/// not model survives, or a fresh value for noIndex. Null when there is no value to copy.
template <class Type>
std::unique_ptr<Type> valueToFill(const std::vector<ASN1Object<Type>>& raws, unsigned long index) {
    if (index == noIndex) return std::make_unique<Type>();
    if (index >= raws.size() || !raws[index].value) return nullptr;
    return raws[index].value->clone();
}

/// What this library writes is valid when it reads it back; only a record that was invalid on the
/// card may be written back so.
template <class Type>
bool mayBeWritten(const Type& value, const std::vector<ASN1Object<Type>>& raws,
                  unsigned long index) {
    return value.isValid() || (index != noIndex && !raws[index].value->isValid());
}

/// The common part of every entry coder: fills a value from `info` with `fill(value, isNew)`,
/// encodes and writes it. Returns the index of the record, or noIndex for an info that is not
/// valid.
///
/// Throws "ASN1 encoding error" with the operation `operation` when `fill` or the encoding fails or
/// there is no record `index`, what `fill` throws, and what the handler throws; `raws` and the card
/// are as they were after the former.
template <class Info, class Type, class Fill>
unsigned long encodeEntry(ASN1::CoderEnv* env, ISCardOS* os, ProfileDFHandler& handler,
                          const PKCS15ObjectInfo<Info>& info, std::vector<ASN1Object<Type>>& raws,
                          unsigned long index, const char* operation, Fill fill) {
    if (!info.IsValid()) return noIndex;
    const bool isNew = index == noIndex;
    std::unique_ptr<Type> value = valueToFill(raws, index);
    Blob record;
    if (!value || !fill(*value, isNew) || !mayBeWritten(*value, raws, index) ||
        !ASN1_encode(*value, env, record))
        throw SmartcardException("ASN1 encoding error", operation);
    return writeFileAndObject(os, handler, value, record, raws, index, !isNew);
}

}  // namespace tovi
