#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fuzz/require.h"
#include "tests/platform/FakeCard.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/platform/DirectoryFile.h"
#include "tovi/platform/TlvHeader.h"

// An input is what a card holds and how it answers: one octet of choices, one for the response
// size, and the file. Whatever they are, every record lies in the file, in order and apart from the
// others, and has a constructed tag; how the card answers changes nothing; and the work is bounded
// by the file.
namespace {

using namespace tovi;
using test::FakeCard;

const Blob path = {0x3F, 0x00, 0x44, 0x01};

enum Choice : unsigned {
    linear = 1,
    unknownSize = 2,
    tooLargeSize = 4,
    refusesAtEnd = 8,
    sequences = 16
};

test::FakeFile linearFile(ASN1::View octets) {
    test::FakeFile file = test::linearFile(FileStructure::linearVariable, {});
    while (!octets.empty()) {
        const std::size_t length = std::min<std::size_t>(octets[0], octets.size() - 1);
        file.records.emplace_back(octets.subspan(1, length));
        octets = octets.subspan(1 + length);
    }
    return file;
}

test::FakeFile fileOf(unsigned choices, ASN1::View octets) {
    if ((choices & linear) != 0) return linearFile(octets);
    test::FakeFile file = test::transparentFile(octets);
    if ((choices & tooLargeSize) != 0) file.info.size = 2 * octets.size() + 7;
    if ((choices & unknownSize) != 0) file.info.size = 0;
    return file;
}

FakeCard cardOf(unsigned choices, std::size_t mostRead, ASN1::View octets) {
    FakeCard card;
    card.files[path] = fileOf(choices, octets);
    card.mostRead = mostRead;
    if ((choices & refusesAtEnd) != 0) card.atEnd = FakeCard::AtEnd::refusal;
    return card;
}

void checkPlaces(const DirectoryFile& file, std::size_t fileSize) {
    std::size_t end = 0;
    for (const RecordPlace& place : file.places) {
        require(place.start >= end && place.length > 0);
        require(isRecordTag(file.octetsAt(place)[0]));
        end = file.isLinear() ? place.start + 1 : std::size_t{place.start} + place.length;
    }
    require(end <= fileSize);
}

std::vector<Blob> recordsOf(const DirectoryFile& file, unsigned char tag) {
    std::vector<Blob> records;
    for (const RecordPlace& place : file.places)
        if (tag == IGNORE_TAG || file.octetsAt(place)[0] == tag)
            records.emplace_back(file.octetsAt(place));
    return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const unsigned choices = data[0];
    const std::size_t mostRead = data[1] + std::size_t{1};
    const ASN1::View octets(data + 2, size - 2);
    const unsigned char tag = (choices & sequences) != 0 ? SEQUENCE_TAG : IGNORE_TAG;

    FakeCard card = cardOf(choices, mostRead, octets);
    const DirectoryFile whole = readDirectoryFile(card, path, ReadExtent::wholeFile);
    checkPlaces(whole, octets.size());
    require(card.selects == 1 && card.octetsSent <= octets.size());
    require((choices & linear) != 0 || card.reads <= octets.size() / mostRead + 32);

    FakeCard plainCard = cardOf(choices & linear, 256, octets);
    const DirectoryFile plain = readDirectoryFile(plainCard, path, ReadExtent::wholeFile);
    require(recordsOf(whole, tag) == recordsOf(plain, tag));

    // Reading may end in long padding, with a beginning of the records.
    ProfileDFHandler handler({});
    handler.SetFilePath({0x44, 0x01}, nullptr);
    handler.ReadFile(&card, tag, true);
    const std::vector<Blob> all = recordsOf(whole, tag);
    require(handler.records().size() <= all.size());
    require(std::equal(handler.records().begin(), handler.records().end(), all.begin()));
    return 0;
}
