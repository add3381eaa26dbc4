#include "tovi/card/PinVerification.h"

#include "tovi/card/Apdu.h"
#include "tovi/card/StatusWord.h"
#include "tovi/card/Wipe.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

constexpr std::uint16_t triesMask = 0x000F;
constexpr std::uint16_t authenticationBlocked = 0x6984;  // reference data not usable

/// The octets of a command, wiped at the end of their life.
class SecretCommand {
public:
    SecretCommand(std::uint8_t reference, ASN1::View pin) {
        // At once as long as it gets: a buffer that grows leaves copies behind.
        octets_ = Blob(pin.empty() ? headerSize : headerSize + 1 + pin.size(), 0x00);
        octets_[1] = Instruction::verify;
        octets_[3] = reference;
        if (pin.empty()) return;
        octets_[headerSize] = static_cast<std::uint8_t>(pin.size());
        for (std::size_t i = 0; i < pin.size(); ++i) octets_[headerSize + 1 + i] = pin[i];
    }
    ~SecretCommand() { wipe(octets_); }
    SecretCommand(const SecretCommand&) = delete;
    SecretCommand& operator=(const SecretCommand&) = delete;

    const Blob& octets() const { return octets_; }

private:
    static constexpr std::size_t headerSize = 4;
    Blob octets_;
};

PinState stateOf(std::uint16_t status, const char* operation) {
    PinState state;
    if (status == StatusWord::success) {
        state.isVerified = true;
    } else if ((status & ~triesMask) == StatusWord::triesLeft) {
        state.triesLeft = status & triesMask;
        state.isBlocked = *state.triesLeft == 0;
    } else if (status == StatusWord::blocked || status == authenticationBlocked) {
        state.triesLeft = 0;
        state.isBlocked = true;
    } else if (status != 0x6300) {  // verification failed, no counter told
        throw SmartcardException("VERIFY refused", operation, statusWordCode + status);
    }
    return state;
}

PinState send(ICardChannel& channel, std::uint8_t reference, ASN1::View pin,
              const char* operation) {
    const SecretCommand command(reference, pin);
    ResponseApdu response;
    if (!ResponseApdu::parse(channel.transmit(command.octets()), response))
        throw SmartcardException("incomplete card response", operation);
    return stateOf(response.status, operation);
}

}  // namespace

PinState verifyPin(ICardChannel& channel, std::uint8_t reference, ASN1::View pin) {
    constexpr const char* operation = "verifyPin";
    if (pin.empty() || pin.size() > CommandApdu::shortData)
        throw SmartcardException("invalid PIN length", operation);
    return send(channel, reference, pin, operation);
}

PinState pinState(ICardChannel& channel, std::uint8_t reference) {
    return send(channel, reference, {}, "pinState");
}

}  // namespace tovi
