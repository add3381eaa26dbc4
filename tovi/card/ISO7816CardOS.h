#pragma once

#include "tovi/Export.h"
#include "tovi/card/CommandExchange.h"
#include "tovi/card/FileSelector.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// A card that speaks the commands of ISO/IEC 7816-4:2005, clause 7.
///
/// Besides what ISCardOS says: refusals carry the messages "SELECT refused", "READ BINARY refused",
/// "UPDATE BINARY refused", "READ RECORD refused", "UPDATE RECORD refused" and "APPEND RECORD
/// refused". Code 0 stands for "invalid path" (empty, no whole number of steps, or over 64 of
/// them), "invalid AID" (empty or over 16 octets), "invalid offset" (over four octets), "too much
/// data for one command", "malformed card response", and what CommandExchange and the channel
/// report. The operation names are "ISO7816CardOS::selectFile" and so on.
///
/// Selecting a file and reading at most maxRead() octets of it are one command each; see
/// FileSelector for the cards that need more. Files over 32768 octets are read and written with the
/// odd instructions behind offset 7FFF.
class TOVI_API ISO7816CardOS final : public ISCardOS {
public:
    /// `channel` must outlive this object.
    explicit ISO7816CardOS(ICardChannel& channel, const CardCapabilities& capabilities = {});
    ISO7816CardOS(const ISO7816CardOS&) = delete;
    ISO7816CardOS& operator=(const ISO7816CardOS&) = delete;

    Blob selectApplication(const Blob& aid, unsigned char mode) override;
    FileInfo selectFile(const Blob& path) override;

    /// Where the card told the size of the file, nothing behind it is asked for.
    Blob readBinary(std::size_t offset, std::size_t length) override;
    void updateBinary(std::size_t offset, ASN1::View octets) override;

    /// Numbers over 254 are no records: 6A83 without a command.
    Blob readRecord(std::size_t number) override;
    void updateRecord(std::size_t number, ASN1::View record) override;
    void appendRecord(ASN1::View record) override;

    std::size_t maxRead() const override { return exchange_.maxRead(); }
    /// Less while a file is selected that needs the odd instructions.
    std::size_t maxWrite() const override;

private:
    void readToEnd(std::size_t offset, std::size_t length, Blob& octets);
    ResponseApdu readChunk(std::size_t offset, std::size_t length);
    ResponseApdu readChunkOdd(std::size_t offset, std::size_t length);
    std::size_t mostFrom(std::size_t offset) const;
    void sendData(const CommandApdu& command, const char* message, const char* operation);

    CommandExchange exchange_;
    FileSelector selector_{exchange_};
    std::size_t size_ = 0;        ///< octets of the selected transparent file, 0: unknown
    std::size_t recordSize_ = 0;  ///< of the selected linear file, 0: unknown
};

}  // namespace tovi
