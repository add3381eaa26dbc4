#pragma once

#include <optional>

#include "tovi/container/InfoAppender.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Turns every raw record into an info with a row of the file-allocation table, in file order.
///
/// `decode(record, info)` answers true or false for a record that it filled `info` from, nothing
/// for an alternative that it does not know. A record that is missing, invalid or unknown keeps its
/// place with default fields and a row of type 64.
template <class Info, class Type, class Decode>
void PKCS15Container::initInfos(InfoList<Info>& infos, RawList<Type>& raws,
                                ObjectType objectType, Decode decode) {
    InfoAppender<Info> list(infos);
    for (ASN1Object<Type>& raw : raws) {
        PKCS15ObjectInfo<Info> info;
        std::optional<bool> result;
        if (raw.value && raw.isValid) result = decode(*raw.value, info);
        info.recordNumber =
            newFATRecord(result ? objectType : unrecognisedObjectType, info.isPrivate);
        list.append(info);
        raw.isDecoded = result.value_or(false);
    }
}

}  // namespace tovi
