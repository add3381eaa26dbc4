#include "tovi/coders/CommonAttributeEncoding.h"
#include "tovi/coders/EntryWriting.h"
#include "tovi/coders/PKCS15DataCT.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

namespace {

template <class DataObject>
bool encodeDataInfo(const PKCS15ObjectInfo<DataInfo>& info, DataObject& object) {
    setPKCS15Attributes(info, object.commonObjectAttributes);
    setPKCS15Label(info.label, object.commonObjectAttributes);
    if (info.applicationName.empty())
        object.classAttributes.applicationName.reset();
    else
        object.classAttributes.set_applicationName() = info.applicationName;
    setPKCS15Path(object.typeAttributes, info.path);
    return PKCS15CT::encodeAuthConstraints(info.auxValue3, object.commonObjectAttributes);
}

}  // namespace

unsigned long PKCS15DataCT::encodeDataInfoBase(ASN1::CoderEnv* env, ISCardOS* os,
                                               ProfileDFHandler& handler,
                                               const PKCS15ObjectInfo<DataInfo>& info,
                                               std::vector<ASN1Object<PKCS15::DataType>>& raws,
                                               unsigned long index) {
    return encodeEntry(env, os, handler, info, raws, index, "PKCS15DataCT::encodeDataInfoBase",
                       [&](PKCS15::DataType& data, bool isNew) {
                           if (isNew) data.select_opaqueDO();
                           auto* opaque = data.getIf<PKCS15::DataType::opaqueDO>();
                           return opaque && encodeDataInfo(info, *opaque);
                       });
}

}  // namespace tovi
