#include "tools/Socket.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

#include "TestReader.h"

namespace tovi::test {
namespace {

using std::chrono::milliseconds;
using Transfer = Socket::Transfer;

constexpr milliseconds patience{10000};

/// A socket and what stands at its other end.
struct SocketTest : testing::Test {
    SocketTest() {
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        socket.emplace(ends[0]);
    }
    ~SocketTest() override { closeOther(); }
    void closeOther() {
        if (ends[1] >= 0) ::close(ends[1]);
        ends[1] = -1;
    }

    int ends[2] = {-1, -1};
    std::optional<Socket> socket;
};

TEST_F(SocketTest, ReceivesWhatHasCome) {
    ASSERT_EQ(::write(ends[1], "abc", 3), 3);
    Blob octets;
    EXPECT_EQ(socket->receive(octets, patience), Transfer::done);
    EXPECT_EQ(octets, (Blob{'a', 'b', 'c'}));
}

TEST_F(SocketTest, GivesUpWhenNothingComes) {
    Blob octets = {0x01};
    EXPECT_EQ(socket->receive(octets, milliseconds(1)), Transfer::timedOut);
    EXPECT_TRUE(octets.empty());
}

TEST_F(SocketTest, TellsThatTheOtherEndIsClosedBehindWhatItSent) {
    ASSERT_EQ(::write(ends[1], "a", 1), 1);
    closeOther();
    Blob octets;
    EXPECT_EQ(socket->receive(octets, patience), Transfer::done);
    EXPECT_EQ(socket->receive(octets, patience), Transfer::closed);
    octets = {0x01};
    EXPECT_EQ(socket->send(octets, patience), Transfer::closed);  // and no signal ends the process
}

TEST_F(SocketTest, SendsAsMuchAsTheOtherEndTakes) {
    Blob octets(4 << 20, 0x5A);
    const std::size_t all = octets.size();
    while (socket->send(octets, milliseconds(1)) == Transfer::done && !octets.empty()) {
    }
    EXPECT_LT(octets.size(), all);
    EXPECT_FALSE(octets.empty());  // nobody has read, and no call has waited for that
    std::size_t got = 0;
    std::thread reader([&] {
        char part[65536];
        for (ssize_t more; got < all && (more = ::read(ends[1], part, sizeof part)) > 0;)
            got += static_cast<std::size_t>(more);
    });
    while (!octets.empty() && socket->send(octets, patience) == Transfer::done) {
    }
    reader.join();
    EXPECT_EQ(got, all);
}

TEST_F(SocketTest, IsClosedOnceAlsoWhenMoved) {
    Socket moved(std::move(*socket));
    socket.reset();
    Blob octets = {0x01};
    EXPECT_EQ(moved.send(octets, patience), Transfer::done);
}

TEST(SocketConnect, ReachesAPort) {
    TestReader reader;
    std::string reason;
    std::optional<Socket> socket = Socket::connect("127.0.0.1", reader.port(), patience, reason);
    ASSERT_TRUE(socket) << reason;
    ASSERT_TRUE(reader.accept());
    Blob octets = {0x00, 0x01, 0x77};
    EXPECT_EQ(socket->send(octets, patience), Transfer::done);
    EXPECT_EQ(reader.receive(), Blob{0x77});
}

TEST(SocketConnect, SaysWhyAPortIsNotReached) {
    std::uint16_t port = 0;
    {
        TestReader reader;
        port = reader.port();
    }
    std::string reason;
    EXPECT_FALSE(Socket::connect("127.0.0.1", port, patience, reason));
    EXPECT_EQ(reason, "Connection refused");
}

TEST(SocketConnect, SaysWhyAHostIsNotFound) {
    std::string reason;
    EXPECT_FALSE(Socket::connect("no host", 1, patience, reason));
    EXPECT_NE(reason, "");
}

}  // namespace
}  // namespace tovi::test
