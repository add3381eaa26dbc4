#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "tools/Findings.h"
#include "tools/Model.h"
#include "tools/Paths.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

/// An object as findings name it.
struct Named {
    std::string name;
    std::uint64_t recordNumber = noRecord;
};

template <class Info>
Named named(const ListKind& list, const PKCS15ObjectInfo<Info>& info) {
    return {nameOf(list, info), info.recordNumber};
}

void add(Findings& findings, const char* kind, const Named& object, std::string message) {
    Finding finding{.kind = kind, .object = object.name, .message = std::move(message)};
    if (object.recordNumber != noRecord) finding.recordNumber = object.recordNumber;
    findings.push_back(std::move(finding));
}

/// The identifiers of a list. A record that did not become an object may lend its own, if it has
/// one, but no empty one.
template <class Infos, class Raws>
std::set<Blob> identifiersOf(const PKCS15Container& model, const Infos& infos, const Raws& raws) {
    std::set<Blob> identifiers;
    for (std::size_t i = 0; i < infos.size(); ++i) {
        const Blob id = identifierOf(infos[i]);
        if (!id.empty() || isKnown(model, infos[i], raws[i])) identifiers.insert(id);
    }
    return identifiers;
}

/// A certificate of an issuer needs no key on this card.
bool isAuthority(const ASN1Object<PKCS15::CertificateType>& raw) {
    const auto* certificate = raw.value == nullptr
                                  ? nullptr
                                  : raw.value->getIf<PKCS15::CertificateType::x509Certificate>();
    return certificate != nullptr && certificate->classAttributes.authority.value_or(false);
}

/// Where the value of an object lies within its file.
struct Area {
    std::size_t index, length;
    Named object;

    std::size_t end() const { return index + length; }
};
using AreasOfFile = std::vector<Area>;

std::map<Blob, AreasOfFile> areasOf(const PKCS15Container& model) {
    std::map<Blob, AreasOfFile> areas;
    const Blob root = model.getRootPath();
    forEachList(model, [&](const ListKind& list, const auto& infos, const auto&) {
        for (const auto& info : infos) {
            const PKCS15Path& path = info.path;
            const bool isPart = path.index != 0 || path.length != 0;
            if (path.path.empty() || !isPart) continue;
            areas[absolutePath(root, path.path)].push_back(
                {path.index, path.length, named(list, info)});
        }
    });
    return areas;
}

void findSharedOctets(const std::string& file, AreasOfFile areas, Findings& findings) {
    std::stable_sort(areas.begin(), areas.end(),
                     [](const Area& a, const Area& b) { return a.index < b.index; });
    const Area* furthest = nullptr;  // of those before, the one that reaches furthest
    for (const Area& area : areas) {
        if (area.length == 0) continue;
        if (furthest != nullptr && area.index < furthest->end()) {
            add(findings, "overlapping-areas", area.object,
                fmt::format("octets {} to {} of {} are also those of {}", area.index,
                            std::min(area.end(), furthest->end()) - 1, file,
                            furthest->object.name));
        }
        if (furthest == nullptr || area.end() > furthest->end()) furthest = &area;
    }
}

/// In a linear file the index is a record number.
void findSharedRecords(const std::string& file, const AreasOfFile& areas, Findings& findings) {
    std::map<std::size_t, Named> first;
    for (const Area& area : areas) {
        const auto [place, isNew] = first.emplace(area.index, area.object);
        if (isNew) continue;
        add(findings, "overlapping-areas", area.object,
            fmt::format("record {} of {} is also that of {}", area.index, file,
                        place->second.name));
    }
}

}  // namespace

void findUnsupported(const PKCS15Container& model, Findings& findings) {
    forEachList(model, [&](const ListKind& list, const auto& infos, const auto& raws) {
        for (std::size_t i = 0; i < infos.size(); ++i) {
            // Records that do not decode, or break a constraint, have findings of their own.
            if (raws[i].value == nullptr || isKnown(model, infos[i], raws[i])) continue;
            if (!ASN1::AbstractData(*raws[i].value).isValid()) continue;
            const std::string name(raws[i].value->selectionName());
            add(findings, "unsupported-record", named(list, infos[i]),
                (name.empty() ? "an alternative of a later edition" : "alternative " + name) +
                    " is not understood");
        }
    });
}

void findSkippedFiles(const PKCS15Container& model, Findings& findings) {
    const auto& entries = model.getRawODF();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].value == nullptr) continue;  // undecodable, which is a finding of its own
        const PKCS15::PKCS15Objects& entry = *entries[i].value;
        Blob path;
        if (getPath(entry, path, static_cast<int>(entry.selection()))) continue;
        const std::string name(entry.selectionName());
        findings.push_back(
            {.kind = "skipped-entry",
             .file = "EF(ODF)",
             .message = fmt::format("entry {}{} names no file: its objects are not read", i + 1,
                                    name.empty() ? "" : ", " + name + ",")});
    }
}

void findDanglingAuthIds(const PKCS15Container& model, Findings& findings) {
    const std::set<Blob> known =
        identifiersOf(model, model.getAuthInfos(), model.getRawAuthObjects());
    forEachList(model, [&](const ListKind& list, const auto& infos, const auto&) {
        for (const auto& info : infos) {
            if (info.authId.empty() || known.count(info.authId) > 0) continue;
            add(findings, "dangling-auth-id", named(list, info),
                "authId " + toHex(info.authId) + " names no authentication object");
        }
    });
    const std::set<Blob> keys =
        identifiersOf(model, model.getBlockCipherKeyInfos(), model.getRawSecretKeys());
    for (const auto& info : model.getAuthInfos()) {
        if (info.type != AuthType::authKey || keys.count(info.authKeyId) > 0) continue;
        add(findings, "dangling-auth-id", named(authObjects, info),
            "authKeyId " + toHex(info.authKeyId) + " names no secret key");
    }
}

void findKeysWithoutCertificate(const PKCS15Container& model, Findings& findings) {
    std::set<Blob> partners =
        identifiersOf(model, model.getCertificateInfos(), model.getRawCertificates());
    partners.merge(identifiersOf(model, model.getPublicKeyInfos(), model.getRawPublicKeys()));
    const auto& keys = model.getPrivateKeyInfos();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!isKnown(model, keys[i], model.getRawPrivateKeys()[i])) continue;
        if (partners.count(keys[i].id) > 0) continue;
        add(findings, "key-without-certificate", named(privateKeys, keys[i]),
            "no certificate and no public key has the id '" + toHex(keys[i].id) + "'");
    }
}

void findCertificatesWithoutKey(const PKCS15Container& model, Findings& findings) {
    const std::set<Blob> keys =
        identifiersOf(model, model.getPrivateKeyInfos(), model.getRawPrivateKeys());
    const auto& infos = model.getCertificateInfos();
    for (std::size_t i = 0; i < infos.size(); ++i) {
        const auto& raw = model.getRawCertificates()[i];
        if (!isKnown(model, infos[i], raw) || isAuthority(raw)) continue;
        if (keys.count(infos[i].id) > 0) continue;
        add(findings, "certificate-without-key", named(certificates, infos[i]),
            "no private key has the id '" + toHex(infos[i].id) + "'");
    }
}

void findDuplicateIds(const PKCS15Container& model, Findings& findings) {
    forEachList(model, [&](const ListKind& list, const auto& infos, const auto&) {
        std::map<Blob, Named> first;
        for (const auto& info : infos) {
            const Blob id = identifierOf(info);
            if (id.empty()) continue;
            const auto [place, isNew] = first.emplace(id, named(list, info));
            if (isNew) continue;
            add(findings, "duplicate-id", named(list, info),
                "id " + toHex(id) + " is that of " + place->second.name);
        }
    });
}

void findSharedFiles(const PKCS15Container& model, Findings& findings) {
    forEachList(model, [&](const ListKind& list, const auto& infos, const auto&) {
        std::map<std::uint16_t, Named> first;
        for (const auto& info : infos) {
            if (!info.sharesFile || fid16(info) == noFID16) continue;
            const auto [place, isNew] = first.emplace(fid16(info), named(list, info));
            if (isNew) continue;
            add(findings, "shared-file", named(list, info),
                fmt::format("file {:04X} is also that of {}", fid16(info), place->second.name));
        }
    });
}

void findObjectsOutside(const PKCS15Container& model, Findings& findings) {
    const Blob root = model.getRootPath();
    forEachList(model, [&](const ListKind& list, const auto& infos, const auto&) {
        for (const auto& info : infos) {
            const Blob& path = info.path.path;
            // A PIN of the whole card lies in the master file.
            const bool isGlobal = &list == &authObjects && path == PKCS15_MF;
            if (!beginsWith(path, PKCS15_MF) || beginsWith(path, root) || isGlobal) continue;
            add(findings, "path-outside-application", named(list, info),
                "path " + toHex(path) + " does not lie below " + toHex(root));
        }
    });
}

void findOverlaps(const PKCS15Container& model, const IsLinear& isLinear, Findings& findings) {
    for (const auto& [file, areas] : areasOf(model)) {
        if (areas.size() < 2) continue;
        if (isLinear(file)) {
            findSharedRecords(toHex(file), areas, findings);
        } else {
            findSharedOctets(toHex(file), areas, findings);
        }
    }
}

Findings findingsOfModel(const PKCS15Container& model, const IsLinear& isLinear) {
    Findings findings;
    for (auto* rule :
         {findUnsupported, findSkippedFiles, findDanglingAuthIds, findKeysWithoutCertificate,
          findCertificatesWithoutKey, findDuplicateIds, findSharedFiles, findObjectsOutside}) {
        rule(model, findings);
    }
    findOverlaps(model, isLinear, findings);
    return findings;
}

}  // namespace tovi
