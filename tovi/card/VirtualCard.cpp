#include "tovi/card/VirtualCard.h"

#include <algorithm>

#include "tovi/card/StatusWord.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

ResponseApdu only(std::uint16_t status) { return {{}, status}; }

/// 61XX or 6CXX about that many octets; 00 says 256, or more.
std::uint16_t withLength(std::uint16_t kind, std::size_t octets) {
    return static_cast<std::uint16_t>(kind | (octets > 0xFF ? 0 : octets));
}

}  // namespace

VirtualCard::VirtualCard(const VirtualCard& other) { *this = other; }

VirtualCard& VirtualCard::operator=(const VirtualCard& other) {
    const Blob folder = other.folder_->description.path;
    const Blob file = other.file_ == nullptr ? Blob() : other.file_->description.path;
    files_ = other.files_;
    pins_ = other.pins_;
    settings_ = other.settings_;
    storage_ = nullptr;
    folder_ = files_.find(folder);
    file_ = files_.find(file);
    record_ = other.record_;
    waiting_ = other.waiting_;
    chained_ = other.chained_;
    inChain_ = other.inChain_;
    return *this;
}

VirtualFile& VirtualCard::addFolder(const Blob& path, const Blob& aid) {
    FileDescription description;
    description.path = path;
    description.aid = aid;
    return add(description);
}

VirtualFile& VirtualCard::addTransparent(const Blob& path, std::size_t size, const Blob& contents) {
    FileDescription description;
    description.path = path;
    description.kind = FileDescription::Kind::transparent;
    description.size = size;
    VirtualFile& file = add(description);
    std::copy_n(contents.begin(), std::min(size, contents.size()), file.contents.begin());
    return file;
}

VirtualFile& VirtualCard::addLinear(const Blob& path, FileDescription::Kind kind,
                                    std::size_t recordSize, std::size_t maxRecords) {
    FileDescription description;
    description.path = path;
    description.kind = kind;
    description.size = maxRecords;
    description.recordSize = recordSize;
    return add(description);
}

void VirtualCard::reset() {
    makeCurrent(files_.masterFile());
    pins_.reset();
    waiting_ = {};
    inChain_ = false;
}

void VirtualCard::makeCurrent(VirtualFile& file) {
    folder_ = file.isFolder() ? &file : file.parent;
    file_ = file.isFolder() ? nullptr : &file;
    record_ = 0;
}

Blob VirtualCard::process(const Blob& octets) {
    CommandApdu command;
    if (!CommandApdu::parse(octets, command)) return only(StatusWord::wrongLength).encode();
    return perform(command).encode();
}

ResponseApdu VirtualCard::perform(const CommandApdu& command) {
    if ((command.cla & ~chainingBit) != 0) return only(StatusWord::unknownClass);
    if (command.extended && !settings_.extendedLength) return only(StatusWord::wrongLength);
    if (command.ins == Instruction::getResponse) return getResponse(command);
    waiting_ = {};
    if (inChain_ || (command.cla & chainingBit) != 0) return chain(command);
    return deliver(dispatch(command), command.expected);
}

ResponseApdu VirtualCard::chain(const CommandApdu& command) {
    if (!settings_.commandChaining) return only(StatusWord::chainingNotSupported);
    if (!inChain_) {
        chained_ = command;
    } else if (command.ins != chained_.ins || command.p1 != chained_.p1 ||
               command.p2 != chained_.p2) {
        inChain_ = false;
        return only(StatusWord::lastOfChainExpected);
    } else {
        chained_.data.append(command.data);
    }
    inChain_ =
        (command.cla & chainingBit) != 0 && chained_.data.size() <= CommandApdu::extendedData;
    if (chained_.data.size() > CommandApdu::extendedData) return only(StatusWord::wrongLength);
    if (inChain_) return only(StatusWord::success);
    chained_.expected = command.expected;
    return deliver(dispatch(chained_), command.expected);
}

ResponseApdu VirtualCard::dispatch(const CommandApdu& command) {
    const bool odd = settings_.oddInstructions;
    switch (command.ins) {
        case Instruction::select:
            return select(command);
        case Instruction::verify:
            return verify(command);
        case Instruction::readBinary:
            return readBinary(command);
        case Instruction::updateBinary:
            return updateBinary(command);
        case Instruction::eraseBinary:
            return eraseBinary(command);
        case Instruction::readRecord:
            return readRecord(command);
        case Instruction::updateRecord:
            return updateRecord(command);
        case Instruction::appendRecord:
            return appendRecord(command);
        case Instruction::eraseRecord:
            return eraseRecord(command);
        case Instruction::readBinaryOdd:
            if (odd) return readBinaryOdd(command);
            break;
        case Instruction::updateBinaryOdd:
            if (odd) return updateBinaryOdd(command);
            break;
        case Instruction::eraseBinaryOdd:
            if (odd) return eraseBinaryOdd(command);
            break;
        default:
            break;
    }
    return only(StatusWord::unknownInstruction);
}

/// Gives as much of a response as the command has room for, and keeps the rest for GET RESPONSE.
ResponseApdu VirtualCard::deliver(ResponseApdu response, std::size_t expected) {
    const std::size_t size = response.data.size();
    if (size == 0) return response;
    if (settings_.exactLength && expected > size)
        return only(withLength(StatusWord::wrongExpectedLength, size));
    std::size_t room = std::min(expected, settings_.maxResponse);
    if (settings_.useGetResponse) room = 0;
    if (size <= room) return response;
    if (room == 0 && !settings_.useGetResponse) return only(response.status);
    waiting_ = {Blob(ASN1::View(response.data).subspan(room)), response.status};
    response.data.resize(room);
    response.status = withLength(StatusWord::moreData, size - room);
    return response;
}

ResponseApdu VirtualCard::getResponse(const CommandApdu& command) {
    if (command.p1 != 0 || command.p2 != 0) return only(StatusWord::wrongParameters);
    if (waiting_.data.empty()) return only(StatusWord::conditionsNotSatisfied);
    const std::size_t size = waiting_.data.size();
    if (command.expected == 0) return only(StatusWord::wrongLength);
    if (settings_.exactLength && command.expected > size)
        return only(withLength(StatusWord::wrongExpectedLength, size));
    const std::size_t given = std::min({size, command.expected, settings_.maxResponse});
    ResponseApdu response{Blob(ASN1::View(waiting_.data).first(given)), waiting_.status};
    waiting_.data.erase(waiting_.data.begin(), waiting_.data.begin() + given);
    if (given < size) response.status = withLength(StatusWord::moreData, size - given);
    return response;
}

ResponseApdu VirtualCard::verify(const CommandApdu& command) {
    if (command.p1 != 0) return only(StatusWord::wrongParameters);
    if (command.data.empty()) return only(pins_.state(command.p2));
    try {
        return only(pins_.verify(command.p2, command.data, storage_));
    } catch (const Exception&) {
        return only(StatusWord::memoryFailure);
    }
}

}  // namespace tovi
