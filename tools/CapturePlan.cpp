#include <algorithm>
#include <set>

#include "tools/Capture.h"
#include "tools/Text.h"
#include "tovi/card/CardFolderError.h"

namespace tovi {
namespace {

using Kind = FileDescription::Kind;

constexpr std::size_t roomOfLinear = 0x10000;  // octets

std::size_t longestRecord(const DirectoryFile& file) {
    std::size_t longest = 1;
    for (const Blob& slot : file.slots) longest = std::max(longest, slot.size());
    return longest;
}

/// Records of one size each, as a fixed size makes them.
bool areOfOneSize(const std::vector<Blob>& records) {
    return std::all_of(records.begin(), records.end(),
                       [&](const Blob& record) { return record.size() == records[0].size(); });
}

FileDescription describedLinear(const DirectoryFile& file) {
    FileDescription described;
    const bool isFixed = file.info.structure == FileStructure::linearFixed;
    described.kind = isFixed && areOfOneSize(file.slots) ? Kind::linearFixed : Kind::linearVariable;
    described.recordSize = longestRecord(file);
    if (described.kind == Kind::linearVariable) {
        described.recordSize = std::max(
            described.recordSize, std::min(file.info.recordSize, CardDescription::maxRecordSize));
    }
    // How many more there is room for, no card tells.
    described.size = std::max(file.slots.size(), std::min(CardDescription::maxRecords,
                                                          roomOfLinear / described.recordSize));
    return described;
}

FileDescription describedFile(const CapturedFile& captured) {
    const DirectoryFile& file = captured.file;
    FileDescription described;
    if (captured.error) {
        const bool isLinear = file.isLinear();
        described.kind = isLinear ? Kind::linearVariable : Kind::transparent;
        described.size = isLinear ? 0 : std::min(file.info.size, CardDescription::maxFileSize);
        described.recordSize = isLinear ? 1 : 0;
        described.read.kind = AccessRule::Kind::never;
    } else if (file.isLinear()) {
        described = describedLinear(file);
    } else {
        described.kind = Kind::transparent;
        described.size = file.octets.size();
    }
    described.path = file.path;
    return described;
}

FileContents contentsOf(const CapturedFile& captured) {
    FileContents contents;
    if (captured.error) return contents;
    contents.octets.assign(captured.file.octets.begin(), captured.file.octets.end());
    contents.records = captured.file.slots;
    return contents;
}

/// Fills a plan file by file.
class Planner {
public:
    explicit Planner(const CapturedCard& card) : card_(card) {}

    CardPlan plan() {
        addFolder({0x3F, 0x00});
        if (!card_.applicationError) addFolders(card_.root, card_.root.size());
        for (const CapturedFile& file : card_.files) add(file);
        return std::move(plan_);
    }

private:
    void add(const CapturedFile& file) {
        if (file.error) remark(file, file.error->line());
        if (file.error && !file.isSelected) return;
        try {
            addFolders(file.file.path, file.file.path.size() - 2);
            plan_.card.add(describedFile(file));
            plan_.contents[pathName(file.file.path)] = contentsOf(file);
        } catch (const CardFolderError& error) {
            remark(file, error.text());  // no folder can hold it
        }
    }

    void remark(const CapturedFile& file, const std::string& reason) {
        plan_.card.addComment(forTerminal(file.name() + ": not captured: " + reason));
    }

    /// The DFs of the first `size` octets of a path.
    void addFolders(const Blob& path, std::size_t size) {
        for (std::size_t end = 2; end <= size; end += 2)
            addFolder(Blob(ASN1::View(path).first(end)));
    }

    void addFolder(const Blob& path) {
        if (folders_.count(path) > 0) return;
        FileDescription folder;
        folder.path = path;
        if (path == card_.root && !card_.applicationError) folder.aid = card_.aid;
        plan_.card.add(folder);
        folders_.insert(path);
    }

    const CapturedCard& card_;
    CardPlan plan_;
    std::set<Blob> folders_;
};

}  // namespace

CardPlan planOf(const CapturedCard& card) { return Planner(card).plan(); }

}  // namespace tovi
