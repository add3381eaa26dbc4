#include "tovi/platform/RecordWriter.h"

#include <algorithm>

#include "tovi/interfaces/Exception.h"
#include "tovi/platform/LinearWriter.h"
#include "tovi/platform/TransparentWriter.h"

namespace tovi {
namespace {

using Kind = RecordChange::Kind;

}  // namespace

std::unique_ptr<RecordWriter> RecordWriter::of(ISCardOS& os, DirectoryFile& file) {
    if (file.isLinear()) return std::make_unique<LinearWriter>(os, file);
    return std::make_unique<TransparentWriter>(os, file);
}

WriteOutcome RecordWriter::insert(ASN1::View record, std::size_t& place) {
    const std::size_t orphan = findOrphan(record);
    if (orphan < file_.places.size()) {
        RecordChange nothing;
        const WriteOutcome outcome = perform(nothing);
        if (outcome != WriteOutcome::done) return outcome;
        place = orphan;
        count(place);
        return outcome;
    }
    RecordChange change{Kind::insert, placeBehindCounted(), record};
    const WriteOutcome outcome = performToTheEffect(change);
    place = change.place;
    if (outcome == WriteOutcome::done) count(place);
    return outcome;
}

WriteOutcome RecordWriter::replace(std::size_t place, ASN1::View record) {
    RecordChange change{Kind::replace, place, record};
    return performToTheEffect(change);
}

WriteOutcome RecordWriter::remove(std::size_t place) {
    // A record that is not on the card went when its removal was reported as failed.
    const bool isOnCard = file_.places[place].isOnCard();
    RecordChange change{isOnCard ? Kind::remove : Kind::none, place, {}};
    WriteOutcome outcome = WriteOutcome::done;
    try {
        outcome = performToTheEffect(change);
    } catch (...) {
        // Whatever it is: who hears of it believes that the record still has its index.
        if (!isGone(place)) throw;
    }
    if (outcome == WriteOutcome::done && !hasTakenEffect(change))
        takeEffect({Kind::remove, place, {}});
    return outcome;
}

/// Performs `change` and is content when the card then fails to close gaps.
WriteOutcome RecordWriter::performToTheEffect(RecordChange& change) {
    effect_ = {};
    try {
        return perform(change);
    } catch (...) {
        if (!hasTakenEffect(change)) throw;
    }
    return WriteOutcome::done;
}

/// Whether that was the last change of `places`.
bool RecordWriter::hasTakenEffect(const RecordChange& change) const {
    return effect_.kind == change.kind && effect_.place == change.place &&
           change.kind != Kind::none;
}

void RecordWriter::count(std::size_t place) {
    file_.places[place].counted = true;
    file_.places[place].isOrphan = false;
}

/// Whether the record is gone although the card reported a failure.
bool RecordWriter::isGone(std::size_t place) {
    const bool isInDoubt = file_.doubt && file_.doubt->effect == Kind::remove;
    try {
        if (isInDoubt && !open()) return false;
    } catch (...) {
        return false;
    }
    return !file_.places[place].isOnCard();
}

bool RecordWriter::select() {
    const FileInfo found = os_.selectFile(file_.path);
    const FileInfo& known = file_.info;
    const bool tellsNothing = found.structure == FileStructure::transparent && found.size == 0;
    if (file_.isLinear())
        return (tellsNothing || found.structure == known.structure) &&
               found.recordSize == known.recordSize;
    return found.structure == known.structure && found.size == known.size;
}

void RecordWriter::takeEffect(const RecordChange& change, RecordPlace place) noexcept {
    auto& places = file_.places;
    const auto at = places.begin() + static_cast<std::ptrdiff_t>(change.place);
    if (change.kind == Kind::insert) places.insert(at, place);
    if (change.kind == Kind::replace) {
        at->length = place.length;
        at->contents.reset();
    }
    if (change.kind == Kind::remove) places.erase(at);
    effect_ = {change.kind, change.place, {}};
}

void RecordWriter::takeLateEffect(const DoubtfulWrite& write) {
    auto& places = file_.places;
    if (write.effect == Kind::remove) places[write.place].length = 0;
    if (write.effect == Kind::replace) {
        places[write.place].length = 1;
        places[write.place].contents.reset();
    }
    if (write.effect != Kind::insert) return;
    RecordPlace orphan{static_cast<std::uint32_t>(write.start), 1};
    orphan.counted = false;
    orphan.isOrphan = true;
    places.insert(places.begin() + static_cast<std::ptrdiff_t>(write.place), orphan);
}

std::size_t RecordWriter::placeBehindCounted() const {
    std::size_t place = file_.places.size();
    while (place > 0 && !file_.places[place - 1].counted) --place;
    return place;
}

std::size_t RecordWriter::findOrphan(ASN1::View record) const {
    const auto found =
        std::find_if(file_.places.begin(), file_.places.end(), [&](const RecordPlace& place) {
            if (!place.isOrphan) return false;
            const ASN1::View octets = file_.octetsAt(place);
            return std::equal(octets.begin(), octets.end(), record.begin(), record.end());
        });
    return static_cast<std::size_t>(found - file_.places.begin());
}

}  // namespace tovi
