#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/FakeCard.h"
#include "tests/support/Failure.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/ProfileDFHandler.h"

namespace tovi::test {

/// A record of `length` octets, 2 to 257, with `name` in its contents.
inline Blob record(std::size_t length, std::uint8_t name) {
    Blob record = {0x30};
    if (length > 129) record.push_back(0x81);
    record.push_back(static_cast<std::uint8_t>(length - record.size() - 1));
    return record + times(length - record.size(), name);
}

inline Failure changed(const std::string& operation) {
    return smartcardFailure("directory file changed", "ProfileDFHandler::" + operation);
}

inline Failure noRoom(const std::string& operation) {
    return {smartcardId, "not enough memory", "ProfileDFHandler::" + operation,
            statusWordCode + 0x6A84};
}

inline FakeFile fileOf(const Blob& records, std::size_t size, std::uint8_t fill = 0x00) {
    return transparentFile(records + times(size - records.size(), fill));
}

/// A card with one or two files of one kind, and a handler that has read them.
class Kind {
public:
    static inline const Blob path = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x01};
    static inline const Blob second = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x02};
    using Records = std::vector<Blob>;

    explicit Kind(FakeFile file) {
        card.files[path] = std::move(file);
        read();
    }
    Kind(FakeFile file, FakeFile other) {
        card.files[path] = std::move(file);
        card.files[second] = std::move(other);
        read();
    }

    void read(unsigned char tag = IGNORE_TAG) {
        card.isWritable = true;
        for (const auto& [name, file] : card.files) readFile(name, tag);
        forgetCosts();
    }

    void readFile(const Blob& name, unsigned char tag = IGNORE_TAG) {
        handler->SetFilePath(name, nullptr);
        handler->ReadFile(&card, tag, true);
    }

    void forgetCosts() { card.selects = card.reads = card.writes = 0; }

    unsigned long write(const Blob& record) {
        unsigned long index = 999;
        EXPECT_TRUE(handler->WriteSequence(&card, record, index));
        return index;
    }
    void update(unsigned long index, const Blob& record) {
        EXPECT_TRUE(handler->UpdateSequence(&card, index, record));
    }
    bool remove(unsigned long index) { return handler->DeleteSequence(&card, index); }

    Blob& octets(const Blob& name = path) { return card.files[name].octets; }
    Records& slots() { return card.files[path].records; }

    /// What somebody finds who reads all files of the card now.
    Records found() const {
        FakeCard copy = card;
        copy.failingCommand = 0;
        ProfileDFHandler reader({0x50, 0x15});
        Records records;
        for (const auto& [name, file] : copy.files) {
            reader.SetFilePath(name, nullptr);
            reader.ReadFile(&copy, IGNORE_TAG, true);
            records.insert(records.end(), reader.records().begin(), reader.records().end());
        }
        return records;
    }

    FakeCard card;
    std::unique_ptr<ProfileDFHandler> handler =
        std::make_unique<ProfileDFHandler>(Blob{0x50, 0x15});
};

}  // namespace tovi::test
