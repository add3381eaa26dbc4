#include "tools/ProgressBar.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tovi::test {
namespace {

TEST(ProgressBar, WritesOneLineOverAndOver) {
    std::ostringstream out;
    {
        ProgressBar bar(out, 4, true);
        bar.show(0);
        bar.show(1);
        bar.show(1);
    }
    EXPECT_EQ(out.str(),
              "\r[........................................] 0/4"
              "\r[##########..............................] 1/4"
              "\r                                              \r");
}

TEST(ProgressBar, ComesBackAfterOthersWrote) {
    std::ostringstream out;
    ProgressBar bar(out, 2, true);
    bar.show(1);
    bar.hide();
    out.str("");
    bar.hide();
    EXPECT_EQ(out.str(), "");
    bar.show(1);
    EXPECT_EQ(out.str(), "\r[####################....................] 1/2");
}

TEST(ProgressBar, WritesLittleForALongList) {
    std::ostringstream out;
    ProgressBar bar(out, 1000000, true);
    for (std::size_t done = 0; done < 1000000; ++done) bar.show(done);
    EXPECT_LT(out.str().size(), 100000u);
}

TEST(ProgressBar, WritesNothingUnlessShown) {
    std::ostringstream out;
    {
        ProgressBar hidden(out, 4, false), empty(out, 0, true);
        hidden.show(1);
        empty.show(0);
    }
    EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace tovi::test
