// makePcscService for builds with libpcsclite.
#include <winscard.h>

#include <algorithm>
#include <string_view>

#include "tovi/card/IPcscService.h"

namespace tovi {
namespace {

constexpr DWORD anyProtocol = SCARD_PROTOCOL_T0 | SCARD_PROTOCOL_T1;

/// LONG is wider than the codes on some platforms and signed on others.
IPcscService::Code toCode(LONG result) { return static_cast<IPcscService::Code>(result); }

SCARDHANDLE handleOf(const PcscConnection& connection) {
    return static_cast<SCARDHANDLE>(connection.handle);
}

class PcscLiteService final : public IPcscService {
public:
    Code establish() override {
        return toCode(SCardEstablishContext(SCARD_SCOPE_SYSTEM, nullptr, nullptr, &context_));
    }
    void release() noexcept override { SCardReleaseContext(context_); }
    Code listReaders(std::vector<std::string>& names) override;
    Code getStatusChange(std::chrono::milliseconds patience,
                         std::span<PcscReaderState> states) override;

    Code connect(const std::string& reader, PcscConnection& connection) override;
    Code reconnect(PcscConnection& connection) override;
    void disconnect(const PcscConnection& connection) noexcept override {
        SCardDisconnect(handleOf(connection), SCARD_LEAVE_CARD);
    }
    Code beginTransaction(const PcscConnection& connection) override {
        return toCode(SCardBeginTransaction(handleOf(connection)));
    }
    void endTransaction(const PcscConnection& connection, bool resetsCard) noexcept override {
        SCardEndTransaction(handleOf(connection), resetsCard ? SCARD_RESET_CARD : SCARD_LEAVE_CARD);
    }
    Code transmit(const PcscConnection& connection, ASN1::View command, Blob& response) override;

private:
    SCARDCONTEXT context_ = 0;
    std::vector<BYTE> buffer_ = std::vector<BYTE>(MAX_BUFFER_SIZE_EXTENDED);
};

IPcscService::Code PcscLiteService::listReaders(std::vector<std::string>& names) {
    names.clear();
    std::string list;
    LONG result = SCARD_E_INSUFFICIENT_BUFFER;
    // A reader that comes between the two calls makes the list longer.
    for (int attempt = 0; attempt < 3 && result == SCARD_E_INSUFFICIENT_BUFFER; ++attempt) {
        DWORD length = 0;
        result = SCardListReaders(context_, nullptr, nullptr, &length);
        if (result != SCARD_S_SUCCESS) return toCode(result);
        list.assign(length, '\0');
        result = SCardListReaders(context_, nullptr, list.data(), &length);
        list.resize(std::min<std::size_t>(list.size(), length));
    }
    if (result != SCARD_S_SUCCESS) return toCode(result);
    // Each name ends with NUL, and the list with an empty one.
    for (std::string_view rest = list; !rest.empty() && rest.front() != '\0';) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        names.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return toCode(result);
}

IPcscService::Code PcscLiteService::getStatusChange(std::chrono::milliseconds patience,
                                                    std::span<PcscReaderState> states) {
    std::vector<SCARD_READERSTATE> rows(states.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].szReader = states[i].reader.c_str();
        rows[i].dwCurrentState = states[i].known;
    }
    const LONG result = SCardGetStatusChange(context_, static_cast<DWORD>(patience.count()),
                                             rows.data(), static_cast<DWORD>(rows.size()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        states[i].state = static_cast<std::uint32_t>(rows[i].dwEventState);
        const auto length = std::min<std::size_t>(rows[i].cbAtr, sizeof rows[i].rgbAtr);
        states[i].atr = Blob(ASN1::View(rows[i].rgbAtr, length));
    }
    return toCode(result);
}

IPcscService::Code PcscLiteService::connect(const std::string& reader, PcscConnection& connection) {
    SCARDHANDLE handle = 0;
    DWORD protocol = 0;
    const LONG result =
        SCardConnect(context_, reader.c_str(), SCARD_SHARE_SHARED, anyProtocol, &handle, &protocol);
    connection.handle = handle;
    connection.isT0 = protocol == SCARD_PROTOCOL_T0;
    return toCode(result);
}

IPcscService::Code PcscLiteService::reconnect(PcscConnection& connection) {
    DWORD protocol = 0;
    const LONG result = SCardReconnect(handleOf(connection), SCARD_SHARE_SHARED, anyProtocol,
                                       SCARD_LEAVE_CARD, &protocol);
    connection.isT0 = protocol == SCARD_PROTOCOL_T0;
    return toCode(result);
}

IPcscService::Code PcscLiteService::transmit(const PcscConnection& connection, ASN1::View command,
                                             Blob& response) {
    response.clear();
    auto length = static_cast<DWORD>(buffer_.size());
    const LONG result = SCardTransmit(
        handleOf(connection), connection.isT0 ? SCARD_PCI_T0 : SCARD_PCI_T1, command.data(),
        static_cast<DWORD>(command.size()), nullptr, buffer_.data(), &length);
    if (result == SCARD_S_SUCCESS) {
        response = Blob(ASN1::View(buffer_).first(std::min<std::size_t>(length, buffer_.size())));
    }
    return toCode(result);
}

}  // namespace

std::unique_ptr<IPcscService> makePcscService() { return std::make_unique<PcscLiteService>(); }

}  // namespace tovi
