// SELECT (ISO/IEC 7816-4:2005, 7.1.1).
#include "tovi/card/FileControl.h"
#include "tovi/card/StatusWord.h"
#include "tovi/card/VirtualCard.h"

#include <algorithm>

namespace tovi {
namespace {

enum Occurrence : std::uint8_t { first, last, next, previous };

constexpr std::uint8_t wantedData = 0x0C;
constexpr std::uint8_t information = 0x00;
constexpr std::uint8_t parameters = 0x04;
constexpr std::uint8_t nothing = 0x0C;
constexpr std::uint8_t occurrenceBits = 0x03;
constexpr std::uint8_t fcpTag = 0x62;
constexpr std::uint8_t fciTag = 0x6F;

std::uint16_t number(ASN1::View identifier) {
    return static_cast<std::uint16_t>(identifier[0] << 8 | identifier[1]);
}

FileStructure structure(FileDescription::Kind kind) {
    switch (kind) {
        case FileDescription::Kind::transparent:
            return FileStructure::transparent;
        case FileDescription::Kind::linearFixed:
            return FileStructure::linearFixed;
        case FileDescription::Kind::linearVariable:
            return FileStructure::linearVariable;
        default:
            return FileStructure::other;
    }
}

FileControl controlOf(const VirtualFile& file) {
    FileControl control;
    control.descriptor = fileDescriptor(structure(file.description.kind));
    control.fid = file.fid();
    control.name = file.description.aid;
    control.sfi = file.description.sfi;
    if (file.description.kind == FileDescription::Kind::transparent)
        control.dataSize = file.contents.size();
    if (file.isLinear()) {
        control.recordSize = file.description.recordSize;
        control.recordCount = file.records.size();
    }
    return control;
}

}  // namespace

ResponseApdu VirtualCard::select(const CommandApdu& command) {
    const std::uint8_t wanted = command.p2 & wantedData;
    const bool known = wanted == information || wanted == parameters || wanted == nothing;
    if ((command.p2 & ~(wantedData | occurrenceBits)) != 0 || !known)
        return {{}, StatusWord::wrongParameters};
    std::uint16_t status = StatusWord::fileNotFound;
    VirtualFile* file = findForSelect(command, status);
    if (file == nullptr) return {{}, status};
    makeCurrent(*file);
    if (wanted == nothing || !settings_.fileControl) return {{}, StatusWord::success};
    return {controlOf(*file).encode(wanted == information ? fciTag : fcpTag), StatusWord::success};
}

/// Null with the status word that says why.
VirtualFile* VirtualCard::findForSelect(const CommandApdu& command, std::uint16_t& status) {
    const ASN1::View data = command.data;
    const auto occurrence = static_cast<std::uint8_t>(command.p2 & occurrenceBits);
    const auto refuse = [&status](std::uint16_t reason) {
        status = reason;
        return nullptr;
    };
    if (command.p1 != 0x04 && occurrence != first) return refuse(StatusWord::wrongParameters);
    switch (command.p1) {
        case 0x00:
            if (data.empty()) return &files_.masterFile();
            if (data.size() != 2) return refuse(StatusWord::lengthAgainstParameters);
            return findByIdentifier(data);
        case 0x01:
        case 0x02: {
            if (data.size() != 2) return refuse(StatusWord::lengthAgainstParameters);
            VirtualFile* file = files_.child(*folder_, number(data));
            return file != nullptr && file->isFolder() == (command.p1 == 0x01) ? file : nullptr;
        }
        case 0x03:
            if (!data.empty()) return refuse(StatusWord::lengthAgainstParameters);
            return folder_->parent;
        case 0x04:
            if (data.empty()) return refuse(StatusWord::lengthAgainstParameters);
            return findByName(data, occurrence);
        case 0x08:
        case 0x09:
            if (!settings_.selectByPath) break;
            if (data.empty() || data.size() % 2 != 0)
                return refuse(StatusWord::lengthAgainstParameters);
            return findByPath(command.p1 == 0x08 ? files_.masterFile() : *folder_, data);
        default:
            break;
    }
    return refuse(StatusWord::wrongParameters);
}

/// The master file, then what the current DF holds, itself, its parent, and its sibling DFs.
VirtualFile* VirtualCard::findByIdentifier(ASN1::View identifier) {
    const std::uint16_t fid = number(identifier);
    if (fid == files_.masterFile().fid()) return &files_.masterFile();
    if (VirtualFile* child = files_.child(*folder_, fid)) return child;
    if (folder_->fid() == fid) return folder_;
    VirtualFile* parent = folder_->parent;
    if (parent == nullptr || parent->fid() == fid) return parent;
    VirtualFile* sibling = files_.child(*parent, fid);
    return sibling != nullptr && sibling->isFolder() ? sibling : nullptr;
}

VirtualFile* VirtualCard::findByPath(const VirtualFile& from, ASN1::View path) {
    const VirtualFile* folder = &from;
    VirtualFile* found = nullptr;
    for (; !path.empty(); path = path.subspan(2)) {
        found = files_.child(*folder, number(path));
        if (found == nullptr) return nullptr;
        folder = found;
    }
    return found;
}

/// Among the applications that begin with `name`, next and previous count from the current one.
VirtualFile* VirtualCard::findByName(ASN1::View name, std::uint8_t occurrence) {
    const std::vector<VirtualFile*> found = files_.byAid(name);
    if (found.empty()) return nullptr;
    if (occurrence == first) return found.front();
    if (occurrence == last) return found.back();
    const auto current = std::find(found.begin(), found.end(), folder_);
    if (occurrence == next) {
        if (current == found.end()) return found.front();
        return current + 1 == found.end() ? nullptr : *(current + 1);
    }
    if (current == found.end()) return found.back();
    return current == found.begin() ? nullptr : *(current - 1);
}

}  // namespace tovi
