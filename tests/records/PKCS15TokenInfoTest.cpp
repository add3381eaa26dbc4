#include "tovi/records/PKCS15TokenInfo.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Der.h"

namespace tovi {
namespace {

TEST(PKCS15TokenInfo, BeginsEmptyButRequiringLogin) {
    const PKCS15TokenInfo token;
    EXPECT_TRUE(token.manufacturerID.empty());
    EXPECT_FALSE(token.readonly);
    EXPECT_TRUE(token.loginRequired);
    EXPECT_FALSE(token.prnGeneration);
    EXPECT_FALSE(token.eidCompliant);
    EXPECT_EQ(token.version, 0u);
    EXPECT_TRUE(token.supportedAlgorithms.empty());
}

TEST(PKCS15TokenInfo, NamesATokenByAnAttributeSetThatIsValid) {
    const PKCS15TokenInfo token;
    EXPECT_TRUE(token.info.IsValid());
    EXPECT_TRUE(token.info.label.empty());
    EXPECT_TRUE(token.info.serialNumber.empty());
}

TEST(PKCS15AlgorithmInfo, BeginsZeroAndEmpty) {
    const PKCS15AlgorithmInfo algorithm;
    EXPECT_EQ(algorithm.algorithm, 0u);
    EXPECT_TRUE(algorithm.algId.empty());
    EXPECT_EQ(std::count(algorithm.supportedOperations.begin(), algorithm.supportedOperations.end(),
                         true),
              0);
    EXPECT_EQ(algorithm.supportedOperations.size(), 8u);
}

TEST(PKCS15AlgorithmInfo, IsCopiedWithAllItsMembers) {
    std::vector<PKCS15AlgorithmInfo> rows(1);
    rows[0].algorithm = 6;
    rows[0].algId = test::times(40, 0x2A);
    rows[0].supportedOperations[7] = true;
    const std::vector<PKCS15AlgorithmInfo> copy = rows;
    rows[0] = {};
    EXPECT_EQ(copy[0].algorithm, 6u);
    EXPECT_EQ(copy[0].algId, test::times(40, 0x2A));
    EXPECT_TRUE(copy[0].supportedOperations[7]);
}

}  // namespace
}  // namespace tovi
