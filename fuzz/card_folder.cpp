// A description of a card either is refused with file and line, or says the same again when its
// text is read once more, also after an edit; and a card made of it answers commands.
//
// Input: the text of CARD. What follows a line of four dashes are commands for the card, each
// behind its length in one octet.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/require.h"
#include "tovi/card/CardDescription.h"
#include "tovi/card/VirtualCard.h"

namespace {

constexpr std::string_view separator = "----\n";
constexpr std::size_t mostContents = std::size_t{1} << 20;  // enough for any command to matter

void requireSame(const tovi::CardDescription& card) {
    const auto again = tovi::CardDescription::parse(card.text(), "CARD");
    require(again.files() == card.files() && again.pins() == card.pins());
    require(again.text() == card.text());
}

/// What describes a file or a PIN by itself must do so on a line of our own, too.
void requireSameLines(const tovi::CardDescription& card) {
    tovi::CardDescription rewritten;
    rewritten.addComment("rewritten");
    for (const auto& file : card.files()) rewritten.add(file);
    for (const auto& pin : card.pins()) rewritten.add(pin);
    requireSame(rewritten);
    require(rewritten.files() == card.files() && rewritten.pins() == card.pins());
}

void runCommands(const tovi::CardDescription& description, std::string_view commands) {
    std::size_t contents = 0;
    for (const auto& file : description.files()) contents += file.size;
    if (contents > mostContents) return;
    tovi::VirtualCard card;
    for (const auto& file : description.files()) card.add(file);
    for (const auto& pin : description.pins()) card.add(pin);
    while (!commands.empty()) {
        const std::size_t size =
            std::min<std::size_t>(static_cast<std::uint8_t>(commands[0]), commands.size() - 1);
        const std::string_view command = commands.substr(1, size);
        const tovi::Blob response = card.process(tovi::Blob(command.begin(), command.end()));
        require(response.size() >= 2 && response[response.size() - 2] >= 0x61);
        commands.remove_prefix(1 + size);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find(separator);
    const std::string_view text = input.substr(0, end);
    tovi::CardDescription card;
    try {
        card = tovi::CardDescription::parse(text, "CARD");
    } catch (const tovi::CardFolderError& error) {
        require(error.text().starts_with("CARD:") && error.text()[5] >= '1' &&
                error.text()[5] <= '9');
        require(error.text().find('\n') == std::string::npos);
        return 0;
    }
    require(card.text() == text || card.text() == std::string(text) + "\n");
    requireSame(card);
    requireSameLines(card);
    for (const auto& pin : card.pins()) card.setTriesLeft(pin.reference, pin.tries - 1);
    requireSame(card);
    if (end != std::string_view::npos) runCommands(card, input.substr(end + separator.size()));
    return 0;
}
