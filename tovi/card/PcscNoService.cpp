// makePcscService for builds without PC/SC.
#include "tovi/card/IPcscService.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

std::unique_ptr<IPcscService> makePcscService() {
    throw SmartcardException("PC/SC not supported by this build", "makePcscService");
}

}  // namespace tovi
