#pragma once

#include <cstdint>
#include <new>
#include <string>

#include "tovi/Export.h"
#include "tovi/card/DetailedError.h"

namespace tovi {

/// A card that cannot be reached through PC/SC, or no longer. The code is 0; GetMessage is one of
///
///     "PC/SC service not running"          or it stopped
///     "no PC/SC reader"                    none is attached
///     "reader not found"                   no name has the part that was asked for
///     "reader name not unique"             several have
///     "no card in the reader"
///     "card used exclusively by another program"
///     "card does not answer"               it gave no answer to reset, or one that nobody knows
///     "card protocol not supported"        neither T=0 nor T=1
///     "card removed"                       in the middle of the work; or it fell silent
///     "card reset by another program"      in the middle of the work; see PcscChannel
///     "command too short", "command too long"  for PC/SC; it was not sent
///     "PC/SC failure"                      anything else
///
/// The text names the reader, the candidates, and the code of PC/SC.
class TOVI_API PcscError final : public DetailedError {
public:
    using DetailedError::DetailedError;
    /// The failure that the code of a PC/SC call means. `subject` is what it befell, such as a
    /// reader; empty where there is nothing to name.
    static PcscError of(std::uint32_t code, const char* operation, const std::string& subject);

    PcscError* Clone() const override { return new (std::nothrow) PcscError(*this); }
    [[noreturn]] void Throw() const override { throw PcscError(*this); }
};

}  // namespace tovi
