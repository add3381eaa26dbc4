#include "tools/EfDir.h"

#include "tools/Paths.h"
#include "tovi/asn1/Coding.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/PKCS15.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {
namespace {

const Blob directoryPath = {0x3F, 0x00, 0x2F, 0x00};

/// The octets of a path of whole identifiers; other forms name no file that a SELECT by path finds.
Blob filePath(const ASN1::OCTET_STRING& path) { return path.size() % 2 == 0 ? Blob(path) : Blob(); }

Blob filePath(const std::optional<PKCS15::Path>& path) {
    return path ? filePath(path->efidOrPath) : Blob();
}

DirectoryEntry entryOf(const PKCS15::DIRRecord& record) {
    DirectoryEntry entry;
    const Blob path = filePath(record.path);
    if (!path.empty()) entry.application = absolutePath(PKCS15_MF, path);
    if (record.ddo) {
        entry.odf = filePath(record.ddo->odfPath);
        entry.tokenInfo = filePath(record.ddo->tokenInfoPath);
        entry.unusedSpace = filePath(record.ddo->unusedPath);
    }
    return entry;
}

}  // namespace

DirectoryEntry findInDirectory(ISCardOS& os, const Blob& aid) {
    try {
        const DirectoryFile file = readDirectoryFile(os, directoryPath, ReadExtent::wholeFile);
        for (const RecordPlace& place : file.places) {
            PKCS15::DIRRecord record;
            ASN1::Error error;
            if (!ASN1::decode(file.octetsAt(place), record, error)) continue;
            if (beginsWith(record.aid, aid)) return entryOf(record);
        }
    } catch (const SmartcardException&) {
        // A card need not have the file.
    }
    return {};
}

}  // namespace tovi
