#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tovi/platform/RecordWriter.h"
#include "tovi/platform/StretchCheck.h"
#include "tovi/platform/WritePlan.h"

namespace tovi {

/// Writes records of a transparent file, as planWriting() says. A record that an earlier operation
/// could not complete is completed first, as it was before that operation.
class TransparentWriter final : public RecordWriter {
public:
    TransparentWriter(ISCardOS& os, DirectoryFile& file) : RecordWriter(os, file) {}

    bool open() override;

protected:
    WriteOutcome perform(RecordChange& change) override;

private:
    WriteOutcome performPlanned(RecordChange& change, StretchCheck& check);
    std::optional<std::size_t> incompletePlace(const RecordChange& change) const;
    void rememberLongRecords(const RecordChange& change);
    void forgetLongRecords() noexcept;
    bool settleDoubt();
    bool settlePlaces();
    void believeToldSize();
    void readSize();
    std::size_t mostWritten() const;
    std::vector<std::uint8_t> believedOctets() const;
    RecordChange planned(const RecordChange& change) const;
    std::size_t placeOf(std::size_t recordOnCard) const;
    bool addPlacesFound();
    void execute(WritePlan plan, const RecordChange& change);
    void write(WriteStep step, RecordChange::Kind effect, std::size_t place);
};

}  // namespace tovi
