#include "tools/ApplicationSearch.h"

#include "tools/Paths.h"
#include "tovi/card/FileControl.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

/// Every application of ISO/IEC 7816-15 has an identifier that begins so.
const Blob cryptographicApplication = {0xE8, 0x28, 0xBD, 0x08, 0x0F};
constexpr unsigned char fileControlInformation = 0x00;  // P2 of SELECT

Blob usualPath() {
    Blob path = PKCS15_MF;
    path.append(PKCS15_DF);
    return path;
}

Blob stepOf(std::uint16_t fid) {
    return Blob{static_cast<std::uint8_t>(fid >> 8), static_cast<std::uint8_t>(fid)};
}

bool endsWith(ASN1::View path, ASN1::View step) {
    return path.size() >= step.size() && beginsWith(path.last(step.size()), step);
}

/// Where an application lies that the card has selected: what it answered names the DF without the
/// way to it, which EF(DIR) may know.
Blob pathOfSelected(ASN1::View response, const DirectoryEntry& entry) {
    const auto fid = FileControl::parse(response).fid;
    const bool isNamed = fid && *fid != 0x3F00 && *fid != 0x3FFF && *fid != 0xFFFF;
    if (!entry.application.empty() && (!isNamed || endsWith(entry.application, stepOf(*fid)))) {
        return entry.application;
    }
    if (!isNamed) return usualPath();
    Blob path = PKCS15_MF;
    path.append(stepOf(*fid));
    return path;
}

/// Looks for one application after the other.
class Search {
public:
    Search(ISCardOS& os, const CardDescription* description)
        : os_(os), description_(description), entries_(directoryEntries(os)) {}

    std::optional<FoundApplication> byIdentifier(const Blob& aid) {
        FoundApplication found{.aid = aid, .path = {}, .entry = entryOf(aid), .knowsAid = true};
        if (description_ != nullptr) {
            const auto path = describedApplication(*description_, aid);
            if (!path) return std::nullopt;
            found.path = *path;
            return found;
        }
        try {
            const Blob response = os_.selectApplication(aid, fileControlInformation);
            found.path = pathOfSelected(response, found.entry);
            return found;
        } catch (const SmartcardException&) {
            return std::nullopt;
        }
    }

    std::optional<FoundApplication> byDirectory(const Blob& aid) const {
        const DirectoryEntry entry = entryOf(aid);
        if (entry.application.empty()) return std::nullopt;
        return FoundApplication{.aid = entry.aid, .path = entry.application, .entry = entry};
    }

    FoundApplication atPath(const WantedApplication& wanted) const {
        FoundApplication found{.aid = wanted.aid, .path = wanted.path, .entry = {}};
        for (const DirectoryEntry& entry : entries_) {
            const bool isMeant = wanted.aid.empty() ? entry.application == wanted.path
                                                    : beginsWith(entry.aid, wanted.aid);
            if (!isMeant) continue;
            found.entry = entry;
            break;
        }
        // Where the identifier leads is what the user said.
        found.knowsAid = !wanted.aid.empty();
        return found;
    }

    /// The identifier of the application of ISO/IEC 7816-15 that EF(DIR) names; empty without one.
    Blob cryptographicAid() const { return entryOf(cryptographicApplication).aid; }

private:
    DirectoryEntry entryOf(const Blob& aid) const {
        const DirectoryEntry* entry = findEntry(entries_, aid);
        return entry == nullptr ? DirectoryEntry{} : *entry;
    }

    ISCardOS& os_;
    const CardDescription* description_;
    std::vector<DirectoryEntry> entries_;
};

}  // namespace

std::optional<Blob> describedApplication(const CardDescription& description, const Blob& aid) {
    for (const FileDescription& file : description.files()) {
        const bool isFolder = file.kind == FileDescription::Kind::df;
        if (isFolder && !file.aid.empty() && beginsWith(file.aid, aid)) return file.path;
    }
    return std::nullopt;
}

FoundApplication findApplication(ISCardOS& os, const CardDescription* description,
                                 const WantedApplication& wanted) {
    Search search(os, description);
    if (!wanted.path.empty()) return search.atPath(wanted);
    const Blob aid = wanted.aid.empty() ? PKCS15_AID : wanted.aid;
    if (const auto found = search.byIdentifier(aid)) return *found;
    if (const auto found = search.byDirectory(aid)) return *found;
    if (const Blob other = search.cryptographicAid(); wanted.aid.empty() && !other.empty()) {
        if (const auto found = search.byIdentifier(other)) return *found;
        if (const auto found = search.byDirectory(other)) return *found;
    }
    return {.aid = aid, .path = usualPath(), .entry = {}, .knowsAid = true};
}

}  // namespace tovi
