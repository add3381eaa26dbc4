#include "tovi/asn1/Unknown.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::Octets, ASN1::Unknown;

TEST(Unknown, TakesOnePointerWhileThereAreNone) {
    EXPECT_EQ(sizeof(Unknown), sizeof(void*));
    EXPECT_TRUE(Unknown().empty());
    EXPECT_TRUE(Unknown().runs().empty());
}

TEST(Unknown, JoinsNeighbours) {
    Unknown unknown;
    unknown.add(1, Octets{5, 0});
    unknown.add(1, Octets{4, 0});
    unknown.add(3, Octets{6, 0});
    ASSERT_EQ(unknown.runs().size(), 2u);
    EXPECT_EQ(unknown.runs()[0].elements, (Octets{5, 0, 4, 0}));
    EXPECT_EQ(unknown.runs()[1].row, 3u);
    const Unknown copy = unknown;
    unknown.clear();
    EXPECT_EQ(copy.runs().size(), 2u);
    unknown = copy;
    EXPECT_EQ(unknown.runs().size(), 2u);
}

// Point with an element of a later version between x and later.
constexpr std::string_view between = "30 09 02 01 07 89 01 AA 81 01 00";

TEST(Unknown, StayInPlaceWhenMembersComeAndGo) {
    auto point = decoded<Point>(between);
    point.y = 5;
    point.name = "P";
    EXPECT_EQ(encoded(point),
              "300F02010702010580015"
              "08901AA810100");
    point.later.reset();
    EXPECT_EQ(encoded(point), "300C0201070201058001508901AA");
}

TEST(Unknown, FollowMembersThatComeBehindThem) {
    auto point = decoded<Point>("30 06 02 01 07 89 01 AA");
    point.last = Octets{1};
    point.later = false;
    EXPECT_EQ(encoded(point),
              "300E020107810100A203040101"
              "8901AA");
}

TEST(Unknown, SurviveAClone) {
    const auto clone = decoded<Point>(between).clone();
    EXPECT_EQ(encoded(*clone), "30090201078901AA810100");
}

}  // namespace
