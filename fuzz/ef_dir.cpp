// EF(DIR) of any card: every record is shown with what is wrong with it, and what it says can be
// followed, whatever it says.
//
// Input: the contents of EF(DIR).
#include <cstddef>
#include <cstdint>

#include "fuzz/require.h"
#include "tools/ApplicationSearch.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/card/VirtualCard.h"

namespace {

using tovi::Blob;

constexpr std::size_t mostOctets = 4096;  // enough for any entry to matter

void requireUsable(const tovi::DirectoryEntry& entry) {
    require(!entry.aid.empty());
    for (const Blob* path : {&entry.application, &entry.odf, &entry.tokenInfo, &entry.unusedSpace})
        require(path->size() % 2 == 0);
    require(entry.application.empty() || entry.application[0] == 0x3F);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > mostOctets) return 0;
    tovi::VirtualCard card;
    card.addTransparent(Blob{0x3F, 0x00, 0x2F, 0x00}, size, Blob(data, data + size));
    card.addFolder(Blob{0x3F, 0x00, 0x50, 0x15});
    tovi::VirtualCardChannel channel(card);
    tovi::ISO7816CardOS os(channel);
    std::size_t entries = 0;
    for (const tovi::DirectoryRecord& record : tovi::readDirectory(os)) {
        require(record.entry || !record.error.empty());
        if (!record.entry) continue;
        requireUsable(*record.entry);
        ++entries;
    }
    require(tovi::directoryEntries(os).size() == entries);
    const tovi::FoundApplication found = tovi::findApplication(os, nullptr, {});
    require(found.path.size() >= 2 && found.path.size() % 2 == 0);
    return 0;
}
