#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tovi/Export.h"
#include "tovi/card/CardDescription.h"
#include "tovi/card/FolderFiles.h"
#include "tovi/card/VirtualCard.h"

namespace tovi {

/// What a new elementary file holds: octets when transparent, records when linear.
struct TOVI_API FileContents {
    Blob octets;                ///< of a transparent file
    std::vector<Blob> records;  ///< of a linear file
};

/// A virtual card that lives in a folder: CARD says which files there are, and the contents of
/// 3F00/5015/5031 lie in the folder's file 3F00/5015/5031.
///
/// A transparent file holds its octets from offset 0, a linear one each record behind its length in
/// two octets, big-endian. What is missing up to the size in CARD counts as 00; a file that is
/// missing as a whole is an error. A change that the card accepts is in the folder, whole, before
/// the card answers; when the folder does not take it, the card answers 6581 and goes on with what
/// it had. Tries counters are kept in CARD, as `left=N` on the line of the PIN, and go down there
/// before a wrong value is answered.
///
/// One CardFolder that writes, or several that read, may have a folder open at a time.
class TOVI_API CardFolder final : private VirtualCardStorage {
public:
    /// Whether changes go to the folder or are refused.
    enum class Mode { readOnly, readWrite };

    /// How a folder is opened.
    struct Options {
        Mode mode = Mode::readWrite;                ///< see Mode
        std::chrono::milliseconds patience{10000};  ///< how long to wait for other users
        bool sync = true;  ///< false: safe against the end of the process, not of the machine
    };

    /// Reads the whole folder. Throws CardFolderError "invalid card description", "card folder not
    /// readable" or "card folder in use"; text() says where and why.
    CardFolder(const std::filesystem::path& folder, const Options& options);
    /// The same with default options.
    explicit CardFolder(const std::filesystem::path& folder) : CardFolder(folder, Options()) {}

    /// Makes a card folder, and the folder itself where needed. CARD is written last: what was
    /// begun and not finished is no card folder. `contents` go by name, "3F00/5015/5031"; files
    /// without are empty.
    ///
    /// Throws CardFolderError "card folder exists" when the folder has a CARD, "card folder in
    /// use", "card folder not writable", or "invalid card description" for contents that have no
    /// file or do not fit into it.
    static void create(const std::filesystem::path& folder, const CardDescription& description,
                       const std::map<std::string, FileContents>& contents = {});

    /// The card. In read-only mode it answers 6581 to every change, and tries are counted in memory
    /// only.
    VirtualCard& card() { return card_; }
    /// What CARD says now.
    const CardDescription& description() const { return description_; }

    /// Why the folder did not take the last change that failed; empty: none failed.
    const std::string& lastFailure() const { return lastFailure_; }

private:
    void load(const std::string& name);
    void store(const std::string& name, ASN1::View contents);
    void storeContents(const VirtualFile& file, const Blob& contents) override;
    void storeRecords(const VirtualFile& file, const std::vector<Blob>& records) override;
    void storeTriesLeft(std::uint8_t reference, unsigned left) override;

    FolderFiles files_;
    Mode mode_;
    CardDescription description_;
    VirtualCard card_;
    std::string lastFailure_;
};

}  // namespace tovi
