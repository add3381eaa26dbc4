#include <gtest/gtest.h>

#include <new>
#include <optional>

#include "tests/container/FailingAllocations.h"
#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

/// Blocks that `action` leaves behind; it runs once before, so that what is made once and kept does
/// not count.
template <class Action>
long blocksLeftBy(Action action) {
    action();
    const long before = liveBlocks();
    action();
    return liveBlocks() - before;
}

TEST(PKCS15Container, LeavesNothingBehindWhenItWasNeverRead) {
    EXPECT_EQ(blocksLeftBy([] { PKCS15Container container(PKCS15_DF); }), 0);
}

TEST(PKCS15Container, LeavesNothingBehindWhenItWasRead) {
    TestCard card(fullCard());
    EXPECT_EQ(blocksLeftBy([&] {
                  PKCS15Container container(PKCS15_DF);
                  container.readFromCard(card.os());
              }),
              0);
}

TEST(Clear, ReleasesTheDecodedValues) {
    TestCard card(fullCard());
    PKCS15Container container(PKCS15_DF);
    const auto readAndClear = [&] {
        container.readFromCard(card.os());
        container.clear();
    };
    readAndClear();
    const long cleared = liveBlocks();
    for (int round = 0; round < 3; ++round) readAndClear();
    EXPECT_EQ(liveBlocks(), cleared);
    container.readFromCard(card.os());
    EXPECT_GT(liveBlocks(), cleared + 18) << "one block at least for each record";
}

TEST(ReadFromCard, LeavesNothingBehindWhenAnyCallFails) {
    TestCard card(fullCard());
    std::size_t calls = 0;
    {
        ScriptedCardOS os(*card.os());
        makeContainer()->readFromCard(&os);
        calls = os.calls().size();
    }
    for (std::size_t n = 0; n < calls; ++n) {
        const auto readWith = [&](const auto& failure) {
            return blocksLeftBy([&] {
                ScriptedCardOS os(*card.os(), throwingAt(n, failure));
                PKCS15Container container(PKCS15_DF);
                EXPECT_ANY_THROW(container.readFromCard(&os));
            });
        };
        EXPECT_EQ(readWith(SmartcardException("refused", "card", 0x16F00)), 0) << n;
        EXPECT_EQ(readWith(LogicalException("logic", "card")), 0) << n;
        EXPECT_EQ(readWith(42), 0) << n;
    }
}

TEST(PKCS15Container, IsDestroyedAsFarAsItWasMadeWhenMemoryIsExhausted) {
    PKCS15Container first(PKCS15_DF);  // makes what is made once and kept
    const long before = liveBlocks();
    for (std::size_t n = 0;; ++n) {
        ASSERT_LT(n, 1000u);
        const FailingAllocations allocations(n);
        try {
            PKCS15Container container(Blob(100, 0x50));
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(allocations.failed());
        }
        EXPECT_EQ(liveBlocks(), before) << n;
        if (!allocations.failed()) {
            EXPECT_GT(n, 11u) << "eleven handlers and a path were made";
            break;
        }
    }
}

/// Reads the card while allocation number `n` fails; true when there was such an allocation.
bool readFailsAtAllocation(std::size_t n, TestCard& card, FailingAllocations::Extent extent) {
    const long before = liveBlocks();
    bool hasFailed = false;
    {
        PKCS15Container container(PKCS15_DF);
        std::optional<FailingAllocations> allocations(std::in_place, n, extent);
        bool isRefused = false;
        try {
            container.readFromCard(card.os());
        } catch (const std::bad_alloc&) {
            isRefused = true;
        } catch (const SmartcardException&) {
            isRefused = true;  // the card had no memory to answer
        }
        hasFailed = allocations->failed();
        allocations.reset();
        EXPECT_EQ(isRefused, hasFailed) << n;
        EXPECT_EQ(container.hasBeenRead(), !hasFailed) << n;
        container.clear();
        container.readFromCard(card.os());
        EXPECT_EQ(container.getContainerInfos().size(), 1u) << n;
    }
    EXPECT_EQ(liveBlocks(), before) << n;
    return hasFailed;
}

void readWithEveryAllocationFailing(FailingAllocations::Extent extent) {
    TestCard card(fullCard());
    makeContainer()->readFromCard(card.os());
    makeContainer()->readFromCard(card.os());  // the connection keeps its buffers from now on
    std::size_t n = 0;
    while (readFailsAtAllocation(n, card, extent) && !testing::Test::HasFailure())
        ASSERT_LT(++n, 100000u);
    EXPECT_GT(n, 50u);
}

TEST(ReadFromCard, BearsTheFailureOfEveryAllocation) {
    readWithEveryAllocationFailing(FailingAllocations::Extent::once);
}

TEST(ReadFromCard, BearsTheEndOfMemoryAtEveryAllocation) {
    readWithEveryAllocationFailing(FailingAllocations::Extent::forGood);
}

TEST(ReadFromCard, NeedsMemoryThatIsLinearInTheCard) {
    const auto blocksOf = [](std::size_t objects) {
        const CardBuilder builder =
            CardBuilder().dataObjects(std::vector<Blob>(objects, dataRecord()));
        TestCard card(builder);
        const auto container = makeContainer();
        const long before = liveBlocks();
        container->readFromCard(card.os());
        return liveBlocks() - before;
    };
    const long few = blocksOf(100), many = blocksOf(1000);
    EXPECT_LT(many, 11 * few);
}

template <class Class>
void expectNullCloneWithoutMemory() {
    const Class exception("message", "operation", 7);
    const Exception& base = exception;
    const long before = liveBlocks();
    {
        const FailingAllocations allocations(0);
        EXPECT_EQ(base.Clone(), nullptr);
        EXPECT_TRUE(allocations.failed());
    }
    EXPECT_EQ(liveBlocks(), before);
}

TEST(Clone, IsNullWhenMemoryIsExhausted) {
    expectNullCloneWithoutMemory<Exception>();
    expectNullCloneWithoutMemory<LogicalException>();
    expectNullCloneWithoutMemory<SmartcardException>();
}

TEST(Lookup, FailsWithoutAskingForMemory) {
    const auto container = makeContainer();
    const FailingAllocations allocations(0, FailingAllocations::Extent::forGood);
    bool isRefused = false;
    try {
        container->getPrivateKeyInfo(0);
    } catch (const SmartcardException&) {
        isRefused = true;
    }
    EXPECT_TRUE(isRefused);
    EXPECT_FALSE(allocations.failed());
}

}  // namespace
}  // namespace tovi::test
