#include <new>

#include "tests/container/FailingAllocations.h"
#include "tests/platform/WrittenKind.h"

namespace tovi {
namespace {

using test::FailingAllocations;
using test::fileOf;
using test::Kind;
using test::linearFile;
using test::record;
using test::operator+;
using Records = std::vector<Blob>;

const Records records = {record(60, 0x31), record(30, 0x32), record(90, 0x33), record(80, 0x34)};

Kind transparentKind() {
    Kind kind(fileOf(records[0] + records[1] + records[2] + records[3], 600));
    kind.card.mostWritten = 100;
    return kind;
}

Kind kindOfLongRecords() {
    Kind kind = transparentKind();
    kind.card.mostWritten = 64;
    return kind;
}

Kind linearKind() { return Kind(linearFile(FileStructure::linearVariable, records)); }

/// Lets each allocation of `operation` fail in turn; what is left must let it be done again.
template <class Operation>
void failEverywhere(Kind (*maker)(), const Operation& operation, const Records& after) {
    for (std::size_t index = 0;; ++index) {
        Kind kind = maker();
        bool isDone = false;
        {
            const FailingAllocations failing(index);
            try {
                operation(kind);
                isDone = true;
            } catch (const std::bad_alloc&) {
            }
            if (!failing.failed()) break;
        }
        const Records found = kind.found();
        EXPECT_TRUE(found == after || (!isDone && found == records)) << index;
        if (!isDone) operation(kind);
        ASSERT_EQ(kind.found(), after) << index;
    }
}

const Blob edited = record(64, 0x41);

TEST(WritingMemory, MayEndAnywhereInAWrite) {
    const auto write = [](Kind& kind) { return kind.write(edited); };
    const Records after = {records[0], records[1], records[2], records[3], edited};
    failEverywhere(transparentKind, write, after);
    failEverywhere(kindOfLongRecords, write, after);
    failEverywhere(linearKind, write, after);
}

TEST(WritingMemory, MayEndAnywhereInAnUpdate) {
    const auto update = [](Kind& kind) { kind.update(0, edited); };
    const Records after = {edited, records[1], records[2], records[3]};
    failEverywhere(transparentKind, update, after);
    failEverywhere(kindOfLongRecords, update, after);
    failEverywhere(linearKind, update, after);
}

TEST(WritingMemory, MayEndAnywhereInARemoval) {
    const auto remove = [](Kind& kind) { EXPECT_TRUE(kind.remove(0)); };
    const Records after = {records[1], records[2], records[3]};
    failEverywhere(transparentKind, remove, after);
    failEverywhere(kindOfLongRecords, remove, after);
    failEverywhere(linearKind, remove, after);
}

}  // namespace
}  // namespace tovi
