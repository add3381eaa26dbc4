// READ, UPDATE and ERASE BINARY (ISO/IEC 7816-4).
#include <algorithm>

#include "tovi/card/BerTlv.h"
#include "tovi/card/StatusWord.h"
#include "tovi/card/VirtualCard.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

constexpr std::uint8_t offsetTag = 0x54;
constexpr std::uint8_t discretionaryTag = 0x53;
constexpr std::uint8_t discretionaryTemplateTag = 0x73;
constexpr std::uint8_t firstRfuSfi = 31;

ResponseApdu only(std::uint16_t status) { return {{}, status}; }

/// Takes an offset data object; false when there is none, or none that could lie in a file.
bool takeOffset(ASN1::View& data, std::size_t& offset) {
    BerTlv object;
    if (!BerTlv::next(data, object) || object.tag != offsetTag) return false;
    if (object.value.empty() || object.value.size() > 4) return false;
    std::uint32_t value = 0;
    for (const std::uint8_t octet : object.value) value = value << 8 | octet;
    offset = value;
    return true;
}

/// As many octets as fit, with tag and length, into `room`.
std::size_t contentThatFits(std::size_t room) {
    if (room > 0xFF + 4) return room - 4;
    if (room > 0x7F + 3) return std::min<std::size_t>(room - 3, 0xFF);
    return room > 2 ? std::min<std::size_t>(room - 2, 0x7F) : 0;
}

bool asksForAll(const CommandApdu& command) {
    return command.expected ==
           (command.extended ? CommandApdu::extendedExpected : CommandApdu::shortExpected);
}

}  // namespace

/// Makes the file that P1-P2 name current, and takes the offset from them.
std::uint16_t VirtualCard::evenTarget(const CommandApdu& command, std::size_t& offset) {
    if ((command.p1 & 0x80) != 0) {
        const std::uint8_t sfi = command.p1 & 0x1F;
        if ((command.p1 & 0x60) != 0 || sfi == 0 || sfi == firstRfuSfi)
            return StatusWord::wrongParameters;
        VirtualFile* file = files_.bySfi(*folder_, sfi);
        if (file == nullptr) return StatusWord::fileNotFound;
        makeCurrent(*file);
        offset = command.p2;
    } else {
        offset = std::size_t{command.p1} << 8 | command.p2;
    }
    if (file_ == nullptr) return StatusWord::noCurrentFile;
    return file_->isLinear() ? StatusWord::wrongFileStructure : StatusWord::success;
}

/// The same for the odd instructions, which have the offset in their data.
std::uint16_t VirtualCard::oddTarget(const CommandApdu& command) {
    const auto number = static_cast<std::uint16_t>(command.p1 << 8 | command.p2);
    if (number == firstRfuSfi) return StatusWord::wrongParameters;
    if (number != 0) {
        VirtualFile* file = number < firstRfuSfi
                                ? files_.bySfi(*folder_, static_cast<std::uint8_t>(number))
                                : files_.child(*folder_, number);
        if (file == nullptr || file->isFolder()) return StatusWord::fileNotFound;
        makeCurrent(*file);
    }
    if (file_ == nullptr) return StatusWord::noCurrentFile;
    return file_->isLinear() ? StatusWord::wrongFileStructure : StatusWord::success;
}

ResponseApdu VirtualCard::readBinary(const CommandApdu& command) {
    std::size_t offset = 0;
    const std::uint16_t status = evenTarget(command, offset);
    if (status != StatusWord::success) return only(status);
    if (!command.data.empty() || command.expected == 0) return only(StatusWord::wrongLength);
    return readAt(offset, command.expected, asksForAll(command));
}

ResponseApdu VirtualCard::readBinaryOdd(const CommandApdu& command) {
    const std::uint16_t status = oddTarget(command);
    if (status != StatusWord::success) return only(status);
    ASN1::View data = command.data;
    std::size_t offset = 0;
    if (!takeOffset(data, offset) || !data.empty()) return only(StatusWord::wrongData);
    const std::size_t room = contentThatFits(command.expected);
    if (room == 0) return only(StatusWord::wrongLength);
    ResponseApdu response = readAt(offset, room, asksForAll(command));
    if (response.data.empty()) return response;
    Blob object;
    appendBerTlv(object, discretionaryTag, response.data);
    response.data = std::move(object);
    return response;
}

ResponseApdu VirtualCard::readAt(std::size_t offset, std::size_t expected, bool allThereIs) {
    if (!pins_.allows(file_->description.read)) return only(StatusWord::securityNotSatisfied);
    const ASN1::View contents = file_->contents;
    if (offset >= contents.size()) return only(StatusWord::wrongOffset);
    const ASN1::View rest = contents.subspan(offset);
    if (expected <= rest.size()) return {Blob(rest.first(expected)), StatusWord::success};
    if (settings_.lengthAtEnd) return only(StatusWord::wrongLength);
    return {Blob(rest), allThereIs ? StatusWord::success : StatusWord::endOfFile};
}

ResponseApdu VirtualCard::updateBinary(const CommandApdu& command) {
    std::size_t offset = 0;
    const std::uint16_t status = evenTarget(command, offset);
    if (status != StatusWord::success) return only(status);
    if (command.data.empty()) return only(StatusWord::wrongLength);
    return overwrite(offset, command.data);
}

ResponseApdu VirtualCard::updateBinaryOdd(const CommandApdu& command) {
    const std::uint16_t status = oddTarget(command);
    if (status != StatusWord::success) return only(status);
    ASN1::View data = command.data;
    std::size_t offset = 0;
    BerTlv object;
    if (!takeOffset(data, offset) || !BerTlv::next(data, object) || !data.empty() ||
        (object.tag != discretionaryTag && object.tag != discretionaryTemplateTag) ||
        object.value.empty())
        return only(StatusWord::wrongData);
    return overwrite(offset, object.value);
}

ResponseApdu VirtualCard::eraseBinary(const CommandApdu& command) {
    std::size_t first = 0;
    const std::uint16_t status = evenTarget(command, first);
    if (status != StatusWord::success) return only(status);
    const ASN1::View data = command.data;
    if (data.empty()) return erase(first, file_->contents.size());
    if (data.size() != 2) return only(StatusWord::wrongLength);
    return erase(first, std::size_t{data[0]} << 8 | data[1]);
}

ResponseApdu VirtualCard::eraseBinaryOdd(const CommandApdu& command) {
    const std::uint16_t status = oddTarget(command);
    if (status != StatusWord::success) return only(status);
    ASN1::View data = command.data;
    std::size_t first = 0;
    std::size_t last = file_->contents.size();
    if (!data.empty() && !takeOffset(data, first)) return only(StatusWord::wrongData);
    if (!data.empty() && (!takeOffset(data, last) || !data.empty()))
        return only(StatusWord::wrongData);
    return erase(first, last);
}

ResponseApdu VirtualCard::erase(std::size_t first, std::size_t last) {
    if (first >= file_->contents.size() || last > file_->contents.size())
        return only(StatusWord::wrongOffset);
    if (last <= first) return only(StatusWord::wrongData);
    return overwrite(first, Blob(last - first, 0x00));
}

ResponseApdu VirtualCard::overwrite(std::size_t offset, ASN1::View octets) {
    if (!pins_.allows(file_->description.update)) return only(StatusWord::securityNotSatisfied);
    Blob& contents = file_->contents;
    if (offset >= contents.size()) return only(StatusWord::wrongOffset);
    if (octets.size() > contents.size() - offset) return only(StatusWord::noSpaceInFile);
    if (storage_ != nullptr) {
        Blob changed = contents;
        std::copy(octets.begin(), octets.end(), changed.begin() + offset);
        try {
            storage_->storeContents(*file_, changed);
        } catch (const Exception&) {
            return only(StatusWord::memoryFailure);
        }
    }
    std::copy(octets.begin(), octets.end(), contents.begin() + offset);
    return only(StatusWord::success);
}

}  // namespace tovi
