#include "tovi/interfaces/ProfileDFHandler.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/platform/DirectoryFile.h"
#include "tovi/platform/OuterSequence.h"
#include "tovi/platform/ProfileDFState.h"

namespace tovi {
namespace {

constexpr const char* HERE = "ProfileDFHandler::ReadFile";

constexpr std::uint8_t masterFile[] = {0x3F, 0x00};
constexpr std::uint8_t currentDF[] = {0x3F,
                                      0xFF};  // reserved for paths (ISO/IEC 7816-4:2005, 5.3.1)

bool beginsWith(ASN1::View path, ASN1::View fileIdentifier) {
    return path.size() >= fileIdentifier.size() &&
           std::equal(fileIdentifier.begin(), fileIdentifier.end(), path.begin());
}

/// `path` from the master file on; a relative one begins at `parent`.
Blob absolutePath(ASN1::View parent, ASN1::View path) {
    if (beginsWith(path, masterFile)) return path;
    if (beginsWith(path, currentDF)) path = path.subspan(std::size(currentDF));
    Blob absolute = parent;
    absolute.append(path);
    return absolute;
}

bool isFilePath(ASN1::View path) { return !path.empty() && path.size() % 2 == 0; }

void countRecords(DirectoryFile& file, unsigned char tag) {
    for (RecordPlace& place : file.places)
        place.counted = tag == IGNORE_TAG || file.octetsAt(place)[0] == tag;
}

std::vector<Blob> countedRecords(const DirectoryFile& file) {
    std::vector<Blob> records;
    records.reserve(file.places.size());
    for (const RecordPlace& place : file.places)
        if (place.counted) records.emplace_back(file.octetsAt(place));
    return records;
}

/// The entries alone where one outer SEQUENCE holds them.
std::vector<Blob> unwrapped(std::vector<Blob> records) {
    if (records.size() != 1) return records;
    std::vector<Blob> entries;
    for (const FileEntry& entry : entriesInOuterSequence(records[0]))
        if (entry.isRecord())
            entries.emplace_back(ASN1::View(records[0]).subspan(entry.offset, entry.length));
    return entries.empty() ? records : entries;
}

}  // namespace

ProfileDFHandler::ProfileDFHandler(const Blob& appPath) : state_(std::make_unique<State>()) {
    state_->application = absolutePath(masterFile, appPath);
}

ProfileDFHandler::~ProfileDFHandler() = default;

void ProfileDFHandler::BeginRound() {
    state_->files.clear();
    state_->records.clear();
}

std::size_t ProfileDFHandler::RecordCount() const { return state_->files.count(); }

void ProfileDFHandler::SetFilePath(const Blob& path, const char* /*name*/) {
    state_->path = path.empty() ? Blob() : absolutePath(state_->application, path);
}

void ProfileDFHandler::ReadFile(ISCardOS* os, unsigned char tag, bool flag) {
    State& state = *state_;
    state.records.clear();
    if (os == nullptr) throw SmartcardException("no card", HERE);
    if (!isFilePath(state.path)) throw SmartcardException("invalid file path", HERE);
    if (flag) state.files.beginReading(state.path);

    DirectoryFile file = readDirectoryFile(*os, state.path, ReadExtent::records);
    countRecords(file, tag);
    std::vector<Blob> records = countedRecords(file);
    if (flag) {
        state.files.add(std::move(file));
    } else if (tag == IGNORE_TAG) {
        records = unwrapped(std::move(records));
    }
    state.records = std::move(records);
}

const std::vector<Blob>& ProfileDFHandler::records() const { return state_->records; }

}  // namespace tovi
