#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tovi/interfaces/ISCardOS.h"

namespace tovi::test {

/// Passes calls on to another card, writes them down, and throws whatever a test wants to see
/// thrown.
class ScriptedCardOS final : public ISCardOS {
public:
    /// Called in front of every call that reaches the card, with its number, counted from 0, and
    /// its line in calls(). What it throws is what the call throws.
    using Script = std::function<void(std::size_t index, const std::string& call)>;

    explicit ScriptedCardOS(ISCardOS& card, Script script = {})
        : card_(card), script_(std::move(script)) {}

    /// "selectApplication A000000063504B43532D3135 0C", "selectFile 3F0050155031",
    /// "readBinary 0", "readRecord 1"; offsets in octets.
    const std::vector<std::string>& calls() const { return calls_; }

    Blob selectApplication(const Blob& aid, unsigned char mode) override;
    FileInfo selectFile(const Blob& path) override;
    Blob readBinary(std::size_t offset, std::size_t length) override;
    void updateBinary(std::size_t offset, ASN1::View octets) override;
    Blob readRecord(std::size_t number) override;
    void updateRecord(std::size_t number, ASN1::View record) override;
    void appendRecord(ASN1::View record) override;
    std::size_t maxRead() const override { return card_.maxRead(); }
    std::size_t maxWrite() const override { return card_.maxWrite(); }

private:
    void note(std::string call);

    ISCardOS& card_;
    Script script_;
    std::vector<std::string> calls_;
};

/// A script that throws `failure` at call number `index`, counted from 0.
template <class Failure>
ScriptedCardOS::Script throwingAt(std::size_t index, const Failure& failure) {
    return [index, failure](std::size_t at, const std::string&) {
        if (at == index) throw failure;
    };
}

/// A script that throws `failure` at every call whose line is `call`.
template <class Failure>
ScriptedCardOS::Script throwingAt(const std::string& call, const Failure& failure) {
    return [call, failure](std::size_t, const std::string& line) {
        if (line == call) throw failure;
    };
}

/// "selectFile " and the path in hex.
std::string selectFileCall(const Blob& path);

}  // namespace tovi::test
