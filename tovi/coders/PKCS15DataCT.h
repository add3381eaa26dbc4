#pragma once

#include <optional>

#include "tovi/pkcs15/DataObject.h"
#include "tovi/records/Infos.h"

namespace tovi {

/// The entry coder of data objects (PKCS#15 v1.1).
class PKCS15DataCT {
public:
    /// Fills `info` from an opaque data object: true, or false when the access control part of the
    /// record is not acceptable. Nothing for any other alternative.
    static std::optional<bool> decodeData(const PKCS15::DataType& record,
                                          PKCS15ObjectInfo<DataInfo>& info);
};

}  // namespace tovi
