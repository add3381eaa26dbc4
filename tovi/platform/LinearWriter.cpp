#include "tovi/platform/LinearWriter.h"

#include <algorithm>
#include <utility>

#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

using Kind = RecordChange::Kind;

constexpr std::int64_t recordNotFound = statusWordCode + 0x6A83;
constexpr std::int64_t notEnoughSpace = statusWordCode + 0x6A84;

/// The value that fills a record behind its contents.
std::uint8_t fillOf(ASN1::View slot) {
    const bool hasPadding = recordInSlot(slot) < slot.size();
    return hasPadding && slot.back() == 0xFF ? 0xFF : 0x00;
}

}  // namespace

bool LinearWriter::open() { return select() && settleDoubt(); }

bool LinearWriter::settleDoubt() {
    if (!file_.doubt) return true;
    DoubtfulWrite& doubt = *file_.doubt;
    const std::optional<Blob> found = readSlot(doubt.start);
    const bool isNew = doubt.start == file_.slots.size();
    if (found && *found == doubt.octets) {
        reservePlace();
        if (isNew) file_.slots.emplace_back();
        file_.slots[doubt.start] = std::move(doubt.octets);
        takeLateEffect(doubt);
        for (RecordPlace& place : file_.places)
            if (place.isOnCard())
                place.length = static_cast<std::uint32_t>(recordInSlot(file_.slots[place.start]));
    } else if (isNew ? found.has_value() : !found || *found != file_.slots[doubt.start]) {
        return false;
    }
    file_.doubt.reset();
    return true;
}

std::optional<Blob> LinearWriter::readSlot(std::size_t slot) {
    try {
        return os_.readRecord(slot + 1);
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() != recordNotFound) throw;
        return std::nullopt;
    }
}

WriteOutcome LinearWriter::perform(RecordChange& change) {
    if (change.kind == Kind::none) return WriteOutcome::done;
    if (change.kind != Kind::insert) {
        const std::size_t slot = file_.places[change.place].start;
        if (change.kind == Kind::remove)
            return update(slot, Blob(file_.slots[slot].size(), 0x00), change);
        std::optional<Blob> content = contentFor(slot, change.record);
        return content ? update(slot, std::move(*content), change) : WriteOutcome::noRoom;
    }
    if (const auto slot = freeSlot(change.record.size())) return insertInto(*slot, change);
    if (const auto outcome = append(change)) return *outcome;
    // A record of variable size may still grow.
    if (const auto slot = freeSlot(0)) return insertInto(*slot, change);
    return WriteOutcome::noRoom;
}

/// The record as it is written to a slot, one that is there or the next one; none when it does not
/// fit.
std::optional<Blob> LinearWriter::contentFor(std::size_t slot, ASN1::View record) const {
    const auto& slots = file_.slots;
    Blob content = record;
    if (file_.info.structure == FileStructure::linearFixed && !slots.empty()) {
        // All have one size.
        const ASN1::View like = slots[std::min(slot, slots.size() - 1)];
        if (record.size() > like.size()) return std::nullopt;
        content.resize(like.size(), fillOf(like));
    } else if (const std::size_t most = file_.info.recordSize; most != 0) {
        if (record.size() > most) return std::nullopt;
        if (file_.info.structure == FileStructure::linearFixed) content.resize(most, 0x00);
    }
    if (content.size() > os_.maxWrite()) return std::nullopt;
    return content;
}

std::optional<std::size_t> LinearWriter::freeSlot(std::size_t atLeast) const {
    auto place = file_.places.begin();
    for (std::size_t slot = 0; slot < file_.slots.size(); ++slot) {
        if (place != file_.places.end() && place->start == slot)
            ++place;
        else if (file_.slots[slot].size() >= atLeast)
            return slot;
    }
    return std::nullopt;
}

WriteOutcome LinearWriter::insertInto(std::size_t slot, RecordChange& change) {
    std::optional<Blob> content = contentFor(slot, change.record);
    if (!content) return WriteOutcome::noRoom;
    change.place = placeFor(slot);
    return update(slot, std::move(*content), change);
}

/// None when the card has no room for another record.
std::optional<WriteOutcome> LinearWriter::append(RecordChange& change) {
    const std::size_t slot = file_.slots.size();
    std::optional<Blob> content = contentFor(slot, change.record);
    if (!content || slot >= maxDirectoryFileRecords) return std::nullopt;
    if (readSlot(slot)) return WriteOutcome::changed;
    change.place = file_.places.size();
    try {
        write(slot, std::move(*content), change);
    } catch (const SmartcardException& failure) {
        if (failure.GetCode() != notEnoughSpace) throw;
        file_.doubt.reset();
        return std::nullopt;
    }
    return WriteOutcome::done;
}

WriteOutcome LinearWriter::update(std::size_t slot, Blob content, const RecordChange& change) {
    const std::optional<Blob> found = readSlot(slot);
    if (!found || *found != file_.slots[slot]) return WriteOutcome::changed;
    if (*found == content && change.kind == Kind::replace) return WriteOutcome::done;
    write(slot, std::move(content), change);
    return WriteOutcome::done;
}

void LinearWriter::write(std::size_t slot, Blob content, const RecordChange& change) {
    reservePlace();
    file_.slots.reserve(slot + 1);
    const bool isNew = slot == file_.slots.size();
    try {
        if (isNew)
            os_.appendRecord(content);
        else
            os_.updateRecord(slot + 1, content);
    } catch (...) {
        file_.doubt = DoubtfulWrite{slot, std::move(content), change.kind, change.place};
        throw;
    }
    if (isNew) file_.slots.emplace_back();
    file_.slots[slot] = std::move(content);
    takeEffect(change, {static_cast<std::uint32_t>(slot),
                        static_cast<std::uint32_t>(change.record.size())});
}

std::size_t LinearWriter::placeFor(std::size_t slot) const {
    const auto& places = file_.places;
    return static_cast<std::size_t>(
        std::find_if(places.begin(), places.end(),
                     [&](const RecordPlace& place) { return place.start > slot; }) -
        places.begin());
}

}  // namespace tovi
