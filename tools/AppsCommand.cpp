#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "tools/CardAccess.h"
#include "tools/Command.h"
#include "tools/JsonInfos.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

/// `tovi apps`: the applications that a card has, as far as it tells.
class AppsCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override {
        return app.add_subcommand("apps", "prints the applications that EF(DIR) names");
    }
    ExitCode run(Invocation& call) override;
};

/// One application, or a record of EF(DIR) that is none.
struct ListedApplication {
    DirectoryRecord record;
    std::string selectedBy = {};  ///< "aid", "path"; empty: the card selects it by neither
    bool isChosen = false;        ///< other commands are about this one
};

constexpr unsigned char noResponse = 0x0C;  // P2 of SELECT
/// A card that lists more applications than it can have is asked about so many of them.
constexpr std::size_t mostTried = 254;

template <class Select>
bool succeeds(Select select) {
    try {
        select();
        return true;
    } catch (const SmartcardException&) {
        return false;
    }
}

std::string selectedBy(CardAccess& card, const DirectoryEntry& entry) {
    const auto byAid = [&] { card.commands().selectApplication(entry.aid, noResponse); };
    const auto byPath = [&] { card.commands().selectFile(entry.application); };
    if (!entry.aid.empty() && succeeds(byAid)) return "aid";
    return !entry.application.empty() && succeeds(byPath) ? "path" : "";
}

std::vector<DirectoryRecord> recordsOf(CardAccess& card) {
    try {
        return readDirectory(card.commands());
    } catch (const SmartcardException& exception) {
        // A card need not have the file; anything else is worth knowing.
        if (exception.GetCode() == statusWordCode + 0x6A82) return {};
        throw;
    }
}

bool isSame(const DirectoryEntry& entry, const FoundApplication& found) {
    return !entry.aid.empty() && entry.aid == found.entry.aid &&
           entry.application == found.entry.application;
}

std::vector<ListedApplication> applicationsOf(CardAccess& card) {
    std::vector<ListedApplication> applications;
    bool isListed = false;
    for (DirectoryRecord& record : recordsOf(card)) {
        ListedApplication listed{std::move(record)};
        if (const auto& entry = listed.record.entry) {
            if (applications.size() < mostTried) listed.selectedBy = selectedBy(card, *entry);
            listed.isChosen = !isListed && isSame(*entry, card.found());
            isListed = isListed || listed.isChosen;
        }
        applications.push_back(std::move(listed));
    }
    if (isListed) return applications;
    // EF(DIR) does not name the one that the card selects all the same.
    const FoundApplication& found = card.found();
    DirectoryEntry entry = found.entry;
    entry.application = found.path;
    entry.aid = found.aid;
    const bool isThere = succeeds([&] { card.os().selectApplication(PKCS15_AID, noResponse); });
    if (!isThere) return applications;
    const char* by = found.knowsAid && selectedBy(card, entry) == "aid" ? "aid" : "path";
    applications.insert(applications.begin(), {{{}, std::move(entry)}, by, true});
    return applications;
}

Json hexOrNull(const Blob& octets) { return octets.empty() ? Json(nullptr) : Json(toHex(octets)); }

Json textOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json applicationJson(const ListedApplication& application) {
    const DirectoryEntry entry = application.record.entry.value_or(DirectoryEntry{});
    Json json;
    json["aid"] = hexOrNull(entry.aid);
    json["label"] = toUtf8(entry.label);
    json["path"] = hexOrNull(entry.application);
    json["odfPath"] = hexOrNull(entry.odf);
    json["tokenInfoPath"] = hexOrNull(entry.tokenInfo);
    json["selectedBy"] = textOrNull(application.selectedBy);
    json["isChosen"] = application.isChosen;
    json["record"] = hexOrNull(application.record.octets);
    json["error"] = textOrNull(application.record.error);
    return json;
}

std::string applicationsText(const std::vector<ListedApplication>& applications,
                             const Style& style) {
    if (applications.empty()) return "no applications\n";
    TextTable table(
        {"", "AID", "label", "path", "EF(ODF)", "EF(TokenInfo)", "selected by", "error"});
    for (const ListedApplication& application : applications) {
        const DirectoryRecord& record = application.record;
        const DirectoryEntry entry = record.entry.value_or(DirectoryEntry{});
        const std::string name = record.entry ? toHex(entry.aid) : toHex(record.octets);
        table.add(
            {application.isChosen ? "*" : "", name, toUtf8(entry.label), toHex(entry.application),
             toHex(entry.odf), toHex(entry.tokenInfo),
             record.entry && application.selectedBy.empty() ? "nothing" : application.selectedBy,
             record.error});
    }
    return table.text(style, 0);
}

ExitCode AppsCommand::run(Invocation& call) {
    CardAccess card(call, CardFolder::Mode::readOnly);
    const std::vector<ListedApplication> applications = applicationsOf(card);
    if (call.options().json) {
        Json list = Json::array();
        for (const auto& application : applications) list.push_back(applicationJson(application));
        call.printJson({{"applications", std::move(list)}});
    } else {
        call.printText(applicationsText(applications, call.style()));
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeAppsCommand() { return std::make_unique<AppsCommand>(); }

}  // namespace tovi
