#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/platform/WrittenKind.h"

namespace tovi {
namespace {

using test::FakeCard;
using test::fileOf;
using test::linearFile;
using test::times;
using test::transparentFile;
using test::transparentFileOfUnknownSize;
using test::operator+;
using Records = std::vector<Blob>;

using test::changed;
using test::failureOf;
using test::Kind;
using test::noRoom;
using test::record;
using test::smartcardFailure;

const Blob a = record(20, 0x31);
const Blob b = record(30, 0x32);
const Blob c = record(40, 0x33);
const Blob fresh = record(25, 0x34);

TEST(WriteSequence, AppendsWithThreeCommands) {
    Kind kind(fileOf(a + b, 200));
    EXPECT_EQ(kind.write(fresh), 2u);
    EXPECT_EQ(kind.octets(), a + b + fresh + times(125, 0x00));
    EXPECT_EQ(kind.card.selects, 1u);
    EXPECT_EQ(kind.card.reads, 1u);
    EXPECT_EQ(kind.card.writes, 1u);
}

TEST(WriteSequence, FillsAnEmptyFile) {
    for (const std::uint8_t fill : Blob{0x00, 0xFF}) {
        Kind kind(fileOf({}, 100, fill));
        EXPECT_EQ(kind.write(a), 0u);
        EXPECT_EQ(kind.write(b), 1u);
        EXPECT_EQ(kind.octets(), a + b + times(50, fill));
    }
}

TEST(WriteSequence, FillsAFileToItsLastOctet) {
    Kind kind(fileOf(a, 50));
    EXPECT_EQ(kind.write(b), 1u);
    EXPECT_EQ(kind.octets(), a + b);
}

TEST(WriteSequence, WritesNothingToAFileWithoutRoom) {
    Kind kind(fileOf(a, 44));
    EXPECT_EQ(failureOf([&] { kind.write(fresh); }), noRoom("WriteSequence"));
    EXPECT_EQ(kind.octets(), a + times(24, 0x00));
    EXPECT_EQ(kind.card.writes, 0u);
    EXPECT_EQ(kind.write(record(24, 0x35)), 1u) << "and goes on";
}

TEST(WriteSequence, ReadsTheRestOfTheFileOnceBeforeTheFirstWrite) {
    Kind kind(fileOf(a, 1000));
    kind.write(b);
    EXPECT_EQ(kind.card.reads, 1u + 3u) << "20 to 50, and 256 to 1000 in three responses";
    kind.forgetCosts();
    kind.write(fresh);
    EXPECT_EQ(kind.card.reads, 1u);
}

TEST(WriteSequence, ReadsWhatItChangesAndTheRestTogetherWhereTheyMeet) {
    Kind kind(fileOf(record(190, 0x31), 400));
    kind.write(record(80, 0x32));
    EXPECT_EQ(kind.card.reads, 1u);
    EXPECT_EQ(kind.card.commands(), 3u);
}

TEST(WriteSequence, ReadsAFileOfUnknownSizeToItsEnd) {
    Kind kind(transparentFileOfUnknownSize(a + times(600, 0xFF)));
    EXPECT_EQ(kind.write(b), 1u);
    EXPECT_EQ(kind.octets(), a + b + times(570, 0xFF));
    EXPECT_EQ(failureOf([&] {
                  kind.write(record(257, 1)), kind.write(record(257, 1)), kind.write(record(57, 1));
              }),
              noRoom("WriteSequence"));
}

TEST(WriteSequence, BelievesATooLargeSizeUntilNothingComes) {
    test::FakeFile file = fileOf(a, 300);
    file.info.size = 400;
    Kind kind(file);
    EXPECT_EQ(kind.write(record(257, 0x35)), 1u);
    EXPECT_EQ(failureOf([&] { kind.write(record(24, 0x36)); }), noRoom("WriteSequence"));
    EXPECT_EQ(kind.write(record(23, 0x36)), 2u);
    EXPECT_EQ(kind.octets().size(), 300u);
}

TEST(WriteSequence, LeavesRecordsThatComeToLightBehindTheNewOneUncounted) {
    Kind kind(fileOf(a + times(300, 0x00) + b, 600));
    ASSERT_EQ(kind.handler->records(), Records{a});
    EXPECT_EQ(kind.write(fresh), 1u);
    EXPECT_EQ(kind.octets(), a + fresh + b + times(525, 0x00));
    kind.update(1, record(31, 0x34));
    EXPECT_EQ(failureOf([&] { kind.remove(2); }), changed("DeleteSequence"));
    EXPECT_EQ(kind.write(c), 2u);
    EXPECT_EQ(kind.found(), (Records{a, record(31, 0x34), c, b}));
}

TEST(WriteSequence, CountsTheRoomOfWhatComesToLight) {
    Kind kind(fileOf(a + times(300, 0x00) + c, 390));
    EXPECT_EQ(failureOf([&] { kind.write(record(257, 1)), kind.write(record(74, 1)); }),
              noRoom("WriteSequence"));
    EXPECT_EQ(kind.write(record(73, 1)), 2u);
    EXPECT_EQ(kind.found().size(), 4u);
}

TEST(WriteSequence, ClosesGapsAndReusesTheirRoom) {
    Blob erased = b;
    erased[0] = 0x00;
    Kind kind(fileOf(times(3, 0xFF) + a + erased + c, 100));
    EXPECT_EQ(kind.write(record(40, 0x34)), 2u);
    EXPECT_EQ(kind.octets(), a + c + record(40, 0x34));
}

TEST(WriteSequence, LeavesStaleOctetsThatItWritesIntoAs00) {
    Kind kind(transparentFile(a + Blob{0x80, 0x00, 0x30, 0x05} + times(60, 0x30)));
    EXPECT_EQ(kind.write(b), 1u);
    EXPECT_EQ(kind.octets(), a + b + times(34, 0x00));
}

TEST(WriteSequence, GoesInFrontOfABrokenRecord) {
    const Blob broken = Blob{0x30, 0x7F} + times(20, 0x44);
    Kind kind(transparentFile(a + times(30, 0x00) + broken));
    EXPECT_EQ(kind.write(fresh), 1u);
    EXPECT_EQ(kind.octets(), a + fresh + Blob{0x00} + times(4, 0xFF) + broken);
    EXPECT_EQ(failureOf([&] { kind.write(record(6, 1)); }), noRoom("WriteSequence"));
    EXPECT_TRUE(kind.remove(2));
    EXPECT_EQ(kind.octets(), a + fresh + times(27, 0x00));
}

TEST(WriteSequence, TakesTheLastFileThatHasRoom) {
    Kind kind(fileOf(a + b, 200), fileOf(c, 70));
    EXPECT_EQ(kind.write(fresh), 3u);
    EXPECT_EQ(kind.octets(Kind::second), c + fresh + times(5, 0x00));
    EXPECT_EQ(kind.write(fresh), 2u) << "behind the last record of the first file";
    EXPECT_EQ(kind.octets(), a + b + fresh + times(125, 0x00));
    EXPECT_EQ(kind.found(), (Records{a, b, fresh, c, fresh}));
    kind.update(3, record(40, 0x39));
    EXPECT_TRUE(kind.remove(0));
    EXPECT_EQ(kind.found(), (Records{b, fresh, record(40, 0x39), fresh}));
}

TEST(WriteSequence, DoesNotTouchAFileThatIsKnownToBeFull) {
    Kind kind(fileOf(a, 100), fileOf(c, 50));
    kind.write(fresh);
    EXPECT_EQ(kind.card.selects, 1u);
}

TEST(WriteSequence, GoesOnlyToFilesOfThisRound) {
    Kind kind(fileOf(a + b, 200), fileOf(c, 200));
    kind.handler->BeginRound();
    kind.readFile(Kind::second);
    EXPECT_EQ(kind.write(fresh), 1u);
    EXPECT_EQ(kind.octets(Kind::second), c + fresh + times(135, 0x00));
    EXPECT_EQ(kind.octets(), a + b + times(150, 0x00));
    kind.update(0, a);
    EXPECT_EQ(kind.octets(Kind::second), a + fresh + times(155, 0x00));
    EXPECT_EQ(failureOf([&] { kind.update(2, a); }), changed("UpdateSequence"));
    EXPECT_EQ(failureOf([&] { kind.remove(2); }), changed("DeleteSequence"));
    EXPECT_EQ(kind.octets(), a + b + times(150, 0x00));
}

TEST(WriteSequence, FindsNoFileAfterTheBeginningOfARound) {
    Kind kind(fileOf(a, 100));
    kind.handler->BeginRound();
    EXPECT_TRUE(kind.handler->records().empty());
    EXPECT_EQ(failureOf([&] { kind.write(fresh); }),
              smartcardFailure("no directory file", "ProfileDFHandler::WriteSequence"));
    kind.readFile(Kind::path);
    EXPECT_EQ(kind.write(fresh), 1u);
}

TEST(UpdateSequence, SendsOnlyWhatDiffers) {
    Kind kind(fileOf(a + b + c, 200));
    Blob edited = b;
    edited[7] = 0x77, edited[9] = 0x79;
    kind.update(1, edited);
    EXPECT_EQ(kind.octets(), a + edited + c + times(110, 0x00));
    EXPECT_EQ(kind.card.commands(), 3u);
    EXPECT_EQ(kind.card.octetsSent, 200u + 3u);
}

TEST(UpdateSequence, OfARecordByItselfWritesNothing) {
    Kind kind(fileOf(a + b, 200));
    kind.update(1, b);
    EXPECT_EQ(kind.card.writes, 0u);
}

TEST(UpdateSequence, KeepsTheFileCompactWhateverTheSize) {
    for (const std::uint8_t fill : Blob{0x00, 0xFF})
        for (const std::size_t length : {2u, 19u, 20u, 21u, 50u, 200u}) {
            Kind kind(fileOf(a + b + c, 290, fill));
            const Blob edited = record(length, 0x35);
            kind.update(0, edited);
            EXPECT_EQ(kind.octets(), edited + b + c + times(220 - length, fill));
        }
}

TEST(UpdateSequence, WritesNothingWithoutRoom) {
    Kind kind(fileOf(a + b, 60));
    EXPECT_EQ(failureOf([&] { kind.update(0, record(31, 1)); }), noRoom("UpdateSequence"));
    EXPECT_EQ(kind.octets(), a + b + times(10, 0x00));
    kind.update(0, record(30, 1));
    EXPECT_EQ(kind.octets(), record(30, 1) + b);
}

TEST(DeleteSequence, ClosesTheGap) {
    for (const std::uint8_t fill : Blob{0x00, 0xFF}) {
        Kind kind(fileOf(a + b + c, 120, fill));
        EXPECT_TRUE(kind.remove(0));
        EXPECT_EQ(kind.octets(), b + c + times(50, fill));
        EXPECT_TRUE(kind.remove(1));
        EXPECT_EQ(kind.octets(), b + times(90, fill));
        EXPECT_TRUE(kind.remove(0));
        EXPECT_EQ(kind.octets(), times(120, fill));
    }
}

TEST(DeleteSequence, LeavesRecordsOfOtherTagsAlone) {
    const Blob other = Blob{0xA0, 0x03} + times(3, 0x55);
    Kind kind(fileOf(other + a + other + b, 100));
    kind.read(SEQUENCE_TAG);
    EXPECT_TRUE(kind.remove(0));
    kind.update(0, c);
    EXPECT_EQ(kind.octets(), other + other + c + times(50, 0x00));
    EXPECT_EQ(kind.write(a), 1u);
}

TEST(DeleteSequence, IsFalseWhenTheCardRefuses) {
    for (const std::size_t command : {1u, 2u, 3u}) {
        Kind kind(fileOf(a + b, 60));
        kind.card.failingCommand = command;
        EXPECT_FALSE(kind.remove(0));
        EXPECT_EQ(kind.octets(), a + b + times(10, 0x00));
        EXPECT_TRUE(kind.remove(0));
        EXPECT_EQ(kind.octets(), b + times(30, 0x00));
    }
}

TEST(DeleteSequence, IsTrueWhenTheFailingCommandWasPerformed) {
    Kind kind(fileOf(a + b, 60));
    kind.card.failingCommand = 3;
    kind.card.performsFailingWrite = true;
    EXPECT_TRUE(kind.remove(0)) << "the card shows that the record is gone";
    EXPECT_TRUE(kind.remove(0));
    EXPECT_EQ(kind.octets(), times(60, 0x00));
}

TEST(DeleteSequence, IsTrueOnceTheRecordIsGoneThoughTheGapStaysOpen) {
    Blob rest;
    for (std::uint8_t i = 0; i < 5; ++i) rest = rest + record(120, i);
    Kind kind(fileOf(a + rest, 1000));
    kind.card.mostWritten = 150;
    kind.card.failingCommand = 9;
    EXPECT_TRUE(kind.remove(0));
    EXPECT_EQ(kind.found().size(), 5u);
    EXPECT_EQ(kind.octets()[0], 0x30);
    EXPECT_NE(kind.octets(), rest + times(400, 0x00));
    kind.update(2, record(120, 0x77));
    EXPECT_EQ(kind.found()[2], record(120, 0x77));
    EXPECT_EQ(Blob(ASN1::View(kind.octets()).subspan(600)), times(400, 0x00)) << "closed now";
}

TEST(ProfileDFWriting, NeedsACardAFileAndARecord) {
    FakeCard card;
    ProfileDFHandler handler({0x50, 0x15});
    unsigned long index = 77;
    const std::string prefix = "ProfileDFHandler::";
    EXPECT_EQ(failureOf([&] { handler.WriteSequence(nullptr, a, index); }),
              smartcardFailure("no card", prefix + "WriteSequence"));
    EXPECT_EQ(failureOf([&] { handler.UpdateSequence(nullptr, 0, a); }),
              smartcardFailure("no card", prefix + "UpdateSequence"));
    EXPECT_EQ(failureOf([&] { handler.DeleteSequence(nullptr, 0); }),
              smartcardFailure("no card", prefix + "DeleteSequence"));
    EXPECT_EQ(failureOf([&] { handler.WriteSequence(&card, a, index); }),
              smartcardFailure("no directory file", prefix + "WriteSequence"));
    EXPECT_EQ(failureOf([&] { handler.UpdateSequence(&card, 0, a); }),
              smartcardFailure("no directory file", prefix + "UpdateSequence"));
    EXPECT_EQ(failureOf([&] { handler.DeleteSequence(&card, 0); }),
              smartcardFailure("no directory file", prefix + "DeleteSequence"));
    EXPECT_EQ(index, 77u);
    EXPECT_EQ(card.commands(), 0u);
}

TEST(ProfileDFWriting, WritesNoFileThatWasReadOnlyToBeRead) {
    Kind kind(fileOf(a, 100));
    ProfileDFHandler odf({0x50, 0x15});
    odf.SetFilePath(Kind::path, nullptr);
    odf.ReadFile(&kind.card, IGNORE_TAG, false);
    EXPECT_EQ(failureOf([&] { odf.UpdateSequence(&kind.card, 0, b); }).message,
              "no directory file");
}

TEST(ProfileDFWriting, WritesOnlyWholeRecords) {
    Kind kind(fileOf(a, 100));
    for (const Blob& bad : {Blob{}, Blob{0x30}, Blob{0x30, 0x01}, Blob{0x30, 0x00, 0x00},
                            Blob{0x04, 0x00}, Blob{0x00, 0x00}, Blob{0x30, 0x80, 0x00, 0x00}}) {
        EXPECT_EQ(failureOf([&] { kind.write(bad); }).message, "invalid record");
        EXPECT_EQ(failureOf([&] { kind.update(0, bad); }).message, "invalid record");
    }
    EXPECT_EQ(kind.card.commands(), 0u);
}

TEST(ProfileDFWriting, RefusesIndicesBehindAllRecords) {
    Kind kind(fileOf(a + b, 100));
    EXPECT_EQ(failureOf([&] { kind.update(2, a); }), changed("UpdateSequence"));
    EXPECT_EQ(failureOf([&] { kind.remove(~0ul); }), changed("DeleteSequence"));
    EXPECT_EQ(kind.card.commands(), 0u);
}

TEST(ProfileDFWriting, WritesNothingWhenSomebodyElseDid) {
    const std::vector<std::function<void(Kind&)>> operations = {
        [](Kind& kind) { kind.write(c); }, [](Kind& kind) { kind.update(1, record(30, 0x77)); },
        [](Kind& kind) { kind.remove(1); }};
    const std::string names[] = {"WriteSequence", "UpdateSequence", "DeleteSequence"};
    for (std::size_t i = 0; i < 3; ++i) {
        Kind kind(fileOf(a + b, 200));
        kind.octets()[i == 0 ? 60 : 40] ^= 0x11;
        const Blob before = kind.octets();
        EXPECT_EQ(failureOf([&] { operations[i](kind); }), changed(names[i]));
        EXPECT_EQ(kind.octets(), before);
        EXPECT_EQ(kind.card.writes, 0u);
        kind.read();
        operations[i](kind);
        EXPECT_NE(kind.octets(), before);
    }
}

TEST(ProfileDFWriting, WritesNothingToAFileOfAnotherSize) {
    Kind kind(fileOf(a + b, 200));
    kind.card.files[Kind::path] = fileOf(a + b, 300);
    EXPECT_EQ(failureOf([&] { kind.remove(0); }), changed("DeleteSequence"));
    kind.card.files[Kind::path] = linearFile(FileStructure::linearFixed, {a});
    EXPECT_EQ(failureOf([&] { kind.write(c); }), changed("WriteSequence"));
}

TEST(ProfileDFWriting, ReportsWhatTheCardReports) {
    Kind kind(fileOf(a + b, 200));
    kind.card.isWritable = false;
    const test::Failure refusal = {test::smartcardId, "refused", "FakeCard",
                                   statusWordCode + 0x6982};
    unsigned long index = 5;
    EXPECT_EQ(failureOf([&] { kind.handler->WriteSequence(&kind.card, c, index); }), refusal);
    EXPECT_EQ(index, 5u);
    EXPECT_EQ(failureOf([&] { kind.update(0, c); }), refusal);
    EXPECT_FALSE(kind.remove(0));
    kind.card.isWritable = true;
    EXPECT_EQ(kind.write(c), 2u);
    EXPECT_EQ(kind.octets(), a + b + c + times(110, 0x00));
}

TEST(ProfileDFWriting, TakesARecordOfAFailedWriteForTheNewOne) {
    Kind kind(fileOf(a, 100));
    kind.card.failingCommand = 3;
    kind.card.performsFailingWrite = true;
    unsigned long index = 5;
    EXPECT_EQ(failureOf([&] { kind.write(b); }).code, statusWordCode + 0x6F00);
    EXPECT_EQ(kind.octets(), a + b + times(50, 0x00));
    EXPECT_EQ(failureOf([&] { kind.remove(1); }), changed("DeleteSequence")) << "nobody counts it";
    EXPECT_TRUE(kind.handler->WriteSequence(&kind.card, b, index));
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(kind.octets(), a + b + times(50, 0x00));
    EXPECT_EQ(kind.write(b), 2u) << "a second one is another one";
    EXPECT_EQ(kind.octets(), a + b + b + times(20, 0x00));
}

TEST(ProfileDFWriting, KeepsIndicesAfterAFailedWriteThatTookPlace) {
    Kind kind(fileOf(a, 200));
    kind.card.failingCommand = 3;
    kind.card.performsFailingWrite = true;
    EXPECT_EQ(failureOf([&] { kind.write(b); }).code, statusWordCode + 0x6F00);
    EXPECT_EQ(kind.write(c), 1u);
    EXPECT_TRUE(kind.remove(0));
    kind.update(0, fresh);
    EXPECT_EQ(kind.found(), (Records{fresh, b}));
}

/// Files whose middle record is gone although its removal was reported as failed.
Kind afterLateRemoval() {
    Kind kind(fileOf(a + b + c, 200));
    kind.card.failingCommand = 3;
    kind.card.performsFailingWrite = true;
    kind.card.staysAway = true;
    EXPECT_FALSE(kind.remove(1)) << "nobody can tell";
    kind.card.failingCommand = 0;
    return kind;
}

TEST(ProfileDFWriting, KeepsIndicesAfterAFailedRemovalThatTookPlace) {
    Kind again = afterLateRemoval();
    EXPECT_TRUE(again.remove(1));
    EXPECT_EQ(again.found(), (Records{a, c}));
    EXPECT_TRUE(again.remove(1));
    EXPECT_EQ(again.found(), Records{a});

    Kind updated = afterLateRemoval();
    updated.update(1, fresh);
    EXPECT_EQ(updated.found(), (Records{a, fresh, c}));
    EXPECT_TRUE(updated.remove(1));
    EXPECT_EQ(updated.found(), (Records{a, c}));

    Kind written = afterLateRemoval();
    EXPECT_EQ(written.write(fresh), 3u);
    EXPECT_EQ(written.found(), (Records{a, c, fresh}));
    EXPECT_TRUE(written.remove(1)) << "of the record that is gone";
    EXPECT_TRUE(written.remove(1));
    EXPECT_EQ(written.found(), (Records{a, fresh}));
}

TEST(ProfileDFWriting, SeesWhenAFailedWriteLeftSomethingElse) {
    Kind kind(fileOf(a + b, 100));
    kind.card.failingCommand = 3;
    EXPECT_EQ(failureOf([&] { kind.write(c); }).code, statusWordCode + 0x6F00);
    kind.octets()[60] = 0x99;
    EXPECT_EQ(failureOf([&] { kind.write(c); }), changed("WriteSequence"));
}

TEST(ProfileDFWriting, HasDoneAnUpdateThoughItsGapCannotBeClosed) {
    Records records;
    Blob packed;
    for (std::uint8_t i = 0; i < 6; ++i) records.push_back(record(60, 0x31 + i));
    for (const Blob& each : records) packed = packed + each;
    const auto makeKind = [&] {
        Kind kind(fileOf(packed, 600));
        kind.card.mostWritten = 100;
        return kind;
    };
    Kind measured = makeKind();
    measured.update(0, fresh);

    Kind kind = makeKind();
    kind.card.failingCommand = measured.card.commands();
    kind.update(0, fresh);
    kind.card.failingCommand = 0;
    records[0] = fresh;
    EXPECT_EQ(kind.found(), records);
    EXPECT_NE(kind.octets(), measured.octets()) << "a gap is left";
    kind.update(0, a);
    measured.update(0, a);
    EXPECT_EQ(kind.octets(), measured.octets());
}

TEST(ProfileDFWriting, ForgetsThatAFileSeemedToEndEarly) {
    const Blob large = record(257, 0x35);
    for (std::size_t command = 1; command < 5; ++command) {
        Kind kind(fileOf(a + b + c, 700));
        kind.card.failingCommand = command;
        kind.card.failure = statusWordCode + 0x6B00;
        const bool isDone = failureOf([&] { kind.write(large); }).id == -1;
        kind.card.failingCommand = 0;
        if (!isDone) {
            EXPECT_EQ(kind.write(large), 3u) << command;
        }
        EXPECT_EQ(kind.write(large), 4u) << command;
        EXPECT_EQ(kind.octets(), a + b + c + large + large + times(96, 0x00)) << command;
    }
}

}  // namespace
}  // namespace tovi
