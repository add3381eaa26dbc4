#pragma once

#include <optional>

#include "tovi/container/InfoAppender.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Turns a raw record into an info with a row of the file-allocation table.
///
/// `decode(record, info)` answers true or false for a record that it filled `info` from, nothing
/// for an alternative that it does not know. A record that is missing, invalid or unknown keeps its
/// place with default fields and a row of type 64. Returns whether the record became a complete
/// info, and notes it in the record.
template <class Info, class Type, class Decode>
bool PKCS15Container::initInfo(ASN1Object<Type>& record, InfoAppender<Info>& infos,
                               ObjectType objectType, Decode decode) {
    PKCS15ObjectInfo<Info> info;
    std::optional<bool> result;
    if (record.value && record.isValid) result = decode(*record.value, info);
    info.recordNumber = newFATRecord(result ? objectType : unrecognisedObjectType, info.isPrivate);
    infos.append(info);
    record.isDecoded = result.value_or(false);
    return record.isDecoded;
}

}  // namespace tovi
