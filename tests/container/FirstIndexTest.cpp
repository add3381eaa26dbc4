#include "tovi/container/FirstIndex.h"

#include <gtest/gtest.h>

#include "tovi/records/Infos.h"

namespace tovi {
namespace {

using Keys = std::vector<PKCS15ObjectInfo<PublicKeyInfo>>;
using IndexById = FirstIndex<&PublicKeyInfo::id, PublicKeyInfo>;
using IndexByRecord = FirstIndex<&PKCS15Object::recordNumber, PublicKeyInfo>;

Keys keysWithIds(std::initializer_list<Blob> ids) {
    Keys keys;
    for (const Blob& id : ids) keys.emplace_back().id = id;
    return keys;
}

TEST(FirstIndex, FindsNothingInAnEmptyList) {
    const Keys keys;
    EXPECT_EQ(IndexById(keys).find(Blob{1}), noPosition);
    EXPECT_EQ(IndexById(keys).find(Blob()), noPosition);
}

TEST(FirstIndex, FindsThePositionInTheListAndNotInTheOrder) {
    const Keys keys = keysWithIds({{9}, {1}, {5}});
    const IndexById index(keys);
    EXPECT_EQ(index.find(Blob{9}), 0u);
    EXPECT_EQ(index.find(Blob{1}), 1u);
    EXPECT_EQ(index.find(Blob{5}), 2u);
}

TEST(FirstIndex, FindsTheFirstOfThoseWithEqualValues) {
    const Keys keys = keysWithIds({{2}, {1}, {2}, {1}, {2}});
    const IndexById index(keys);
    EXPECT_EQ(index.find(Blob{2}), 0u);
    EXPECT_EQ(index.find(Blob{1}), 1u);
}

TEST(FirstIndex, TakesNeitherPrefixesNorExtensionsForEqual) {
    const Keys keys = keysWithIds({{1, 2}, {1, 2, 3, 4}});
    const IndexById index(keys);
    EXPECT_EQ(index.find(Blob{1}), noPosition);
    EXPECT_EQ(index.find(Blob{1, 2, 3}), noPosition);
    EXPECT_EQ(index.find(Blob{1, 2, 3, 4, 5}), noPosition);
}

TEST(FirstIndex, FindsAnEmptyValueLikeAnyOther) {
    const Keys keys = keysWithIds({{1}, {}, {}});
    EXPECT_EQ(IndexById(keys).find(Blob()), 1u);
}

TEST(FirstIndex, FindsNumbers) {
    Keys keys(3);
    keys[0].recordNumber = 0x100000001;  // differs from 1 in the upper half only
    keys[1].recordNumber = 1;
    keys[2].recordNumber = 1;
    const IndexByRecord index(keys);
    EXPECT_EQ(index.find(std::uint64_t{1}), 1u);
    EXPECT_EQ(index.find(std::uint64_t{2}), noPosition);
}

TEST(FirstIndex, AgreesWithASearchFromTheFront) {
    Keys keys;
    std::uint32_t state = 1;
    for (int i = 0; i < 500; ++i) {
        state = state * 1103515245 + 12345;
        keys.emplace_back().id =
            Blob((state >> 16) % 3, static_cast<std::uint8_t>(state >> 24 & 7));
    }
    const IndexById index(keys);
    for (std::size_t length = 0; length <= 3; ++length)
        for (unsigned octet = 0; octet < 9; ++octet) {
            const Blob wanted(length, static_cast<std::uint8_t>(octet));
            unsigned long expected = noPosition;
            for (std::size_t i = keys.size(); i-- > 0;)
                if (keys[i].id == wanted) expected = i;
            EXPECT_EQ(index.find(wanted), expected) << length << " times " << octet;
        }
}

}  // namespace
}  // namespace tovi
