#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <utility>
#include <vector>

#include "tovi/Export.h"
#include "tovi/card/CardDescription.h"

namespace tovi {

/// One file of a virtual card and what it holds.
struct TOVI_API VirtualFile {
    /// DF, or the structure of an elementary file.
    using Kind = FileDescription::Kind;

    FileDescription description;    ///< its line in CARD
    VirtualFile* parent = nullptr;  ///< null for the master file
    Blob contents;                  ///< of a transparent file: description.size octets
    std::vector<Blob> records;      ///< of a linear file

    /// The file identifier: the last step of the path.
    std::uint16_t fid() const;
    /// Whether it is a DF, or a linear elementary file.
    bool isFolder() const { return description.kind == Kind::df; }
    bool isLinear() const {
        return description.kind == Kind::linearVariable || description.kind == Kind::linearFixed;
    }
};

/// The files of a virtual card. A master file is always there. Copying copies all contents.
class TOVI_API VirtualFileSystem {
public:
    VirtualFileSystem();
    VirtualFileSystem(const VirtualFileSystem& other);
    VirtualFileSystem& operator=(const VirtualFileSystem& other);

    /// Adds an empty file: 00 throughout, or no record yet. 3F00 itself only gets its options. The
    /// reference stays good as long as the file system is not assigned to.
    ///
    /// The folder of the file must be there and the path be free, else LogicalException "invalid
    /// file description".
    VirtualFile& add(const FileDescription& description);

    /// The master file, 3F00.
    VirtualFile& masterFile() { return files_.front(); }
    const VirtualFile& masterFile() const { return files_.front(); }

    /// The file at an absolute path, "3F00" first; null when there is none.
    VirtualFile* find(ASN1::View path);
    const VirtualFile* find(ASN1::View path) const;
    /// The file `fid` directly in `folder`; null when there is none.
    VirtualFile* child(const VirtualFile& folder, std::uint16_t fid);
    /// The elementary file of `folder` with that short identifier; null when there is none.
    VirtualFile* bySfi(const VirtualFile& folder, std::uint8_t sfi);
    /// The DFs whose AID begins with `aid`, in the order they were added.
    std::vector<VirtualFile*> byAid(ASN1::View aid);

    /// All files, the master file first.
    const std::deque<VirtualFile>& files() const { return files_; }

private:
    void index(VirtualFile& file);

    std::deque<VirtualFile> files_;
    std::map<std::pair<const VirtualFile*, std::uint16_t>, VirtualFile*> byFid_;
};

}  // namespace tovi
