#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// Results of PC/SC calls that mean something here (PC/SC part 5; the values are those of
/// <winscard.h>).
namespace PcscCode {
/// What the call came to.
inline constexpr std::uint32_t success = 0;
inline constexpr std::uint32_t unknownReader = 0x80100009;
inline constexpr std::uint32_t timeout = 0x8010000A;
inline constexpr std::uint32_t sharingViolation = 0x8010000B;
inline constexpr std::uint32_t noCard = 0x8010000C;
inline constexpr std::uint32_t protocolMismatch = 0x8010000F;
inline constexpr std::uint32_t communication = 0x80100013;  // with the service
inline constexpr std::uint32_t notTransacted = 0x80100016;
inline constexpr std::uint32_t readerUnavailable = 0x80100017;
inline constexpr std::uint32_t noService = 0x8010001D;
inline constexpr std::uint32_t serviceStopped = 0x8010001E;
inline constexpr std::uint32_t noReaders = 0x8010002E;
inline constexpr std::uint32_t unsupportedCard = 0x80100065;
inline constexpr std::uint32_t unresponsiveCard = 0x80100066;
inline constexpr std::uint32_t unpoweredCard = 0x80100067;
inline constexpr std::uint32_t resetCard = 0x80100068;
inline constexpr std::uint32_t removedCard = 0x80100069;
}  // namespace PcscCode

/// Bits of a reader's state. The upper 16 bits count insertions and removals.
namespace PcscState {
/// A bit of the state.
inline constexpr std::uint32_t changed = 0x0002;
inline constexpr std::uint32_t empty = 0x0010;
inline constexpr std::uint32_t present = 0x0020;
inline constexpr std::uint32_t exclusive = 0x0080;
inline constexpr std::uint32_t inUse = 0x0100;
inline constexpr std::uint32_t mute = 0x0200;
}  // namespace PcscState

/// One row of IPcscService::getStatusChange.
struct PcscReaderState {
    std::string reader;       ///< its name
    std::uint32_t known = 0;  ///< the state as the caller knows it; 0: it does not
    std::uint32_t state = 0;  ///< the state as it is
    Blob atr = {};            ///< answer to reset of the card; empty without one
};

/// A connected card.
struct PcscConnection {
    std::int64_t handle = 0;  ///< as the service gave it
    bool isT0 = false;        ///< T=0 is spoken with the card, else T=1
};

/// The calls of PC/SC that tovi makes, each returning the code that PC/SC gave, so that tests can
/// stand in for the service. One object is one context of the service; not thread-safe.
class TOVI_API IPcscService {
public:
    /// A PcscCode, or another number that the service returns.
    using Code = std::uint32_t;
    virtual ~IPcscService() = default;

    /// Begins the context.
    virtual Code establish() = 0;
    /// Ends what establish() began.
    virtual void release() noexcept = 0;
    /// The names of all readers.
    virtual Code listReaders(std::vector<std::string>& names) = 0;
    /// Returns as soon as one of the states differs from the known one; PcscCode::timeout when none
    /// did within `patience`.
    virtual Code getStatusChange(std::chrono::milliseconds patience,
                                 std::span<PcscReaderState> states) = 0;

    /// Connects shared, with whichever of T=0 and T=1 the card speaks.
    virtual Code connect(const std::string& reader, PcscConnection& connection) = 0;
    /// Takes up a connection whose card was reset by somebody else; the card is left as it is.
    virtual Code reconnect(PcscConnection& connection) = 0;
    /// Leaves the card as it is.
    virtual void disconnect(const PcscConnection& connection) noexcept = 0;
    /// Keeps others from the card; waits for as long as another transaction lasts.
    virtual Code beginTransaction(const PcscConnection& connection) = 0;
    /// Ends what beginTransaction() began; the card is reset before others get at it, or left as it
    /// is.
    virtual void endTransaction(const PcscConnection& connection, bool resetsCard) noexcept = 0;
    /// Sends the octets as they are. Success may come with fewer than two octets.
    virtual Code transmit(const PcscConnection& connection, ASN1::View command, Blob& response) = 0;

    /// Time, because waiting is a matter of it: the steady clock, and the thread asleep.
    virtual std::chrono::steady_clock::time_point now() const;
    virtual void sleep(std::chrono::milliseconds time);
};

/// The PC/SC service of the system.
///
/// Throws SmartcardException "PC/SC not supported by this build", code 0, when the library was
/// built without PC/SC (TOVI_PCSC=OFF, or AUTO where libpcsclite was not found). Everything else of
/// these headers is there all the same.
TOVI_API std::unique_ptr<IPcscService> makePcscService();

}  // namespace tovi
