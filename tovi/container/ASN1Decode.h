#pragma once

#include <memory>
#include <vector>

#include "tovi/asn1/CoderEnv.h"
#include "tovi/interfaces/Blob.h"
#include "tovi/records/ASN1Object.h"

namespace tovi {

/// Decodes each record into a new value of type T, appended to `out`. Always true: a record that
/// does not decode leaves an element without value at its place, so that positions stay those of
/// the file.
template <class T>
bool ASN1_decode(ASN1::CoderEnv* env, const std::vector<Blob>& records,
                 std::vector<ASN1Object<T>>& out) {
    out.reserve(records.size());
    for (const Blob& record : records) {
        const char* begin = reinterpret_cast<const char*>(record.data());
        auto value = std::make_unique<T>();
        if (!env->decode(begin, begin + record.size(), *value, false)) {
            out.push_back({});
            continue;
        }
        const bool isValid = value->isValid();
        out.push_back({value.get(), isValid, false});
        value.release();  // the element owns it now
    }
    return true;
}

}  // namespace tovi
