#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/Failure.h"
#include "tovi/card/VirtualCard.h"
#include "tovi/interfaces/Exception.h"

namespace tovi::test {

/// Octets from upper-case hex; blanks are skipped.
inline Blob octets(std::string_view hex) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    Blob out;
    bool half = false;
    for (const char c : hex) {
        const std::size_t value = digits.find(c);
        if (value == std::string_view::npos) continue;
        if (half)
            out[out.size() - 1] = static_cast<std::uint8_t>(std::size_t{out.back()} << 4 | value);
        else
            out.push_back(static_cast<std::uint8_t>(value));
        half = !half;
    }
    return out;
}

inline std::string hexOf(ASN1::View octets) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : octets) {
        text += digits[octet >> 4];
        text += digits[octet & 0x0F];
    }
    return text;
}

/// What the card answers to a command, both in hex.
inline std::string answer(VirtualCard& card, std::string_view command) {
    return hexOf(card.process(octets(command)));
}

/// `count` octets of one value.
inline Blob filled(std::size_t count, std::uint8_t value) {
    Blob out;
    while (out.size() < count) out.push_back(value);
    return out;
}

/// `count` octets that tell their place: 00 01 ... FB, and again.
inline Blob pattern(std::size_t count) {
    Blob out(count, 0x00);
    for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<std::uint8_t>(i % 251);
    return out;
}

inline Blob slice(const Blob& from, std::size_t first, std::size_t count) {
    return Blob(ASN1::View(from).subspan(first, count));
}

/// A card of which only the answers are known, in their order; it goes on with the last one.
class ScriptedChannel final : public ICardChannel {
public:
    explicit ScriptedChannel(std::vector<std::string> answers) : answers_(std::move(answers)) {}

    Blob transmit(const Blob& command) override {
        commands.push_back(hexOf(command));
        if (next_ + 1 < answers_.size()) return octets(answers_[next_++]);
        return octets(answers_.back());
    }

    std::vector<std::string> commands;

private:
    std::vector<std::string> answers_;
    std::size_t next_ = 0;
};

/// The failure that a refused command becomes.
inline Failure refusal(std::string message, std::string operation, std::uint16_t status) {
    return {smartcardId, std::move(message), "ISO7816CardOS::" + std::move(operation),
            statusWordCode + status};
}

/// A card with an application 5015 that holds EF 4401 of 32 octets (01 02 03 ..., SFI 1), the
/// linear files 4402 (variable, SFI 2) and 4403 (fixed), records of 4 octets, at most 3, and a DF
/// 6F01 with EF 4404.
inline VirtualCard smallCard() {
    VirtualCard card;
    card.addFolder(octets("3F005015"), octets("A000000063504B43532D3135"));
    FileDescription file;
    file.path = octets("3F0050154401");
    file.kind = FileDescription::Kind::transparent;
    file.size = 32;
    file.sfi = 1;
    VirtualFile& transparent = card.add(file);
    for (std::size_t i = 0; i < 32; ++i) transparent.contents[i] = static_cast<std::uint8_t>(i + 1);
    file.path = octets("3F0050154402");
    file.kind = FileDescription::Kind::linearVariable;
    file.size = 3;
    file.recordSize = 4;
    file.sfi = 2;
    card.add(file);
    card.addLinear(octets("3F0050154403"), FileDescription::Kind::linearFixed, 4, 3);
    card.addFolder(octets("3F0050156F01"));
    card.addTransparent(octets("3F0050156F014404"), 8, octets("0102030405060708"));
    return card;
}

}  // namespace tovi::test
