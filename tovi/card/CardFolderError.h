#pragma once

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "tovi/Export.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

/// A card folder that cannot be made or used. GetMessage is one of "invalid card description",
/// "card folder not readable", "card folder not writable", "card folder in use" and "card folder
/// exists"; the code is 0.
class TOVI_API CardFolderError : public SmartcardException {
public:
    CardFolderError(const char* message, const char* operation, std::string text)
        : SmartcardException(message, operation),
          text_(std::make_shared<const std::string>(std::move(text))) {}
    CardFolderError* Clone() const override { return new (std::nothrow) CardFolderError(*this); }
    [[noreturn]] void Throw() const override { throw CardFolderError(*this); }

    /// What was found where, and what was expected: "CARD:3: found 'tree', expected df, ...".
    const std::string& text() const noexcept { return *text_; }

private:
    std::shared_ptr<const std::string> text_;  // copying an exception must not throw
};

}  // namespace tovi
