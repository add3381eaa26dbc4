#include "tools/InterruptibleChannel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>

#include "TestCard.h"

namespace tovi::test {
namespace {

TEST(InterruptibleChannel, SendsNoFurtherCommandOnceTheUserAskedToStop) {
    std::atomic<bool> interrupted = false;
    std::istringstream in;
    std::ostringstream out, err;
    Console console{in, out, err, false, "", &interrupted};
    const GlobalOptions options;
    const Invocation call(options, console, "tovi test");
    TestCard test;
    InterruptibleChannel channel(test.channel, call);
    const Blob selectMasterFile = {0x00, 0xA4, 0x00, 0x0C, 0x02, 0x3F, 0x00};
    EXPECT_EQ(channel.transmit(selectMasterFile), (Blob{0x90, 0x00}));
    interrupted = true;
    EXPECT_THROW(channel.transmit(selectMasterFile), Interrupted);
}

}  // namespace
}  // namespace tovi::test
