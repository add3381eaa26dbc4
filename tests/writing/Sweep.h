#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/ContainerView.h"
#include "tests/support/Interruption.h"
#include "tests/writing/Scenario.h"

namespace tovi::test {

/// What was tried.
struct CutPoints {
    std::size_t tried = 0;
    /// Of those: a failure was reported though the card holds the record as after the step. A card
    /// that was pulled out before it could answer leaves no other way.
    std::size_t reportedLate = 0;
    /// Of those: a step was reported as done whose last commands had failed.
    std::size_t doneAnyway = 0;

    CutPoints& operator+=(const CutPoints& other);
};

/// Performs a scenario with each of its commands interrupted in turn, and looks at container and
/// card after each. Expectations that fail end the sweep and name the scenario.
class Sweep {
public:
    explicit Sweep(const Scenario& scenario);

    /// After the interruption:
    /// - the container holds what it held before the step that failed, answers lookups, and nothing
    ///   has leaked;
    /// - a new container finds on the card every other record unchanged and in order, the one in
    ///   question as before or as after the step, or, if the scenario says so, not decodable;
    /// - the first container performs the same step and the rest, and so does the new one, each on
    ///   a card of its own; the card then holds what it does without interruption, compactly.
    CutPoints interruptEverywhere(const Interruption& how) const;
    CutPoints interruptEverywhere(const std::vector<Interruption>& ways) const;
    /// The same with one of the ways at each command, and the next one at the next; which one comes
    /// first differs from sweep to sweep.
    CutPoints interruptInTurn(const std::vector<Interruption>& ways) const;

    /// What the container holds before each step and after the last.
    const std::vector<ContainerView>& states() const { return states_; }
    /// Commands of all steps.
    std::size_t commands() const { return commands_; }

private:
    class Run;
    void performWithout();

    const Scenario& scenario_;
    std::vector<ContainerView> states_;
    std::size_t commands_ = 0;
};

/// Prints what was tried, and fails when that is clearly less than `least`, or than the share of it
/// that is tried here.
void report(const std::string& what, const CutPoints& points, std::size_t least);

}  // namespace tovi::test
