// A PIN does not outlive its use in memory that is given back.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string_view>

#include "tests/card/FakePcscService.h"
#include "tests/support/Failure.h"
#include "tests/wiping/FreedMemory.h"
#include "tools/PinBlock.h"
#include "tools/PinSource.h"
#include "tovi/card/PcscChannel.h"
#include "tovi/card/PinVerification.h"
#include "tovi/interfaces/Exception.h"

namespace tovi::test {
namespace {

constexpr const char* pin = "8642097531";

/// Notes whether it was sent the PIN, and keeps nothing of it.
class TestChannel final : public ICardChannel {
public:
    explicit TestChannel(bool isLost = false) : isLost_(isLost) {}
    Blob transmit(const Blob& command) override {
        const std::string_view octets(reinterpret_cast<const char*>(command.data()),
                                      command.size());
        sawPin = octets.find(pin) != std::string_view::npos;
        if (isLost_) throw SmartcardException("lost", "test");
        return Blob{0x90, 0x00};
    }
    bool sawPin = false;

private:
    bool isLost_;
};

void enter(Secret& secret) {
    for (const char* c = pin; *c != '\0'; ++c)
        ASSERT_TRUE(secret.push_back(static_cast<std::uint8_t>(*c)));
}

TEST(FreedMemory, SeesWhatIsLeftBehind) {
    const FreedMemory memory(pin);
    { const auto copy = std::make_unique<std::string>(std::string("a long text with ") + pin); }
    EXPECT_GE(memory.findings(), 1u);
}

TEST(Wiping, LeavesNothingOfAPinThatWasPresented) {
    Secret entered;
    enter(entered);
    TestChannel channel;
    const FreedMemory memory(pin);
    EXPECT_TRUE(verifyPin(channel, 1, entered.octets()).isVerified);
    EXPECT_EQ(memory.findings(), 0u);
    EXPECT_TRUE(channel.sawPin);
}

TEST(Wiping, LeavesNothingOfAPinThatGotLost) {
    Secret entered;
    enter(entered);
    TestChannel channel(true);
    const FreedMemory memory(pin);
    EXPECT_EQ(failureOf([&] { verifyPin(channel, 1, entered.octets()); }).message, "lost");
    EXPECT_EQ(memory.findings(), 0u);
    EXPECT_TRUE(channel.sawPin);
}

/// Also where the protocol changes the command, and where the card has forgotten its selection.
TEST(Wiping, LeavesNothingInAReader) {
    FakePcscService service;
    service.addReader("A");
    service.isT0 = true;
    service.codes["transmit"] = {PcscCode::resetCard};
    PcscReaders readers(service);
    PcscChannel channel(readers, readers.find("A"));
    Secret block;
    enter(block);
    while (block.size() < 64) ASSERT_TRUE(block.push_back(0xFF));
    const FreedMemory memory(pin);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(failureOf([&] { verifyPin(channel, 1, block.octets()); }).message,
                  "card reset by another program");
    }
    EXPECT_EQ(memory.findings(), 0u);
}

TEST(Wiping, LeavesNothingWhereThePinCameFrom) {
    const std::string file = testing::TempDir() + "tovi-wiping-pin";
    {
        std::ofstream out(file);
        for (const char* c = pin; *c != '\0'; ++c) out << *c;
    }
    setenv("TOVI_WIPING_PIN", pin, 1);
    std::istringstream in;
    std::ostringstream out, err;
    Console console{in, out, err};
    AuthInfo info;
    info.type = AuthType::pin;
    info.pinType = 2;
    info.pinFlags = 1;
    for (const bool isFile : {true, false}) {
        GlobalOptions options;
        (isFile ? options.pinFile : options.pinEnvironment) = isFile ? file : "TOVI_WIPING_PIN";
        Invocation call(options, console, "test");
        const FreedMemory memory(pin);
        {
            Secret entered, block;
            readPin(call, "", entered);
            ASSERT_EQ(entered.text(), pin);
            ASSERT_EQ(reasonAgainst(info, entered), "");
            encodePin(info, entered, block);
            ASSERT_EQ(block.text(), pin);
        }
        EXPECT_EQ(memory.findings(), 0u) << isFile;
    }
    unsetenv("TOVI_WIPING_PIN");
    std::remove(file.c_str());
}

}  // namespace
}  // namespace tovi::test
