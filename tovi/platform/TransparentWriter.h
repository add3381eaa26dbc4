#pragma once

#include <vector>

#include "tovi/platform/RecordWriter.h"
#include "tovi/platform/WritePlan.h"

namespace tovi {

/// Writes records of a transparent file, as planWriting() says.
class TransparentWriter final : public RecordWriter {
public:
    TransparentWriter(ISCardOS& os, DirectoryFile& file) : RecordWriter(os, file) {}

    bool open() override;

protected:
    WriteOutcome perform(RecordChange& change) override;

private:
    bool settleDoubt();
    bool settlePlaces();
    void readSize();
    std::vector<std::uint8_t> believedOctets() const;
    RecordChange planned(const RecordChange& change) const;
    std::size_t placeOf(std::size_t recordOnCard) const;
    bool addPlacesFound();
    void execute(WritePlan plan, const RecordChange& change);
    void write(WriteStep step, RecordChange::Kind effect, std::size_t place);
};

}  // namespace tovi
