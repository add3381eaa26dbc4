#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tests/platform/FakeCard.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/platform/DirectoryFile.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi::fuzz {

using Records = std::vector<Blob>;

/// Takes the input apart; behind its end there are zeros.
class Input {
public:
    explicit Input(ASN1::View octets) : rest_(octets) {}
    bool isEmpty() const { return rest_.empty(); }
    std::uint8_t octet() {
        const ASN1::View taken = octets(1);
        return taken.empty() ? std::uint8_t{0} : taken[0];
    }
    ASN1::View octets(std::size_t count) {
        const ASN1::View taken = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }

private:
    ASN1::View rest_;
};

/// How the card holds its file, bits.
enum Choice : unsigned { linear = 1, fixed = 2, unknownSize = 4 };

inline test::FakeFile fileOf(unsigned choices, ASN1::View octets) {
    if ((choices & linear) == 0) {
        test::FakeFile file = test::transparentFile(octets);
        if ((choices & unknownSize) != 0) file.info.size = 0;
        return file;
    }
    constexpr std::size_t slotSize = 24;
    const bool isFixed = (choices & fixed) != 0;
    test::FakeFile file =
        test::linearFile(isFixed ? FileStructure::linearFixed : FileStructure::linearVariable, {});
    for (; octets.size() >= slotSize; octets = octets.subspan(slotSize))
        file.records.emplace_back(octets.first(slotSize));
    file.info.recordSize = isFixed && !file.records.empty() ? slotSize : 2 * slotSize;
    return file;
}

/// One operation of a handler.
struct Operation {
    enum Kind : unsigned { write, update, remove };
    Kind kind = write;
    unsigned long index = 0;
    Blob record;
};

inline Blob recordOf(std::size_t contents, std::uint8_t name) {
    Blob record = {0x30};
    if (contents > 0x7F) record.push_back(contents > 0xFF ? 0x82 : 0x81);
    if (contents > 0xFF) record.push_back(static_cast<std::uint8_t>(contents >> 8));
    record.push_back(static_cast<std::uint8_t>(contents));
    record.append(Blob(contents, name));
    return record;
}

inline Operation operationFrom(Input& input, std::uint8_t name) {
    const unsigned kind = input.octet();
    const unsigned long index = input.octet();
    const std::size_t length = input.octet() + (kind >= 0x80 ? 256u : 0u);
    return {Operation::Kind{kind % 3}, index, recordOf(length, name)};
}

/// What is on a card: all records, in order. The handler counts the first of them.
struct Model {
    Records records;
    std::size_t counted = 0;

    Model after(const Operation& operation, unsigned long index) const {
        Model changed = *this;
        const auto at = changed.records.begin() + static_cast<std::ptrdiff_t>(index);
        if (operation.kind == Operation::update) *at = operation.record;
        if (operation.kind == Operation::write)
            changed.records.insert(at, operation.record), ++changed.counted;
        if (operation.kind == Operation::remove) changed.records.erase(at), --changed.counted;
        return changed;
    }
};

/// A card with one directory file, a handler that has read it, and what that is to hold.
class WrittenFile {
public:
    static inline const Blob path = {0x3F, 0x00, 0x44, 0x01};

    WrittenFile(unsigned choices, std::size_t mostRead, std::size_t mostWritten,
                ASN1::View octets) {
        card.files[path] = fileOf(choices, octets);
        card.mostRead = mostRead;
        card.mostWritten = mostWritten;
        card.isWritable = true;
        card.maxRecords = 20;
        read();
    }

    void read() {
        handler = std::make_unique<ProfileDFHandler>(Blob());
        handler->SetFilePath({0x44, 0x01}, nullptr);
        handler->ReadFile(&card, IGNORE_TAG, true);
        model = {found(ReadExtent::wholeFile), handler->records().size()};
        isUnfinished = false;
    }

    /// What somebody finds who reads the file now.
    Records found(ReadExtent extent) const {
        test::FakeCard copy = card;
        copy.failingCommand = 0;
        const DirectoryFile file = readDirectoryFile(copy, path, extent);
        Records records;
        for (const RecordPlace& place : file.places) records.emplace_back(file.octetsAt(place));
        return records;
    }

    /// Of a transparent file: where its records end that may move; the size of the file when the
    /// last one is sound.
    std::size_t limit() const {
        const std::vector<FileEntry> entries = scanRecords(onCard().octets);
        const bool isWalled = !entries.empty() && entries.back().kind == FileEntry::Kind::broken;
        return isWalled ? entries.back().offset : onCard().octets.size();
    }
    const test::FakeFile& onCard() const { return card.files.at(path); }
    bool isLinear() const { return onCard().info.structure != FileStructure::transparent; }

    test::FakeCard card;
    std::unique_ptr<ProfileDFHandler> handler;
    Model model;
    bool isUnfinished = false;  ///< an interrupted operation may have left something to do
};

}  // namespace tovi::fuzz
