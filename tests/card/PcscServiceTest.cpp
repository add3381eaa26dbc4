// The service of the system: what holds on every machine, whether it runs there or not.
#include <gtest/gtest.h>

#include "tests/support/Failure.h"
#include "tovi/card/PcscReaders.h"

namespace tovi::test {
namespace {

TEST(PcscService, IsThereOrSaysThatItWasNotBuilt) {
#ifdef TOVI_TEST_HAS_PCSC
    EXPECT_NE(makePcscService(), nullptr);
#else
    EXPECT_EQ(failureOf([] { makePcscService(); }),
              smartcardFailure("PC/SC not supported by this build", "makePcscService"));
#endif
}

}  // namespace
}  // namespace tovi::test
