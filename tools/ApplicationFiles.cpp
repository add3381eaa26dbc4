#include "tools/ApplicationFiles.h"

#include <algorithm>
#include <set>

#include "tools/Paths.h"
#include "tools/Text.h"
#include "tovi/asn1/Coding.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

const Blob unusedSpacePath = {0x50, 0x33};  // PKCS#15 v1.1, 5.5

/// The entries of EF(ODF) as the reading of the model takes them.
std::vector<Blob> directoryEntries(ISCardOS& os, const ApplicationPlace& place) {
    ProfileDFHandler handler(Blob(place.root.begin() + 2, place.root.end()));
    handler.SetFilePath(place.odf, nullptr);
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
    file.segments = segmentsOf(*file.kind, file.file);
    if (file.kind == &odfFile && file.readByRecords == 1) {
        file.readByRecords = openOuterSequence(file.segments);
    }
}

}  // namespace

std::size_t ApplicationFile::count(Segment::Kind wanted) const {
    return static_cast<std::size_t>(
        std::count_if(segments.begin(), segments.end(),
                      [&](const Segment& segment) { return segment.kind == wanted; }));
}

std::size_t ApplicationFile::recordCount() const {
    return static_cast<std::size_t>(
        std::count_if(segments.begin(), segments.end(),
                      [](const Segment& segment) { return segment.isRecord(); }));
}

std::size_t ApplicationFile::octetsFree() const {
    std::size_t free = 0;
    for (const Segment& segment : segments) {
        const bool isUsed = segment.isRecord() || segment.kind == Segment::Kind::wrapper;
        if (!isUsed) free += segment.octets.size();
    }
    return free;
}

std::string ApplicationFile::name() const {
    const std::string path = toHex(file.path);
    return kind->name.empty() ? "EF " + path : "EF(" + std::string(kind->name) + ") " + path;
}

ApplicationPlace::ApplicationPlace(const Blob& application, const DirectoryEntry& entry)
    : root(application) {
    const auto place = [&](const Blob& said, const Blob& usual) {
        return absolutePath(root, said.empty() ? usual : said);
    };
    odf = place(entry.odf, PKCS15_EF_ODF);
    tokenInfo = place(entry.tokenInfo, PKCS15_EF_TOKEN_INFO);
    unusedSpace = place(entry.unusedSpace, unusedSpacePath);
}

std::vector<FileLocation> optionalFiles(const ApplicationPlace& place) {
    return {{&unusedSpaceFile, place.unusedSpace}, {&dirFile, Blob{0x3F, 0x00, 0x2F, 0x00}}};
}

bool isAbsent(const ApplicationFile& file) {
    constexpr std::int64_t fileNotFound = statusWordCode + 0x6A82;
    const bool mayBeAbsent = file.kind == &unusedSpaceFile || file.kind == &dirFile;
    return mayBeAbsent && file.error && file.error->code == fileNotFound;
}

std::string_view structureName(FileStructure structure) {
    switch (structure) {
        case FileStructure::transparent:
            return "transparent";
        case FileStructure::linearFixed:
            return "linear-fixed";
        case FileStructure::linearVariable:
            return "linear";
        case FileStructure::other:
            return "other";
    }
    return "";
}

std::vector<FileLocation> locateApplicationFiles(ISCardOS& os, const ApplicationPlace& place) {
    if (!PKCS15Container::selectApp(&os)) {
        throw SmartcardException("Failed to select PKCS15 AID", "tovi::locateApplicationFiles");
    }
    std::vector<FileLocation> files = {{&tokenInfoFile, place.tokenInfo}, {&odfFile, place.odf}};
    std::set<Blob> seen;
    for (const Blob& entry : directoryEntries(os, place)) {
        auto named = namedFile(entry);
        if (!named) continue;
        named->path = absolutePath(place.root, named->path);
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

std::vector<ApplicationFile> readApplicationFiles(ISCardOS& os, const ApplicationPlace& place) {
    std::vector<ApplicationFile> files;
    for (const FileLocation& location : locateApplicationFiles(os, place)) {
        files.push_back(readApplicationFile(os, location));
    }
    return files;
}

}  // namespace tovi
