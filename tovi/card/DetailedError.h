#pragma once

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "tovi/Export.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

/// A failure of which more is known than its constant message, such as a line or a reader.
class TOVI_API DetailedError : public SmartcardException {
public:
    /// Message and operation are constant strings, as of every Exception.
    DetailedError(const char* message, const char* operation, std::string text)
        : SmartcardException(message, operation),
          text_(std::make_shared<const std::string>(std::move(text))) {}
    DetailedError* Clone() const override { return new (std::nothrow) DetailedError(*this); }
    [[noreturn]] void Throw() const override { throw DetailedError(*this); }

    /// What the message leaves out.
    const std::string& text() const noexcept { return *text_; }

private:
    std::shared_ptr<const std::string> text_;  // copying an exception must not throw
};

}  // namespace tovi
