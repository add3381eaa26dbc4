#include "tools/ReportObjects.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/Paths.h"
#include "tools/Text.h"

namespace tovi {
namespace {

template <class Key>
const ReportObject* found(const std::map<Key, std::size_t>& index, const Key& key,
                          const std::vector<ReportObject>& objects) {
    const auto place = index.find(key);
    return place == index.end() ? nullptr : &objects[place->second];
}

}  // namespace

ReportObjects::ReportObjects(const PKCS15Container& model) {
    const Blob root = model.getRootPath();
    forEachList(model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        if (&kind == &authObjects) {
            const auto& containers = model.getContainerInfos();
            kinds_[&keyContainers] = {objects_.size(), containers.size()};
            for (std::size_t i = 0; i < containers.size(); ++i) {
                add(keyContainers, containers[i], i, root).isKnown = true;
            }
        }
        kinds_[&kind] = {objects_.size(), infos.size()};
        for (std::size_t i = 0; i < infos.size(); ++i) {
            add(kind, infos[i], i, root).isKnown = isKnown(model, infos[i], raws[i]);
        }
    });
    tables_ = objectTables(model);
    addDetails();
}

/// What the tables say of keys: their type or algorithm.
void ReportObjects::addDetails() {
    for (const ObjectTable& table : tables_) {
        const auto column = std::find_if(
            table.headings.begin(), table.headings.end(),
            [](const std::string& heading) { return heading == "key" || heading == "algorithm"; });
        if (column == table.headings.end()) continue;
        for (std::size_t i = 0; i < table.rows.size(); ++i) {
            const auto& cell =
                table.rows[i][static_cast<std::size_t>(column - table.headings.begin())];
            objects_[kinds_[table.kind].first + i].detail = shortened(cell, linkLength);
        }
    }
}

template <class Info>
ReportObject& ReportObjects::add(const ListKind& kind, const PKCS15ObjectInfo<Info>& info,
                                 std::size_t index, const Blob& rootPath) {
    ReportObject object;
    object.kind = &kind;
    object.anchor = fmt::format("{}-{}", kind.key, index);
    object.name = nameOf(kind, info);
    object.label = shortened(toUtf8(info.label), linkLength);
    object.authId = info.authId;
    object.path = info.path;
    if (!info.path.path.empty()) object.path.path = absolutePath(rootPath, info.path.path);
    object.container = info.auxValue2;
    object.isPrivate = info.isPrivate;
    if (&kind == &privateKeys) object.publicKey = info.auxValue1;
    if (&kind == &authObjects) object.authObjectId = identifierOf(info);

    const std::size_t place = objects_.size();
    if (info.recordNumber != noRecord) byRecord_.emplace(info.recordNumber, place);
    byName_.emplace(object.name, place);
    if (!object.authObjectId.empty()) byAuthObjectId_.emplace(object.authObjectId, place);
    objects_.push_back(std::move(object));
    return objects_.back();
}

std::size_t ReportObjects::count(const ListKind& kind) const {
    const auto range = kinds_.find(&kind);
    return range == kinds_.end() ? 0 : range->second.count;
}

const ReportObject& ReportObjects::at(const ListKind& kind, std::size_t index) const {
    return objects_[kinds_.at(&kind).first + index];
}

const ReportObject* ReportObjects::withRecord(std::uint64_t recordNumber) const {
    return found(byRecord_, recordNumber, objects_);
}

const ReportObject* ReportObjects::named(const std::string& name) const {
    return found(byName_, name, objects_);
}

const ReportObject* ReportObjects::authObject(const Blob& authObjectId) const {
    return found(byAuthObjectId_, authObjectId, objects_);
}

void linkTo(Html& html, const ReportObject& object) {
    const bool isVisible = object.label.find_first_not_of(' ') != std::string::npos;
    html.open("a", {{"href", "#" + object.anchor}});
    html.element("bdi", isVisible ? object.label : object.name).close();
}

}  // namespace tovi
