#pragma once

#include <memory>
#include <vector>

#include "tovi/interfaces/Blob.h"

namespace tovi {

class ISCardOS;

/// One kind of PKCS#15 directory file as a sequence of records.
///
/// Reading takes one file after the other: SetFilePath, then ReadFile. A handler may read several
/// files of its kind; the index of a record runs through all of them in the order of reading. The
/// first path coming again starts a new round.
class ProfileDFHandler {
public:
    /// Binds the handler to the application at `appPath`: two octets a step, without 3F00.
    explicit ProfileDFHandler(const Blob& appPath);
    ~ProfileDFHandler();
    ProfileDFHandler(const ProfileDFHandler&) = delete;
    ProfileDFHandler& operator=(const ProfileDFHandler&) = delete;

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

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tovi
