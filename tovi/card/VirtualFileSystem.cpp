#include "tovi/card/VirtualFileSystem.h"

#include <algorithm>

#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

constexpr std::uint16_t masterFileId = 0x3F00;

std::uint16_t identifier(ASN1::View path) {
    const std::size_t last = path.size() - 2;
    return static_cast<std::uint16_t>(path[last] << 8 | path[last + 1]);
}

bool startsWith(ASN1::View octets, ASN1::View start) {
    return octets.size() >= start.size() && std::equal(start.begin(), start.end(), octets.begin());
}

}  // namespace

std::uint16_t VirtualFile::fid() const { return identifier(description.path); }

VirtualFileSystem::VirtualFileSystem() {
    files_.emplace_back().description.path = {masterFileId >> 8, masterFileId & 0xFF};
}

VirtualFileSystem::VirtualFileSystem(const VirtualFileSystem& other) : files_(other.files_) {
    for (VirtualFile& file : files_) {
        if (file.parent == nullptr) continue;
        const Blob& path = file.description.path;
        file.parent = find(ASN1::View(path).first(path.size() - 2));
        index(file);
    }
}

VirtualFileSystem& VirtualFileSystem::operator=(const VirtualFileSystem& other) {
    VirtualFileSystem copy(other);
    files_.swap(copy.files_);
    byFid_.swap(copy.byFid_);
    return *this;
}

VirtualFile& VirtualFileSystem::add(const FileDescription& description) {
    const ASN1::View path = description.path;
    if (description.path == masterFile().description.path &&
        description.kind == VirtualFile::Kind::df) {
        masterFile().description = description;
        return masterFile();
    }
    VirtualFile* folder = path.size() > 2 ? find(path.first(path.size() - 2)) : nullptr;
    if (folder == nullptr || !folder->isFolder() || find(path) != nullptr)
        throw LogicalException("invalid file description", "VirtualFileSystem::add");
    VirtualFile& file = files_.emplace_back();
    file.description = description;
    file.parent = folder;
    if (description.kind == VirtualFile::Kind::transparent) file.contents.resize(description.size);
    index(file);
    return file;
}

void VirtualFileSystem::index(VirtualFile& file) { byFid_[{file.parent, file.fid()}] = &file; }

VirtualFile* VirtualFileSystem::find(ASN1::View path) {
    if (path.size() < 2 || path.size() % 2 != 0 || identifier(path.first(2)) != masterFileId)
        return nullptr;
    VirtualFile* file = &masterFile();
    for (path = path.subspan(2); file != nullptr && !path.empty(); path = path.subspan(2))
        file = child(*file, identifier(path.first(2)));
    return file;
}

const VirtualFile* VirtualFileSystem::find(ASN1::View path) const {
    return const_cast<VirtualFileSystem*>(this)->find(path);
}

VirtualFile* VirtualFileSystem::child(const VirtualFile& folder, std::uint16_t fid) {
    const auto found = byFid_.find({&folder, fid});
    return found == byFid_.end() ? nullptr : found->second;
}

VirtualFile* VirtualFileSystem::bySfi(const VirtualFile& folder, std::uint8_t sfi) {
    for (VirtualFile& file : files_)
        if (file.parent == &folder && file.description.sfi == sfi) return &file;
    return nullptr;
}

std::vector<VirtualFile*> VirtualFileSystem::byAid(ASN1::View aid) {
    std::vector<VirtualFile*> found;
    for (VirtualFile& file : files_)
        if (!file.description.aid.empty() && startsWith(file.description.aid, aid))
            found.push_back(&file);
    return found;
}

}  // namespace tovi
