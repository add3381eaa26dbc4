#include "tools/ApplicationFiles.h"

#include <algorithm>
#include <set>

#include "tools/Paths.h"
#include "tools/Text.h"
#include "tovi/asn1/Coding.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/pkcs15/PKCS15.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {
namespace {

/// Decodes the octets of a record; without a type they are shown as they are.
Segment record(const FileKind& kind, Segment segment) {
    segment.kind = Segment::Kind::record;
    if (kind.record == nullptr) return segment;
    ASN1::AnyValue value(*kind.record);
    ASN1::Error error;
    if (ASN1::decode(segment.octets, ASN1::AbstractData(value.type(), value.get()), error)) {
        segment.value = std::move(value);
    } else {
        segment.kind = Segment::Kind::undecodable;
        segment.error = ASN1::toString(error);
    }
    return segment;
}

Segment transparentSegment(const FileKind& kind, const FileEntry& entry, ASN1::View file) {
    Segment segment{.offset = entry.offset, .octets = file.subspan(entry.offset, entry.length)};
    switch (entry.kind) {
        case FileEntry::Kind::record:
        case FileEntry::Kind::broken:
            return record(kind, std::move(segment));
        case FileEntry::Kind::erased:
            segment.kind = Segment::Kind::erased;
            break;
        case FileEntry::Kind::padding:
            segment.kind = Segment::Kind::gap;
            break;
        case FileEntry::Kind::stale:
            segment.kind = Segment::Kind::stale;
            break;
    }
    return segment;
}

bool isUniformPadding(ASN1::View octets) {
    return std::all_of(octets.begin(), octets.end(),
                       [](std::uint8_t octet) { return octet == 0x00 || octet == 0xFF; });
}

/// A record of a linear file: the data object, and what stands behind it.
void addSlot(ApplicationFile& file, std::size_t slot, std::size_t recordLength) {
    const ASN1::View octets = file.file.slots[slot];
    if (recordLength > 0) {
        file.segments.push_back(
            record(*file.kind, Segment{.slot = slot + 1, .octets = octets.first(recordLength)}));
    }
    const ASN1::View rest = octets.subspan(recordLength);
    if (rest.empty() && recordLength > 0) return;
    file.segments.push_back(
        {.kind = isUniformPadding(rest) ? Segment::Kind::gap : Segment::Kind::stale,
         .slot = slot + 1,
         .offset = recordLength,
         .octets = rest});
}

void addSegments(ApplicationFile& file) {
    if (!file.file.isLinear()) {
        for (const FileEntry& entry : scanRecords(file.file.octets)) {
            file.segments.push_back(transparentSegment(*file.kind, entry, file.file.octets));
        }
        return;
    }
    std::vector<std::size_t> lengths(file.file.slots.size());
    for (const RecordPlace& place : file.file.places) lengths[place.start] = place.length;
    for (std::size_t slot = 0; slot < lengths.size(); ++slot) addSlot(file, slot, lengths[slot]);
}

/// The entries of EF(ODF) as the reading of the model takes them.
std::vector<Blob> directoryEntries(ISCardOS& os, const Blob& rootPath) {
    ProfileDFHandler handler(Blob(rootPath.begin() + 2, rootPath.end()));
    handler.SetFilePath(PKCS15_EF_ODF, nullptr);
    try {
        handler.ReadFile(&os, IGNORE_TAG, false);
    } catch (const SmartcardException&) {
        return {};  // EF(ODF) itself is reported with the reason
    }
    return handler.records();
}

/// The file that an entry names, its path as the entry has it.
std::optional<FileLocation> namedFile(const Blob& entry) {
    PKCS15::PKCS15Objects objects;
    ASN1::Error error;
    if (!ASN1::decode(entry, objects, error)) return std::nullopt;
    for (int choice = 0; choice <= 8; ++choice) {
        Blob path;
        if (getPath(objects, path, choice)) {
            return FileLocation{&directoryFileKind(static_cast<std::size_t>(choice)), path};
        }
    }
    return std::nullopt;
}

void readSegments(ISCardOS& os, const Blob& path, ApplicationFile& file) {
    file.readByRecords = readDirectoryFile(os, path, ReadExtent::records).places.size();
    file.file = readDirectoryFile(os, path, ReadExtent::wholeFile);
    addSegments(file);
}

}  // namespace

const FileKind tokenInfoFile{"TokenInfo", &PKCS15::TokenInfo::type};
const FileKind odfFile{"ODF", &PKCS15::PKCS15Objects::type};
const FileKind unusedSpaceFile{"UnusedSpace", &PKCS15::UnusedSpace::type};
const FileKind dirFile{"DIR", &PKCS15::DIRRecord::type};
const FileKind otherFile{};

const FileKind& directoryFileKind(std::size_t choice) {
    static const FileKind kinds[] = {
        {"PrKDF", &PKCS15::PrivateKeyType::type},
        {"PuKDF", &PKCS15::PublicKeyType::type},
        {"TrustedPuKDF", &PKCS15::PublicKeyType::type},
        {"SKDF", &PKCS15::SecretKeyType::type},
        {"CDF", &PKCS15::CertificateType::type},
        {"TrustedCDF", &PKCS15::CertificateType::type},
        {"UsefulCDF", &PKCS15::CertificateType::type},
        {"DODF", &PKCS15::DataType::type},
        {"AODF", &PKCS15::AuthenticationType::type},
    };
    return kinds[choice];
}

std::size_t ApplicationFile::count(Segment::Kind wanted) const {
    return static_cast<std::size_t>(
        std::count_if(segments.begin(), segments.end(),
                      [&](const Segment& segment) { return segment.kind == wanted; }));
}

std::string ApplicationFile::name() const {
    const std::string path = toHex(file.path);
    return kind->name.empty() ? "EF " + path : "EF(" + std::string(kind->name) + ") " + path;
}

std::vector<FileLocation> locateApplicationFiles(ISCardOS& os, const Blob& rootPath) {
    if (!PKCS15Container::selectApp(&os)) {
        throw SmartcardException("Failed to select PKCS15 AID", "tovi::locateApplicationFiles");
    }
    std::vector<FileLocation> files = {
        {&tokenInfoFile, absolutePath(rootPath, PKCS15_EF_TOKEN_INFO)},
        {&odfFile, absolutePath(rootPath, PKCS15_EF_ODF)}};
    std::set<Blob> seen;
    for (const Blob& entry : directoryEntries(os, rootPath)) {
        auto named = namedFile(entry);
        if (!named) continue;
        named->path = absolutePath(rootPath, named->path);
        named->isRepeated = !seen.insert(named->path).second;
        files.push_back(std::move(*named));
    }
    return files;
}

ApplicationFile readApplicationFile(ISCardOS& os, const FileLocation& location) {
    ApplicationFile file;
    file.kind = location.kind;
    file.isRepeated = location.isRepeated;
    try {
        if (!file.isRepeated) readSegments(os, location.path, file);
    } catch (const Exception& exception) {
        file.error = ErrorReport::of(exception);
    }
    file.file.path = location.path;
    return file;
}

std::vector<ApplicationFile> readApplicationFiles(ISCardOS& os, const Blob& rootPath) {
    std::vector<ApplicationFile> files;
    for (const FileLocation& location : locateApplicationFiles(os, rootPath)) {
        files.push_back(readApplicationFile(os, location));
    }
    return files;
}

std::string_view segmentName(Segment::Kind kind) {
    switch (kind) {
        case Segment::Kind::record:
            return "record";
        case Segment::Kind::undecodable:
            return "undecodable";
        case Segment::Kind::erased:
            return "erased";
        case Segment::Kind::gap:
            return "gap";
        case Segment::Kind::stale:
            return "stale";
    }
    return "";
}

}  // namespace tovi
