#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tovi/Export.h"
#include "tovi/card/Apdu.h"
#include "tovi/card/ICardChannel.h"
#include "tovi/card/VirtualCardStorage.h"
#include "tovi/card/VirtualFileSystem.h"
#include "tovi/card/VirtualPins.h"

namespace tovi {

/// How a virtual card behaves where the standard leaves a choice.
struct TOVI_API VirtualCardSettings {
    bool extendedLength = true;       ///< understands extended length fields, else 6700
    bool commandChaining = true;      ///< understands CLA 10, else 6884
    bool selectByPath = true;         ///< P1 08 and 09 of SELECT, else 6A86
    bool oddInstructions = true;      ///< READ, UPDATE, ERASE BINARY with data objects, else 6D00
    bool fileControl = true;          ///< SELECT returns FCP or FCI when asked, else nothing
    bool useGetResponse = false;      ///< all response data stays behind 61XX, as with protocol T=0
    bool exactLength = false;         ///< 6CXX, and no data, when Le is more than there is
    bool lengthAtEnd = false;         ///< 6700 for a READ BINARY that goes past the end of the file
    std::size_t maxResponse = 65536;  ///< octets in one response, at least 1; the rest behind 61XX
};

/// A card in memory: DFs, transparent and linear elementary files, PINs, and the commands of
/// ISO/IEC 7816-4:2005 that read, write and protect them.
///
/// SELECT (by FID, child DF, EF, parent, AID, path from the master file or the current DF; FCI, FCP
/// or no data), READ, UPDATE and ERASE BINARY, READ, UPDATE, APPEND and ERASE RECORD, VERIFY, GET
/// RESPONSE. A command is performed wholly or not at all. Copying gives a second card with the same
/// contents and state, which stores nothing.
///
/// A write that begins inside a transparent file and ends behind it is refused with 6A84, since
/// more space is what it lacks; one that begins behind it with 6B00, as a read there is. A read at
/// the end with Le of nought (all there is) gets 9000, with another Le 6282.
class TOVI_API VirtualCard {
public:
    VirtualCard() = default;
    VirtualCard(const VirtualCard& other);
    VirtualCard& operator=(const VirtualCard& other);

    /// Adds an empty file; see VirtualFileSystem::add.
    VirtualFile& add(const FileDescription& description) { return files_.add(description); }
    /// Adds a PIN or replaces the one with that reference.
    void add(const PinDescription& pin) { pins_.add(pin); }

    /// Shortcuts for the usual files. `path` is absolute; `contents` go to the front of the file,
    /// and what does not fit is left out.
    VirtualFile& addFolder(const Blob& path, const Blob& aid = {});
    VirtualFile& addTransparent(const Blob& path, std::size_t size, const Blob& contents = {});
    VirtualFile& addLinear(const Blob& path, FileDescription::Kind kind, std::size_t recordSize,
                           std::size_t maxRecords);

    /// What the card holds, for a look or a change behind the back of its users.
    VirtualFileSystem& files() { return files_; }
    const VirtualFileSystem& files() const { return files_; }
    const VirtualPins& pins() const { return pins_; }  ///< the PINs and their tries
    /// How the card behaves; may be changed at any time.
    VirtualCardSettings& settings() { return settings_; }

    /// Every accepted change goes to `storage` first, which must outlive the card; null: nowhere.
    void setStorage(VirtualCardStorage* storage) { storage_ = storage; }

    /// Takes the power away and gives it back: the master file is current, nothing is verified.
    void reset();

    /// Performs a command and returns the response.
    Blob process(const Blob& command);

private:
    /// Records of a file, counted from 0; `last` is one behind.
    struct RecordRange {
        std::size_t first = 0;
        std::size_t last = 0;
    };

    // What stands between a command and its performance (VirtualCard.cpp).
    ResponseApdu perform(const CommandApdu& command);
    ResponseApdu chain(const CommandApdu& command);
    ResponseApdu dispatch(const CommandApdu& command);
    ResponseApdu deliver(ResponseApdu response, std::size_t expected);
    ResponseApdu getResponse(const CommandApdu& command);
    ResponseApdu verify(const CommandApdu& command);
    void makeCurrent(VirtualFile& file);

    // SELECT (VirtualCardSelect.cpp).
    ResponseApdu select(const CommandApdu& command);
    VirtualFile* findForSelect(const CommandApdu& command, std::uint16_t& status);
    VirtualFile* findByIdentifier(ASN1::View identifier);
    VirtualFile* findByPath(const VirtualFile& from, ASN1::View path);
    VirtualFile* findByName(ASN1::View name, std::uint8_t occurrence);

    // Transparent files (VirtualCardBinary.cpp). The targets return a status word.
    std::uint16_t evenTarget(const CommandApdu& command, std::size_t& offset);
    std::uint16_t oddTarget(const CommandApdu& command);
    ResponseApdu readBinary(const CommandApdu& command);
    ResponseApdu readBinaryOdd(const CommandApdu& command);
    ResponseApdu readAt(std::size_t offset, std::size_t expected, bool allThereIs);
    ResponseApdu updateBinary(const CommandApdu& command);
    ResponseApdu updateBinaryOdd(const CommandApdu& command);
    ResponseApdu eraseBinary(const CommandApdu& command);
    ResponseApdu eraseBinaryOdd(const CommandApdu& command);
    ResponseApdu erase(std::size_t first, std::size_t last);
    ResponseApdu overwrite(std::size_t offset, ASN1::View octets);

    // Linear files (VirtualCardRecord.cpp). The targets return a status word.
    std::uint16_t recordFile(const CommandApdu& command);
    std::uint16_t recordTarget(const CommandApdu& command, RecordRange& range);
    ResponseApdu readRecord(const CommandApdu& command);
    ResponseApdu updateRecord(const CommandApdu& command);
    ResponseApdu appendRecord(const CommandApdu& command);
    ResponseApdu eraseRecord(const CommandApdu& command);
    ResponseApdu replaceRecords(std::vector<Blob> records);
    std::uint16_t unfit(const Blob& record) const;

    VirtualFileSystem files_;
    VirtualPins pins_;
    VirtualCardSettings settings_;
    VirtualCardStorage* storage_ = nullptr;

    VirtualFile* folder_ = &files_.masterFile();
    VirtualFile* file_ = nullptr;  ///< null: no elementary file is current
    std::size_t record_ = 0;       ///< the current record, counted from 1; 0: none
    ResponseApdu waiting_;         ///< what stays behind 61XX
    CommandApdu chained_;          ///< the commands of an unfinished chain put together
    bool inChain_ = false;
};

/// The virtual card as a channel. The card must outlive it, and may have several.
class TOVI_API VirtualCardChannel final : public ICardChannel {
public:
    /// A channel to `card`.
    explicit VirtualCardChannel(VirtualCard& card) : card_(card) {}
    Blob transmit(const Blob& command) override { return card_.process(command); }

private:
    VirtualCard& card_;
};

}  // namespace tovi
