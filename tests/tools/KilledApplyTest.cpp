// Whenever `tovi apply` is killed, the folder holds a card that can be read.

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "NewCard.h"
#include "TestProcess.h"

namespace tovi::test {
namespace {

constexpr int kills = 200;
constexpr int killed = 1000 + SIGKILL;

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

/// Objects that are there before, and stay.
Json before() {
    Json list = Json::array();
    for (const char* id : {"01", "02", "03", "04", "05", "06"}) list.push_back(writePrivateKey(id));
    for (const char* label : {"A", "B", "C"}) list.push_back(writeData(label));
    list.push_back(writePin("05", 1));
    return list;
}

/// Makes records longer and shorter, adds and removes them, at the front and at the end.
Json changes() {
    const auto update = [](unsigned record, const std::string& label) -> Json {
        return {{"op", "update"}, {"recordNumber", record}, {"set", {{"label", label}}}};
    };
    const auto erase = [](unsigned record) -> Json {
        return {{"op", "delete"}, {"recordNumber", record}};
    };
    return {update(2, std::string(200, 'x')),
            erase(1),
            writePrivateKey("11"),
            update(7, std::string(150, 'y')),
            erase(8),
            writePin("06", 2),
            update(2, "short"),
            erase(3),
            {{"op", "updateTokenInfo"}, {"set", {{"label", std::string(100, 'z')}}}},
            writeData("D")};
}

std::set<std::string> idsOf(const Json& objects) {
    std::set<std::string> ids;
    for (const Json& object : objects) ids.insert(object["id"]);
    return ids;
}

class KilledApply : public testing::Test {
protected:
    KilledApply() {
        if (card_.apply(before()).exit != 0) throw std::runtime_error("no objects");
        writeFile(folder_ / "changes.json", changes().dump());
    }

    std::string copy() const {
        const std::filesystem::path path = folder_.path() / "card";
        std::filesystem::remove_all(path);
        std::filesystem::copy(card_.path(), path, std::filesystem::copy_options::recursive);
        return path.string();
    }

    /// Ends the command after `delay`, unless it has ended before; its exit status.
    int applyAndKill(const std::string& card, Microseconds delay) const {
        TestProcess process({"--card", card, "apply", folder_ / "changes.json"});
        std::this_thread::sleep_for(delay);
        process.signal(SIGKILL);
        return process.wait();
    }

    /// How long the command takes when nobody kills it.
    Microseconds duration() const {
        const std::string card = copy();
        const auto start = Clock::now();
        TestProcess process({"--card", card, "apply", folder_ / "changes.json"});
        EXPECT_EQ(process.wait(), 0);
        return std::chrono::duration_cast<Microseconds>(Clock::now() - start);
    }

private:
    NewCard card_;
    TemporaryFolder folder_{TemporaryFolder::inMemory};
};

/// The card can be read, and what no operation was about is as it was.
void expectReadable(const std::string& card) {
    const Result result = run({"--json", "--card", card, "list"});
    ASSERT_EQ(result.exit, 0) << result.err;
    const Json list = result.json();
    for (const char* id : {"02", "04", "05", "06"}) {
        EXPECT_EQ(idsOf(list["privateKeys"]).count(id), 1u) << id;
    }
    for (const char* kind : {"privateKeys", "dataObjects", "authObjects"}) {
        for (const Json& object : list[kind]) EXPECT_EQ(object["isDecoded"], true) << kind;
    }
    EXPECT_GE(list["authObjects"].size(), 1u);
}

TEST_F(KilledApply, LeavesACardThatListReads) {
    const Microseconds longest = duration();
    std::mt19937 random(15);
    std::uniform_int_distribution<Microseconds::rep> delay(0, longest.count());
    int stopped = 0;
    for (int i = 0; i < kills && !HasFatalFailure(); ++i) {
        const std::string card = copy();
        if (applyAndKill(card, Microseconds(delay(random))) == killed) ++stopped;
        expectReadable(card);
    }
    EXPECT_GT(stopped, 0);
}

TEST_F(KilledApply, CanBeCalledAgain) {
    const Microseconds longest = duration();
    const std::string card = copy();
    applyAndKill(card, longest / 2);
    const Json list = Json::array({writeData("again")});
    EXPECT_EQ(run({"--card", card, "apply", "-"}, {.in = list.dump()}).exit, 0);
    expectReadable(card);
}

}  // namespace
}  // namespace tovi::test
