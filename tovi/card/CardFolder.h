#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "tovi/card/CardDescription.h"
#include "tovi/card/FolderFiles.h"
#include "tovi/card/VirtualCard.h"

namespace tovi {

/// What a new elementary file holds.
struct FileContents {
    Blob octets;                ///< of a transparent file
    std::vector<Blob> records;  ///< of a linear file
};

/// A virtual card that lives in a folder: CARD says which files there are, and the contents of
/// 3F00/5015/5031 lie in the folder's file 3F00/5015/5031.
///
/// A transparent file holds its octets from offset 0, a linear one each record behind its length in
/// two octets, big-endian. What is missing up to the size in CARD counts as 00. A change that the
/// card accepts is in the folder, whole, before the card answers; when the folder does not take it,
/// the card answers 6581. Tries counters are kept in CARD, as `left=N` on the line of the PIN, and
/// go down there before a wrong value is answered.
///
/// One CardFolder that writes, or several that read, may have a folder open at the same time.
class CardFolder final : private VirtualCardStorage {
public:
    enum class Mode { readOnly, readWrite };

    struct Options {
        Mode mode = Mode::readWrite;
        unsigned lockMilliseconds = 10000;  ///< how long to wait for another user of the folder
        bool sync = true;  ///< false: safe against the end of the process, not of the machine
    };

    /// Reads the whole folder. Throws CardFolderError "invalid card description", "card folder not
    /// readable" or "card folder in use"; text() says where and why.
    CardFolder(const std::filesystem::path& folder, const Options& options);
    explicit CardFolder(const std::filesystem::path& folder) : CardFolder(folder, Options{}) {}
    ~CardFolder() override = default;
    CardFolder(const CardFolder&) = delete;
    CardFolder& operator=(const CardFolder&) = delete;

    /// Makes a card folder, and the folder itself where needed; CARD comes last, so that what was
    /// begun and not finished is no card folder. `contents` go by absolute path.
    ///
    /// Throws CardFolderError "card folder exists" when the folder has a CARD, "card folder not
    /// writable", or "invalid card description" for contents that do not fit.
    static void create(const std::filesystem::path& folder, const CardDescription& description,
                       const std::map<std::string, FileContents>& contents = {});

    /// The card. In read-only mode it refuses every change with 6581 and counts tries in memory only.
    VirtualCard& card() { return card_; }
    const CardDescription& description() const { return description_; }

private:
    void load(const std::filesystem::path& folder);
    void loadFile(VirtualFile& file);
    void storeContents(const VirtualFile& file, const Blob& contents) override;
    void storeRecords(const VirtualFile& file, const std::vector<Blob>& records) override;
    void storeTriesLeft(std::uint8_t reference, unsigned left) override;

    FolderFiles files_;
    Options options_;
    CardDescription description_;
    VirtualCard card_;
};

}  // namespace tovi
