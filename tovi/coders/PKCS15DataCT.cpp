#include "tovi/coders/PKCS15DataCT.h"

#include <string>

#include "tovi/coders/CommonAttributes.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

std::optional<bool> PKCS15DataCT::decodeData(const PKCS15::DataType& record,
                                             PKCS15ObjectInfo<DataInfo>& info) {
    const auto* object = record.getIf<PKCS15::DataType::opaqueDO>();
    if (!object) return std::nullopt;
    getPKCS15Attributes(info, object->commonObjectAttributes);
    getPKCS15Label(info.label, object->commonObjectAttributes,
                   std::string(record.selectionName()).c_str());
    if (object->classAttributes.applicationName)
        ASN1_assign(info.applicationName, *object->classAttributes.applicationName);
    getPKCS15Path(info.path, object->typeAttributes);
    getFID(info);
    return PKCS15CT::decodeAuthConstraints(object->commonObjectAttributes);
}

}  // namespace tovi
