#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "fuzz/require.h"
#include "tests/support/RandomOperations.h"

// Whatever operations the input chooses, on whatever card, some of them interrupted: container and
// card hold what a plain list of records says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tovi::test::OperationCounts counts;
    const auto difference = tovi::test::performRandomOperations({data, size}, counts);
    if (!difference.empty()) std::fprintf(stderr, "%s\n", difference.c_str());
    require(difference.empty());
    return 0;
}
