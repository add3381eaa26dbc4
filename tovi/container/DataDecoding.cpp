#include "tovi/coders/PKCS15DataCT.h"
#include "tovi/container/InitInfos.h"

namespace tovi {

void PKCS15Container::initDataInfos() {
    dataInfos.reserve(rawDataObjects.size());
    InfoAppender<DataInfo> infos(dataInfos);
    for (auto& record : rawDataObjects) initDataInfo(record, infos);
}

bool PKCS15Container::initDataInfo(ASN1Object<PKCS15::DataType>& record,
                                   InfoAppender<DataInfo>& infos) {
    return initInfo(record, infos, dataObject, PKCS15DataCT::decodeData);
}

}  // namespace tovi
