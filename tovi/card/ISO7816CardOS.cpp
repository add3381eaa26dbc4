#include "tovi/card/ISO7816CardOS.h"

#include <algorithm>

#include "tovi/card/BerTlv.h"
#include "tovi/card/FileControl.h"
#include "tovi/card/StatusWord.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

constexpr std::size_t maxAid = 16;
constexpr std::size_t maxPath = 128;
constexpr std::size_t evenOffsets = 0x8000;  // as many as fit into P1-P2 beside the top bit
constexpr std::size_t maxOffset = 0xFFFFFFFF;
constexpr std::size_t maxRecordNumber = 254;
constexpr std::uint8_t recordByNumber = 0x04;

constexpr std::uint8_t discretionaryTag = 0x53;
constexpr std::uint8_t discretionaryTemplateTag = 0x73;
constexpr std::uint8_t offsetTag = 0x54;

/// What a command with odd instruction carries beside the data: 54 04 and an offset, 53 82 and a
/// length of two octets.
constexpr std::size_t oddOverhead = 6 + 4;

constexpr const char* readOperation = "ISO7816CardOS::readBinary";
constexpr const char* readMessage = "READ BINARY refused";

[[noreturn]] void refuse(const char* message, const char* operation, std::uint16_t status) {
    throw SmartcardException(message, operation, statusWordCode + status);
}

void check(const ResponseApdu& response, const char* message, const char* operation) {
    if (response.status != StatusWord::success) refuse(message, operation, response.status);
}

/// Octets of tag and length in front of that many octets.
std::size_t tlvHeader(std::size_t length) { return length > 0xFF ? 4 : length > 0x7F ? 3 : 2; }

/// Adds what a read of `wanted` octets brought to `octets`; true when it met the end of the file.
bool take(const ResponseApdu& response, std::size_t wanted, Blob& octets) {
    if (response.status == StatusWord::wrongOffset) return true;
    const bool warned = response.status == StatusWord::endOfFile;
    if (!warned) check(response, readMessage, readOperation);
    const std::size_t taken = std::min(response.data.size(), wanted);
    octets.append(ASN1::View(response.data).first(taken));
    return warned || taken < wanted;
}

CommandApdu evenCommand(std::uint8_t ins, std::size_t offset) {
    CommandApdu command;
    command.ins = ins;
    command.p1 = static_cast<std::uint8_t>(offset >> 8);
    command.p2 = static_cast<std::uint8_t>(offset);
    return command;
}

/// P1-P2 0000 stands for the current file (ISO/IEC 7816-4:2005, 7.2.1).
CommandApdu oddCommand(std::uint8_t ins, std::size_t offset) {
    Blob value;
    for (int shift = offset > 0xFFFFFF ? 24 : offset > 0xFFFF ? 16 : 8; shift >= 0; shift -= 8)
        value.push_back(static_cast<std::uint8_t>(offset >> shift));
    CommandApdu command;
    command.ins = ins;
    appendBerTlv(command.data, offsetTag, value);
    return command;
}

/// P1 is the record number, which P2 says too.
CommandApdu recordCommand(std::uint8_t ins, std::size_t number) {
    CommandApdu command;
    command.ins = ins;
    command.p1 = static_cast<std::uint8_t>(number);
    command.p2 = recordByNumber;
    return command;
}

}  // namespace

ISO7816CardOS::ISO7816CardOS(ICardChannel& channel, const CardCapabilities& capabilities)
    : exchange_(channel, capabilities) {}

Blob ISO7816CardOS::selectApplication(const Blob& aid, unsigned char mode) {
    constexpr const char* operation = "ISO7816CardOS::selectApplication";
    if (aid.empty() || aid.size() > maxAid) throw SmartcardException("invalid AID", operation);
    size_ = recordSize_ = 0;
    ResponseApdu response = selector_.selectApplication(aid, mode, operation);
    check(response, "SELECT refused", operation);
    return std::move(response.data);
}

FileInfo ISO7816CardOS::selectFile(const Blob& path) {
    constexpr const char* operation = "ISO7816CardOS::selectFile";
    if (path.empty() || path.size() % 2 != 0 || path.size() > maxPath)
        throw SmartcardException("invalid path", operation);
    size_ = recordSize_ = 0;
    const ResponseApdu response = selector_.selectFile(path, operation);
    check(response, "SELECT refused", operation);
    const FileInfo info = FileControl::parse(response.data).info();
    size_ = info.size;
    recordSize_ = info.recordSize;
    return info;
}

Blob ISO7816CardOS::readBinary(std::size_t offset, std::size_t length) {
    length = std::min(length, maxRead());
    if (size_ != 0) length = offset < size_ ? std::min(length, size_ - offset) : 0;
    if (length == 0) return {};
    if (offset > maxOffset - length) throw SmartcardException("invalid offset", readOperation);
    Blob octets;
    bool atEnd = false;
    while (!atEnd && octets.size() < length) {
        const std::size_t at = offset + octets.size();
        const std::size_t wanted = std::min(length - octets.size(), mostFrom(at));
        const ResponseApdu response = readChunk(at, wanted);
        if (response.status == StatusWord::wrongLength && size_ == 0 && wanted > 1) {
            readToEnd(offset, octets.size() + wanted, octets);
            return octets;
        }
        atEnd = take(response, wanted, octets);
    }
    return octets;
}

// Some cards answer 6700, and nothing else, to a read that goes past the end. Asking for less and
// less finds the end; unless the last single octet is refused as well, it is not the end that the
// card objects to, and what came so far must not pass for the whole file.
void ISO7816CardOS::readToEnd(std::size_t offset, std::size_t length, Blob& octets) {
    bool endFound = false;
    unsigned singles = 0;
    std::size_t step = (length - octets.size()) / 2;
    while (!endFound && octets.size() < length && singles < 2) {
        const std::size_t wanted = std::min(step, length - octets.size());
        const ResponseApdu response = readChunk(offset + octets.size(), wanted);
        const bool refused = response.status == StatusWord::wrongLength;
        endFound = refused ? wanted == 1 : take(response, wanted, octets);
        if (!refused && wanted == 1) ++singles;
        step = std::max<std::size_t>(1, step / 2);
    }
    const bool whole = endFound && offset + octets.size() != 0;
    if (!whole && octets.size() < length)
        refuse(readMessage, readOperation, StatusWord::wrongLength);
}

ResponseApdu ISO7816CardOS::readChunk(std::size_t offset, std::size_t length) {
    if (offset >= evenOffsets) return readChunkOdd(offset, length);
    CommandApdu command = evenCommand(Instruction::readBinary, offset);
    command.expected = length;
    return exchange_.send(command, readOperation);
}

ResponseApdu ISO7816CardOS::readChunkOdd(std::size_t offset, std::size_t length) {
    CommandApdu command = oddCommand(Instruction::readBinaryOdd, offset);
    command.expected = length + tlvHeader(length);
    ResponseApdu response = exchange_.send(command, readOperation);
    if (response.data.empty()) return response;
    ASN1::View rest = response.data;
    BerTlv object;
    if (!BerTlv::next(rest, object) ||
        (object.tag != discretionaryTag && object.tag != discretionaryTemplateTag))
        throw SmartcardException("malformed card response", readOperation);
    response.data = Blob(object.value);
    return response;
}

std::size_t ISO7816CardOS::mostFrom(std::size_t offset) const {
    if (offset < evenOffsets) return maxRead();
    return maxRead() > oddOverhead ? maxRead() - tlvHeader(maxRead()) : 1;
}

void ISO7816CardOS::updateBinary(std::size_t offset, ASN1::View octets) {
    constexpr const char* operation = "ISO7816CardOS::updateBinary";
    if (octets.empty()) return;
    if (octets.size() > maxOffset || offset > maxOffset - octets.size())
        throw SmartcardException("invalid offset", operation);
    CommandApdu command;
    if (offset < evenOffsets) {
        command = evenCommand(Instruction::updateBinary, offset);
        command.data = Blob(octets);
    } else {
        command = oddCommand(Instruction::updateBinaryOdd, offset);
        appendBerTlv(command.data, discretionaryTag, octets);
    }
    sendData(command, "UPDATE BINARY refused", operation);
}

Blob ISO7816CardOS::readRecord(std::size_t number) {
    constexpr const char* operation = "ISO7816CardOS::readRecord";
    constexpr const char* message = "READ RECORD refused";
    if (number == 0 || number > maxRecordNumber)
        refuse(message, operation, StatusWord::recordNotFound);
    CommandApdu command = recordCommand(Instruction::readRecord, number);
    command.expected = std::min(maxRead(), std::max(recordSize_, CommandApdu::shortExpected));
    ResponseApdu response = exchange_.send(command, operation);
    if (response.status != StatusWord::endOfFile) check(response, message, operation);
    return std::move(response.data);
}

void ISO7816CardOS::updateRecord(std::size_t number, ASN1::View record) {
    constexpr const char* operation = "ISO7816CardOS::updateRecord";
    constexpr const char* message = "UPDATE RECORD refused";
    if (number == 0 || number > maxRecordNumber)
        refuse(message, operation, StatusWord::recordNotFound);
    CommandApdu command = recordCommand(Instruction::updateRecord, number);
    command.data = Blob(record);
    sendData(command, message, operation);
}

void ISO7816CardOS::appendRecord(ASN1::View record) {
    CommandApdu command;
    command.ins = Instruction::appendRecord;
    command.data = Blob(record);
    sendData(command, "APPEND RECORD refused", "ISO7816CardOS::appendRecord");
}

void ISO7816CardOS::sendData(const CommandApdu& command, const char* message,
                             const char* operation) {
    if (command.data.size() > exchange_.maxWrite())
        throw SmartcardException("too much data for one command", operation);
    check(exchange_.send(command, operation), message, operation);
}

std::size_t ISO7816CardOS::maxWrite() const {
    const std::size_t most = exchange_.maxWrite();
    if (size_ <= evenOffsets) return most;
    return most > oddOverhead ? most - oddOverhead : 1;
}

}  // namespace tovi
