#include <gtest/gtest.h>

#include "tests/container/WritableKinds.h"
#include "tests/support/Failure.h"

// A container that reads its card again, which has changed in between.
namespace tovi::test {
namespace {

const Blob otherFID = {0x4B, 0x00};

/// A card with two files of one kind, of which the second one alone is named at the second read.
class ShrunkenCard {
public:
    ShrunkenCard(Directory kind, const std::vector<Blob>& first, const Blob& second)
        : kind_(kind),
          card_(CardBuilder()
                    .directory(kind, first)
                    .odfRecord(secondEntry())
                    .file(otherFID, second)
                    .room(200)) {
        container->readFromCard(card_.os());
        Blob& odf = contents(PKCS15_EF_ODF);
        Blob now = secondEntry();
        now.resize(odf.size(), 0x00);
        odf = now;
        before_ = contents(directoryFID(kind));
        container->clear();
        container->readFromCard(card_.os());
    }

    ISCardOS* os() { return card_.os(); }
    bool firstFileIsUnchanged() { return contents(directoryFID(kind_)) == before_; }
    /// Another container that has read the card as it is now.
    std::unique_ptr<PKCS15Container> again() {
        auto other = makeContainer();
        other->readFromCard(card_.os());
        return other;
    }

    std::unique_ptr<PKCS15Container> container = makeContainer();

private:
    Blob secondEntry() const { return odfEntry(static_cast<unsigned>(kind_), path("4B00")); }
    Blob& contents(const Blob& fid) {
        return card_.card().files().find(absolutePath(fid))->contents;
    }

    Directory kind_;
    TestCard card_;
    Blob before_;
};

using Labels = std::vector<Blob>;

template <class Kind>
class SecondRead : public testing::Test {};
TYPED_TEST_SUITE(SecondRead, WritableKinds);

TYPED_TEST(SecondRead, LetsWritesGoToTheFileThatTheODFNamesNow) {
    using Kind = TypeParam;
    ShrunkenCard card(Kind::directory, {Kind::record("one"), Kind::record("two")},
                      Kind::record("three"));
    PKCS15Container& container = *card.container;
    ASSERT_EQ(Kind::labels(container), Labels{text("three")});

    auto added = Kind::make("new");
    Kind::write(container, card.os(), added);
    EXPECT_EQ(Kind::labels(container), (Labels{text("three"), text("new")}));
    EXPECT_EQ(Kind::labels(*card.again()), (Labels{text("three"), text("new")}));

    auto first = Kind::infos(container)[0];
    first.label = text("edited");
    if constexpr (requires { first.keyType; }) first.keyType = CKK_EC;
    Kind::update(container, card.os(), first);
    EXPECT_EQ(Kind::labels(*card.again()), (Labels{text("edited"), text("new")}));

    container.deleteObjectInfo(card.os(), static_cast<unsigned long>(first.recordNumber));
    EXPECT_EQ(Kind::labels(*card.again()), Labels{text("new")});
    EXPECT_TRUE(card.firstFileIsUnchanged());
}

TEST(SecondReadOfAuthObjects, LetsWritesGoToTheFileThatTheODFNamesNow) {
    ShrunkenCard card(Directory::authObjects, {pin({.reference = 1}), pin({.reference = 2})},
                      pin({.reference = 3}));
    PKCS15Container& container = *card.container;
    ASSERT_EQ(container.getAuthInfos().size(), 1u);
    auto info = container.getAuthInfo(3);
    info.reference = 4;
    EXPECT_EQ(container.writeAuthInfo(card.os(), info), 1u);
    container.deleteAuthInfo(card.os(), 3);
    const auto again = card.again();
    ASSERT_EQ(again->getAuthInfos().size(), 1u);
    EXPECT_EQ(again->getAuthInfos()[0].reference, 4);
    EXPECT_TRUE(card.firstFileIsUnchanged());
}

TEST(ReadFromCard, LeavesAContainerUnreadWhoseSecondReadFails) {
    TestCard card(fullCard());
    const auto container = makeContainer();
    container->readFromCard(card.os());
    ASSERT_TRUE(container->hasBeenRead());
    EXPECT_NE(failureOf([&] { container->readFromCard(card.os()); }), Failure());
    EXPECT_FALSE(container->hasBeenRead()) << "not cleared in between";

    container->clear();
    container->readFromCard(card.os());
    EXPECT_NE(failureOf([&] { container->readFromCard(nullptr); }), Failure());
    EXPECT_FALSE(container->hasBeenRead()) << "no card";
}

}  // namespace
}  // namespace tovi::test
