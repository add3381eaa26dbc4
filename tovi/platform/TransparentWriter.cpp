#include "tovi/platform/TransparentWriter.h"

#include <algorithm>
#include <utility>

#include "tovi/interfaces/Exception.h"
#include "tovi/platform/GapMarks.h"
#include "tovi/platform/RecordScanner.h"

namespace tovi {
namespace {

using Kind = RecordChange::Kind;
using Octets = std::vector<std::uint8_t>;

void applyStep(const WriteStep& step, Octets& octets) noexcept {
    std::copy(step.octets.begin(), step.octets.end(),
              octets.begin() + static_cast<std::ptrdiff_t>(step.offset));
}

std::vector<FileEntry> recordsIn(ASN1::View file) {
    std::vector<FileEntry> entries = scanRecords(file);
    std::erase_if(entries, [](const FileEntry& entry) { return !entry.isRecord(); });
    return entries;
}

/// Lets the places that are on the card be those of `records`, in order. False, and nothing is
/// changed, when there are not as many.
bool assignPlaces(std::vector<RecordPlace>& places,
                  const std::vector<FileEntry>& records) noexcept {
    const auto onCard = std::count_if(places.begin(), places.end(),
                                      [](const RecordPlace& place) { return place.isOnCard(); });
    if (static_cast<std::size_t>(onCard) != records.size()) return false;
    auto record = records.begin();
    for (RecordPlace& place : places) {
        if (!place.isOnCard()) continue;
        place.start = record->offset;
        place.length = record->length;
        ++record;
    }
    return true;
}

/// From the first to the last octet that the steps write.
std::pair<std::size_t, std::size_t> extentOf(const std::vector<WriteStep>& steps) {
    std::size_t from = steps.front().offset;
    std::size_t to = from;
    for (const WriteStep& step : steps) {
        from = std::min(from, step.offset);
        to = std::max(to, step.offset + step.octets.size());
    }
    return {from, to};
}

Blob readStretch(ISCardOS& os, std::size_t from, std::size_t length) {
    BinaryReader reader(os);
    Blob octets;
    while (octets.size() < length) {
        const std::size_t wanted = std::min(reader.most(), length - octets.size());
        const Blob response = reader.read(from + octets.size(), wanted);
        if (response.empty()) break;
        octets.append(ASN1::View(response).first(std::min(response.size(), wanted)));
    }
    return octets;
}

}  // namespace

bool TransparentWriter::open() {
    if (!select() || !settleDoubt() || !settlePlaces()) return false;
    believeToldSize();
    return true;
}

/// Where the file was found to end earlier than told, that may have been a passing failure: this
/// operation looks again.
void TransparentWriter::believeToldSize() {
    if (file_.size >= file_.info.size) return;
    file_.size = file_.info.size;
    file_.isWhole = false;
}

bool TransparentWriter::settleDoubt() {
    if (!file_.doubt) return true;
    const DoubtfulWrite& doubt = *file_.doubt;
    const Blob found = readStretch(os_, doubt.start, doubt.octets.size());
    const ASN1::View before = ASN1::View(file_.octets).subspan(doubt.start, doubt.octets.size());
    if (found == doubt.octets) {
        reservePlace();
        applyStep({doubt.start, doubt.octets}, file_.octets);
        takeLateEffect(doubt);
    } else if (!std::equal(found.begin(), found.end(), before.begin(), before.end())) {
        return false;
    }
    file_.doubt.reset();
    return true;
}

bool TransparentWriter::settlePlaces() {
    if (file_.isSettled) return true;
    file_.isSettled = assignPlaces(file_.places, recordsIn(file_.octets));
    return file_.isSettled;
}

WriteOutcome TransparentWriter::perform(RecordChange& change) {
    readSize();
    StretchCheck check(os_, file_);
    while (const auto place = incompletePlace(change)) {
        const auto contents = file_.places[*place].contents;
        RecordChange completion{Kind::replace, *place, *contents};
        const WriteOutcome outcome = performPlanned(completion, check);
        if (outcome != WriteOutcome::done) return outcome;
    }
    return performPlanned(change, check);
}

/// A record that a write left incomplete and that does not change now.
std::optional<std::size_t> TransparentWriter::incompletePlace(const RecordChange& change) const {
    const bool changesOld = change.kind == Kind::replace || change.kind == Kind::remove;
    for (std::size_t i = 0; i < file_.places.size(); ++i) {
        const RecordPlace& place = file_.places[i];
        if (!place.contents || !place.isOnCard() || (changesOld && i == change.place)) continue;
        const ASN1::View held = file_.octetsAt(place);
        if (!std::equal(held.begin(), held.end(), place.contents->begin(), place.contents->end()))
            return i;
    }
    return std::nullopt;
}

WriteOutcome TransparentWriter::performPlanned(RecordChange& change, StretchCheck& check) {
    while (true) {
        const Octets believed = believedOctets();
        std::optional<WritePlan> plan = planWriting(believed, planned(change), mostWritten());
        if (!plan && file_.isWhole) return WriteOutcome::noRoom;
        if (plan && plan->steps.empty()) return WriteOutcome::done;
        const auto [from, to] =
            plan ? extentOf(plan->steps) : std::pair<std::size_t, std::size_t>();
        if (!check.see(from, to) || !addPlacesFound()) return WriteOutcome::changed;
        // What came to light in the rest of the file may call for another plan.
        if (!plan || file_.octets != believed) continue;
        if (plan->place != planned(change).place) change.place = placeOf(plan->place);
        execute(std::move(*plan), change);
        return WriteOutcome::done;
    }
}

/// Finds out how large the file is when the card did not tell.
void TransparentWriter::readSize() {
    if (file_.size == 0 && !file_.isWhole) {
        readRest(os_, file_);
        addPlacesFound();
    }
    if (file_.size > maxDirectoryFileSize)
        throw SmartcardException("directory file too long", "ProfileDFHandler::ReadFile");
}

/// The file as it is if all that was not read is padding.
std::vector<std::uint8_t> TransparentWriter::believedOctets() const {
    Octets octets;
    octets.reserve(file_.size);
    octets = file_.octets;
    if (!file_.isWhole) octets.resize(file_.size, octets.empty() ? std::uint8_t{0} : octets.back());
    return octets;
}

/// The change with its place counted among the records that the card holds.
RecordChange TransparentWriter::planned(const RecordChange& change) const {
    const auto begin = file_.places.begin();
    RecordChange onCard = change;
    onCard.place = static_cast<std::size_t>(
        std::count_if(begin, begin + static_cast<std::ptrdiff_t>(change.place),
                      [](const RecordPlace& place) { return place.isOnCard(); }));
    if (change.kind == Kind::replace && !file_.places[change.place].isOnCard())
        onCard.kind = Kind::insert;
    return onCard;
}

std::size_t TransparentWriter::placeOf(std::size_t recordOnCard) const {
    std::size_t place = 0;
    while (place < file_.places.size() && (recordOnCard > 0 || !file_.places[place].isOnCard())) {
        if (file_.places[place].isOnCard()) --recordOnCard;
        ++place;
    }
    return place;
}

/// Adds what has come to light behind the records that were read. It has no index.
bool TransparentWriter::addPlacesFound() {
    const std::vector<FileEntry> records = recordsIn(file_.octets);
    std::vector<RecordPlace> places = file_.places;
    std::size_t known = 0;
    for (const RecordPlace& place : places) known += place.isOnCard() ? 1u : 0u;
    for (; known < records.size(); ++known)
        places.push_back({records[known].offset, records[known].length, false});
    if (!assignPlaces(places, records)) return false;
    file_.places = std::move(places);
    return true;
}

std::size_t TransparentWriter::mostWritten() const { return std::max(os_.maxWrite(), leastWrite); }

/// Those that one command may not be able to move or to replace.
void TransparentWriter::rememberLongRecords(const RecordChange& change) {
    const auto isLong = [this](std::size_t length) { return length + longestMark > mostWritten(); };
    for (std::size_t i = 0; i < file_.places.size(); ++i) {
        RecordPlace& place = file_.places[i];
        const bool isReplaced = change.kind == Kind::replace && i == change.place;
        if (!place.isOnCard() || place.contents) continue;
        if (isLong(place.length) || (isReplaced && isLong(change.record.size())))
            place.contents = std::make_shared<const Blob>(file_.octetsAt(place));
    }
}

void TransparentWriter::forgetLongRecords() noexcept {
    for (RecordPlace& place : file_.places) place.contents.reset();
}

void TransparentWriter::execute(WritePlan plan, const RecordChange& change) {
    // Everything that may fail for want of memory comes before the first write.
    reservePlace();
    rememberLongRecords(change);
    Octets result = file_.octets;
    for (const WriteStep& step : plan.steps) applyStep(step, result);
    const std::vector<FileEntry> records = recordsIn(result);

    RecordPlace written{0, static_cast<std::uint32_t>(change.record.size()), false, true};
    for (std::size_t i = 0; i < plan.steps.size(); ++i) {
        const bool takesEffect = i + 1 == plan.effective;
        write(std::move(plan.steps[i]), takesEffect ? change.kind : Kind::none, change.place);
        if (takesEffect) takeEffect(change, written);
    }
    if (change.kind == Kind::insert) {
        file_.places[change.place].counted = true;
        file_.places[change.place].isOrphan = false;
    }
    file_.isSettled = assignPlaces(file_.places, records);
    forgetLongRecords();
}

void TransparentWriter::write(WriteStep step, Kind effect, std::size_t place) {
    file_.isSettled = false;
    try {
        os_.updateBinary(step.offset, step.octets);
    } catch (...) {
        file_.doubt = DoubtfulWrite{step.offset, std::move(step.octets), effect, place};
        throw;
    }
    applyStep(step, file_.octets);
}

}  // namespace tovi
