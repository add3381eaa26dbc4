#include "tests/support/RandomOperations.h"

#include <gtest/gtest.h>

#include <iostream>
#include <random>

#include "tests/writing/Share.h"

// Random sequences of operations against a plain list of records. The seeds are fixed, so a failure
// comes again.
namespace tovi::test {
namespace {

constexpr unsigned sequences = 500 / oneSequenceIn;
constexpr std::size_t leastChoices = 100, mostChoices = 320;

Blob choicesOf(unsigned seed) {
    std::mt19937 engine(seed);
    Blob choices(leastChoices + engine() % (mostChoices - leastChoices), 0);
    for (std::uint8_t& choice : choices) choice = static_cast<std::uint8_t>(engine());
    return choices;
}

void print(const OperationCounts& counts) {
    std::cout << counts.all() << " operations: " << counts.writes << " writes, " << counts.updates
              << " updates, " << counts.deletions << " deletions, " << counts.tokenInfos
              << " of TokenInfo, " << counts.containers << " of key containers, " << counts.reads
              << " reads, " << counts.rejected << " rejected; " << counts.refused
              << " found no room or file, " << counts.interrupted << " were interrupted, "
              << counts.failed << " of those failed\n";
}

class RandomOperations : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Writing, RandomOperations, testing::Range(0u, 4u));

TEST_P(RandomOperations, LeaveCardAndContainerAsTheModelSays) {
    OperationCounts counts;
    for (unsigned i = 0; i < sequences; ++i) {
        const unsigned seed = GetParam() * sequences + i;
        ASSERT_EQ(performRandomOperations(choicesOf(seed), counts), "") << "seed " << seed;
    }
    print(counts);
    // Every kind of operation comes often.
    EXPECT_GT(counts.all() * oneSequenceIn, 8000u);
    for (const std::size_t count :
         {counts.writes, counts.updates, counts.deletions, counts.tokenInfos, counts.containers,
          counts.reads, counts.rejected, counts.refused, counts.interrupted, counts.failed})
        EXPECT_GT(count * oneSequenceIn, 400u);
}

TEST(RandomOperations, NeedNoChoices) {
    OperationCounts counts;
    EXPECT_EQ(performRandomOperations({}, counts), "");
    EXPECT_EQ(counts.all(), 0u);
}

}  // namespace
}  // namespace tovi::test
