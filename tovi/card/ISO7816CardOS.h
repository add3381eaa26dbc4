#pragma once

#include "tovi/card/CommandExchange.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// A card that speaks the commands of ISO/IEC 7816-4:2005, clause 7.
///
/// Besides what ISCardOS says: refusals carry the messages "SELECT refused", "READ BINARY refused",
/// "UPDATE BINARY refused", "READ RECORD refused", "UPDATE RECORD refused" and "APPEND RECORD
/// refused". Code 0 stands for "invalid path" (empty, or no whole number of steps), "invalid AID"
/// (empty or over 16 octets), "invalid offset" (nothing can express it), "too much data for one
/// command", "malformed card response", and what CommandExchange and the channel report.
///
/// Selecting a file and reading at most maxRead() octets of it are one command each. Only a card
/// that refuses a form of SELECT costs more, and what it accepts is remembered.
class ISO7816CardOS final : public ISCardOS {
public:
    /// `channel` must outlive this object.
    explicit ISO7816CardOS(ICardChannel& channel, const CardCapabilities& capabilities = {});

    Blob selectApplication(const Blob& aid, unsigned char mode) override;
    FileInfo selectFile(const Blob& path) override;
    Blob readBinary(std::size_t offset, std::size_t length) override;
    void updateBinary(std::size_t offset, ASN1::View octets) override;
    Blob readRecord(std::size_t number) override;
    void updateRecord(std::size_t number, ASN1::View record) override;
    void appendRecord(ASN1::View record) override;
    std::size_t maxRead() const override { return exchange_.maxRead(); }
    std::size_t maxWrite() const override { return exchange_.maxWrite(); }

private:
    /// The forms of SELECT, tried in this order; `wholePath` names the path in one command.
    struct SelectForm {
        bool wholePath;
        std::uint8_t p2;
    };
    static const SelectForm forms_[];

    ResponseApdu selectBelowApplication(ASN1::View steps);
    ResponseApdu selectInAnyForm(ASN1::View steps, bool absolute);
    ResponseApdu selectWhole(ASN1::View steps, bool absolute, std::uint8_t p2);
    ResponseApdu selectStepwise(ASN1::View steps, bool absolute, std::uint8_t p2);
    ResponseApdu select(std::uint8_t p1, std::uint8_t p2, ASN1::View data);
    ResponseApdu readChunk(std::size_t offset, std::size_t length);
    ResponseApdu readChunkOdd(std::size_t offset, std::size_t length);

    CommandExchange exchange_;
    std::size_t form_ = 0;            ///< the first form not refused so far
    Blob aid_;                        ///< of the application selected last
    bool belowApplication_ = true;    ///< the application's DF is the current DF, as far as known
    bool freshlySelected_ = false;    ///< nothing was selected since the application
    std::size_t size_ = 0;            ///< octets of the selected transparent file, 0: unknown
};

}  // namespace tovi
