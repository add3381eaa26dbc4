#include "tovi/coders/PKCS15DataCT.h"
#include "tovi/container/InitInfos.h"

namespace tovi {

void PKCS15Container::initDataInfos() {
    dataInfos.reserve(rawDataObjects.size());
    initInfos(dataInfos, rawDataObjects, dataObject, PKCS15DataCT::decodeData);
}

}  // namespace tovi
