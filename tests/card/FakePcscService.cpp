#include "tests/card/FakePcscService.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/card/CardTools.h"

namespace tovi::test {

void FakePcscService::addReader(const std::string& name, std::uint32_t state) {
    const bool hasAtr = (state & PcscState::present) != 0 && (state & PcscState::mute) == 0;
    readers.push_back({name, 0, state, hasAtr ? octets("3B80800101") : Blob()});
}

std::function<std::shared_ptr<IPcscService>()> FakePcscService::factory() {
    return [this] { return std::shared_ptr<IPcscService>(this, [](IPcscService*) {}); };
}

IPcscService::Code FakePcscService::scripted(const std::string& call) {
    auto& wanted = codes[call];
    if (wanted.empty()) return PcscCode::success;
    const Code code = wanted.front();
    wanted.pop_front();
    return code;
}

IPcscService::Code FakePcscService::next(const std::string& call) {
    calls.push_back(call);
    return scripted(call);
}

const PcscReaderState* FakePcscService::find(const std::string& name) const {
    const auto found = std::find_if(readers.begin(), readers.end(),
                                    [&](const auto& reader) { return reader.reader == name; });
    return found == readers.end() ? nullptr : &*found;
}

IPcscService::Code FakePcscService::listReaders(std::vector<std::string>& names) {
    const Code code = scripted("listReaders");
    if (code != PcscCode::success) return code;
    names.clear();
    for (const PcscReaderState& reader : readers) names.push_back(reader.reader);
    return names.empty() ? PcscCode::noReaders : PcscCode::success;
}

IPcscService::Code FakePcscService::getStatusChange(std::chrono::milliseconds patience,
                                                    std::span<PcscReaderState> states) {
    const Code code = scripted("getStatusChange");
    if (code != PcscCode::success) return code;
    if (patience.count() > 0) sleep(patience);
    bool hasChanged = false;
    for (PcscReaderState& row : states) {
        const PcscReaderState* reader = find(row.reader);
        if (reader == nullptr) return PcscCode::unknownReader;
        row.state = reader->state | PcscState::changed;
        row.atr = reader->atr;
        hasChanged = hasChanged || reader->state != row.known;
    }
    return hasChanged ? PcscCode::success : PcscCode::timeout;
}

IPcscService::Code FakePcscService::connect(const std::string& reader, PcscConnection& connection) {
    const Code code = next("connect");
    if (code != PcscCode::success) return code;
    const PcscReaderState* found = find(reader);
    if (found == nullptr) return PcscCode::unknownReader;
    if ((found->state & PcscState::present) == 0) return PcscCode::noCard;
    connection = {handle, isT0};
    return PcscCode::success;
}

IPcscService::Code FakePcscService::reconnect(PcscConnection& connection) {
    EXPECT_EQ(connection.handle, handle);
    connection.isT0 = isT0;
    return next("reconnect");
}

void FakePcscService::disconnect(const PcscConnection& connection) noexcept {
    EXPECT_EQ(connection.handle, handle);
    calls.push_back("disconnect");
}

IPcscService::Code FakePcscService::beginTransaction(const PcscConnection& connection) {
    EXPECT_EQ(connection.handle, handle);
    return next("begin");
}

void FakePcscService::endTransaction(const PcscConnection& connection, bool resetsCard) noexcept {
    EXPECT_EQ(connection.handle, handle);
    calls.push_back(resetsCard ? "end and reset" : "end");
}

IPcscService::Code FakePcscService::transmit(const PcscConnection& connection, ASN1::View command,
                                             Blob& response) {
    EXPECT_EQ(connection.handle, handle);
    calls.push_back(hexOf(command));
    const Code code = scripted("transmit");
    if (code == PcscCode::success) response = card->transmit(Blob(command));
    return code;
}

void FakePcscService::sleep(std::chrono::milliseconds time) {
    ++waits;
    now_ += time;
    if (onWait) onWait();
}

}  // namespace tovi::test
