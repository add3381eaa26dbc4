#include "tests/support/CardModel.h"

#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {

namespace {

/// The kinds in the order in which a read gives record numbers out.
constexpr Directory numberingOrder[] = {
    Directory::privateKeys,  Directory::publicKeys,         Directory::trustedPublicKeys,
    Directory::certificates, Directory::usefulCertificates, Directory::trustedCertificates,
    Directory::secretKeys,   Directory::dataObjects};

Blob tokenInfoOf(const std::string& label) {
    return tokenInfo({.label = label.empty() ? std::nullopt : std::optional(label)});
}

}  // namespace

void CardModel::addFile(Directory kind, const Blob& path, FileShape shape, std::size_t size,
                        std::size_t recordSize) {
    File file = {path, shape, size, recordSize, {}};
    if (shape == FileShape::linearFixed) file.places.resize(size, Place{{}, recordSize});
    files(kind).push_back(file);
}

void CardModel::setTokenInfo(const std::string& label, std::size_t fileSize) {
    tokenLabel_ = label;
    tokenInfoSize_ = fileSize;
}

CardModel::Result CardModel::write(Directory kind, const Content& content) {
    const Blob record = recordOf(kind, content);
    // The last file that has room takes it.
    for (auto file = files(kind).rbegin(); file != files(kind).rend(); ++file) {
        const auto place = placeFor(*file, record);
        if (!place) continue;
        if (*place == file->places.size()) file->places.emplace_back();
        const bool hasRow = kind != Directory::authObjects;
        const auto number = hasRow ? takeRow(objectTypeOf(kind), content.isPrivate) : noRecord;
        const bool isFixed = file->shape == FileShape::linearFixed;
        file->places[*place] = {Object{content, record, number},
                                isFixed ? file->recordSize : record.size()};
        file->mayBeLoose = false;
        return Result::done;
    }
    return files(kind).empty() ? Result::noFile : Result::noRoom;
}

CardModel::Result CardModel::update(Directory kind, std::size_t position, const Content& content) {
    const auto [file, place] = find(kind, position);
    Place& held = file->places[place];
    const Blob record = recordOf(kind, content);
    const std::size_t rest = octetsIn(*file) - held.object->record.size();
    const bool fits = isLinear(file->shape) ? record.size() <= file->recordSize
                                            : rest + record.size() <= file->size;
    if (!fits) return Result::noRoom;
    held.object->content = content;
    held.object->record = record;
    if (file->shape == FileShape::linearVariable) held.length = record.size();
    file->mayBeLoose = false;
    return Result::done;
}

void CardModel::remove(Directory kind, std::size_t position) {
    const auto [file, place] = find(kind, position);
    freeRowOf(file->places[place].object->number);
    if (isLinear(file->shape))
        file->places[place].object.reset();
    else
        file->places.erase(file->places.begin() + static_cast<std::ptrdiff_t>(place));
    file->mayBeLoose = false;
}

CardModel::Result CardModel::setTokenLabel(const std::string& label) {
    if (tokenInfoOf(label).size() > tokenInfoSize_) return Result::noRoom;
    tokenLabel_ = readTokenLabel_ = label;
    return Result::done;
}

void CardModel::writeContainer(const std::string& label) {
    containers_.push_back({label, takeRow(containerObject, false)});
}

void CardModel::updateContainer(std::size_t position, const std::string& label) {
    containers_[position].label = label;
}

void CardModel::removeContainer(std::size_t position) {
    freeRowOf(containers_[position].number);
    containers_.erase(containers_.begin() + static_cast<std::ptrdiff_t>(position));
}

void CardModel::readAgain() {
    rows_.clear();
    containers_.clear();
    addRow(tokenInfoObject, false);
    readTokenLabel_ = tokenLabel_.empty() ? "PKCS#15 Token" : tokenLabel_;
    for (const Directory kind : numberingOrder)
        for (File& file : files(kind))
            for (Place& place : file.places)
                if (place.object)
                    place.object->number =
                        addRow(objectTypeOf(kind), place.object->content.isPrivate);
    for (std::size_t i = 0; i < count(Directory::privateKeys); ++i)
        containers_.push_back(
            {at(Directory::privateKeys, i).label, addRow(containerObject, false)});
}

ContainerView CardModel::view() const {
    ContainerView view;
    for (unsigned i = 0; i < directoryCount; ++i) {
        const auto kind = static_cast<Directory>(i);
        for (const File& file : files(kind))
            for (const Place& place : file.places) {
                if (!place.object) continue;
                const Content& content = place.object->content;
                const bool hasFile = kind != Directory::authObjects;
                view[kind].objects.push_back({place.object->number, text(content.label),
                                              text(content.name), content.isPrivate,
                                              hasFile ? content.number : noFID16});
                view[kind].records.push_back(place.object->record);
            }
    }
    for (const KeyContainer& each : containers_)
        view.containers.push_back({each.number, text(each.label), {}});
    view.rows = rows_;
    view.tokenInfo = tokenInfoOf(tokenLabel_);
    view.tokenLabel = text(readTokenLabel_);
    return view;
}

std::size_t CardModel::count(Directory kind) const {
    std::size_t count = 0;
    for (const File& file : files(kind)) count += recordsIn(file).size();
    return count;
}

const Content& CardModel::at(Directory kind, std::size_t position) const {
    const auto [file, place] = const_cast<CardModel*>(this)->find(kind, position);
    return file->places[place].object->content;
}

void CardModel::expectLoose(Directory kind) {
    for (File& file : files(kind)) file.mayBeLoose = true;
}

VirtualCard CardModel::makeCard() const {
    CardBuilder builder;
    for (unsigned i = 0; i < directoryCount; ++i)
        for (const File& file : files(static_cast<Directory>(i)))
            builder.odfRecord(odfEntry(i, sequence(octetString(file.path))));
    VirtualCard card = builder.withoutFile(PKCS15_EF_TOKEN_INFO).build();
    card.addTransparent(absolutePath(PKCS15_EF_TOKEN_INFO), tokenInfoSize_,
                        tokenInfoOf(tokenLabel_));
    for (unsigned i = 0; i < directoryCount; ++i) {
        const auto kind = static_cast<Directory>(i);
        for (const File& file : files(kind)) {
            const std::vector<Blob> records = recordsIn(file);
            const std::size_t used = isLinear(file.shape) ? records.size() : octetsIn(file);
            addDirectoryFile(card, file.path, file.shape, records, file.size - used,
                             file.recordSize);
        }
    }
    return card;
}

std::string CardModel::looseness(const VirtualCard& card) const {
    for (unsigned i = 0; i < directoryCount; ++i) {
        const auto kind = static_cast<Directory>(i);
        for (const File& file : files(kind)) {
            if (file.mayBeLoose) continue;
            const std::string reason =
                test::looseness(card, file.path, file.shape, recordsIn(file));
            if (!reason.empty()) return "directory " + std::to_string(i) + ": " + reason;
        }
    }
    return {};
}

CardModel::Position CardModel::find(Directory kind, std::size_t position) {
    for (File& file : files(kind))
        for (std::size_t place = 0; place < file.places.size(); ++place)
            if (file.places[place].object && position-- == 0) return {&file, place};
    return {nullptr, 0};
}

/// Behind all others; in a linear file the first free record that is as large, then a new one, then
/// any that is free.
std::optional<std::size_t> CardModel::placeFor(const File& file, const Blob& record) {
    const std::size_t end = file.places.size();
    if (!isLinear(file.shape)) {
        const bool fits = octetsIn(file) + record.size() <= file.size;
        return fits ? std::optional(end) : std::nullopt;
    }
    if (record.size() > file.recordSize) return std::nullopt;
    for (std::size_t i = 0; i < end; ++i)
        if (!file.places[i].object && file.places[i].length >= record.size()) return i;
    if (end < file.size) return end;
    for (std::size_t i = 0; i < end; ++i)
        if (!file.places[i].object) return i;
    return std::nullopt;
}

std::size_t CardModel::octetsIn(const File& file) { return join(recordsIn(file)).size(); }

std::vector<Blob> CardModel::recordsIn(const File& file) {
    std::vector<Blob> records;
    for (const Place& place : file.places)
        if (place.object) records.push_back(place.object->record);
    return records;
}

/// The first free row behind that of TokenInfo, or a new one.
std::uint64_t CardModel::takeRow(std::uint8_t type, bool isPrivate) {
    for (std::size_t i = 1; i < rows_.size(); ++i) {
        if (rows_[i].objectType != freeRow) continue;
        const auto index = static_cast<std::uint16_t>(i);
        rows_[i] = {type, isPrivate, index, index};
        return i;
    }
    return addRow(type, isPrivate);
}

std::uint64_t CardModel::addRow(std::uint8_t type, bool isPrivate) {
    const auto index = static_cast<std::uint16_t>(rows_.size());
    rows_.push_back({type, isPrivate, index, index});
    return index;
}

void CardModel::freeRowOf(std::uint64_t number) {
    if (number != noRecord) rows_[number] = FATInfo();
}

}  // namespace tovi::test
