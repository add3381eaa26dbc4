#pragma once

#include <optional>

#include "tovi/platform/RecordWriter.h"

namespace tovi {

/// Writes records of a linear file, each by one command. A record that is removed is filled with
/// 00, and written again when a new one comes.
class LinearWriter final : public RecordWriter {
public:
    LinearWriter(ISCardOS& os, DirectoryFile& file) : RecordWriter(os, file) {}

    bool open() override;

protected:
    WriteOutcome perform(RecordChange& change) override;

private:
    bool settleDoubt();
    std::optional<Blob> readSlot(std::size_t slot);
    std::optional<Blob> contentFor(std::size_t slot, ASN1::View record) const;
    std::optional<std::size_t> freeSlot(std::size_t atLeast) const;
    WriteOutcome insertInto(std::size_t slot, RecordChange& change);
    std::optional<WriteOutcome> append(RecordChange& change);
    WriteOutcome update(std::size_t slot, Blob content, const RecordChange& change);
    void write(std::size_t slot, Blob content, const RecordChange& change);
    std::size_t placeFor(std::size_t slot) const;
};

}  // namespace tovi
