#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tovi/card/ICardChannel.h"
#include "tovi/card/IPcscService.h"

namespace tovi::test {

/// A PC/SC service that does as the test says: it has the readers, states and cards that the test
/// gives it, and every call may be made to fail. It keeps a list of its calls.
class FakePcscService final : public IPcscService {
public:
    static constexpr std::int64_t handle = 42;

    /// The readers; a card in them answers through `card`.
    std::vector<PcscReaderState> readers;
    ICardChannel* card = nullptr;
    bool isT0 = false;

    /// What the next calls of that name return instead of being performed, in order.
    std::map<std::string, std::deque<Code>> codes;
    /// Called at every wait, which takes the whole of its time unless something changes.
    std::function<void()> onWait;

    /// The calls but those that ask for readers and states, one word each; commands in hex.
    std::vector<std::string> calls;
    int waits = 0;

    void addReader(const std::string& name, std::uint32_t state = PcscState::present);
    /// The service as the command takes it; this object has to outlive it.
    std::function<std::shared_ptr<IPcscService>()> factory();

    Code establish() override { return next("establish"); }
    void release() noexcept override { calls.push_back("release"); }
    Code listReaders(std::vector<std::string>& names) override;
    Code getStatusChange(std::chrono::milliseconds patience,
                         std::span<PcscReaderState> states) override;
    Code connect(const std::string& reader, PcscConnection& connection) override;
    Code reconnect(PcscConnection& connection) override;
    void disconnect(const PcscConnection& connection) noexcept override;
    Code beginTransaction(const PcscConnection& connection) override;
    void endTransaction(const PcscConnection& connection, bool resetsCard) noexcept override;
    Code transmit(const PcscConnection& connection, ASN1::View command, Blob& response) override;

    std::chrono::steady_clock::time_point now() const override { return now_; }
    void sleep(std::chrono::milliseconds time) override;

private:
    /// The code that the test wants for this call, or success.
    Code next(const std::string& call);
    Code scripted(const std::string& call);
    const PcscReaderState* find(const std::string& name) const;

    std::chrono::steady_clock::time_point now_;
};

}  // namespace tovi::test
