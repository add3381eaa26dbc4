#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tovi/Export.h"
#include "tovi/card/IPcscService.h"

namespace tovi {

/// A reader, as PC/SC shows it.
struct PcscReader {
    /// `inUse`: another program has the card open. `mute`: the card gives no answer to reset.
    enum class State : std::uint8_t { empty, present, inUse, mute };

    std::string name;            ///< as the service spells it
    State state = State::empty;  ///< see State
    Blob atr = {};               ///< answer to reset; empty where the card gave none
    /// Counts insertions and removals, as far as 16 bits reach: the same number is the same card.
    std::uint16_t events = 0;

    /// Whether there is a card, mute or in use or not.
    bool hasCard() const { return state != State::empty; }
};

/// The readers of a PC/SC service. Every operation throws PcscError; see there for the messages.
class TOVI_API PcscReaders {
public:
    /// How long a wait goes on; nothing: for as long as it takes.
    using Patience = std::optional<std::chrono::milliseconds>;
    /// Called between the slices of a wait, several times a second. What it throws ends the wait.
    using Idle = std::function<void()>;

    /// Begins a context of the service, which must outlive this object.
    explicit PcscReaders(IPcscService& service);
    ~PcscReaders();
    PcscReaders(const PcscReaders&) = delete;
    PcscReaders& operator=(const PcscReaders&) = delete;

    /// The service, for calls of its own.
    IPcscService& service() { return service_; }

    /// All readers, in the order of the service; none is no failure.
    std::vector<PcscReader> list();
    /// The reader of that name, else the only one whose name has that part.
    ///
    /// Throws "no PC/SC reader", "reader not found" and "reader name not unique"; the text of the
    /// last two names the candidates.
    PcscReader find(std::string_view part);
    /// The same once a card is in it, waiting for reader and card. Throws "no card in the reader"
    /// when `patience` is over, or what find() throws while no such reader is attached.
    PcscReader waitForCard(std::string_view part, Patience patience, const Idle& idle = {});

private:
    std::vector<std::string> names();
    std::string nameWith(std::string_view part);
    PcscReaderState stateOf(const std::string& name, std::uint32_t known,
                            std::chrono::milliseconds patience);

    IPcscService& service_;
};

}  // namespace tovi
