// Whenever `tovi apply` is killed, the folder holds a card that can be read.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <limits>
#include <map>
#include <random>
#include <set>

#include "NewCard.h"
#include "TestProcess.h"
#include "tools/Text.h"

namespace tovi::test {
namespace {

constexpr int kills = 200;

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

/// An object without what follows from others.
Json ownFields(Json object) {
    for (const char* derived : {"recordNumber", "container", "publicKey"}) object.erase(derived);
    return object;
}

/// What no operation is about, by name: the fields of the objects, and the octets of the records.
struct Untouched {
    std::set<std::string> objects, records;
};

constexpr const char* untouchedLabels[] = {"Key 04", "Key 05", "Key 06", "C", "PIN 05"};

bool isUntouched(const Json& object) {
    return std::find(std::begin(untouchedLabels), std::end(untouchedLabels), object["label"]) !=
           std::end(untouchedLabels);
}

Untouched untouchedOf(const std::string& card) {
    Untouched found;
    const Json list = run({"--json", "--card", card, "list"}).json();
    for (const char* kind : {"privateKeys", "dataObjects", "authObjects"}) {
        for (const Json& object : list[kind]) {
            if (isUntouched(object)) found.objects.insert(ownFields(object).dump());
        }
    }
    const Json dump = run({"--json", "--card", card, "dump"}).json();
    for (const Json& file : dump["files"]) {
        for (const Json& segment : file["segments"]) {
            const std::string hex = segment["hex"];
            for (const std::string label : untouchedLabels) {
                if (hex.find(toHex(Blob(label.begin(), label.end()))) == std::string::npos)
                    continue;
                if (segment["kind"] == "record" && label != "C") found.records.insert(hex);
            }
        }
    }
    return found;
}

/// The contents of all files, by path.
std::map<std::string, std::string> contentsOf(const std::string& card) {
    std::map<std::string, std::string> contents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(card)) {
        if (entry.is_regular_file()) contents[entry.path().string()] = readFile(entry.path());
    }
    return contents;
}

/// Reads the trace of a process until it has begun so many updates of the card, or has ended.
class TraceReader {
public:
    TraceReader() {
        if (::pipe2(ends_, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        // A process that nobody reads from cannot run far ahead.
        ::fcntl(ends_[1], F_SETPIPE_SZ, 4096);
    }
    ~TraceReader() {
        ::close(ends_[0]);
        closeWriter();
    }
    TraceReader(const TraceReader&) = delete;
    TraceReader& operator=(const TraceReader&) = delete;

    int writer() const { return ends_[1]; }
    void closeWriter() {
        if (ends_[1] >= 0) ::close(ends_[1]);
        ends_[1] = -1;
    }
    /// How many updates it saw.
    int waitFor(int updates) const {
        int seen = 0;
        std::string line;
        for (char character = 0; seen < updates && ::read(ends_[0], &character, 1) == 1;) {
            line += character;
            if (character != '\n') continue;
            if (line.find("> 00D6") != std::string::npos) ++seen;
            line.clear();
        }
        return seen;
    }

private:
    int ends_[2] = {-1, -1};
};

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

    /// Kills the command when it has begun so many updates of the card; how many those were.
    int applyAndKill(const std::string& card, int updates) const {
        TraceReader trace;
        TestProcess process({"--trace", "--card", card, "apply", folder_ / "changes.json"}, -1,
                            trace.writer());
        trace.closeWriter();
        const int seen = trace.waitFor(updates);
        process.signal(SIGKILL);
        process.wait();
        return seen;
    }

    /// How many updates the command makes when nobody kills it.
    int updates(const std::string& card) const {
        return applyAndKill(card, std::numeric_limits<int>::max());
    }

private:
    NewCard card_;
    TemporaryFolder folder_{TemporaryFolder::inMemory};
};

/// The card can be read, every record of it, and what no operation was about is as it was.
void expectUnhurt(const std::string& card, const Untouched& before) {
    const Result result = run({"--json", "--card", card, "list"});
    ASSERT_EQ(result.exit, 0) << result.err;
    const Json list = result.json();
    for (const char* kind : {"privateKeys", "dataObjects", "authObjects"}) {
        for (const Json& object : list[kind]) EXPECT_EQ(object["isDecoded"], true) << kind;
    }
    const Untouched after = untouchedOf(card);
    EXPECT_EQ(after.objects, before.objects);
    EXPECT_EQ(after.records, before.records);
    // What is changed is as before or as afterwards, and nothing between.
    const std::string x(200, 'x'), y(150, 'y'), z(100, 'z');
    const std::set<std::string> labels = {
        "Key 01", "Key 02", "Key 03", "Key 04", "Key 05", "Key 06", "Key 11", x,
        "short",  "A",      y,        "B",      "C",      "D",      "PIN 05", "PIN 06"};
    for (const char* kind : {"privateKeys", "dataObjects", "authObjects"}) {
        for (const Json& object : list[kind])
            EXPECT_EQ(labels.count(object["label"]), 1u) << object;
    }
    const std::string token = list["tokenInfo"]["label"];
    EXPECT_TRUE(token == "PKCS#15 Token" || token == z) << token;
}

TEST_F(KilledApply, LeavesACardThatListReads) {
    const std::string whole = copy();
    const auto begin = contentsOf(whole);
    const Untouched untouched = untouchedOf(whole);
    ASSERT_EQ(untouched.objects.size(), std::size(untouchedLabels));
    ASSERT_EQ(untouched.records.size(), std::size(untouchedLabels) - 1) << "C is in other texts";
    const int most = updates(whole);
    const auto end = contentsOf(whole);
    ASSERT_GT(most, 10);
    std::mt19937 random(15);
    std::uniform_int_distribution<int> moment(1, most);
    int inTheMidst = 0;
    for (int i = 0; i < kills && !HasFatalFailure(); ++i) {
        const std::string card = copy();
        applyAndKill(card, moment(random));
        const auto contents = contentsOf(card);
        if (contents != begin && contents != end) ++inTheMidst;
        expectUnhurt(card, untouched);
    }
    std::cout << inTheMidst << " of " << kills << " kills hit between the first and the last of "
              << most << " updates" << std::endl;
    EXPECT_GE(inTheMidst, kills / 2);
}

TEST_F(KilledApply, CanBeCalledAgain) {
    const std::string card = copy();
    const Untouched untouched = untouchedOf(card);
    const int most = updates(copy());
    copy();
    applyAndKill(card, most / 2);
    Json again = writeData("D");
    EXPECT_EQ(run({"--card", card, "apply", "-"}, {.in = Json::array({again}).dump()}).exit, 0);
    expectUnhurt(card, untouched);
}

}  // namespace
}  // namespace tovi::test
