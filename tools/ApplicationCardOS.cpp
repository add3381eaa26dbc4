#include "tools/ApplicationCardOS.h"

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

Blob ApplicationCardOS::selectApplication(const Blob& aid, unsigned char mode) {
    if (aid != PKCS15_AID) return card_.selectApplication(aid, mode);
    try {
        return card_.selectApplication(aid_, mode);
    } catch (const SmartcardException&) {
        if (path_.empty()) throw;
    }
    card_.selectFile(path_);
    return {};
}

}  // namespace tovi
