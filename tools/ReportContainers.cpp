#include <fmt/format.h>

#include <set>

#include "tools/ReportPage.h"
#include "tools/Text.h"

namespace tovi {
namespace {

/// What an object of a container is called there, with a link and what guards it.
void writeMember(Html& html, std::string_view role, const ReportObject& object,
                 const ReportObjects& objects) {
    html.open("div").element("dt", role).open("dd");
    linkTo(html, object);
    if (!object.detail.empty()) html.text(" ").element("span", object.detail);
    if (const ReportObject* guard = objects.authObject(object.authId)) {
        html.text(" ").open("span", {{"class", "note"}}).text("guarded by ");
        linkTo(html, *guard);
        html.close();
    }
    html.close().close();
}

void writeRecord(Html& html, std::string_view role, std::uint64_t record,
                 const ReportObjects& objects) {
    if (record == 0) return;  // none
    if (const ReportObject* object = objects.withRecord(record)) {
        writeMember(html, role, *object, objects);
    } else {
        html.open("div").element("dt", role);
        html.element("dd", fmt::format("record {}, which does not exist", record)).close();
    }
}

/// One of the two pairs of a container; the public key follows from the private one.
void writePair(Html& html, std::string_view title, std::uint64_t keyRecord,
               std::uint64_t certificateRecord, const ReportObjects& objects) {
    if (keyRecord == 0 && certificateRecord == 0) return;
    html.element("h4", title).open("dl", {{"class", "members"}});
    writeRecord(html, "Private key", keyRecord, objects);
    const ReportObject* key = keyRecord == 0 ? nullptr : objects.withRecord(keyRecord);
    if (key != nullptr && key->publicKey != noLink) {
        writeRecord(html, "Public key", static_cast<std::uint64_t>(key->publicKey), objects);
    }
    writeRecord(html, "Certificate", certificateRecord, objects);
    if (certificateRecord == 0) {
        html.open("div").element("dt", "Certificate").element("dd", "none").close();
    }
    html.close();
}

void writeContainer(Html& html, const PKCS15ObjectInfo<ContainerInfo>& info,
                    const ReportObject& container, const ReportObjects& objects) {
    html.open("li", {{"class", "card"},
                     {"data-container", std::to_string(info.recordNumber)},
                     {"id", "card-" + container.anchor}});
    html.open("h3");
    linkTo(html, container);
    if (info.logonCertificate) html.text(" ").element("span", {{"class", "badge"}}, "logon");
    html.close();
    writePair(html, "Key exchange", info.exchangeKeyRecord, info.exchangeCertificateRecord,
              objects);
    writePair(html, "Signature", info.signatureKeyRecord, info.signatureCertificateRecord, objects);
    html.close();
}

/// The public keys that stand beside a private key in a container.
std::set<const ReportObject*> publicKeysInContainers(const ReportObjects& objects) {
    std::set<const ReportObject*> held;
    for (const ReportObject& object : objects.all()) {
        if (object.container == noLink || object.publicKey == noLink) continue;
        held.insert(objects.withRecord(static_cast<std::uint64_t>(object.publicKey)));
    }
    return held;
}

/// Keys and certificates of the holder that no container holds.
void writeLoose(Html& html, const ReportObjects& objects) {
    const auto held = publicKeysInContainers(objects);
    std::vector<const ReportObject*> loose;
    for (const ReportObject& object : objects.all()) {
        const bool mayBeHeld = object.kind == &privateKeys || object.kind == &publicKeys ||
                               object.kind == &certificates;
        if (mayBeHeld && object.container == noLink && held.count(&object) == 0)
            loose.push_back(&object);
    }
    if (loose.empty()) return;
    html.open("div", {{"class", "card loose"}})
        .element("h3", fmt::format("In no container ({})", loose.size()));
    html.element("p", {{"class", "note"}},
                 "Keys and certificates without a partner, and records that are not understood.");
    writeLinks(html, loose);
    html.close();
}

}  // namespace

void writeContainers(Html& html, const Report& report) {
    const std::size_t count = report.objects.count(keyContainers);
    openSection(html, "containers", fmt::format("Key containers ({})", count));
    if (count == 0) html.element("p", {{"class", "note"}}, "No key container.");
    if (const auto& model = report.inspection.model) {
        const auto& infos = model->getContainerInfos();
        html.open("ul", {{"class", "cards"}});
        for (std::size_t i = 0; i < infos.size(); ++i) {
            writeContainer(html, infos[i], report.objects.at(keyContainers, i), report.objects);
        }
        html.close();
        writeLoose(html, report.objects);
    }
    html.close();
}

}  // namespace tovi
