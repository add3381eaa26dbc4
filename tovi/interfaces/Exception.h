#pragma once

#include <cstdint>

#include "tovi/Export.h"

namespace tovi {

/// The root of everything the library throws: a constant message, the constant name of the
/// operation that failed, and a code. The texts are never copied: both pointers refer to strings
/// that live as long as the program.
class TOVI_API Exception {
public:
    /// Both strings must live as long as the program.
    Exception(const char* message, const char* operation, std::int64_t code = 0) noexcept
        : message_(message), operation_(operation), code_(code) {}
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception() = default;

    /// Allocates a copy of the same class; the caller owns it. Null when memory is exhausted.
    virtual Exception* Clone() const;
    /// The number of the class: 0, 40 for LogicalException, 140 for SmartcardException.
    virtual int GetId() const;
    /// Throws a copy of this object as its own most-derived class.
    [[noreturn]] virtual void Throw() const;

    /// What went wrong; may be null for exceptions of outside pieces.
    const char* GetMessage() const noexcept { return message_; }
    /// Class name, two colons and operation, such as "PKCS15Container::readFromCard".
    const char* GetOperation() const noexcept { return operation_; }
    /// 0, or 0x10000 + status word (ISO/IEC 7816-4) when a card refused a command.
    std::int64_t GetCode() const noexcept { return code_; }

private:
    const char* message_;
    const char* operation_;
    std::int64_t code_;
};

/// A mistake of the program rather than of the card or its contents.
class TOVI_API LogicalException : public Exception {
public:
    using Exception::Exception;
    LogicalException* Clone() const override;
    int GetId() const override;
    [[noreturn]] void Throw() const override;
};

/// Every failure of card contents, card access or an argument.
class TOVI_API SmartcardException : public Exception {
public:
    using Exception::Exception;
    SmartcardException* Clone() const override;
    int GetId() const override;
    [[noreturn]] void Throw() const override;
};

/// Marks a code that carries a status word in its low 16 bits.
inline constexpr std::int64_t statusWordCode = 0x10000;

}  // namespace tovi
