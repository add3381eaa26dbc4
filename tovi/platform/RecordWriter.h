#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "tovi/interfaces/ISCardOS.h"
#include "tovi/platform/DirectoryFile.h"
#include "tovi/platform/RecordChange.h"

namespace tovi {

/// How a write ended that the card did not refuse.
enum class WriteOutcome : std::uint8_t {
    done,
    noRoom,  ///< the file has no room for the record; nothing was written
    changed  ///< the card does not hold what was read; nothing was written
};

/// One operation on the records of one directory file.
///
/// Every operation throws what the card's operating system throws. Whatever happens, the file that
/// is remembered agrees with the card, except for the one command that is then in doubt; open()
/// finds out what became of that.
class RecordWriter {
public:
    /// `os` and `file` must outlive the writer.
    static std::unique_ptr<RecordWriter> of(ISCardOS& os, DirectoryFile& file);
    virtual ~RecordWriter() = default;

    /// Selects the file and looks what the last write did if that failed. False when the card holds
    /// neither what was there before nor what was written.
    virtual bool open() = 0;

    /// Adds `record` behind the last counted record, or where the file has a place for it. Sets
    /// `place`. A record that a failed operation left, with the same octets, is taken for it.
    WriteOutcome insert(ASN1::View record, std::size_t& place);
    /// Replaces the record at `place` by `record`. Like the others, throws only as long as the
    /// change is not on the card.
    WriteOutcome replace(std::size_t place, ASN1::View record);
    /// Removes the record at `place`.
    ///
    /// Throws only as long as the record stands on the card, so far as the card can be asked.
    WriteOutcome remove(std::size_t place);

protected:
    RecordWriter(ISCardOS& os, DirectoryFile& file) : os_(os), file_(file) {}

    /// Performs `change` on the open file and on its `places`, which `change.place` counts. Of an
    /// insertion it is a proposal.
    virtual WriteOutcome perform(RecordChange& change) = 0;

    /// Selects the file; false when it is not the one that was read.
    bool select();

    /// Makes room in `places`, so that nothing can fail later.
    void reservePlace() { file_.places.reserve(file_.places.size() + 1); }
    /// What the change on the card means to `places`; a record that is new stands at `place`. Needs
    /// reservePlace() before an insertion.
    void takeEffect(const RecordChange& change, RecordPlace place = {}) noexcept;
    /// The same for a change that was reported as failed: a record is there that nobody counts, or
    /// one is gone and its index stays. Where the record stands is still to be found.
    void takeLateEffect(const DoubtfulWrite& write);

    ISCardOS& os_;
    DirectoryFile& file_;

private:
    std::size_t placeBehindCounted() const;
    std::size_t findOrphan(ASN1::View record) const;
    bool isGone(std::size_t place);
    WriteOutcome performToTheEffect(RecordChange& change);
    bool hasTakenEffect(const RecordChange& change) const;
    void count(std::size_t place);

    RecordChange effect_;  // the last one that `places` took, its record left out
};

}  // namespace tovi
