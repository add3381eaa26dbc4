#include <fmt/format.h>

#include <algorithm>

#include "tools/ReportPage.h"
#include "tools/Text.h"

namespace tovi {
namespace {

using Group = std::vector<const ReportObject*>;

/// The fields of an authentication object that say something to people.
constexpr std::pair<const char*, const char*> fields[] = {
    {"authObjectId", "Own identifier"},
    {"reference", "Reference"},
    {"pinType", "Alphabet"},
    {"minLength", "Shortest"},
    {"maxLength", "Longest"},
    {"storedLength", "Stored length"},
    {"padChar", "Padding"},
    {"pinFlags", "Flags"},
    {"lastPinChange", "Last change"},
    {"bioType", "Trait"},
    {"bioFlags", "Flags"},
    {"templateId", "Template"},
    {"lastChange", "Last change"},
    {"authKeyId", "Key identifier"},
    {"cha", "Certificate holder"},
};

std::string typeName(AuthType type) {
    switch (type) {
        case AuthType::pin:
            return "PIN";
        case AuthType::biometric:
            return "biometric";
        case AuthType::authKey:
            return "authentication key";
        case AuthType::external:
            return "external authentication";
        case AuthType::none:
            break;
    }
    return "not understood";
}

/// The objects of a group by kind, each kind under a heading of its own.
void writeGroup(Html& html, const Group& group) {
    Group::const_iterator first = group.begin();
    while (first != group.end()) {
        const auto last = std::find_if(first, group.end(), [&](const ReportObject* object) {
            return object->kind != (*first)->kind;
        });
        html.element("h4", fmt::format("{} ({})", (*first)->kind->title, last - first));
        writeLinks(html, Group(first, last));
        first = last;
    }
}

void writeFields(Html& html, const Json& object) {
    html.open("dl", {{"class", "members"}});
    for (const auto& [field, name] : fields) {
        const auto value = object.find(field);
        const std::string text = value == object.end() ? "" : jsonText(*value);
        if (text.empty()) continue;
        html.open("div").element("dt", name);
        html.element("dd", shortened(text, cellLength)).close();
    }
    html.close();
}

/// Who guards what: every object that names a guard, and those that name none.
struct Guarding {
    std::map<const ReportObject*, Group> guarded;
    Group free, dangling, unknown;

    explicit Guarding(const ReportObjects& objects) {
        for (const ReportObject& object : objects.all()) {
            if (object.kind != &keyContainers) groupOf(object, objects).push_back(&object);
        }
        // Whether the data of a PIN can be seen without it is no use of it.
        std::erase_if(free,
                      [](const ReportObject* object) { return object->kind == &authObjects; });
    }

private:
    Group& groupOf(const ReportObject& object, const ReportObjects& objects) {
        if (!object.authId.empty()) {
            const ReportObject* guard = objects.authObject(object.authId);
            return guard != nullptr ? guarded[guard] : dangling;
        }
        return object.isKnown ? free : unknown;
    }
};

void writeGuarded(Html& html, const ReportObject& guard, const Guarding& guarding,
                  const ReportObjects& objects) {
    const ReportObject* first = objects.authObject(guard.authObjectId);
    if (first != nullptr && first != &guard) {
        html.open("p").text("Has the identifier of ");
        linkTo(html, *first);
        html.text(" too, where what it guards stands.").close();
        return;
    }
    const auto group = guarding.guarded.find(&guard);
    if (group == guarding.guarded.end()) {
        html.element("p", {{"class", "note"}}, "Guards nothing.");
        return;
    }
    html.element("p", {{"data-guards", std::to_string(group->second.size())}},
                 "Guards " + counted(group->second.size(), "object") + ":");
    writeGroup(html, group->second);
}

template <class Info, class Raw>
void writeGuard(Html& html, const Info& info, const Raw& raw, const ReportObject& guard,
                const Guarding& guarding, const Report& report) {
    html.open("li", {{"class", "card"}, {"data-auth", guard.anchor}}).open("h3");
    linkTo(html, guard);
    html.text(" ").element("span", {{"class", "badge"}}, typeName(info.type)).close();
    writeFields(html, objectJson(info, stateOf(*report.inspection.model, info, raw)));
    if (const ReportObject* other = report.objects.authObject(guard.authId)) {
        html.open("p", {{"class", "note"}}).text("Itself guarded by ");
        linkTo(html, *other);
        html.text(".").close();
    }
    writeGuarded(html, guard, guarding, report.objects);
    html.close();
}

/// A card for objects that no authentication object of this card guards.
void writeOthers(Html& html, std::string_view key, std::string_view title, std::string_view note,
                 const Group& group) {
    html.open("li", {{"class", "card loose"},
                     {"data-group", key},
                     {"data-value", std::to_string(group.size())}});
    html.element("h3", fmt::format("{} ({})", title, group.size()));
    html.element("p", {{"class", "note"}}, note);
    writeGroup(html, group);
    html.close();
}

void writePrivate(Html& html, const Group& free) {
    const auto count =
        std::count_if(free.begin(), free.end(), [](auto* object) { return object->isPrivate; });
    if (count == 0) return;
    html.element("p", {{"class", "note"}},
                 fmt::format("{} of those without a guard are marked private all the same: "
                             "programs will ask for a login first.",
                             count));
}

}  // namespace

void writeGuards(Html& html, const Report& report) {
    openSection(html, "guards",
                fmt::format("PINs and what they guard ({})", report.objects.count(authObjects)));
    html.element("p", {{"class", "note"}},
                 "As the records of the objects say. The access rules of the card itself may be "
                 "stricter.");
    const auto& model = report.inspection.model;
    if (model) {
        const Guarding guarding(report.objects);
        writePrivate(html, guarding.free);
        html.open("ul", {{"class", "cards"}});
        const auto& infos = model->getAuthInfos();
        for (std::size_t i = 0; i < infos.size(); ++i) {
            writeGuard(html, infos[i], model->getRawAuthObjects()[i],
                       report.objects.at(authObjects, i), guarding, report);
        }
        writeOthers(html, "free", "Without a PIN", "Objects that name nothing that guards them.",
                    guarding.free);
        if (!guarding.dangling.empty()) {
            writeOthers(html, "dangling", "Guarded by something unknown",
                        "Their authId names no authentication object of this card.",
                        guarding.dangling);
        }
        if (!guarding.unknown.empty()) {
            writeOthers(html, "unknown", "Nobody can tell", "Records that are not understood.",
                        guarding.unknown);
        }
        html.close();
    }
    html.close();
}

}  // namespace tovi
