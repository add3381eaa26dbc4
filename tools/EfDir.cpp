#include "tools/EfDir.h"

#include "tools/Paths.h"
#include "tovi/asn1/Coding.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/PKCS15.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {
namespace {

const Blob directoryPath = {0x3F, 0x00, 0x2F, 0x00};

}  // namespace

Blob applicationInDirectory(ISCardOS& os, const Blob& aid) {
    try {
        const DirectoryFile file = readDirectoryFile(os, directoryPath, ReadExtent::wholeFile);
        for (const RecordPlace& place : file.places) {
            PKCS15::DIRRecord record;
            ASN1::Error error;
            if (!ASN1::decode(file.octetsAt(place), record, error)) continue;
            if (beginsWith(record.aid, aid)) return record.path;
        }
    } catch (const SmartcardException&) {
        // A card need not have the file.
    }
    return {};
}

}  // namespace tovi
