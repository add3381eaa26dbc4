#include "tests/fidelity/TlvTree.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/Der.h"

namespace tovi::test {
namespace {

using Differences = std::vector<Difference>;

TEST(TlvTree, TakesDataObjectsApart) {
    const Tlv tree = parseTlv(hex("30 07 04 01 AA A1 02 05 00"));
    ASSERT_EQ(tree.members.size(), 2u);
    EXPECT_TRUE(tree.is(0x30));
    EXPECT_EQ(tree.members[0].contents, Blob{0xAA});
    EXPECT_TRUE(tree.members[1].isConstructed());
    EXPECT_TRUE(tree.members[1].members.at(0).is(0x05));
}

TEST(TlvTree, ComesBackOctetForOctet) {
    for (const Blob& octets :
         {hex("30 00"), hex("04 02 30 99"), sequence(octetString(times(200, 7)), null()),
          sequence(octetString(times(70000, 7))), hex("BF 81 01 03 9F 1F 00")})
        EXPECT_EQ(parseTlv(octets).encoded(), octets);
}

TEST(TlvTree, RefusesWhatIsNoDataObject) {
    for (const Blob& octets : {hex("30"), hex("30 02 04"), hex("30 80 00 00"), hex("04 85"),
                               hex("1F 81"), hex("04 01 AA 04 01 BB"), Blob()})
        EXPECT_THROW(parseTlv(octets), std::runtime_error);
}

TEST(Differences, AreNoneBetweenEqualTrees) {
    const Blob octets = sequence(integer(1), sequence(integer(2)));
    EXPECT_EQ(differences(octets, octets), Differences());
}

TEST(Differences, NameTheSmallestElementThatIsAnother) {
    EXPECT_EQ(differences(sequence(integer(1), sequence(integer(2), octetString(times(120, 1)))),
                          sequence(integer(1), sequence(integer(3), octetString(times(120, 1))))),
              (Differences{{"1.0", integer(2), integer(3)}}));
}

TEST(Differences, NameElementsThatAreNewOrGoneWhereTheyStand) {
    const Blob one = integer(1), two = integer(2), text = utf8String("text");
    EXPECT_EQ(differences(sequence(one, two), sequence(one, text, two)),
              (Differences{{"1", {}, text}}));
    EXPECT_EQ(differences(sequence(one, two), sequence(one, two, text)),
              (Differences{{"2", {}, text}}));
    EXPECT_EQ(differences(sequence(one, text, two), sequence(one, two)),
              (Differences{{"1", text, {}}}));
    EXPECT_EQ(differences(sequence(sequence()), sequence(sequence(text))),
              (Differences{{"0.0", {}, text}}));
    EXPECT_EQ(differences(sequence(one, sequence(text)), sequence(one)),
              (Differences{{"1", sequence(text), {}}}));
}

TEST(Differences, TellAnElementWithAnotherTagFromOneThatIsAnother) {
    EXPECT_EQ(differences(sequence(context(0, integer(1))), sequence(sequence(integer(1)))),
              (Differences{{"0", context(0, integer(1)), {}}, {"1", {}, sequence(integer(1))}}));
    EXPECT_EQ(differences(sequence(), context(0)), (Differences{{"", sequence(), context(0)}}));
}

TEST(Differences, AreThePlainOnesOfSeveral) {
    EXPECT_EQ(
        differences(sequence(integer(1), utf8String("a"), integer(2), boolean(true)),
                    sequence(utf8String("b"), integer(2), null(), boolean(true))),
        (Differences{
            {"0", integer(1), {}}, {"1", utf8String("a"), utf8String("b")}, {"3", {}, null()}}));
}

}  // namespace
}  // namespace tovi::test
