#include "tests/support/ScriptedCardOS.h"

#include <utility>

namespace tovi::test {

namespace {

std::string hexDigits(ASN1::View octets) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string written;
    for (const std::uint8_t octet : octets) {
        written += digits[octet >> 4];
        written += digits[octet & 0x0F];
    }
    return written;
}

}  // namespace

std::string selectFileCall(const Blob& path) { return "selectFile " + hexDigits(path); }

void ScriptedCardOS::note(std::string call) {
    calls_.push_back(std::move(call));
    if (script_) script_(calls_.size() - 1, calls_.back());
}

Blob ScriptedCardOS::selectApplication(const Blob& aid, unsigned char mode) {
    note("selectApplication " + hexDigits(aid) + ' ' + hexDigits(Blob{mode}));
    return card_.selectApplication(aid, mode);
}

FileInfo ScriptedCardOS::selectFile(const Blob& path) {
    note(selectFileCall(path));
    return card_.selectFile(path);
}

Blob ScriptedCardOS::readBinary(std::size_t offset, std::size_t length) {
    note("readBinary " + std::to_string(offset));
    return card_.readBinary(offset, length);
}

void ScriptedCardOS::updateBinary(std::size_t offset, ASN1::View octets) {
    note("updateBinary " + std::to_string(offset));
    card_.updateBinary(offset, octets);
}

Blob ScriptedCardOS::readRecord(std::size_t number) {
    note("readRecord " + std::to_string(number));
    return card_.readRecord(number);
}

void ScriptedCardOS::updateRecord(std::size_t number, ASN1::View record) {
    note("updateRecord " + std::to_string(number));
    card_.updateRecord(number, record);
}

void ScriptedCardOS::appendRecord(ASN1::View record) {
    note("appendRecord");
    card_.appendRecord(record);
}

}  // namespace tovi::test
