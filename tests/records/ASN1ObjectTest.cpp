#include "tovi/records/ASN1Object.h"

#include <gtest/gtest.h>

namespace tovi {
namespace {

/// Writes down the order in which its instances die.
struct Mortal {
    int number;
    std::vector<int>& dead;
    ~Mortal() { dead.push_back(number); }
};

TEST(ASN1Object, BeginsWithoutAValue) {
    const ASN1Object<int> object;
    EXPECT_EQ(object.value, nullptr);
    EXPECT_FALSE(object.isValid);
    EXPECT_FALSE(object.isDecoded);
}

TEST(ASN1Object, SharesItsValueWithItsCopiesAndDoesNotFreeIt) {
    std::vector<int> dead;
    ASN1Object<Mortal> original;
    original.value = new Mortal{1, dead};
    {
        const ASN1Object<Mortal> copy = original;
        EXPECT_EQ(copy.value, original.value);
    }
    EXPECT_TRUE(dead.empty());
    deleteObject(original);
}

TEST(DeleteObject, FreesTheValueOnceHoweverOftenItIsCalled) {
    std::vector<int> dead;
    ASN1Object<Mortal> object;
    object.value = new Mortal{1, dead};
    deleteObject(object);
    deleteObject(object);
    EXPECT_EQ(object.value, nullptr);
    EXPECT_EQ(dead, std::vector<int>{1});
}

TEST(ClearObjects, FreesEveryValueFromTheFirstOnAndEmptiesTheList) {
    std::vector<int> dead;
    std::vector<ASN1Object<Mortal>> objects(4);  // the second one did not decode
    objects[0].value = new Mortal{0, dead};
    objects[2].value = new Mortal{2, dead};
    objects[3].value = new Mortal{3, dead};
    clearObjects(objects);
    EXPECT_EQ(dead, (std::vector<int>{0, 2, 3}));
    EXPECT_TRUE(objects.empty());
}

TEST(ClearObjects, LeavesAnEmptyListEmpty) {
    std::vector<ASN1Object<int>> objects;
    clearObjects(objects);
    EXPECT_TRUE(objects.empty());
}

}  // namespace
}  // namespace tovi
