#include "tovi/asn1/Boxed.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ASN1::Boxed;

TEST(Boxed, IsAbsentAtFirst) {
    const Boxed<std::string> box;
    EXPECT_FALSE(box.has_value());
    EXPECT_FALSE(box);
    EXPECT_EQ(box.get(), nullptr);
}

TEST(Boxed, CopiesItsValue) {
    Boxed<std::string> box = std::string("a");
    Boxed<std::string> copy = box;
    *copy += "b";
    EXPECT_EQ(*box, "a");
    EXPECT_EQ(*copy, "ab");
    box = copy;
    copy->clear();
    EXPECT_EQ(*box, "ab");
    Boxed<std::string>& same = box;
    box = same;
    EXPECT_EQ(*box, "ab");
    box = Boxed<std::string>();
    EXPECT_FALSE(box);
}

TEST(Boxed, MovesItsValueOut) {
    Boxed<std::string> box = std::string("a");
    const std::string* value = box.get();
    const Boxed<std::string> moved = std::move(box);
    EXPECT_EQ(moved.get(), value);
    EXPECT_FALSE(box);
}

TEST(Boxed, EmplaceMakesAFreshValue) {
    Boxed<std::string> box = std::string("a");
    EXPECT_EQ(box.emplace(), "");
    EXPECT_EQ(box.emplace(2u, 'x'), "xx");
    box.reset();
    EXPECT_FALSE(box);
}

TEST(Boxed, TakesOnePointer) { EXPECT_EQ(sizeof(Boxed<std::string>), sizeof(void*)); }

}  // namespace
