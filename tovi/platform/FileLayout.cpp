#include "tovi/platform/FileLayout.h"

#include <algorithm>

#include "tovi/platform/GapMarks.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {
namespace {

using Kind = FileEntry::Kind;
using Item = FileLayout::Item;

bool isJunk(const FileEntry& entry) {
    return entry.kind == Kind::erased || entry.kind == Kind::stale;
}

/// The value of padding: the file's last octet tells it, unless that belongs to something else.
std::uint8_t fillOf(ASN1::View file, const std::vector<FileEntry>& entries) {
    if (entries.empty()) return 0x00;
    const Kind last = entries.back().kind;
    const bool tells = last == Kind::padding || last == Kind::broken;
    return tells && file.back() == 0xFF ? 0xFF : 0x00;
}

class Builder {
public:
    Builder(ASN1::View file, const RecordChange& change)
        : file_(file), change_(change), entries_(scanRecords(file)) {}

    std::optional<FileLayout> build() {
        layout_.fill = fillOf(file_, entries_);
        addRecords();
        applyChange();
        setTargets();
        if (layout_.end > layout_.limit) return std::nullopt;
        clearEnd();
        paintTarget();
        return std::move(layout_);
    }

private:
    void addRecords() {
        layout_.limit = file_.size();
        for (const FileEntry& entry : entries_) {
            if (!entry.isRecord()) continue;
            const bool isChanged = changesExisting() && layout_.items.size() == change_.place;
            if (entry.kind == Kind::broken && !isChanged) {
                layout_.isWalled = true;
                layout_.limit = entry.offset;
                return;
            }
            Item item;
            item.at = entry.offset;
            item.length = entry.length;
            item.octets = file_.subspan(entry.offset, entry.length);
            isPacked_ = isPacked_ && item.at == layout_.oldEnd;
            layout_.oldEnd = item.end();
            layout_.items.push_back(item);
        }
    }

    bool changesExisting() const {
        return change_.kind == RecordChange::Kind::replace ||
               change_.kind == RecordChange::Kind::remove;
    }

    void applyChange() {
        auto& items = layout_.items;
        layout_.changed = items.size();
        if (change_.kind == RecordChange::Kind::none) return;
        layout_.changed = std::min(change_.place, items.size());
        if (change_.kind == RecordChange::Kind::insert)
            items.insert(items.begin() + static_cast<std::ptrdiff_t>(layout_.changed), Item());
        const bool isRemoved = change_.kind == RecordChange::Kind::remove;
        items[layout_.changed].octets = isRemoved ? ASN1::View() : change_.record;
    }

    void setTargets() {
        for (Item& item : layout_.items) {
            item.target = layout_.end;
            layout_.end = item.targetEnd();
            const bool isChanged = &item == layout_.items.data() + layout_.changed;
            item.isPlaced = item.at == item.target && !isChanged;
        }
        layout_.keepsPlaces = isPacked_ && !hasJunkAtEnd() && layout_.end == layout_.oldEnd;
    }

    bool hasJunkAtEnd() const {
        return std::any_of(entries_.begin(), entries_.end(), [this](const FileEntry& entry) {
            return isJunk(entry) && entry.offset >= layout_.oldEnd;
        });
    }

    void clearEnd() {
        layout_.cleared.assign(file_.begin(), file_.end());
        if (layout_.keepsPlaces) return;
        for (const FileEntry& entry : entries_)
            if (isJunk(entry) && entry.offset >= layout_.oldEnd)
                std::fill_n(layout_.cleared.begin() + entry.offset, entry.length, layout_.fill);
    }

    void paintTarget() {
        auto& target = layout_.target;
        target = layout_.cleared;
        for (const Item& item : layout_.items)
            std::copy(item.octets.begin(), item.octets.end(), target.begin() + at(item.target));
        if (layout_.keepsPlaces) return;
        if (layout_.isWalled) {
            paintGap(std::span(target).subspan(layout_.end, layout_.limit - layout_.end));
        } else if (layout_.end < layout_.oldEnd) {
            std::fill(target.begin() + at(layout_.end), target.begin() + at(layout_.oldEnd),
                      layout_.fill);
        }
    }

    static std::ptrdiff_t at(std::size_t offset) { return static_cast<std::ptrdiff_t>(offset); }

    ASN1::View file_;
    const RecordChange& change_;
    std::vector<FileEntry> entries_;
    FileLayout layout_;
    bool isPacked_ = true;
};

}  // namespace

std::optional<FileLayout> FileLayout::of(ASN1::View file, const RecordChange& change) {
    return Builder(file, change).build();
}

}  // namespace tovi
