#include "tools/Capture.h"

#include <set>

#include "tools/Paths.h"
#include "tools/StoredValue.h"
#include "tools/Text.h"
#include "tovi/card/FileControl.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

/// Files are read through an ISCardOS that takes every path for what it says.
class Capturer {
public:
    Capturer(CardAccess& card, CapturedCard& captured)
        : card_(card), os_(card.files()), captured_(captured) {}

    void readDirectories() {
        const ApplicationPlace place = card_.place();
        for (const FileLocation& location : locations(place)) read(*location.kind, location.path);
        for (const FileLocation& location : optionalFiles(place)) {
            const bool isNew = read(*location.kind, location.path);
            if (isNew && isFileNotFound(captured_.files.back())) captured_.files.pop_back();
        }
    }

    void readValues() {
        std::vector<std::pair<Blob, bool>> values;
        for (const CapturedFile& file : captured_.files) {
            if (!file.error) addValues(file, values);
        }
        for (const auto& [path, isSecret] : values) {
            if (read(otherFile, path)) captured_.files.back().isSecret = isSecret;
        }
    }

private:
    /// A card without the application has EF(DIR) at most.
    std::vector<FileLocation> locations(const ApplicationPlace& place) {
        try {
            return locateApplicationFiles(os_, place);
        } catch (const SmartcardException& exception) {
            captured_.applicationError = ErrorReport::of(exception);
            return {};
        }
    }

    /// False for a file that was read before.
    bool read(const FileKind& kind, const Blob& path) {
        if (!seen_.insert(path).second) return false;
        CapturedFile& file = captured_.files.emplace_back();
        file.kind = &kind;
        try {
            file.file = readDirectoryFile(os_, path, ReadExtent::wholeFile);
        } catch (const SmartcardException& exception) {
            file.error = ErrorReport::of(exception);
            file.file = {};
            file.isSelected = selects(path, file.file.info);
        }
        file.file.path = path;
        return true;
    }

    bool selects(const Blob& path, FileInfo& info) {
        try {
            info = os_.selectFile(path);
            return info.structure != FileStructure::other;
        } catch (const SmartcardException&) {
            return false;
        }
    }

    static bool isFileNotFound(const CapturedFile& file) {
        return file.error && file.error->code == statusWordCode + 0x6A82;
    }

    /// The files that the records of a directory file name, and whether keys lie in them.
    void addValues(const CapturedFile& file, std::vector<std::pair<Blob, bool>>& values) const {
        const bool isSecret =
            file.kind == &directoryFileKind(0) || file.kind == &directoryFileKind(3);
        for (const Segment& segment : segmentsOf(*file.kind, file.file)) {
            if (!segment.value) continue;
            const StoredValue value = storedValueOf(*segment.value);
            if (value.kind != StoredValue::Kind::file || value.path.empty()) continue;
            values.emplace_back(absolutePath(captured_.root, value.path), isSecret);
        }
    }

    CardAccess& card_;
    ISCardOS& os_;
    CapturedCard& captured_;
    std::set<Blob> seen_;
};

/// The identifier that the card says its application has, or else the one that selected it.
Blob aidOf(CardAccess& card) {
    if (!card.knowsAid()) return {};
    constexpr unsigned char fileControlInformation = 0x00;  // P2 of SELECT
    try {
        const Blob response = card.os().selectApplication(PKCS15_AID, fileControlInformation);
        const Blob name = FileControl::parse(response).name;
        return beginsWith(name, card.aid()) ? name : card.aid();
    } catch (const SmartcardException&) {
        return {};
    }
}

DirectoryFile blankedValues(Redaction& redaction, const DirectoryFile& file) {
    DirectoryFile blanked = file;
    const Blob octets = redaction.value(file.octets);
    blanked.octets.assign(octets.begin(), octets.end());
    for (Blob& slot : blanked.slots) slot = redaction.value(slot);
    return blanked;
}

}  // namespace

std::string CapturedFile::name() const {
    const std::string path = toHex(file.path);
    return kind->name.empty() ? "EF " + path : "EF(" + std::string(kind->name) + ") " + path;
}

CapturedCard captureCard(CardAccess& card, CaptureExtent extent) {
    CapturedCard captured;
    captured.root = card.rootPath();
    captured.aid = aidOf(card);
    Capturer capturer(card, captured);
    capturer.readDirectories();
    if (extent == CaptureExtent::values) capturer.readValues();
    return captured;
}

void redact(CapturedCard& card) {
    Redaction redaction;
    for (CapturedFile& file : card.files) {
        if (file.error) continue;
        file.file = file.kind == &otherFile ? blankedValues(redaction, file.file)
                                            : redaction.file(*file.kind, file.file);
    }
}

}  // namespace tovi
