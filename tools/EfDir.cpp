#include "tools/EfDir.h"

#include "tools/Paths.h"
#include "tovi/asn1/Coding.h"
#include "tovi/card/BerTlv.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/PKCS15.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {
namespace {

const Blob directoryPath = {0x3F, 0x00, 0x2F, 0x00};

// Data objects of ISO/IEC 7816-4:2005, 8.2.1.
enum Tag : std::uint32_t {
    applicationTemplate = 0x61,
    identifierTag = 0x4F,
    labelTag = 0x50,
    pathTag = 0x51,
    discretionaryTag = 0x53,
    discretionaryTemplateTag = 0x73
};
constexpr std::uint8_t sequenceTag = 0x30;

/// The octets of a path of whole identifiers; other forms name no file that a SELECT by path finds.
Blob filePath(ASN1::View path) { return path.size() % 2 == 0 ? Blob(path) : Blob(); }

Blob filePath(const std::optional<PKCS15::Path>& path) {
    return path ? filePath(path->efidOrPath) : Blob();
}

/// The first data object of that tag among `objects`; empty when there is none.
ASN1::View valueOf(ASN1::View objects, std::uint32_t tag) {
    BerTlv object;
    return BerTlv::find(objects, tag, object) ? object.value : ASN1::View();
}

/// Whether `objects` are data objects to the end, and padding.
bool areWellFormed(ASN1::View objects) {
    BerTlv object;
    while (BerTlv::next(objects, object)) continue;
    return objects.empty();
}

void addDiscretionary(ASN1::View contents, DirectoryRecord& record) {
    if (contents.empty()) return;
    Blob sequence;
    appendBerTlv(sequence, sequenceTag, contents);
    PKCS15::DDO ddo;
    ASN1::Error error;
    if (!ASN1::decode(sequence, ddo, error)) {
        record.error = "discretionary data: " + ASN1::toString(error);
        return;
    }
    record.entry->odf = filePath(ddo.odfPath);
    record.entry->tokenInfo = filePath(ddo.tokenInfoPath);
    record.entry->unusedSpace = filePath(ddo.unusedPath);
}

}  // namespace

DirectoryRecord directoryRecord(ASN1::View octets) {
    DirectoryRecord record{Blob(octets), std::nullopt};
    BerTlv outer;
    if (!BerTlv::next(octets, outer) || outer.tag != applicationTemplate) {
        record.error = "no application template";
        return record;
    }
    const ASN1::View aid = valueOf(outer.value, identifierTag);
    if (aid.empty()) {
        record.error = "no application identifier";
        return record;
    }
    DirectoryEntry& entry = record.entry.emplace();
    entry.aid = Blob(aid);
    entry.label = Blob(valueOf(outer.value, labelTag));
    const ASN1::View path = valueOf(outer.value, pathTag);
    if (!path.empty() && path.size() % 2 == 0) {
        entry.application = absolutePath(PKCS15_MF, Blob(path));
    } else if (!path.empty()) {
        record.error = "a path of odd length";
    }
    const ASN1::View ddo = valueOf(outer.value, discretionaryTemplateTag);
    addDiscretionary(ddo.empty() ? valueOf(outer.value, discretionaryTag) : ddo, record);
    if (!areWellFormed(outer.value)) record.error = "octets that are no data object";
    return record;
}

std::vector<DirectoryRecord> readDirectory(ISCardOS& os) {
    const DirectoryFile file = readDirectoryFile(os, directoryPath, ReadExtent::wholeFile);
    std::vector<DirectoryRecord> records;
    for (const RecordPlace& place : file.places) {
        records.push_back(directoryRecord(file.octetsAt(place)));
    }
    return records;
}

std::vector<DirectoryEntry> directoryEntries(ISCardOS& os) {
    std::vector<DirectoryEntry> entries;
    try {
        for (DirectoryRecord& record : readDirectory(os)) {
            if (record.entry) entries.push_back(std::move(*record.entry));
        }
    } catch (const SmartcardException&) {
        // A card need not have the file.
    }
    return entries;
}

const DirectoryEntry* findEntry(const std::vector<DirectoryEntry>& entries, const Blob& aid) {
    for (const DirectoryEntry& entry : entries) {
        if (beginsWith(entry.aid, aid)) return &entry;
    }
    return nullptr;
}

DirectoryEntry findInDirectory(ISCardOS& os, const Blob& aid) {
    const std::vector<DirectoryEntry> entries = directoryEntries(os);
    const DirectoryEntry* entry = findEntry(entries, aid);
    return entry == nullptr ? DirectoryEntry{} : *entry;
}

}  // namespace tovi
