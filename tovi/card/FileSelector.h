#pragma once

#include <cstddef>
#include <cstdint>

#include "tovi/Export.h"
#include "tovi/card/CommandExchange.h"

namespace tovi {

/// Selects applications and files, with as few commands as the card lets it (ISO/IEC 7816-4:2005,
/// 7.1.1).
///
/// A path is one command: P1 = 08 from the master file, 02 or 09 below the application. A card that
/// refuses that form gets other P2, then the steps one by one with P1 = 00; what it accepts comes
/// first from then on. A path below the application selects the application anew where another DF
/// has become current, or seems to.
class TOVI_API FileSelector {
public:
    /// `exchange` must outlive this object.
    explicit FileSelector(CommandExchange& exchange) : exchange_(exchange) {}

    /// Both return the response as it came, refusals included.
    ResponseApdu selectApplication(const Blob& aid, std::uint8_t p2, const char* operation);
    ResponseApdu selectFile(ASN1::View path, const char* operation);

private:
    struct Form {
        bool wholePath;
        std::uint8_t p2;
    };
    static const Form forms_[];

    ResponseApdu selectBelowApplication(ASN1::View steps, const char* operation);
    ResponseApdu selectInAnyForm(ASN1::View steps, bool absolute, const char* operation);
    ResponseApdu selectWhole(ASN1::View steps, bool absolute, std::uint8_t p2,
                             const char* operation);
    ResponseApdu selectStepwise(ASN1::View steps, bool absolute, std::uint8_t p2,
                                const char* operation);
    ResponseApdu send(std::uint8_t p1, std::uint8_t p2, ASN1::View data, const char* operation);

    CommandExchange& exchange_;
    std::size_t form_ = 0;          ///< index of the form that worked last
    Blob aid_;                      ///< of the application selected last
    bool belowApplication_ = true;  ///< its DF is the current DF, as far as known
    bool freshlySelected_ = false;  ///< and nothing was selected since
};

}  // namespace tovi
