#include "tovi/platform/DirectoryFile.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"

namespace tovi {
namespace {

using test::FakeCard;
using test::FakeFile;
using test::linearFile;
using test::times;
using test::transparentFile;
using test::transparentFileOfUnknownSize;
using test::operator+;

const Blob path = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x01};

Blob record(std::size_t contents) {
    return Blob{0x30, 0x82, static_cast<std::uint8_t>(contents >> 8),
                static_cast<std::uint8_t>(contents)} +
           times(contents, 0x30);
}

/// One file on a card of its own, and the records that reading finds.
struct Reading {
    explicit Reading(FakeFile file) { card.files[path] = std::move(file); }

    DirectoryFile read(ReadExtent extent = ReadExtent::records) {
        return readDirectoryFile(card, path, extent);
    }

    std::vector<Blob> records() {
        const DirectoryFile file = read();
        std::vector<Blob> records;
        for (const RecordPlace& place : file.places) records.emplace_back(file.octetsAt(place));
        return records;
    }

    FakeCard card;
};

using Records = std::vector<Blob>;

std::int64_t codeOfFailure(Reading& reading) {
    try {
        reading.read();
    } catch (const SmartcardException& failure) {
        return failure.GetCode();
    }
    return -1;
}

TEST(DirectoryFile, CostsOneSelectAndOneReadWhenItFitsIntoAResponse) {
    Reading reading(transparentFile(record(196)));
    EXPECT_EQ(reading.records(), Records{record(196)});
    EXPECT_EQ(reading.card.selects, 1u);
    EXPECT_EQ(reading.card.reads, 1u);
}

TEST(DirectoryFile, CostsAsFewReadsAsTheResponseSizeAllows) {
    Reading reading(transparentFile(record(600) + times(164, 0x30)));
    reading.card.mostRead = 256;
    reading.read();
    EXPECT_EQ(reading.card.reads, 3u);
}

TEST(DirectoryFile, IsReadToItsEndWhenTheSizeIsNotTold) {
    Reading reading(transparentFileOfUnknownSize(record(300)));
    EXPECT_EQ(reading.records(), Records{record(300)});
    EXPECT_EQ(reading.card.reads, 2u) << "the second response is short";
    EXPECT_EQ(reading.read().size, 304u);
    EXPECT_TRUE(reading.read().isWhole);
}

TEST(DirectoryFile, OfUnknownSizeEndsWithAnEmptyResponse) {
    Reading reading(transparentFileOfUnknownSize(record(252)));
    EXPECT_EQ(reading.records(), Records{record(252)});
    EXPECT_EQ(reading.card.reads, 2u);
}

TEST(DirectoryFile, OfUnknownSizeEndsWhereTheOffsetIsRefused) {
    Reading reading(transparentFileOfUnknownSize(record(252)));
    reading.card.atEnd = FakeCard::AtEnd::refusal;
    EXPECT_EQ(reading.records(), Records{record(252)});
    EXPECT_EQ(reading.card.reads, 2u);
}

TEST(DirectoryFile, IsReadWholeFromACardThatRefusesToReadPastTheEnd) {
    for (const int refusal : {0x6282, 0x6700}) {
        Reading reading(transparentFileOfUnknownSize(record(300)));
        reading.card.atEnd = FakeCard::AtEnd::refusal;
        reading.card.cutCode = statusWordCode + refusal;
        EXPECT_EQ(reading.records(), Records{record(300)});
        EXPECT_LE(reading.card.reads, 20u);
    }
}

TEST(DirectoryFile, OfUnknownSizeEndsWhereTheCardSaysSoWithEveryLength) {
    Reading reading(transparentFileOfUnknownSize(record(252)));
    reading.card.atEnd = FakeCard::AtEnd::refusal;
    reading.card.endCode = statusWordCode + 0x6282;
    EXPECT_EQ(reading.records(), Records{record(252)});
}

TEST(DirectoryFile, WithoutOctetsHasNoRecords) {
    const Blob nothing;
    Reading reading(transparentFileOfUnknownSize(nothing));
    EXPECT_EQ(reading.records(), Records{});
    reading.card.atEnd = FakeCard::AtEnd::refusal;
    EXPECT_EQ(reading.records(), Records{});
}

TEST(DirectoryFile, ShorterThanToldEndsWhereNothingComes) {
    FakeFile file = transparentFile(record(96));
    file.info.size = 4096;
    Reading reading(file);
    EXPECT_EQ(reading.records(), Records{record(96)});
    EXPECT_EQ(reading.read().size, 100u);
    EXPECT_TRUE(reading.read().isWhole);
}

TEST(DirectoryFile, OfToldSizeIsReadOnAfterAShortResponse) {
    Reading reading(transparentFile(record(600)));
    reading.card.mostSent = 100;
    EXPECT_EQ(reading.records(), Records{record(600)});
    EXPECT_EQ(reading.card.reads, 7u);
}

TEST(DirectoryFile, StopsAtTheRestOfAResponseThatIsPaddingOf64Octets) {
    for (const std::uint8_t padding : Blob{0x00, 0xFF}) {
        Reading reading(transparentFile(record(188) + times(64, padding) + times(500, padding)));
        EXPECT_EQ(reading.records(), Records{record(188)});
        EXPECT_EQ(reading.card.reads, 1u);
        EXPECT_FALSE(reading.read().isWhole);
        EXPECT_EQ(reading.read().octets.size(), 256u);
        EXPECT_EQ(reading.read().size, 756u);
    }
}

TEST(DirectoryFile, GoesOnWhenTheRestOfAResponseIs63OctetsOfPadding) {
    Reading reading(transparentFile(record(189) + times(63, 0x00) + record(20)));
    EXPECT_EQ(reading.records(), (Records{record(189), record(20)}));
    EXPECT_EQ(reading.card.reads, 2u);
}

TEST(DirectoryFile, GoesOnWhenThePaddingIsOfTwoValues) {
    const Blob gap = Blob{0x00} + times(600, 0xFF);
    Reading reading(transparentFile(record(100) + gap + record(20)));
    EXPECT_EQ(reading.records(), (Records{record(100), record(20)}))
        << "though one whole response in the middle is FF alone";
}

TEST(DirectoryFile, GoesOnOverAMarkedGapAtItsVeryBeginning) {
    Reading reading(transparentFile(Blob{0x00} + times(299, 0xFF) + record(20)));
    EXPECT_EQ(reading.records(), Records{record(20)});
}

TEST(DirectoryFile, StopsInPaddingThatBeganInAnEarlierResponse) {
    Reading reading(transparentFile(record(250) + times(3000, 0x00)));
    EXPECT_EQ(reading.records(), Records{record(250)});
    EXPECT_EQ(reading.card.reads, 2u);
}

TEST(DirectoryFile, GoesOnWhenResponsesAreTooShortForThePaddingThatStops) {
    Reading reading(transparentFile(record(16) + times(300, 0x00) + record(20)));
    reading.card.mostRead = 63;
    EXPECT_EQ(reading.records(), (Records{record(16), record(20)}));
}

TEST(DirectoryFile, OfUnknownSizeStopsInPaddingToo) {
    Reading reading(transparentFileOfUnknownSize(record(100) + times(3000, 0xFF)));
    EXPECT_EQ(reading.records(), Records{record(100)});
    EXPECT_EQ(reading.card.reads, 1u);
    EXPECT_EQ(reading.read().size, 0u);
}

TEST(DirectoryFile, DoesNotStopInsideARecordThatLooksLikePadding) {
    const Blob zeros = Blob{0x30, 0x82, 0x01, 0x2C} + times(300, 0x00);
    Reading reading(transparentFile(zeros + record(5)));
    EXPECT_EQ(reading.records(), (Records{zeros, record(5)}));
}

TEST(DirectoryFile, StopsAtStaleOctets) {
    Reading reading(transparentFile(record(16) + Blob{0x80, 0x00} + times(1000, 0x55)));
    EXPECT_EQ(reading.records(), Records{record(16)});
    EXPECT_EQ(reading.card.reads, 1u);
}

TEST(DirectoryFile, KeepsABrokenRecordToTheEndOfTheFile) {
    const Blob broken = Blob{0xA0, 0x80} + times(500, 0x00);
    Reading reading(transparentFile(record(16) + broken));
    EXPECT_EQ(reading.records(), (Records{record(16), broken}));
}

TEST(DirectoryFile, IsReadToItsEndWhenAskedFor) {
    const Blob file = record(16) + times(1000, 0x00) + Blob{0x80} + times(99, 0x00);
    Reading reading(transparentFile(file));
    const DirectoryFile whole = reading.read(ReadExtent::wholeFile);
    EXPECT_TRUE(whole.isWhole);
    EXPECT_EQ(whole.octets, std::vector<std::uint8_t>(file.begin(), file.end()));
    EXPECT_EQ(whole.places.size(), 1u);
}

TEST(DirectoryFile, OfHugeToldSizeCostsWhatIsRead) {
    FakeFile file = transparentFile(record(100) + times(500, 0x00));
    file.info.size = std::numeric_limits<std::uint32_t>::max();
    Reading reading(file);
    EXPECT_EQ(reading.records(), Records{record(100)});
    EXPECT_LE(reading.read().octets.capacity(), 512u);
}

/// A card that answers every READ with the same octets, for ever.
class EndlessCard final : public ISCardOS {
public:
    Blob selectApplication(const Blob&, unsigned char) override { return {}; }
    FileInfo selectFile(const Blob&) override { return {}; }
    Blob readBinary(std::size_t, std::size_t length) override {
        octetsSent += length;
        return Blob(length + 10, 0x30);  // and more than it was asked for
    }
    Blob readRecord(std::size_t) override { return {}; }
    void updateBinary(std::size_t, ASN1::View) override {}
    void updateRecord(std::size_t, ASN1::View) override {}
    void appendRecord(ASN1::View) override {}
    std::size_t maxRead() const override { return 65536; }
    std::size_t maxWrite() const override { return 255; }

    std::size_t octetsSent = 0;
};

TEST(DirectoryFile, ThatNeverEndsIsRefusedAtTheLimit) {
    EndlessCard card;
    try {
        readDirectoryFile(card, path, ReadExtent::records);
        FAIL();
    } catch (const SmartcardException& failure) {
        EXPECT_STREQ(failure.GetMessage(), "directory file too long");
        EXPECT_STREQ(failure.GetOperation(), "ProfileDFHandler::ReadFile");
        EXPECT_EQ(failure.GetCode(), 0);
    }
    EXPECT_EQ(card.octetsSent, maxDirectoryFileSize);
}

TEST(DirectoryFile, OfUnusableStructureIsRefused) {
    FakeFile file = transparentFile(record(100));
    file.info.structure = FileStructure::other;
    Reading reading(file);
    try {
        reading.read();
        FAIL();
    } catch (const SmartcardException& failure) {
        EXPECT_STREQ(failure.GetMessage(), "unusable file structure");
    }
    EXPECT_EQ(reading.card.reads, 0u);
}

TEST(DirectoryFile, PassesOnWhatTheCardThrowsAtAnyCommand) {
    Reading reading(transparentFile(record(600)));
    for (std::size_t command = 1; command <= 4; ++command) {
        reading.card.selects = reading.card.reads = 0;
        reading.card.failingCommand = command;
        EXPECT_EQ(codeOfFailure(reading), statusWordCode + 0x6F00) << "command " << command;
        EXPECT_EQ(reading.card.commands(), command) << "and nothing is tried after it";
    }
}

TEST(DirectoryFile, OfRecordsIsReadUpToTheLastOne) {
    for (const FileStructure structure :
         {FileStructure::linearFixed, FileStructure::linearVariable}) {
        Reading reading(linearFile(structure, {record(10), record(11)}));
        EXPECT_EQ(reading.records(), (Records{record(10), record(11)}));
        EXPECT_EQ(reading.card.reads, 3u) << "the third record is not found";
    }
}

TEST(DirectoryFile, OfRecordsBelievesTheCountThatIsTold) {
    Reading reading(linearFile(FileStructure::linearFixed, {record(10), record(11)}, 2));
    EXPECT_EQ(reading.records(), (Records{record(10), record(11)}));
    EXPECT_EQ(reading.card.reads, 2u);
    Reading fewer(linearFile(FileStructure::linearFixed, {record(10)}, 9));
    EXPECT_EQ(fewer.records(), Records{record(10)});
}

TEST(DirectoryFile, OfRecordsIsAskedForNoMoreThan254) {
    Reading reading(linearFile(FileStructure::linearFixed, Records(300, record(1)), 300));
    EXPECT_EQ(reading.records().size(), 254u);
    EXPECT_EQ(reading.card.reads, 254u);
    Reading unknown(linearFile(FileStructure::linearFixed, Records(300, record(1))));
    EXPECT_EQ(unknown.records().size(), 254u);
}

TEST(DirectoryFile, OfRecordsRemembersWhichOnesAreFree) {
    Reading reading(linearFile(FileStructure::linearVariable, {record(1),
                                                               {},
                                                               times(20, 0x00),
                                                               record(2),
                                                               times(20, 0xFF),
                                                               Blob{0x80, 0x01, 0x02},
                                                               record(3)}));
    EXPECT_EQ(reading.records(), (Records{record(1), record(2), record(3)}));
    const DirectoryFile file = reading.read();
    ASSERT_EQ(file.places.size(), 3u);
    EXPECT_EQ(file.places[1].start, 3u);
    EXPECT_EQ(file.places[2].start, 6u);
    EXPECT_EQ(file.slots.size(), 7u);
}

TEST(DirectoryFile, OfRecordsCutsThePaddingBehindAValue) {
    Reading reading(linearFile(FileStructure::linearFixed, {record(5) + times(9, 0xFF)}));
    EXPECT_EQ(reading.records(), Records{record(5)});
    EXPECT_EQ(reading.read().slots[0].size(), 18u);
}

TEST(DirectoryFile, OfRecordsKeepsABrokenOneAndReadsOn) {
    const Blob broken = {0x30, 0x09, 0x01};
    Reading reading(linearFile(FileStructure::linearVariable, {broken, record(4)}));
    EXPECT_EQ(reading.records(), (Records{broken, record(4)}));
}

TEST(DirectoryFile, OfRecordsPassesOnFailuresOfTheCard) {
    Reading reading(linearFile(FileStructure::linearFixed, {record(1), record(2)}));
    reading.card.failingCommand = 3;
    reading.card.failure = statusWordCode + 0x6982;
    EXPECT_EQ(codeOfFailure(reading), statusWordCode + 0x6982);
}

TEST(DirectoryFile, IsReadAsRecordsWhereTheCardTellsNothingAndRefusesOctets) {
    FakeFile file = linearFile(FileStructure::transparent, {record(1), record(2)});
    Reading reading(file);
    EXPECT_EQ(reading.records(), (Records{record(1), record(2)}));
    EXPECT_TRUE(reading.read().isLinear());
}

TEST(DirectoryFile, WithAToldSizeIsNotTakenForRecords) {
    FakeFile file = linearFile(FileStructure::transparent, {record(1)});
    file.info.size = 100;
    Reading reading(file);
    EXPECT_EQ(codeOfFailure(reading), statusWordCode + 0x6981);
}

}  // namespace
}  // namespace tovi
