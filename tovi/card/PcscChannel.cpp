#include "tovi/card/PcscChannel.h"

#include <algorithm>

#include "tovi/card/Apdu.h"

namespace tovi {
namespace {

constexpr const char* connecting = "PcscChannel::PcscChannel";
constexpr const char* transmitting = "PcscChannel::transmit";
constexpr std::size_t headerSize = 4;
constexpr std::size_t statusSize = 2;
constexpr int mostResets = 3;  // in a row, before a transaction stands

/// True for a command that selects the same whatever is selected before.
bool selectsAnew(const Blob& command) {
    CommandApdu apdu;
    // Nothing but a SELECT is taken apart: other commands may hold a PIN, of which no copy stays.
    if (command[1] != Instruction::select || !CommandApdu::parse(command, apdu)) return false;
    constexpr std::uint8_t byIdentifier = 0x00, byName = 0x04, pathFromMasterFile = 0x08;
    const Blob masterFile = {0x3F, 0x00};
    return apdu.p1 == byName || apdu.p1 == pathFromMasterFile ||
           (apdu.p1 == byIdentifier && (apdu.data.empty() || apdu.data == masterFile));
}

/// 90XX and 61XX, and the warnings 62XX and 63XX.
bool isPerformed(const Blob& response) {
    const std::uint8_t sw1 = response[response.size() - statusSize];
    return sw1 == 0x90 || (sw1 >= 0x61 && sw1 <= 0x63);
}

/// VERIFY with a PIN that was the right one.
bool givesPin(const Blob& command, const Blob& response) {
    return command[1] == Instruction::verify && command.size() > headerSize + 1 &&
           response[response.size() - statusSize] == 0x90;
}

/// What T=0 sends of a short command with data: its Le stays behind. No copy, which might hold a
/// PIN.
ASN1::View withoutLe(const Blob& command) {
    constexpr std::size_t lengthField = headerSize, dataBegin = headerSize + 1;
    const std::size_t length = command[lengthField];
    const bool hasBoth = length != 0 && command.size() == dataBegin + length + 1;
    return ASN1::View(command).first(command.size() - (hasBoth ? 1 : 0));
}

}  // namespace

PcscChannel::PcscChannel(PcscReaders& readers, const PcscReader& reader)
    : readers_(readers), service_(readers.service()), reader_(reader.name), events_(reader.events) {
    connect();
    const auto code = begin();
    if (code == PcscCode::success) return;
    end();
    throw PcscError::of(code, connecting, subject());
}

PcscChannel::~PcscChannel() {
    if (state_ != State::lost) end();
}

void PcscChannel::connect() {
    auto code = service_.connect(reader_, connection_);
    // A card that is pulled while it is being connected to may show itself in other failures.
    if (code == PcscCode::protocolMismatch || code == PcscCode::unpoweredCard) {
        if (!readers_.find(reader_).hasCard()) code = PcscCode::noCard;
    }
    if (code == PcscCode::removedCard) code = PcscCode::noCard;
    if (code != PcscCode::success) throw PcscError::of(code, connecting, subject());
}

/// Nothing depends on what is selected before the first command, so resets do no harm here.
IPcscService::Code PcscChannel::begin() {
    auto code = service_.beginTransaction(connection_);
    for (int i = 0; i < mostResets && code == PcscCode::resetCard; ++i) {
        code = service_.reconnect(connection_);
        if (code == PcscCode::success) code = service_.beginTransaction(connection_);
    }
    isInTransaction_ = code == PcscCode::success;
    return code;
}

void PcscChannel::end() noexcept {
    if (isInTransaction_) service_.endTransaction(connection_, knowsPin_);
    isInTransaction_ = false;
    service_.disconnect(connection_);
}

Blob PcscChannel::transmit(const Blob& command) {
    if (command.size() < headerSize)
        throw PcscError("command too short", transmitting, "at least 4 octets are a command");
    if (command.size() > maxCommand)
        throw PcscError("command too long", transmitting, "PC/SC carries 65535 octets");
    if (state_ == State::lost) failure_->Throw();
    if (state_ == State::selected) return send(command);
    if (!selectsAnew(command)) throw PcscError::of(PcscCode::resetCard, transmitting, subject());
    renew();
    Blob response = send(command);
    if (isPerformed(response)) state_ = State::selected;
    return response;
}

Blob PcscChannel::send(const Blob& command) {
    Blob response;
    auto code = connection_.isT0 ? sendT0(command, response)
                                 : service_.transmit(connection_, command, response);
    if (code == PcscCode::resetCard) {
        state_ = State::reset;
        isInTransaction_ = knowsPin_ = false;  // both ended with the reset
        throw PcscError::of(code, transmitting, subject());
    }
    if (code == PcscCode::noCard) code = PcscCode::removedCard;
    if (code != PcscCode::success) lose(PcscError::of(code, transmitting, subject()));
    if (response.size() < statusSize)
        lose(PcscError("card removed", transmitting, subject() + ", incomplete response"));
    knowsPin_ = knowsPin_ || givesPin(command, response);
    return response;
}

IPcscService::Code PcscChannel::sendT0(const Blob& command, Blob& response) {
    if (command.size() > headerSize)
        return service_.transmit(connection_, withoutLe(command), response);
    Blob withLength = command;
    withLength.push_back(0x00);
    return service_.transmit(connection_, withLength, response);
}

/// Takes the card up after a reset, provided that it is still the same one.
void PcscChannel::renew() {
    if (isInTransaction_) return;  // an earlier selection was refused
    const auto code = begin();
    if (code != PcscCode::success) lose(PcscError::of(code, transmitting, subject()));
    if (!isSameCard())
        lose(PcscError("card removed", transmitting, subject() + ", another may be in it now"));
}

bool PcscChannel::isSameCard() {
    try {
        const PcscReader now = readers_.find(reader_);
        return now.hasCard() && now.events == events_;
    } catch (const PcscError&) {
        return false;  // without its reader
    }
}

void PcscChannel::lose(const PcscError& failure) {
    failure_ = failure;
    end();
    state_ = State::lost;
    throw failure;
}

}  // namespace tovi
