#include "tests/writing/Sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <new>

#include "tests/container/FailingAllocations.h"
#include "tests/support/Failure.h"
#include "tests/support/Wire.h"
#include "tests/writing/Share.h"
#include "tovi/card/CountingChannel.h"

namespace tovi::test {

namespace {

using Records = std::vector<Blob>;

constexpr std::uint16_t noSpaceInFile = 0x6A84;

/// One record more, one less, or one that differs; all others are the same and in order.
bool isOneChange(const Records& before, const Records& after) {
    if (std::max(before.size(), after.size()) - std::min(before.size(), after.size()) > 1)
        return false;
    const auto front = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto left = before.end() - front.first, right = after.end() - front.second;
    const auto same = std::min(left, right) - (left == right && left > 0 ? 1 : 0);
    return std::equal(before.end() - same, before.end(), after.end() - same);
}

/// The same objects in an order that says nothing.
ContainerView inNoOrder(ContainerView view) {
    for (DirectoryView& directory : view.directories) {
        std::sort(directory.records.begin(), directory.records.end());
        std::sort(directory.objects.begin(), directory.objects.end(),
                  [](const ObjectView& a, const ObjectView& b) { return a.name < b.name; });
    }
    return view;
}

/// Another one each time.
std::size_t firstOfShare() {
    static std::size_t last = 0;
    return ++last % oneIn;
}

/// Equal, or one of those found did not decode.
bool agreeButForOne(const Records& found, const Records& expected) {
    std::size_t broken = 0;
    const bool isLike =
        std::equal(found.begin(), found.end(), expected.begin(), expected.end(),
                   [&](const Blob& a, const Blob& b) { return a == b || (++broken, a.empty()); });
    return isLike && broken <= 1;
}

}  // namespace

CutPoints& CutPoints::operator+=(const CutPoints& other) {
    tried += other.tried;
    reportedLate += other.reportedLate;
    doneAnyway += other.doneAnyway;
    return *this;
}

/// One interruption and what follows.
class Sweep::Run {
public:
    Run(const Sweep& sweep, const Interruption& how, std::size_t index)
        : sweep_(sweep),
          scenario_(sweep.scenario_),
          how_(how),
          card_(scenario_.card),
          mayGoElsewhere_(scenario_.shape == FileShape::linearVariable &&
                          how.statusWord == noSpaceInFile) {
        container_ = readNew(card_, scenario_.capabilities);
        interrupt(index);
        lookAtContainer();
        lookAtCard();
        if (how_.leavesTheCardAlone() && hasFailed_) {
            EXPECT_TRUE(isAsBefore_) << "the card is ahead of the container";
        }
        goOn(*container_, done_, card_);
        if (isReadable_) goOnWithAnother();
    }

    CutPoints points() const {
        CutPoints points;
        points.tried = isInterrupted_ ? 1 : 0;
        points.reportedLate = hasFailed_ && isAsAfter_ && !isAsBefore_ ? 1 : 0;
        points.doneAnyway = isInterrupted_ && !hasFailed_ ? 1 : 0;
        return points;
    }

private:
    ContainerView state() const { return ordered(sweep_.states_[done_]); }
    ContainerView stateAfterStep() const { return ordered(sweep_.states_[done_ + hasFailed_]); }
    ContainerView ordered(const ContainerView& view) const {
        return mayGoElsewhere_ ? inNoOrder(view) : view;
    }

    void interrupt(std::size_t index) {
        VirtualCardChannel channel(card_);
        InterruptedChannel broken(channel, how_, index);
        ICardChannel* const way =
            how_.isOfMemory() ? static_cast<ICardChannel*>(&channel) : &broken;
        ISO7816CardOS os(*way, scenario_.capabilities);
        if (how_.isOfMemory()) {
            const bool forGood = how_.kind == Interruption::Kind::noMemoryAnyMore;
            const FailingAllocations failing(index, forGood ? FailingAllocations::Extent::forGood
                                                            : FailingAllocations::Extent::once);
            perform(&os, [] { return false; });
            isInterrupted_ = failing.failed();
        } else {
            perform(&os, [&] { return broken.interrupted(); });
            isInterrupted_ = broken.interrupted();
        }
        // A chain that was broken off ends with the session, too.
        if (how_.isTear() || scenario_.capabilities.commandChaining) card_.reset();
    }

    template <class IsInterrupted>
    void perform(ISCardOS* os, const IsInterrupted& isInterrupted) {
        try {
            for (; done_ < end_; ++done_) {
                scenario_.steps[done_](*container_, os);
                if (mayGoElsewhere_ && isInterrupted()) end_ = done_ + 1;
            }
        } catch (const SmartcardException&) {
            hasFailed_ = true;
        } catch (const ForeignFailure&) {
            hasFailed_ = true;
        } catch (const std::bad_alloc&) {
            hasFailed_ = true;
        }
    }

    void lookAtContainer() const {
        EXPECT_EQ(difference(ordered(viewOf(*container_)), state()), "");
        EXPECT_EQ(contradiction(*container_), "");
        EXPECT_TRUE(container_->hasBeenRead());
    }

    void lookAtCard() {
        asItLies_ = card_;
        other_ = readNew(asItLies_, scenario_.capabilities);
        EXPECT_EQ(contradiction(*other_), "");
        const ContainerView found = ordered(viewOf(*other_));
        isAsBefore_ = holds(found, state());
        isAsAfter_ = holds(found, stateAfterStep());
        EXPECT_TRUE(isAsBefore_ || isAsAfter_) << recordDifference(found, state()) << "\n"
                                               << recordDifference(found, stateAfterStep());
        const Records records = scenario_.records(found);
        isReadable_ = std::none_of(records.begin(), records.end(),
                                   [](const Blob& record) { return record.empty(); });
    }

    /// Whether the card holds the records of that state, but for one that is broken.
    bool holds(ContainerView found, const ContainerView& expected) const {
        if (scenario_.directory && scenario_.mayBreakARecord) {
            Records& records = found[*scenario_.directory].records;
            const Records& sound = expected[*scenario_.directory].records;
            if (agreeButForOne(records, sound)) records = sound;
        }
        return recordDifference(found, expected).empty();
    }

    /// Somebody who reads the card anew sees what was done and does the rest.
    void goOnWithAnother() {
        const bool isDone = isAsAfter_ && !isAsBefore_;
        goOn(*other_, done_ + (hasFailed_ && isDone), asItLies_);
    }

    void goOn(PKCS15Container& container, std::size_t from, VirtualCard& card) const {
        Wire wire(card, scenario_.capabilities);
        const Failure failure = failureOf([&] {
            for (std::size_t i = from; i < end_; ++i) scenario_.steps[i](container, wire.os());
            if (from == end_) scenario_.touch(container, wire.os());
        });
        EXPECT_EQ(failure, Failure());
        const ContainerView view = viewOf(container);
        EXPECT_EQ(scenario_.looseness(card, scenario_.records(view)), "");
        EXPECT_EQ(contradiction(container), "");
        const ContainerView last = ordered(sweep_.states_[end_]);
        const bool hadNothingToTouch =
            from == end_ && scenario_.directory && last[*scenario_.directory].records.empty();
        if (!hadNothingToTouch) {
            EXPECT_EQ(recordDifference(ordered(view), last), "");
        }
    }

    const Sweep& sweep_;
    const Scenario& scenario_;
    const Interruption how_;
    VirtualCard card_;
    /// Told that the card has no room for another record, the container writes it into a free one.
    /// The steps that follow would find other records at their positions.
    const bool mayGoElsewhere_;
    VirtualCard asItLies_;
    std::unique_ptr<PKCS15Container> container_;
    std::unique_ptr<PKCS15Container> other_;
    std::size_t done_ = 0;
    std::size_t end_ = scenario_.steps.size();  ///< steps that are performed
    bool isInterrupted_ = false;
    bool hasFailed_ = false;
    bool isAsBefore_ = false;
    bool isAsAfter_ = false;
    bool isReadable_ = false;
};

Sweep::Sweep(const Scenario& scenario) : scenario_(scenario) { performWithout(); }

void Sweep::performWithout() {
    SCOPED_TRACE(scenario_.name);
    VirtualCard card = scenario_.card;
    VirtualCardChannel channel(card);
    CountingChannel counting(channel);
    ISO7816CardOS os(counting, scenario_.capabilities);
    const auto container = readNew(card, scenario_.capabilities);
    states_.push_back(viewOf(*container));
    for (const Step& step : scenario_.steps) {
        const Records before = scenario_.records(states_.back());
        ASSERT_EQ(failureOf([&] { step(*container, &os); }), Failure());
        states_.push_back(viewOf(*container));
        const Records after = scenario_.records(states_.back());
        EXPECT_TRUE(isOneChange(before, after));
        EXPECT_EQ(scenario_.looseness(card, after), "");
    }
    commands_ = counting.counts().commands;
    const auto other = readNew(card, scenario_.capabilities);
    EXPECT_EQ(recordDifference(viewOf(*other), states_.back()), "");
}

CutPoints Sweep::interruptEverywhere(const Interruption& how) const {
    return interruptInTurn({how});
}

CutPoints Sweep::interruptInTurn(const std::vector<Interruption>& ways) const {
    CutPoints points;
    if (testing::Test::HasFailure()) return points;
    SCOPED_TRACE(scenario_.name);
    const long blocks = liveBlocks();
    const bool isOfMemory = ways.front().isOfMemory();
    const auto mayBeReached = [&](std::size_t index) { return isOfMemory || index < commands_; };
    static std::size_t turn = 0;
    ++turn;
    bool isInterrupted = true;
    for (std::size_t index = firstOfShare(); isInterrupted && mayBeReached(index); index += oneIn) {
        const Interruption& how = ways[(turn + index) % ways.size()];
        const CutPoints point = Run(*this, how, index).points();
        isInterrupted = point.tried > 0;
        points += point;
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << how.name() << ", number " << index;
            break;
        }
        EXPECT_EQ(liveBlocks(), blocks) << "something leaked";
    }
    if (oneIn == 1 && !isOfMemory && !testing::Test::HasFailure()) {
        EXPECT_EQ(points.tried, commands_);
    }
    return points;
}

CutPoints Sweep::interruptEverywhere(const std::vector<Interruption>& ways) const {
    CutPoints points;
    for (const Interruption& how : ways) points += interruptEverywhere(how);
    return points;
}

void report(const std::string& what, const CutPoints& points, std::size_t least) {
    std::cout << what << ": " << points.tried << " cut points; " << points.reportedLate
              << " times the card was ahead of what was reported, " << points.doneAnyway
              << " times a step was done though a command had failed\n";
    testing::Test::RecordProperty("cutPoints", static_cast<int>(points.tried));
    if (!testing::Test::HasFailure()) {
        // How many a share has of a short scenario is chance.
        const std::size_t tenths = oneIn == 1 ? 9 : 5;
        EXPECT_GE(points.tried * oneIn, least / 10 * tenths) << "the sweep has shrunk";
    }
}

}  // namespace tovi::test
