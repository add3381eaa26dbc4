// Whatever a file holds, blanking it leaves its size, its records and their places; what decoded
// decodes, what did not does not.
//
// Input: the kind of the file in one octet (0 to 8 a directory file, then TokenInfo, ODF, DIR,
// UnusedSpace, a value), and its contents.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/require.h"
#include "tools/Redaction.h"
#include "tools/Segment.h"

namespace {

constexpr std::uint8_t directoryKinds = 9;

const tovi::FileKind* kindOf(std::uint8_t number) {
    if (number < directoryKinds) return &tovi::directoryFileKind(number);
    const tovi::FileKind* others[] = {&tovi::tokenInfoFile, &tovi::odfFile, &tovi::dirFile,
                                      &tovi::unusedSpaceFile};
    const std::size_t index = number - directoryKinds;
    return index < std::size(others) ? others[index] : nullptr;
}

void requireSameStructure(const tovi::FileKind& kind, const tovi::DirectoryFile& before,
                          const tovi::DirectoryFile& after) {
    const auto old = segmentsOf(kind, before), fresh = segmentsOf(kind, after);
    require(old.size() == fresh.size());
    for (std::size_t i = 0; i < old.size(); ++i) {
        require(old[i].kind == fresh[i].kind && old[i].offset == fresh[i].offset);
        require(old[i].octets.size() == fresh[i].octets.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    tovi::Redaction redaction;
    const tovi::FileKind* kind = kindOf(data[0]);
    if (kind == nullptr) {
        const tovi::Blob blanked = redaction.value(tovi::Blob(data + 1, data + size));
        require(blanked.size() == size - 1);
        require(redaction.value(blanked).size() == size - 1);
        return 0;
    }
    tovi::DirectoryFile file;
    file.octets.assign(data + 1, data + size);
    file.size = size - 1;
    file.isWhole = true;
    const tovi::DirectoryFile blanked = redaction.file(*kind, file);
    require(blanked.octets.size() == file.octets.size());
    requireSameStructure(*kind, file, blanked);
    return 0;
}
