// How many commands, and how many octets each way, reading each of the test cards takes; beside it
// the least that would do. No clock: a contactless card answers a command in some 20 ms whatever we
// compute.
//
// The least is for a reader with short commands that knows no more than it must:
//   - one SELECT of the application by its AID;
//   - one SELECT for EF(TokenInfo), EF(ODF) and each file that the ODF names;
//   - of a transparent file, as many responses of 256 octets as hold its records and, where the
//     file goes on behind them, one octet more, without which nobody knows that no record follows;
//   - of a linear file, one READ RECORD for each record.
// An empty file that says so when it is selected need not be read. Nor what lies behind 64 octets
// of padding of one value: that much of it at the end of a response is taken for the end of the
// records. Less is not, which may cost a command more than the least.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/HeldContainer.h"
#include "tovi/card/CardFolder.h"
#include "tovi/card/CountingChannel.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/platform/RecordScanner.h"

namespace {

using tovi::Blob;
using tovi::VirtualFile;

constexpr std::size_t responseSize = 256;
constexpr std::size_t endingPadding = 64;
constexpr std::uint8_t selectInstruction = 0xA4;
constexpr std::uint16_t odfFID = 0x5031;

/// The folder of the application: that of the first EF(ODF) at its usual place; null for none.
VirtualFile* applicationFolder(tovi::VirtualCard& card) {
    for (const VirtualFile& file : card.files().files()) {
        const VirtualFile* folder = file.parent;
        if (!folder || folder == &card.files().masterFile() || file.isFolder()) continue;
        if (file.fid() == odfFID) return card.files().find(folder->description.path);
    }
    return nullptr;
}

/// The path of the application below the master file; the usual one when the card has none. One
/// that goes by another AID, or by its path alone, is given the usual AID here: to select it costs
/// one command either way, once EF(DIR) has told of it.
Blob applicationOn(tovi::VirtualCard& card) {
    const auto named = card.files().byAid(tovi::PKCS15_AID);
    VirtualFile* const folder = named.empty() ? applicationFolder(card) : named.front();
    if (!folder) return tovi::PKCS15_DF;
    folder->description.aid = tovi::PKCS15_AID;
    return Blob(ASN1::View(folder->description.path).subspan(tovi::PKCS15_MF.size()));
}

bool endsReading(const VirtualFile& file, const tovi::FileEntry& entry) {
    const ASN1::View octets = ASN1::View(file.contents).subspan(entry.offset, entry.length);
    return entry.kind == tovi::FileEntry::Kind::padding && octets.size() >= endingPadding &&
           std::all_of(octets.begin(), octets.end(),
                       [&](std::uint8_t octet) { return octet == octets[0]; });
}

std::size_t leastToRead(const VirtualFile& file) {
    if (file.isLinear()) return file.records.size();
    std::size_t needed = 0;
    for (const tovi::FileEntry& entry : tovi::scanRecords(file.contents)) {
        if (endsReading(file, entry)) break;
        if (entry.kind == tovi::FileEntry::Kind::record ||
            entry.kind == tovi::FileEntry::Kind::broken)
            needed = entry.offset + entry.length;
    }
    if (needed < file.contents.size()) ++needed;
    return (needed + responseSize - 1) / responseSize;
}

/// The files of one read, in its order; a file named twice stands here twice.
std::vector<Blob> pathsOf(const tovi::PKCS15Container& model) {
    std::vector<Blob> paths = {tovi::PKCS15_EF_TOKEN_INFO, tovi::PKCS15_EF_ODF};
    for (const auto& entry : model.getRawODF())
        for (int choice = 0; entry.value && choice <= 8; ++choice)
            if (Blob path; tovi::getPath(*entry.value, path, choice)) paths.push_back(path);
    return paths;
}

Blob absolute(const Blob& path, const tovi::PKCS15Container& model) {
    const Blob& root = tovi::PKCS15_MF;
    if (path.size() >= root.size() && std::equal(root.begin(), root.end(), path.begin()))
        return path;
    Blob whole = model.getRootPath();
    whole.append(path);
    return whole;
}

std::size_t leastCommands(const tovi::VirtualCard& card, const tovi::PKCS15Container& model) {
    std::size_t least = 1;
    for (const Blob& path : pathsOf(model)) {
        const VirtualFile* file = card.files().find(absolute(path, model));
        least += 1 + (file ? leastToRead(*file) : 0);
    }
    return least;
}

struct Totals {
    std::size_t commands = 0, least = 0;
};

std::size_t selectsAmong(const tovi::CountingChannel::Counts& counts) {
    const auto selects = counts.byInstruction.find(selectInstruction);
    return selects == counts.byInstruction.end() ? 0 : selects->second;
}

void readAndPrint(const std::string& name, tovi::VirtualCard& card, Totals& totals) {
    tovi::VirtualCardChannel channel(card);
    tovi::CountingChannel counter(channel);
    tovi::ISO7816CardOS os(counter);
    tovi::bench::HeldContainer model(applicationOn(card));
    model->readFromCard(&os);
    const auto& counts = counter.counts();
    const std::size_t least = leastCommands(card, *model);
    std::printf("%-24s %8zu %8zu %8zu %8zu %9zu %9zu\n", name.c_str(), counts.commands, least,
                selectsAmong(counts), model->getFATRecords().size(), counts.octetsToCard,
                counts.octetsFromCard);
    totals.commands += counts.commands, totals.least += least;
}

void measure(const std::filesystem::path& folder, Totals& totals) {
    const std::string name = folder.filename().string();
    tovi::CardFolder::Options options;
    options.mode = tovi::CardFolder::Mode::readOnly;
    try {
        tovi::CardFolder card(folder, options);
        readAndPrint(name, card.card(), totals);
    } catch (const tovi::SmartcardException& failure) {
        std::printf("%-24s not read: %s\n", name.c_str(), failure.GetMessage());
    }
}

}  // namespace

int main() {
    std::vector<std::filesystem::path> folders;
    for (const auto& entry : std::filesystem::directory_iterator(TOVI_TEST_CARDS))
        if (std::filesystem::exists(entry.path() / "CARD")) folders.push_back(entry.path());
    std::sort(folders.begin(), folders.end());
    std::printf("%-24s %8s %8s %8s %8s %9s %9s\n", "card", "commands", "least", "SELECT", "rows",
                "octets to", "from");
    Totals totals;
    for (const std::filesystem::path& folder : folders) measure(folder, totals);
    std::printf("commands: %zu in all, the least is %zu\n", totals.commands, totals.least);
    return 0;
}
