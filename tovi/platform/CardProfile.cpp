#include "tovi/interfaces/CardProfile.h"

#include "tovi/pkcs15/PKCS15Objects.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi {

constinit const Blob PKCS15_AID = {0xA0, 0x00, 0x00, 0x00, 0x63, 'P', 'K', 'C', 'S', '-', '1', '5'};
constinit const Blob PKCS15_MF = {0x3F, 0x00};
constinit const Blob PKCS15_DF = {0x50, 0x15};
constinit const Blob PKCS15_PATH = {0x3F, 0x00, 0x50, 0x15};
constinit const Blob PKCS15_EF_ODF = {0x50, 0x31};
constinit const Blob PKCS15_EF_TOKEN_INFO = {0x50, 0x32};

constinit const Blob B_CK_TRUE = {1};
constinit const Blob B_CK_FALSE = {0};

void getFID(PKCS15Object& object) {
    const Blob& path = object.path.path;
    const std::size_t size = path.size();
    object.fid = size < 2 ? noFID : std::uint64_t{path[size - 2]} << 8 | path[size - 1];
}

bool getPath(const PKCS15::PKCS15Objects& entry, Blob& path, int choice) {
    if (entry.selection() != static_cast<std::size_t>(choice)) return false;
    const PKCS15::Path* file = PKCS15::filePath(entry);
    // ISO/IEC 7816-15 has forms of a path without octets; they name no file that can be selected.
    if (file == nullptr || (file->efidOrPath.empty() && file->efidOrPath.otherForm)) return false;
    path = file->efidOrPath;
    return true;
}

}  // namespace tovi
