#include "tools/ApplicationCardOS.h"

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

Blob ApplicationCardOS::selectApplication(const Blob& aid, unsigned char mode) {
    if (aid != PKCS15_AID) return card_.selectApplication(aid, mode);
    if (path_.empty()) return card_.selectApplication(aid_, mode);
    if (!aid_.empty()) {
        try {
            return card_.selectApplication(aid_, mode);
        } catch (const SmartcardException&) {
            // The path is left.
        }
    }
    card_.selectFile(path_);
    return {};
}

FileInfo ApplicationCardOS::selectFile(const Blob& path) {
    for (const auto& [from, to] : redirections_) {
        if (path == from) return card_.selectFile(to);
    }
    return card_.selectFile(path);
}

}  // namespace tovi
