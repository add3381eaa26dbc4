#pragma once

#include <cstdlib>

/// Ends the run when a property does not hold, so that the fuzzing engine keeps the input.
inline void require(bool holds) {
    if (!holds) std::abort();
}
