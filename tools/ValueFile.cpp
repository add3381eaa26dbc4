#include "tools/ValueFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "tovi/interfaces/Exception.h"
#include "tovi/platform/BinaryReader.h"
#include "tovi/platform/DirectoryFile.h"

namespace tovi {
namespace {

constexpr std::int64_t wrongStructure = statusWordCode + 0x6981;
constexpr std::int64_t recordNotFound = statusWordCode + 0x6A83;

/// The octets of the selected transparent file from `begin` on: `length` of them, or all. Fewer
/// where the file ends.
Blob readOctets(ISCardOS& os, const FileInfo& info, std::size_t begin,
                std::optional<std::size_t> length) {
    const std::size_t end = length ? begin + *length : maxDirectoryFileSize;
    BinaryReader reader(os);
    Blob octets;
    while (begin + octets.size() < end) {
        const std::size_t at = begin + octets.size();
        if (info.size != 0 && at >= info.size) break;
        const std::size_t wanted = std::min(reader.most(), end - at);
        const Blob response = reader.read(at, wanted);
        if (response.empty()) break;
        const std::size_t got = std::min(response.size(), wanted);
        octets.append(ASN1::View(response).first(got));
        // Without a size a short response is the end.
        if (info.size == 0 && got < std::min(wanted, reader.most())) break;
    }
    return octets;
}

Blob transparentValue(ISCardOS& os, const FileInfo& info, const ValueExtent& extent) {
    const std::uint64_t begin = extent.index.value_or(0);
    const std::uint64_t length = extent.length.value_or(0);
    if (begin > maxDirectoryFileSize || length > maxDirectoryFileSize - begin) {
        throw ValueError(
            fmt::format("octets from {} on, {} of them, are in no file", begin, length));
    }
    const auto first = static_cast<std::size_t>(begin);
    const auto count = static_cast<std::size_t>(length);
    if (info.size != 0 && first + count > info.size) {
        throw ValueError(
            fmt::format("the value ends at octet {}, the file has {}", first + count, info.size));
    }
    Blob octets = readOctets(os, info, first, count == 0 ? std::nullopt : std::optional(count));
    if (octets.size() < count) {
        throw ValueError(fmt::format("the value ends at octet {}, the file has {}", first + count,
                                     first + octets.size()));
    }
    return octets;
}

Blob allRecords(ISCardOS& os) {
    Blob octets;
    try {
        for (std::size_t number = 1; number <= maxDirectoryFileRecords; ++number) {
            octets.append(os.readRecord(number));
        }
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() != recordNotFound) throw;
    }
    return octets;
}

Blob oneRecord(ISCardOS& os, std::uint64_t number) {
    const std::string absent = fmt::format("record {} is not in the file", number);
    if (number > maxDirectoryFileRecords) throw ValueError(absent);
    try {
        return os.readRecord(static_cast<std::size_t>(number));
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() == recordNotFound) throw ValueError(absent);
        throw;
    }
}

Blob linearValue(ISCardOS& os, const ValueExtent& extent) {
    const std::uint64_t number = extent.index.value_or(0);
    const std::uint64_t length = extent.length.value_or(0);
    Blob octets = number == 0 ? allRecords(os) : oneRecord(os, number);
    if (length > octets.size()) {
        throw ValueError(fmt::format("the value has {} octets, the {} {}", length,
                                     number == 0 ? "file" : "record", octets.size()));
    }
    if (length != 0) octets.resize(static_cast<std::size_t>(length));
    return octets;
}

}  // namespace

Blob readValueFile(ISCardOS& os, const Blob& path, const ValueExtent& extent) {
    const FileInfo info = os.selectFile(path);
    if (info.structure == FileStructure::other) {
        throw ValueError("the path names no elementary file");
    }
    if (info.structure != FileStructure::transparent) return linearValue(os, extent);
    try {
        return transparentValue(os, info, extent);
    } catch (const SmartcardException& failure) {
        // A card that tells nothing on SELECT says by this that the file holds records.
        if (failure.GetCode() != wrongStructure || info.size != 0) throw;
        return linearValue(os, extent);
    }
}

}  // namespace tovi
