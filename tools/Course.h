#pragma once

#include <cstddef>

#include "tools/Forecast.h"
#include "tools/Operation.h"

namespace tovi {

/// Follows a list of operations while it is performed. Behind one that failed, numbers may stand
/// for other objects than the list means: what would have been a new object's record number can be
/// another's. So the list as it was meant is kept beside what came of it.
class Course {
public:
    /// `model` has been read; it must outlive this object.
    explicit Course(const PKCS15Container& model) : meant_(model), actual_(model) {}

    /// Whether an object that the next operation names is another one than the list means. One
    /// that is not there is none.
    bool leadsAstray(const Operation& next) const;
    /// The operation was performed, and changed what objects there are or failed to.
    void advance(const Operation& operation, bool isDone);

private:
    bool isAstray(std::uint64_t record) const;

    Forecast meant_;
    Forecast actual_;
    std::size_t position_ = 0;
    bool isLost_ = false;  // nobody knows what the list means by a record number
};

}  // namespace tovi
