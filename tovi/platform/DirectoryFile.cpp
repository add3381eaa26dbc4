#include "tovi/platform/DirectoryFile.h"

#include <algorithm>

#include "tovi/interfaces/Exception.h"
#include "tovi/platform/BinaryReader.h"
#include "tovi/platform/RecordScanner.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

constexpr const char* HERE = "ProfileDFHandler::ReadFile";

// Status words of ISO/IEC 7816-4:2005, 5.1.3, that reading understands.
constexpr std::int64_t wrongStructure = statusWordCode + 0x6981;
constexpr std::int64_t recordNotFound = statusWordCode + 0x6A83;

/// Reads a transparent file from its first octet on, response by response.
class TransparentReader {
public:
    TransparentReader(ISCardOS& os, DirectoryFile& file)
        : file_(file),
          size_(file.info.size == 0 ? RecordScanner::unknownSize : file.info.size),
          reader_(os) {}

    void read(ReadExtent extent) {
        std::size_t response = 0;  // where the last one begins
        while (true) {
            const bool ended = scanner_.scan(file_.octets, size_);
            if (file_.octets.size() >= size_) break;
            if (extent == ReadExtent::records && (ended || paddingFollows(response))) break;
            response = file_.octets.size();
            append();
        }
        finish();
    }

    const std::vector<FileEntry>& entries() const { return scanner_.entries(); }

private:
    bool paddingFollows(std::size_t response) const {
        const auto padding = scanner_.uniformPadding(file_.octets);
        // Measured within the response, but of one value from the end of the last record on: a gap
        // with records behind it begins 00 FF, and a response may begin in the middle of one.
        return padding &&
               file_.octets.size() - std::max(*padding, response) >= paddingThatEndsReading;
    }

    void append() {
        const std::size_t offset = file_.octets.size();
        const std::size_t length =
            std::min({reader_.most(), size_ - offset, maxDirectoryFileSize - offset});
        if (length == 0) throw SmartcardException("directory file too long", HERE);
        const Blob response = reader_.read(offset, length);
        const std::size_t got = std::min(response.size(), length);
        file_.octets.insert(file_.octets.end(), response.begin(), response.begin() + got);
        // A size that the card told is believed until nothing comes any more.
        const bool sizeIsTold = size_ != RecordScanner::unknownSize;
        const bool isShort = got < std::min(length, reader_.most());
        if (got == 0 || (isShort && !sizeIsTold)) size_ = file_.octets.size();
    }

    void finish() {
        file_.isWhole = file_.octets.size() >= size_;
        file_.size = size_ == RecordScanner::unknownSize ? 0 : size_;
        file_.octets.shrink_to_fit();
    }

    DirectoryFile& file_;
    RecordScanner scanner_;
    std::size_t size_;  // of the whole file, or RecordScanner::unknownSize
    BinaryReader reader_;
};

void readLinear(ISCardOS& os, DirectoryFile& file) {
    const std::size_t told = file.info.recordCount;
    const std::size_t count =
        told == 0 ? maxDirectoryFileRecords : std::min(told, maxDirectoryFileRecords);
    try {
        while (file.slots.size() < count)
            file.slots.push_back(os.readRecord(file.slots.size() + 1));
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() != recordNotFound) throw;
    }
    file.isWhole = true;
    for (std::size_t i = 0; i < file.slots.size(); ++i)
        if (const std::size_t length = recordInSlot(file.slots[i]))
            file.places.push_back(
                {static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(length)});
}

void readTransparent(ISCardOS& os, DirectoryFile& file, ReadExtent extent) {
    try {
        TransparentReader reader(os, file);
        reader.read(extent);
        for (const FileEntry& entry : reader.entries())
            if (entry.isRecord()) file.places.push_back({entry.offset, entry.length});
    } catch (const SmartcardException& failure) {
        // A card that tells nothing on SELECT says by this that the file holds records.
        const bool nothingRead = file.octets.empty() && file.info.size == 0;
        if (failure.GetCode() != wrongStructure || !nothingRead) throw;
        file.info.structure = FileStructure::linearVariable;
        readLinear(os, file);
    }
}

}  // namespace

ASN1::View DirectoryFile::octetsAt(const RecordPlace& place) const {
    if (isLinear()) return ASN1::View(slots[place.start]).first(place.length);
    return ASN1::View(octets).subspan(place.start, place.length);
}

DirectoryFile readDirectoryFile(ISCardOS& os, const Blob& path, ReadExtent extent) {
    DirectoryFile file;
    file.path = path;
    file.info = os.selectFile(path);
    switch (file.info.structure) {
        case FileStructure::transparent:
            readTransparent(os, file, extent);
            break;
        case FileStructure::linearFixed:
        case FileStructure::linearVariable:
            readLinear(os, file);
            break;
        default:
            throw SmartcardException("unusable file structure", HERE);
    }
    return file;
}

void readRest(ISCardOS& os, DirectoryFile& file) {
    TransparentReader(os, file).read(ReadExtent::wholeFile);
}

std::size_t recordInSlot(ASN1::View slot) {
    if (slot.empty() || !isRecordTag(slot[0])) return 0;
    const TlvHeader header = readTlvHeader(slot);
    const bool fits = header.state == TlvHeader::State::complete && header.total() <= slot.size();
    return fits ? static_cast<std::size_t>(header.total()) : slot.size();
}

}  // namespace tovi
