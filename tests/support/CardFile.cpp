#include "tests/support/CardFile.h"

#include <algorithm>

namespace tovi::test {

namespace {

using Kind = FileDescription::Kind;

std::uint8_t fillOf(FileShape shape) { return shape == FileShape::filledWithFF ? 0xFF : 0x00; }

void addLinearFile(VirtualCard& card, const Blob& path, FileShape shape,
                   const std::vector<Blob>& records, std::size_t room, std::size_t recordSize) {
    const bool isFixed = shape == FileShape::linearFixed;
    VirtualFile& file = card.addLinear(path, isFixed ? Kind::linearFixed : Kind::linearVariable,
                                       recordSize, records.size() + room);
    file.records = records;
    if (!isFixed) return;
    file.records.resize(records.size() + room);
    for (Blob& record : file.records) record.resize(recordSize, 0x00);
}

bool isFree(const Blob& slot) {
    return std::all_of(slot.begin(), slot.end(), [](std::uint8_t octet) { return octet == 0x00; });
}

std::string loosenessOfSlots(const VirtualFile& file, FileShape shape,
                             const std::vector<Blob>& records) {
    std::vector<Blob> found = file.records;
    std::erase_if(found, isFree);
    if (found.size() != records.size()) return "another number of records";
    for (std::size_t i = 0; i < records.size(); ++i) {
        Blob expected = records[i];
        if (shape == FileShape::linearFixed) expected.resize(file.description.recordSize, 0x00);
        if (found[i] != expected) return "another record " + std::to_string(i);
    }
    return {};
}

}  // namespace

bool isLinear(FileShape shape) {
    return shape == FileShape::linearVariable || shape == FileShape::linearFixed;
}

std::string nameOf(FileShape shape) {
    switch (shape) {
        case FileShape::filledWith00:
            return "filled with 00";
        case FileShape::filledWithFF:
            return "filled with FF";
        case FileShape::linearVariable:
            return "linear, of variable size";
        default:
            return "linear, of fixed size";
    }
}

void addDirectoryFile(VirtualCard& card, const Blob& path, FileShape shape,
                      const std::vector<Blob>& records, std::size_t room, std::size_t recordSize) {
    if (isLinear(shape)) return addLinearFile(card, path, shape, records, room, recordSize);
    const Blob contents = join({join(records), times(room, fillOf(shape))});
    card.addTransparent(path, contents.size(), contents);
}

std::string looseness(const VirtualCard& card, const Blob& path, FileShape shape,
                      const std::vector<Blob>& records) {
    const VirtualFile* file = card.files().find(path);
    if (!file) return "no file";
    if (isLinear(shape)) return loosenessOfSlots(*file, shape, records);
    const Blob packed = join(records);
    const Blob& contents = file->contents;
    if (contents.size() < packed.size() ||
        !std::equal(packed.begin(), packed.end(), contents.begin()))
        return "the records do not stand one behind the other";
    if (contents.size() == packed.size()) return {};
    // A file that was full to the last octet does not tell what it is filled with.
    const std::uint8_t fill = contents.back();
    if (fill != 0x00 && fill != fillOf(shape)) return "padding of another value";
    for (std::size_t i = packed.size(); i < contents.size(); ++i)
        if (contents[i] != fill) return "no padding at octet " + std::to_string(i);
    return {};
}

}  // namespace tovi::test
