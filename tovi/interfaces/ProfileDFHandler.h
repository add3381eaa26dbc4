#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

class ISCardOS;

/// One kind of PKCS#15 directory file as a sequence of records.
///
/// Reading takes one file after the other: SetFilePath, then ReadFile. A handler may read several
/// files of its kind; the index of a record runs through all of them in the order of reading.
/// BeginRound, or the first path coming again, starts a new round.
///
/// Writing selects the file, reads what it is about to change and what ReadFile left unread, and
/// then writes. A transparent file is afterwards compact: records from the first octet on, then
/// padding. Each command leaves a file that reads well, so that after a card was pulled out every
/// other record is as it was, and the one being written as before or as afterwards; only a record
/// too long for one command may be left as one that does not decode. In a linear file a record is
/// written by one command, and removed by filling it with 00 (PKCS#15 v1.1, 5.8).
///
/// A change is done, and not reported as failed, once the record stands on the card, even when the
/// card then refuses to close a gap, which the next write does. The next write also completes a
/// record that a failing command left incomplete.
///
/// Writing throws SmartcardException: "no card"; "no directory file" when none was read to be
/// written to; "invalid record"; "directory file changed" when the card does not hold what was read
/// or `index` is behind all records, and nothing is written then; "not enough memory", code
/// 0x16A84, when no file has room, card and indices unchanged; all others with code 0. What the
/// card reports comes through with its own code, 0x10000 + status word, but not from
/// DeleteSequence.
class TOVI_API ProfileDFHandler {
public:
    /// Binds the handler to the application at `appPath`: two octets a step, without 3F00.
    explicit ProfileDFHandler(const Blob& appPath);
    ~ProfileDFHandler();
    ProfileDFHandler(const ProfileDFHandler&) = delete;
    ProfileDFHandler& operator=(const ProfileDFHandler&) = delete;

    /// Forgets all files that were read, and their records. Whoever reads a list of files calls it
    /// before the first one, since the list may have changed since it was read last.
    void BeginRound();

    /// How many records the files of this round hold as indices count them: those that were read
    /// with their layout, and what was written since.
    std::size_t RecordCount() const;

    /// Names the file that the next ReadFile takes: absolute when `path` begins with 3F00, else
    /// below the application. `name` is a remark for people and may be null.
    void SetFilePath(const Blob& path, const char* name);

    /// Reads the records of the file into records().
    ///
    /// `tag` SEQUENCE_TAG takes only records with that outer tag, IGNORE_TAG any constructed one.
    /// `flag` true remembers the layout of the file, so that records can be written later. Throws
    /// SmartcardException when the card or the file cannot be read; records() is then empty.
    void ReadFile(ISCardOS* os, unsigned char tag, bool flag);

    /// The records of the file that ReadFile read last, in file order.
    const std::vector<Blob>& records() const;

    /// Adds `record`, one data object with a constructed tag, and sets `index` to its place.
    ///
    /// It goes into the last file of the kind that has room: behind the last record that was read
    /// there, or into a free record of a linear file. Never returns false. After a failure `index`
    /// is as it was, and the same call may be made again.
    bool WriteSequence(ISCardOS* os, const Blob& record, unsigned long& index);

    /// Replaces record `index` by `record`. Never returns false. After a failure the same call may
    /// be made again.
    bool UpdateSequence(ISCardOS* os, unsigned long index, const Blob& record);

    /// Removes record `index`; the indices behind it go down by one.
    ///
    /// Returns true once the record is gone, even when the card then refuses to close the gap,
    /// which the next write does; false, with all indices as they were, when the card refused
    /// before.
    bool DeleteSequence(ISCardOS* os, unsigned long index);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tovi
