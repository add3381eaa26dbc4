#include "tools/PlannedContents.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/AsnJson.h"
#include "tools/FileKind.h"
#include "tovi/asn1/Coding.h"

namespace tovi {
namespace {

using Place = JsonPlace;

const FileKind& kindNamed(const Place& name) {
    for (const FileKind* kind : {&tokenInfoFile, &odfFile, &unusedSpaceFile, &dirFile}) {
        if (kind->name == name.text()) return *kind;
    }
    for (std::size_t choice = 0; choice <= 8; ++choice) {
        if (directoryFileKind(choice).name == name.text()) return directoryFileKind(choice);
    }
    name.fail("a kind of file such as PrKDF");
}

/// The encoding of a value. What would not be read as such a value again is refused.
Blob encoded(const FileKind& kind, const Place& value) {
    if (kind.record == nullptr) value.fail("'kind' on the file, for its records");
    ASN1::AnyValue record(*kind.record), again(*kind.record);
    asnFromJson(record, value.json(), value.where());
    ASN1::Octets octets;
    if (!ASN1::encode(record, octets) || octets.empty()) value.refuse("has no encoding");
    ASN1::Error error;
    if (!ASN1::decode(octets, again, error)) {
        value.refuse("its encoding does not read back: " + ASN1::toString(error));
    }
    return octets;
}

/// What the records of a file may take, so that a few words cannot ask for a lot.
struct Room {
    std::size_t octets;     ///< together
    std::size_t ofARecord;  ///< each
    std::size_t records;    ///< how many
};

Room roomOf(const FileDescription& file, bool isSized, std::size_t left) {
    if (file.kind == FileDescription::Kind::transparent) {
        const std::size_t octets = isSized ? file.size : CardDescription::maxFileSize;
        return {std::min(octets, left), octets, octets};
    }
    const std::size_t records = isSized ? file.size : CardDescription::maxRecords;
    const std::size_t size = file.recordSize > 0 ? file.recordSize : CardDescription::maxRecordSize;
    return {std::min(records * size, left), size, records};
}

/// One element of `records`, which may be as long as a file.
Blob entry(const FileKind& kind, const Place& place, std::size_t longest) {
    if (place.has("hex")) {
        place.allow({"hex"});
        return place.at("hex").octets();
    }
    if (place.has("gap")) {
        place.allow({"gap", "with"});
        const Blob with = place.has("with") ? place.at("with").octets() : Blob{0x00};
        if (with.size() != 1) place.at("with").fail("one octet");
        return Blob(place.at("gap").number(longest), with[0]);
    }
    if (place.has("erased")) {
        place.allow({"erased"});
        Blob record = encoded(kind, place.at("erased"));
        record[0] = 0x00;
        return record;
    }
    if (place.has("cut")) {
        place.allow({"cut", "of"});
        if (!place.has("of")) place.fail("'of', the record that is cut");
        Blob record = encoded(kind, place.at("of"));
        record.resize(place.at("cut").number(record.size()));
        return record;
    }
    return encoded(kind, place);
}

/// All elements of `records`.
std::vector<Blob> entries(const FileKind& kind, const Place& place, Room room) {
    place.expectArray();
    if (place.count() > room.records) {
        place.fail(fmt::format("at most {} records", room.records));
    }
    std::vector<Blob> entries;
    for (std::size_t i = 0; i < place.count(); ++i) {
        entries.push_back(entry(kind, place.at(i), room.ofARecord));
        const std::size_t size = entries.back().size();
        if (size > room.ofARecord) {
            place.at(i).fail(fmt::format("a record of at most {} octets", room.ofARecord));
        }
        if (size > room.octets) place.fail("records that fit into the file and the card");
        room.octets -= size;
    }
    return entries;
}

}  // namespace

FileContents contentsFromJson(const FileDescription& file, const Place& place, std::size_t left) {
    const FileKind& kind = place.has("kind") ? kindNamed(place.at("kind")) : otherFile;
    FileContents contents;
    if (!place.has("records")) return contents;
    const std::vector<Blob> records =
        entries(kind, place.at("records"), roomOf(file, place.has("size"), left));
    if (file.kind != FileDescription::Kind::transparent) return {{}, records};
    for (const Blob& record : records) contents.octets.append(record);
    if (place.has("fill") && contents.octets.size() < file.size) {
        const Blob fill = place.at("fill").octets();
        if (fill.size() != 1) place.at("fill").fail("one octet");
        contents.octets.resize(file.size, fill[0]);
    }
    return contents;
}

std::size_t sizeOf(const FileContents& contents) {
    std::size_t size = contents.octets.size();
    for (const Blob& record : contents.records) size += record.size();
    return size;
}

}  // namespace tovi
