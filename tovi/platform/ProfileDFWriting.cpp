// The writing side of ProfileDFHandler.
#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/platform/ProfileDFState.h"
#include "tovi/platform/RecordWriter.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

constexpr std::int64_t notEnoughSpace = statusWordCode + 0x6A84;

[[noreturn]] void throwChanged(const char* operation) {
    throw SmartcardException("directory file changed", operation);
}

[[noreturn]] void throwNoRoom(const char* operation) {
    throw SmartcardException("not enough memory", operation, notEnoughSpace);
}

void checkTarget(const ISCardOS* os, const DirectoryFiles& files, const char* operation) {
    if (os == nullptr) throw SmartcardException("no card", operation);
    if (files.files().empty()) throw SmartcardException("no directory file", operation);
}

void checkRecord(const Blob& record, const char* operation) {
    const TlvHeader header = readTlvHeader(record);
    if (record.empty() || !isRecordTag(record[0]) || header.state != TlvHeader::State::complete ||
        header.total() != record.size())
        throw SmartcardException("invalid record", operation);
}

void check(WriteOutcome outcome, const char* operation) {
    if (outcome == WriteOutcome::changed) throwChanged(operation);
    if (outcome == WriteOutcome::noRoom) throwNoRoom(operation);
}

/// Where record `index` stands.
DirectoryFiles::Position position(const DirectoryFiles& files, unsigned long index,
                                  const char* operation) {
    const auto found = files.find(index);
    if (!found) throwChanged(operation);
    return *found;
}

/// False when the file has no room for the record beside those that are known, without a look at
/// the card.
bool mayHaveRoom(const DirectoryFile& file, const Blob& record) {
    const bool isAsTold = file.size != 0 && file.size >= file.info.size;
    if (file.isLinear() || !file.isSettled || file.doubt || !isAsTold) return true;
    std::size_t room = file.size;
    for (const RecordPlace& place : file.places)
        room -= place.contents ? place.contents->size() : place.length;
    return record.size() <= room;
}

}  // namespace

bool ProfileDFHandler::WriteSequence(ISCardOS* os, const Blob& record, unsigned long& index) {
    constexpr const char* HERE = "ProfileDFHandler::WriteSequence";
    DirectoryFiles& files = state_->files;
    checkTarget(os, files, HERE);
    checkRecord(record, HERE);
    for (std::size_t i = files.files().size(); i-- > 0;) {
        DirectoryFile& file = files.files()[i];
        if (!mayHaveRoom(file, record)) continue;
        const auto writer = RecordWriter::of(*os, file);
        if (!writer->open()) throwChanged(HERE);
        std::size_t place = 0;
        const WriteOutcome outcome = writer->insert(record, place);
        if (outcome == WriteOutcome::noRoom) continue;
        check(outcome, HERE);
        index = static_cast<unsigned long>(files.indexOf({i, place}));
        return true;
    }
    throwNoRoom(HERE);
}

bool ProfileDFHandler::UpdateSequence(ISCardOS* os, unsigned long index, const Blob& record) {
    constexpr const char* HERE = "ProfileDFHandler::UpdateSequence";
    DirectoryFiles& files = state_->files;
    checkTarget(os, files, HERE);
    checkRecord(record, HERE);
    const auto writer = RecordWriter::of(*os, files.files()[position(files, index, HERE).file]);
    if (!writer->open()) throwChanged(HERE);
    // What became of a failed write may have moved it.
    check(writer->replace(position(files, index, HERE).place, record), HERE);
    return true;
}

bool ProfileDFHandler::DeleteSequence(ISCardOS* os, unsigned long index) {
    constexpr const char* HERE = "ProfileDFHandler::DeleteSequence";
    DirectoryFiles& files = state_->files;
    checkTarget(os, files, HERE);
    const auto writer = RecordWriter::of(*os, files.files()[position(files, index, HERE).file]);
    WriteOutcome outcome = WriteOutcome::changed;
    try {
        if (writer->open()) outcome = writer->remove(position(files, index, HERE).place);
    } catch (const SmartcardException&) {
        return false;
    }
    check(outcome, HERE);
    return true;
}

}  // namespace tovi
