// READ, UPDATE, APPEND and ERASE RECORD (ISO/IEC 7816-4).
#include <algorithm>

#include "tovi/card/StatusWord.h"
#include "tovi/card/VirtualCard.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

/// What P1 means, in the low three bits of P2.
enum Mode : std::uint8_t { first, last, next, previous, byNumber, fromNumber };

constexpr std::uint8_t modeBits = 0x07;
constexpr std::uint8_t rfuSfi = 31;
constexpr std::uint8_t rfuNumber = 255;

ResponseApdu only(std::uint16_t status) { return {{}, status}; }

std::uint8_t modeOf(const CommandApdu& command) { return command.p2 & modeBits; }

}  // namespace

/// Makes the file that P2 names current.
std::uint16_t VirtualCard::recordFile(const CommandApdu& command) {
    const auto sfi = static_cast<std::uint8_t>(command.p2 >> 3);
    if (sfi == rfuSfi) return StatusWord::wrongParameters;
    if (sfi != 0) {
        VirtualFile* file = files_.bySfi(*folder_, sfi);
        if (file == nullptr) return StatusWord::fileNotFound;
        // The record pointer stays where it is in a file that is current already.
        if (file != file_) makeCurrent(*file);
    }
    if (file_ == nullptr) return StatusWord::noCurrentFile;
    return file_->isLinear() ? StatusWord::success : StatusWord::wrongFileStructure;
}

std::uint16_t VirtualCard::recordTarget(const CommandApdu& command, RecordRange& range) {
    const std::uint16_t status = recordFile(command);
    if (status != StatusWord::success) return status;
    const std::size_t count = file_->records.size();
    const std::uint8_t mode = modeOf(command);
    std::size_t number = command.p1;
    if (mode > fromNumber || number == rfuNumber) return StatusWord::wrongParameters;
    if (mode == byNumber || mode == fromNumber) {
        if (number == 0) number = record_;
    } else {
        // P1 would be a record identifier, which these records do not have.
        if (number != 0) return StatusWord::recordNotFound;
        if (mode == first) number = 1;
        if (mode == last) number = count;
        if (mode == next) number = record_ + 1;
        if (mode == previous) number = record_ == 0 ? count : record_ - 1;
    }
    if (number == 0 || number > count) return StatusWord::recordNotFound;
    if (mode < byNumber) record_ = number;
    range = {number - 1, mode == fromNumber ? count : number};
    return StatusWord::success;
}

ResponseApdu VirtualCard::readRecord(const CommandApdu& command) {
    RecordRange range;
    const std::uint16_t status = recordTarget(command, range);
    if (status != StatusWord::success) return only(status);
    if (!pins_.allows(file_->description.read)) return only(StatusWord::securityNotSatisfied);
    if (!command.data.empty() || command.expected == 0) return only(StatusWord::wrongLength);
    ResponseApdu response;
    for (std::size_t i = range.first; i < range.last; ++i) response.data.append(file_->records[i]);
    const std::size_t all =
        command.extended ? CommandApdu::extendedExpected : CommandApdu::shortExpected;
    const std::size_t size = response.data.size();
    response.status = StatusWord::success;
    if (command.expected == all) return response;
    if (command.expected > size) response.status = StatusWord::endOfFile;
    if (command.expected < size && size <= CommandApdu::shortExpected)
        return only(static_cast<std::uint16_t>(StatusWord::wrongExpectedLength | (size & 0xFF)));
    return response;
}

ResponseApdu VirtualCard::updateRecord(const CommandApdu& command) {
    RecordRange range;
    if (modeOf(command) == fromNumber) return only(StatusWord::wrongParameters);
    const std::uint16_t status = recordTarget(command, range);
    if (status != StatusWord::success) return only(status);
    if (!pins_.allows(file_->description.update)) return only(StatusWord::securityNotSatisfied);
    if (const std::uint16_t reason = unfit(command.data)) return only(reason);
    std::vector<Blob> records = file_->records;
    records[range.first] = command.data;
    return replaceRecords(std::move(records));
}

ResponseApdu VirtualCard::appendRecord(const CommandApdu& command) {
    if (command.p1 != 0 || modeOf(command) != 0) return only(StatusWord::wrongParameters);
    const std::uint16_t status = recordFile(command);
    if (status != StatusWord::success) return only(status);
    if (!pins_.allows(file_->description.update)) return only(StatusWord::securityNotSatisfied);
    if (const std::uint16_t reason = unfit(command.data)) return only(reason);
    if (file_->records.size() >= file_->description.size) return only(StatusWord::noSpaceInFile);
    std::vector<Blob> records = file_->records;
    records.push_back(command.data);
    const ResponseApdu response = replaceRecords(std::move(records));
    // The new record becomes the current one (ISO/IEC 7816-4:2005, 7.3.6).
    if (response.status == StatusWord::success) record_ = file_->records.size();
    return response;
}

ResponseApdu VirtualCard::eraseRecord(const CommandApdu& command) {
    RecordRange range;
    if (modeOf(command) < byNumber) return only(StatusWord::wrongParameters);
    const std::uint16_t status = recordTarget(command, range);
    if (status != StatusWord::success) return only(status);
    if (!pins_.allows(file_->description.update)) return only(StatusWord::securityNotSatisfied);
    if (!command.data.empty()) return only(StatusWord::wrongLength);
    std::vector<Blob> records = file_->records;
    const bool fixed = file_->description.kind == FileDescription::Kind::linearFixed;
    for (std::size_t i = range.first; i < range.last; ++i)
        records[i] = Blob(fixed ? file_->description.recordSize : 0, 0x00);
    return replaceRecords(std::move(records));
}

/// Nought for a record that the current file can hold, else why not.
std::uint16_t VirtualCard::unfit(const Blob& record) const {
    const std::size_t most = file_->description.recordSize;
    if (record.empty()) return StatusWord::wrongLength;
    if (file_->description.kind == FileDescription::Kind::linearFixed)
        return record.size() == most ? 0 : StatusWord::wrongLength;
    return record.size() <= most ? 0 : StatusWord::noSpaceInFile;
}

ResponseApdu VirtualCard::replaceRecords(std::vector<Blob> records) {
    try {
        if (storage_ != nullptr) storage_->storeRecords(*file_, records);
    } catch (const Exception&) {
        return only(StatusWord::memoryFailure);
    }
    file_->records = std::move(records);
    return only(StatusWord::success);
}

}  // namespace tovi
