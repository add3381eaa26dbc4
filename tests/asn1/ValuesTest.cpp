#include "tovi/asn1/Values.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"

namespace {

using namespace asn1test;
using ASN1::Octets;

static_assert(!std::is_polymorphic_v<Point> && !std::is_polymorphic_v<Shape>);
static_assert(std::is_nothrow_move_constructible_v<Point>);

TEST(Sequence, NumbersOptionalAndDefaultMembers) {
    EXPECT_EQ(ASN1::optionalAt(Point::type, 0)->name, "y");
    EXPECT_EQ(ASN1::optionalAt(Point::type, 1)->name, "name");
    EXPECT_EQ(ASN1::optionalAt(Point::type, 2)->name, "later");
    EXPECT_EQ(ASN1::optionalAt(Point::type, 3)->name, "last");
    EXPECT_EQ(ASN1::optionalAt(Point::type, 4), nullptr);
}

TEST(Sequence, PositionsCountAllMembersAndNoMarker) {
    EXPECT_EQ(ASN1::memberAt(Point::type, 0)->name, "x");
    EXPECT_EQ(ASN1::memberAt(Point::type, 3)->name, "later");
    EXPECT_EQ(ASN1::memberAt(Point::type, 4)->name, "last");
    EXPECT_EQ(ASN1::memberAt(Point::type, 5), nullptr);
    EXPECT_EQ(ASN1::findMember(Point::type, "last"), ASN1::memberAt(Point::type, 4));
    EXPECT_EQ(ASN1::findMember(Point::type, "nobody"), nullptr);
}

TEST(Sequence, IncludesAndRemovesMembersByNumber) {
    Point point;
    EXPECT_FALSE(point.hasOptionalField(1));
    point.includeOptionalField(1, 2);
    EXPECT_TRUE(point.hasOptionalField(1));
    ASSERT_TRUE(point.name);
    point.name = "P";
    point.includeOptionalField(1, 2);
    EXPECT_EQ(point.name->text(), "P") << "a member that is there keeps its value";
    point.removeOptionalField(1);
    EXPECT_FALSE(point.name);
}

TEST(Sequence, IncludesADefaultMemberWithItsDefault) {
    Point point;
    point.includeOptionalField(2, 3);
    EXPECT_EQ(point.later, true);
    EXPECT_TRUE(point.hasOptionalField(2));
}

TEST(Sequence, IgnoresNumbersThatNameNoMember) {
    Point point;
    point.includeOptionalField(1, 3);  // two different members
    point.includeOptionalField(9, 9);
    point.removeOptionalField(9);
    EXPECT_FALSE(point.hasOptionalField(9));
    EXPECT_EQ(encoded(point), "3003020100");
}

TEST(Choice, BeginsWithNothingSelected) {
    const Shape shape;
    EXPECT_EQ(shape.selection(), Shape::none);
    EXPECT_EQ(shape.selectionName(), "");
    EXPECT_FALSE(shape.isValid());
    Octets out = {1, 2};
    EXPECT_FALSE(ASN1::encode(shape, out));
    EXPECT_EQ(out, (Octets{1, 2}));
}

TEST(Choice, SelectsByPositionWithAFreshValue) {
    Shape shape;
    shape.select<Shape::point>().x = 9;
    shape.setSelection(0);
    EXPECT_EQ(shape.selectionName(), "point");
    EXPECT_EQ(shape.getIf<Shape::point>()->x, 0);
    shape.setSelection(1);
    EXPECT_EQ(shape.selectionName(), "points");
    EXPECT_EQ(shape.getIf<Shape::point>(), nullptr);
    shape.setSelection(3);
    EXPECT_EQ(shape.selectionName(), "points") << "a position beyond the alternatives does nothing";
}

TEST(Choice, HidesItsBoxes) {
    Shape shape;
    shape.select<Shape::inner>().select<Shape::point>().x = 5;
    EXPECT_EQ(shape.getIf<Shape::inner>()->getIf<Shape::point>()->x, 5);
    EXPECT_EQ(encoded(shape), "A1053003020105");
    const Shape clone = shape;
    shape.getIf<Shape::inner>()->getIf<Shape::point>()->x = 6;
    EXPECT_EQ(encoded(clone), "A1053003020105");
    EXPECT_EQ(encoded(*clone.clone()), "A1053003020105");
}

TEST(Choice, OfAnUnknownAlternativeHasNoName) {
    const auto shape = decoded<Shape>("A7 00");
    EXPECT_EQ(shape.selection(), Shape::unknown);
    EXPECT_EQ(shape.selectionName(), "");
    EXPECT_TRUE(shape.isValid());
}

TEST(Choice, WithoutSelectionInsideMakesTheWholeUnwritable) {
    Strict value;
    value.serial = Octets{1};
    value.shape.emplace();
    Octets out;
    EXPECT_FALSE(value.isValid());
    EXPECT_FALSE(ASN1::encode(value, out));
    EXPECT_TRUE(ASN1::encode(value).empty());
}

}  // namespace
