#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "tovi/Export.h"
#include "tovi/card/ICardChannel.h"
#include "tovi/card/PcscError.h"
#include "tovi/card/PcscReaders.h"

namespace tovi {

/// The card in a PC/SC reader: connected shared, with one transaction from construction to
/// destruction, so that nobody else comes between the commands. At the end the card is left as it
/// is, unless a PIN was given: then it is reset, so that nobody after finds the PIN verified. Every
/// failure is a PcscError.
///
/// A card that was reset by somebody else, as some systems do when a transaction takes long, has
/// forgotten what was selected and which PINs were given. The command that met the reset was not
/// performed and is not repeated: it throws "card reset by another program". So does every further
/// one, without being sent, until one comes that does not depend on what is selected: SELECT by
/// name, of the master file, or by a path from there (ISO/IEC 7816-4:2005, 7.1.1). That one is sent
/// in a new transaction, and if the card performs it, commands pass again. A command meant for one
/// file thus never meets another. ISO7816CardOS takes up its work by itself that way: selecting the
/// application is such a command.
///
/// Any other failure ends the session: every further command throws the same failure. So does a
/// response of fewer than two octets, which PC/SC calls a success when a card is pulled, and a card
/// that was taken out and put in again, which may be another one.
///
/// Where the card speaks T=0, short commands are sent as that protocol has them: without Le when
/// they carry data, with P3 = 00 when they carry none (ISO/IEC 7816-3). The data then
/// waits behind 61XX, which CommandExchange follows.
class TOVI_API PcscChannel final : public ICardChannel {
public:
    /// The most octets of a command; a longer one may eject the card, and is not sent. With an
    /// extended length field, that is 65528 octets of data, or 65526 where a response is expected.
    static constexpr std::size_t maxCommand = 65535;
    /// The most data of a response: what asks for 65536 octets cannot be served in full, so let
    /// CardCapabilities::maxRead of a card with extended length be no more than this.
    static constexpr std::size_t maxResponseData = 65533;

    /// Connects to the card in a reader that `readers` gave, and begins the transaction; waits for
    /// as long as a transaction of somebody else lasts. `readers` must outlive this object.
    PcscChannel(PcscReaders& readers, const PcscReader& reader);
    ~PcscChannel() override;
    PcscChannel(const PcscChannel&) = delete;
    PcscChannel& operator=(const PcscChannel&) = delete;

    /// The reader's whole name.
    const std::string& reader() const { return reader_; }

    Blob transmit(const Blob& command) override;

private:
    enum class State : std::uint8_t { selected, reset, lost };

    void connect();
    IPcscService::Code begin();
    Blob send(const Blob& command);
    IPcscService::Code sendT0(const Blob& command, Blob& response);
    void renew();
    bool isSameCard();
    [[noreturn]] void lose(const PcscError& failure);
    void end() noexcept;
    std::string subject() const { return "reader '" + reader_ + "'"; }

    PcscReaders& readers_;
    IPcscService& service_;
    std::string reader_;
    std::uint16_t events_;
    PcscConnection connection_;
    bool isInTransaction_ = false;
    bool knowsPin_ = false;  // a PIN was given, and no reset since
    State state_ = State::selected;
    std::optional<PcscError> failure_;  // that ended the session
};

}  // namespace tovi
