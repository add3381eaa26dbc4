#pragma once

#include <new>

#include "tovi/Export.h"
#include "tovi/card/DetailedError.h"

namespace tovi {

/// A card folder that cannot be made or used. GetMessage is one of "invalid card description",
/// "card folder not readable", "card folder not writable", "card folder in use" and "card folder
/// exists"; the code is 0. The text says what was found where, and what was expected: "CARD:3:
/// found 'tree', expected df, ...".
class TOVI_API CardFolderError final : public DetailedError {
public:
    using DetailedError::DetailedError;
    CardFolderError* Clone() const override { return new (std::nothrow) CardFolderError(*this); }
    [[noreturn]] void Throw() const override { throw CardFolderError(*this); }
};

}  // namespace tovi
