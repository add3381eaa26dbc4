#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/card/Apdu.h"
#include "tovi/card/ICardChannel.h"
#include "tovi/card/VirtualCardStorage.h"
#include "tovi/card/VirtualFileSystem.h"
#include "tovi/card/VirtualPins.h"

namespace tovi {

/// How a virtual card behaves where the standard leaves a choice.
struct VirtualCardSettings {
    bool extendedLength = true;    ///< understands extended length fields, else 6700
    bool commandChaining = true;   ///< understands CLA 10, else 6884
    bool selectByPath = true;      ///< P1 08 and 09 of SELECT, else 6A86
    bool oddInstructions = true;   ///< READ, UPDATE, ERASE BINARY with data objects, else 6D00
    bool fileControl = true;       ///< SELECT returns FCP or FCI when asked, else nothing
    bool useGetResponse = false;   ///< response data stays behind 61XX, as with protocol T=0
    bool exactLength = false;      ///< 6CXX, and no data, when Le is more than there is
    bool lengthAtEnd = false;      ///< 6700 for a read that goes past the end of the file
    std::size_t maxResponse = 65536;  ///< octets in one response, the rest behind 61XX
};

/// A card in memory: DFs, transparent and linear elementary files, PINs, and the commands of
/// ISO/IEC 7816-4:2005 that read, write and protect them.
///
/// SELECT (by FID, child DF, EF, parent, AID, path from the master file or the current DF; FCI, FCP
/// or no data), READ, UPDATE and ERASE BINARY, READ, UPDATE, APPEND and ERASE RECORD, VERIFY, GET
/// RESPONSE. A command is performed wholly or not at all. Copying gives a second card with the same
/// contents and state and no storage.
///
/// A write that begins inside a transparent file and ends behind it is refused with 6A84, since
/// more space is what it lacks; one that begins behind it with 6B00, as a read there is.
class VirtualCard {
public:
    VirtualCard() = default;
    VirtualCard(const VirtualCard& other);
    VirtualCard& operator=(const VirtualCard& other);

    /// Adds an empty file; see VirtualFileSystem::add.
    VirtualFile& add(const FileDescription& description) { return files_.add(description); }
    void add(const PinDescription& pin) { pins_.add(pin); }

    /// Shortcuts for the usual files. `path` is absolute; `contents` go to the front of the file.
    VirtualFile& addFolder(const Blob& path, const Blob& aid = {});
    VirtualFile& addTransparent(const Blob& path, std::size_t size, const Blob& contents = {});
    VirtualFile& addLinear(const Blob& path, FileDescription::Kind kind, std::size_t recordSize,
                           std::size_t maxRecords);

    /// What the card holds, for a look or a change behind the back of its users.
    VirtualFileSystem& files() { return files_; }
    const VirtualFileSystem& files() const { return files_; }
    const VirtualPins& pins() const { return pins_; }
    VirtualCardSettings& settings() { return settings_; }

    /// Every accepted change goes to `storage` first, which must outlive the card; null: nowhere.
    void setStorage(VirtualCardStorage* storage) { storage_ = storage; }

    /// Takes the power away and gives it back: the master file is current, nothing is verified.
    void reset();

    /// Performs a command and returns the response.
    Blob process(const Blob& command);

private:
    /// A file and what a record command points at in it.
    struct Range {
        std::size_t first = 0;
        std::size_t last = 0;  ///< one behind
    };

    ResponseApdu perform(const CommandApdu& command);
    ResponseApdu dispatch(const CommandApdu& command);
    ResponseApdu chain(const CommandApdu& command);
    ResponseApdu limit(ResponseApdu response, std::size_t expected);
    ResponseApdu getResponse(const CommandApdu& command);
    ResponseApdu verify(const CommandApdu& command);

    ResponseApdu select(const CommandApdu& command);
    ResponseApdu selectByName(const CommandApdu& command);
    VirtualFile* findByIdentifier(std::uint16_t fid);
    std::uint16_t findSelected(const CommandApdu& command, VirtualFile*& file);
    ResponseApdu selected(VirtualFile& file, std::uint8_t p2);

    std::uint16_t binaryTarget(const CommandApdu& command, VirtualFile*& file, std::size_t& offset);
    std::uint16_t oddTarget(const CommandApdu& command, VirtualFile*& file, std::size_t& offset);
    ResponseApdu readBinary(const CommandApdu& command);
    ResponseApdu readBinaryOdd(const CommandApdu& command);
    ResponseApdu readFrom(const VirtualFile& file, std::size_t offset, std::size_t expected,
                          bool wholeRest);
    ResponseApdu updateBinary(const CommandApdu& command);
    ResponseApdu updateBinaryOdd(const CommandApdu& command);
    ResponseApdu eraseBinary(const CommandApdu& command);
    std::uint16_t overwrite(VirtualFile& file, std::size_t offset, ASN1::View octets);

    std::uint16_t recordTarget(std::uint8_t sfi, VirtualFile*& file);
    std::uint16_t recordRange(const CommandApdu& command, const VirtualFile& file, Range& range);
    ResponseApdu readRecord(const CommandApdu& command);
    ResponseApdu updateRecord(const CommandApdu& command);
    ResponseApdu appendRecord(const CommandApdu& command);
    ResponseApdu eraseRecord(const CommandApdu& command);
    std::uint16_t storeRecords(VirtualFile& file, std::vector<Blob> records);

    VirtualFileSystem files_;
    VirtualPins pins_;
    VirtualCardSettings settings_;
    VirtualCardStorage* storage_ = nullptr;

    VirtualFile* folder_ = &files_.masterFile();
    VirtualFile* file_ = nullptr;
    std::size_t record_ = 0;  ///< current record, counted from 1; 0: none
    Blob waiting_;            ///< response data behind 61XX
    CommandApdu chained_;     ///< the commands of an unfinished chain put together
    bool inChain_ = false;
};

/// The virtual card as a channel. The card must outlive it, and may have several.
class VirtualCardChannel final : public ICardChannel {
public:
    explicit VirtualCardChannel(VirtualCard& card) : card_(card) {}
    Blob transmit(const Blob& command) override { return card_.process(command); }

private:
    VirtualCard& card_;
};

}  // namespace tovi
