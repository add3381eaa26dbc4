#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

#include "tests/support/Der.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi::test {

/// Octets written as numbers, joined with + and repeated with times().
inline Blob operator+(Blob a, const Blob& b) {
    a.append(ASN1::View(b));
    return a;
}

/// One elementary file of a FakeCard.
struct FakeFile {
    FileInfo info;              ///< what SELECT tells
    Blob octets;                ///< of a transparent file
    std::vector<Blob> records;  ///< of a linear file
};

inline FakeFile transparentFile(Blob octets) {
    return {{FileStructure::transparent, octets.size(), 0, 0}, std::move(octets), {}};
}

inline FakeFile transparentFileOfUnknownSize(Blob octets) {
    return {{FileStructure::transparent, 0, 0, 0}, std::move(octets), {}};
}

inline FakeFile linearFile(FileStructure structure, std::vector<Blob> records,
                           std::size_t count = 0) {
    return {{structure, 0, 64, count}, {}, std::move(records)};
}

/// Files by absolute path, commands counted, and failures where a test wants them.
class FakeCard final : public ISCardOS {
public:
    /// What a READ BINARY that reaches past the end of the file gives.
    enum class AtEnd { whatIsThere, refusal };

    std::map<Blob, FakeFile> files;
    std::size_t mostRead = 256;
    std::size_t mostSent = 65536;  ///< though mostRead were asked for
    AtEnd atEnd = AtEnd::whatIsThere;
    std::int64_t endCode = statusWordCode + 0x6B00;  ///< refusal of a read behind the end
    std::int64_t cutCode = statusWordCode + 0x6282;  ///< refusal of a read that passes the end

    std::size_t failingCommand = 0;  ///< counted from 1; 0: none
    std::int64_t failure = statusWordCode + 0x6F00;

    bool staysAway = false;  ///< after the failing command, all fail

    bool isWritable = false;
    std::size_t mostWritten = 255;
    bool performsFailingWrite = false;  ///< the failing command is a write, and done all the same
    std::size_t maxRecords = 254;       ///< of every linear file

    std::size_t selects = 0;
    std::size_t reads = 0;
    std::size_t writes = 0;
    std::size_t octetsSent = 0;
    std::vector<Blob> selected;

    std::size_t commands() const { return selects + reads + writes; }

    Blob selectApplication(const Blob&, unsigned char) override { return {}; }

    FileInfo selectFile(const Blob& path) override {
        ++selects;
        selected.push_back(path);
        failWhenAsked();
        const auto found = files.find(path);
        if (found == files.end()) refuse(statusWordCode + 0x6A82);
        file_ = &found->second;
        return file_->info;
    }

    Blob readBinary(std::size_t offset, std::size_t length) override {
        ++reads;
        failWhenAsked();
        if (file_->info.structure != FileStructure::transparent || !file_->records.empty())
            refuse(statusWordCode + 0x6981);
        const std::size_t size = file_->octets.size();
        if (offset >= size && atEnd == AtEnd::refusal) refuse(endCode);
        if (offset >= size) return {};
        if (length > size - offset && atEnd == AtEnd::refusal) refuse(cutCode);
        const std::size_t count = std::min({length, size - offset, mostSent});
        return sent(ASN1::View(file_->octets).subspan(offset, count));
    }

    Blob readRecord(std::size_t number) override {
        ++reads;
        failWhenAsked();
        if (number > file_->records.size()) refuse(statusWordCode + 0x6A83);
        return sent(file_->records[number - 1]);
    }

    void updateBinary(std::size_t offset, ASN1::View octets) override {
        if (octets.size() > mostWritten) refuse(statusWordCode + 0x6700);
        write([&] {
            if (offset > file_->octets.size() || octets.size() > file_->octets.size() - offset)
                refuse(statusWordCode + 0x6B00);
            std::copy(octets.begin(), octets.end(), file_->octets.begin() + offset);
        });
    }

    void updateRecord(std::size_t number, ASN1::View record) override {
        write([&] {
            if (number > file_->records.size()) refuse(statusWordCode + 0x6A83);
            file_->records[number - 1] = record;
        });
    }

    void appendRecord(ASN1::View record) override {
        write([&] {
            if (file_->records.size() >= maxRecords) refuse(statusWordCode + 0x6A84);
            file_->records.emplace_back(record);
        });
    }

    std::size_t maxRead() const override { return mostRead; }
    std::size_t maxWrite() const override { return mostWritten; }

private:
    [[noreturn]] static void refuse(std::int64_t code) {
        throw SmartcardException("refused", "FakeCard", code);
    }

    void failWhenAsked() const {
        const bool isAway = staysAway && failingCommand != 0 && commands() > failingCommand;
        if (commands() == failingCommand || isAway) refuse(failure);
    }

    template <class Performance>
    void write(const Performance& perform) {
        ++writes;
        if (!isWritable) refuse(statusWordCode + 0x6982);
        if (commands() == failingCommand && performsFailingWrite) perform();
        failWhenAsked();
        perform();
    }

    Blob sent(ASN1::View octets) {
        octetsSent += octets.size();
        return octets;
    }

    FakeFile* file_ = nullptr;
};

}  // namespace tovi::test
