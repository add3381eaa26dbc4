#pragma once

#include <optional>
#include <vector>

#include "tovi/pkcs15/DataObject.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/Infos.h"

namespace ASN1 {
class CoderEnv;
}

namespace tovi {

class ISCardOS;
class ProfileDFHandler;

/// The entry coder of data objects (PKCS#15 v1.1).
class PKCS15DataCT {
public:
    /// Fills `info` from an opaque data object: true, or false when the access control part of the
    /// record is not acceptable. Nothing for any other alternative.
    static std::optional<bool> decodeData(const PKCS15::DataType& record,
                                          PKCS15ObjectInfo<DataInfo>& info);

    /// Writes a data object to its directory file: a new record for the index noIndex, else over
    /// record `index`. Returns the index of the record, or noIndex for an info that is not valid.
    ///
    /// Throws SmartcardException "ASN1 encoding error" for an info that breaks a constraint of the
    /// record, or a record of another alternative; nothing is written then. What the handler throws
    /// passes through.
    static unsigned long encodeDataInfoBase(ASN1::CoderEnv* env, ISCardOS* os,
                                            ProfileDFHandler& handler,
                                            const PKCS15ObjectInfo<DataInfo>& info,
                                            std::vector<ASN1Object<PKCS15::DataType>>& raws,
                                            unsigned long index);
};

}  // namespace tovi
