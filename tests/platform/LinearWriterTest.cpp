#include "tovi/platform/LinearWriter.h"

#include "tests/platform/WrittenKind.h"

namespace tovi {
namespace {

using test::changed;
using test::failureOf;
using test::fileOf;
using test::Kind;
using test::linearFile;
using test::noRoom;
using test::record;
using test::times;
using test::operator+;
using Records = std::vector<Blob>;

const Blob a = record(20, 0x31);
const Blob b = record(30, 0x32);
const Blob fresh = record(25, 0x34);

Blob filled(const Blob& record, std::size_t size, std::uint8_t fill = 0x00) {
    return record + times(size - record.size(), fill);
}

test::FakeFile fixedFile(Records records, std::size_t size = 40) {
    test::FakeFile file = linearFile(FileStructure::linearFixed, std::move(records));
    file.info.recordSize = size;
    return file;
}

test::FakeFile variableFile(Records records) {
    return linearFile(FileStructure::linearVariable, std::move(records));
}

TEST(LinearWriter, AppendsARecordOfItsOwn) {
    Kind kind(variableFile({a, b}));
    EXPECT_EQ(kind.write(fresh), 2u);
    EXPECT_EQ(kind.slots(), (Records{a, b, fresh}));
    EXPECT_EQ(kind.card.commands(), 3u) << "SELECT, a look that nobody else appended, APPEND";
    EXPECT_EQ(kind.write(a), 3u);
}

TEST(LinearWriter, AppendsAWholeRecordWhereTheSizeIsFixed) {
    Kind kind(fixedFile({filled(a, 40, 0xFF)}));
    EXPECT_EQ(kind.write(fresh), 1u);
    EXPECT_EQ(kind.slots()[1], filled(fresh, 40, 0xFF));
    Kind empty(fixedFile({}));
    EXPECT_EQ(empty.write(fresh), 0u);
    EXPECT_EQ(empty.slots(), Records{filled(fresh, 40)});
}

TEST(LinearWriter, ReusesEmptyRecords) {
    Kind kind(fixedFile({filled(a, 40), times(40, 0x00), times(40, 0xFF), filled(b, 40)}));
    EXPECT_EQ(kind.write(fresh), 1u);
    EXPECT_EQ(kind.write(b), 2u);
    EXPECT_EQ(kind.slots(),
              (Records{filled(a, 40), filled(fresh, 40), filled(b, 40, 0xFF), filled(b, 40)}));
    EXPECT_EQ(kind.write(a), 4u);
    kind.update(3, a);
    EXPECT_EQ(kind.slots()[3], filled(a, 40));
}

TEST(LinearWriter, TakesAnEmptyRecordThatIsLongEnoughFirst) {
    Kind kind(variableFile({times(10, 0x00), times(30, 0x00)}));
    EXPECT_EQ(kind.write(fresh), 0u);
    EXPECT_EQ(kind.slots(), (Records{times(10, 0x00), fresh}));
    kind.card.maxRecords = 2;
    EXPECT_EQ(kind.write(a), 0u) << "where no other is left, a short one grows";
    EXPECT_EQ(kind.slots(), (Records{a, fresh}));
}

TEST(LinearWriter, EmptiesARecordThatIsRemoved) {
    Kind kind(variableFile({a, b, fresh}));
    EXPECT_TRUE(kind.remove(1));
    EXPECT_EQ(kind.slots(), (Records{a, times(30, 0x00), fresh}));
    kind.update(1, a);
    EXPECT_EQ(kind.slots(), (Records{a, times(30, 0x00), a}));
    EXPECT_EQ(kind.found(), (Records{a, a}));
}

TEST(LinearWriter, ReplacesARecord) {
    Kind kind(fixedFile({filled(a, 40, 0xFF), filled(b, 40)}));
    kind.update(0, fresh);
    kind.update(1, a);
    EXPECT_EQ(kind.slots(), (Records{filled(fresh, 40, 0xFF), filled(a, 40)}));
    kind.forgetCosts();
    kind.update(1, a);
    EXPECT_EQ(kind.card.writes, 0u);
}

TEST(LinearWriter, HasNoRoomWhenTheCardHasNone) {
    Kind kind(variableFile({a}));
    kind.card.maxRecords = 1;
    EXPECT_EQ(failureOf([&] { kind.write(b); }), noRoom("WriteSequence"));
    EXPECT_EQ(kind.slots(), Records{a});
    kind.card.maxRecords = 2;
    EXPECT_EQ(kind.write(b), 1u);
}

TEST(LinearWriter, HasNoRoomForRecordsThatAreTooLong) {
    Kind kind(fixedFile({filled(a, 40), times(40, 0x00)}));
    EXPECT_EQ(failureOf([&] { kind.write(record(41, 1)); }), noRoom("WriteSequence"));
    EXPECT_EQ(failureOf([&] { kind.update(0, record(41, 1)); }), noRoom("UpdateSequence"));
    Kind variable(variableFile({a}));
    EXPECT_EQ(failureOf([&] { variable.write(record(65, 1)); }), noRoom("WriteSequence"));
    variable.card.mostWritten = 50;
    EXPECT_EQ(failureOf([&] { variable.write(record(51, 1)); }), noRoom("WriteSequence"));
    EXPECT_EQ(variable.write(record(50, 1)), 1u);
    EXPECT_EQ(kind.card.writes, 0u);
}

TEST(LinearWriter, HasNoRoomForMoreRecordsThanHaveNumbers) {
    Kind kind(variableFile(Records(254, a)));
    kind.card.maxRecords = 300;
    EXPECT_EQ(failureOf([&] { kind.write(b); }), noRoom("WriteSequence"));
}

TEST(LinearWriter, GoesOnToAnotherFileWhenOneIsFull) {
    Kind kind(fileOf(a, 100), variableFile({a}));
    kind.card.maxRecords = 1;
    EXPECT_EQ(kind.write(b), 1u);
    EXPECT_EQ(kind.octets(), a + b + times(50, 0x00));
}

TEST(LinearWriter, WritesNothingWhenSomebodyElseDid) {
    Kind kind(variableFile({a, b}));
    kind.slots()[1][5] ^= 0x01;
    EXPECT_EQ(failureOf([&] { kind.update(1, fresh); }), changed("UpdateSequence"));
    EXPECT_EQ(failureOf([&] { kind.remove(1); }), changed("DeleteSequence"));
    kind.slots().pop_back();
    EXPECT_EQ(failureOf([&] { kind.remove(1); }), changed("DeleteSequence"));
    kind.slots() = {a, b, b};
    EXPECT_EQ(failureOf([&] { kind.write(fresh); }), changed("WriteSequence"));
    EXPECT_EQ(kind.card.writes, 0u);
}

TEST(LinearWriter, TakesARecordOfAFailedWriteForTheNewOne) {
    for (const bool performs : {false, true}) {
        Kind kind(variableFile({a}));
        kind.card.failingCommand = 3;
        kind.card.performsFailingWrite = performs;
        EXPECT_EQ(failureOf([&] { kind.write(b); }).code, statusWordCode + 0x6F00);
        EXPECT_EQ(kind.write(b), 1u);
        EXPECT_EQ(kind.slots(), (Records{a, b}));
        EXPECT_EQ(kind.write(b), 2u);
    }
}

TEST(LinearWriter, TriesAgainAfterAFailure) {
    for (const bool performs : {false, true}) {
        Kind kind(variableFile({a, b}));
        kind.card.failingCommand = 3;
        kind.card.performsFailingWrite = performs;
        EXPECT_EQ(failureOf([&] { kind.update(0, fresh); }).code, statusWordCode + 0x6F00);
        kind.update(0, fresh);
        EXPECT_EQ(kind.slots(), (Records{fresh, b}));
        kind.forgetCosts();
        EXPECT_EQ(kind.remove(0), performs) << "the card shows whether the record is gone";
        EXPECT_TRUE(performs || kind.remove(0));
        EXPECT_EQ(kind.found(), Records{b});
        kind.update(0, a);
        EXPECT_EQ(kind.found(), Records{a});
    }
}

TEST(LinearWriter, KeepsIndicesAfterAFailedRemovalThatTookPlace) {
    Kind kind(variableFile({a, b}));
    kind.card.failingCommand = 3;
    kind.card.performsFailingWrite = true;
    kind.card.staysAway = true;
    EXPECT_FALSE(kind.remove(0));
    kind.card.failingCommand = 0;
    EXPECT_EQ(kind.write(fresh), 2u) << "the record still has its place";
    kind.update(0, a);
    EXPECT_EQ(kind.slots(), (Records{a, b, fresh}));
}

TEST(LinearWriter, SeesWhenAFailedWriteLeftSomethingElse) {
    Kind kind(variableFile({a}));
    kind.card.failingCommand = 3;
    EXPECT_EQ(failureOf([&] { kind.write(b); }).code, statusWordCode + 0x6F00);
    kind.slots().push_back(fresh);
    EXPECT_EQ(failureOf([&] { kind.write(b); }), changed("WriteSequence"));
}

}  // namespace
}  // namespace tovi
