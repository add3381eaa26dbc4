#include "tools/CardPlan.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tools/Failure.h"
#include "tools/JsonInput.h"
#include "tools/JsonPlace.h"
#include "tools/PlannedContents.h"
#include "tools/Text.h"

namespace tovi {
namespace {

using Json = nlohmann::ordered_json;
using Place = JsonPlace;

constexpr const char* remark = JsonPlace::remark;

Blob pathOf(const Place& place) {
    std::string digits = place.text();
    digits.erase(std::remove(digits.begin(), digits.end(), '/'), digits.end());
    const auto path = fromHex(digits);
    if (!path) place.fail("a path such as 3F00/5015/5031");
    return *path;
}

FileDescription::Kind structureOf(const Place& place) {
    using Kind = FileDescription::Kind;
    const std::string name = place.text();
    if (name == "df") return Kind::df;
    if (name == "transparent") return Kind::transparent;
    if (name == "linear") return Kind::linearVariable;
    if (name == "linear-fixed") return Kind::linearFixed;
    place.fail("df, transparent, linear or linear-fixed");
}

AccessRule ruleOf(const Place& place) {
    const std::string text = place.text();
    if (text == "always") return {};
    if (text == "never") return {AccessRule::Kind::never, 0};
    const std::string digits = text.rfind("pin:", 0) == 0 ? text.substr(4) : "";
    const bool isNumber = !digits.empty() && digits.size() <= 3 &&
                          digits.find_first_not_of("0123456789") == std::string::npos;
    const unsigned long reference = isNumber ? std::stoul(digits) : 256;
    if (reference > 255) place.fail("always, never or pin:REF");
    return {AccessRule::Kind::pin, static_cast<std::uint8_t>(reference)};
}

FileDescription fileOf(const Place& place) {
    place.allow({"path", "structure", "size", "record", "aid", "sfi", "read", "update", "kind",
                 "records", "fill"});
    if (!place.has("path")) place.fail("'path'");
    FileDescription file;
    file.kind = FileDescription::Kind::transparent;
    file.path = pathOf(place.at("path"));
    if (place.has("structure")) file.kind = structureOf(place.at("structure"));
    if (place.has("size")) file.size = place.at("size").number(CardDescription::maxFileSize);
    if (place.has("record")) file.recordSize = place.at("record").number(0xFFFF);
    if (place.has("aid")) file.aid = place.at("aid").octets();
    if (place.has("sfi")) file.sfi = static_cast<std::uint8_t>(place.at("sfi").number(30));
    if (place.has("read")) file.read = ruleOf(place.at("read"));
    if (place.has("update")) file.update = ruleOf(place.at("update"));
    return file;
}

PinDescription pinOf(const Place& place) {
    place.allow({"reference", "value", "tries", "left"});
    PinDescription pin;
    if (!place.has("reference") || !place.has("value")) place.fail("'reference' and 'value'");
    pin.reference = static_cast<std::uint8_t>(place.at("reference").number(255));
    pin.value = place.at("value").octets();
    if (place.has("tries")) pin.tries = static_cast<unsigned>(place.at("tries").number(15));
    pin.left =
        place.has("left") ? static_cast<unsigned>(place.at("left").number(pin.tries)) : pin.tries;
    return pin;
}

/// Lines of text: one text, or an array of them.
std::vector<std::string> linesOf(const Place& place) {
    if (place.json().is_string()) return {place.text()};
    place.expectArray();
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < place.count(); ++i) lines.push_back(place.at(i).text());
    return lines;
}

/// CardDescription knows what a card may have; its reason against a line is put where the line
/// comes from.
template <class Line>
void add(CardDescription& card, const Line& line, const Place& place) {
    try {
        card.add(line);
    } catch (const CardFolderError& error) {
        throw UsageError(place.where() + ": " + error.text());
    }
}

}  // namespace

CardPlan cardPlanFromJson(const Json& json) {
    const Place place(json, "card description");
    place.allow({"files", "pins", "card"});
    CardPlan plan;
    if (place.has("card")) {
        for (const std::string& line : linesOf(place.at("card"))) plan.brokenCard += line + '\n';
    }
    if (place.has(remark)) {
        for (const std::string& line : linesOf(place.at(remark))) plan.card.addComment(line);
    }
    if (place.has("pins")) {
        place.at("pins").expectArray();
        for (std::size_t i = 0; i < json["pins"].size(); ++i) {
            const Place pin(json["pins"][i], fmt::format("pins[{}]", i));
            add(plan.card, pinOf(pin), pin);
        }
    }
    if (!place.has("files")) return plan;
    place.at("files").expectArray();
    std::size_t left = CardDescription::maxCardSize;
    for (std::size_t i = 0; i < json["files"].size(); ++i) {
        const Place entry(json["files"][i], fmt::format("files[{}]", i));
        FileDescription file = fileOf(entry);
        // Without a size the contents say it; else they come second, when the card has room for it.
        FileContents held;
        if (!entry.has("size")) {
            held = contentsFromJson(file, entry, left);
            file.size = held.octets.size() + held.records.size();
        }
        add(plan.card, file, entry);
        if (file.kind == FileDescription::Kind::df) continue;
        if (entry.has("size")) held = contentsFromJson(file, entry, left);
        left -= std::min(left, sizeOf(held));
        plan.contents[pathName(file.path)] = std::move(held);
    }
    return plan;
}

CardPlan cardPlanFromFile(const std::filesystem::path& file) {
    const Json json = readJsonFile(file);
    try {
        return cardPlanFromJson(json);
    } catch (const UsageError& error) {
        throw UsageError(file.string() + ": " + error.what());
    }
}

void CardPlan::make(const std::filesystem::path& folder) const {
    CardFolder::create(folder, card, contents);
    if (brokenCard.empty()) return;
    std::ofstream out(folder / "CARD", std::ios::binary);
    out << brokenCard << std::flush;
    if (!out) throw Failure((folder / "CARD").string() + ": cannot be written", "CardPlan::make");
}

}  // namespace tovi
