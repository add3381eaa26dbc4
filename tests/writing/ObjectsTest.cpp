#include "tests/support/Objects.h"

#include <gtest/gtest.h>

#include "tests/support/ContainerView.h"
#include "tests/writing/Scenario.h"
#include "tovi/card/ISO7816CardOS.h"

// The records that tests of this folder expect are put together by hand; what the container writes
// is the same, octet for octet.
namespace tovi::test {
namespace {

class ObjectOfEveryKind : public testing::TestWithParam<unsigned> {
protected:
    const Directory kind_ = static_cast<Directory>(GetParam());
};
INSTANTIATE_TEST_SUITE_P(Writing, ObjectOfEveryKind, testing::Range(0u, directoryCount));

constexpr std::uint16_t number = 7;
const Content first = {.label = "first", .name = "k1", .number = number};
const Content other = {.label = "", .name = "k2", .isPrivate = true, .number = number};

TEST_P(ObjectOfEveryKind, IsWrittenAsExpected) {
    TestCard card(CardBuilder().directory(kind_, {}).room(200));
    const auto container = makeContainer();
    container->readFromCard(card.os());
    for (const Content& content : {first, other})
        writeObject(*container, card.os(), kind_, content);
    EXPECT_EQ(viewOf(*container)[kind_].records,
              (std::vector<Blob>{recordOf(kind_, first), recordOf(kind_, other)}));
}

TEST_P(ObjectOfEveryKind, IsUpdatedAsExpected) {
    TestCard card(CardBuilder().directory(kind_, {recordOf(kind_, first)}).room(200));
    const auto container = makeContainer();
    container->readFromCard(card.os());
    for (const Content& content : {first, other, first}) {
        updateObject(*container, card.os(), kind_, 0, content);
        EXPECT_EQ(viewOf(*container)[kind_].records, std::vector<Blob>{recordOf(kind_, content)});
    }
}

TEST_P(ObjectOfEveryKind, IsSeenAsItWasWritten) {
    TestCard card(CardBuilder().directory(kind_, {recordOf(kind_, first), recordOf(kind_, other)}));
    const auto container = makeContainer();
    container->readFromCard(card.os());
    EXPECT_EQ(contradiction(*container), "");
    const std::vector<ObjectView> objects = viewOf(*container)[kind_].objects;
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(objects[0].label, text("first"));
    EXPECT_EQ(objects[0].name, text("k1"));
    EXPECT_FALSE(objects[0].isPrivate);
    EXPECT_EQ(objects[1].name, text("k2"));
    EXPECT_TRUE(objects[1].isPrivate);
    const bool hasFile = kind_ != Directory::authObjects;
    EXPECT_EQ(objects[1].fid, hasFile ? number : noFID16);
    EXPECT_EQ(objects[1].recordNumber, hasFile ? 2 : noRecord);
}

}  // namespace
}  // namespace tovi::test
