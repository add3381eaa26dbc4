// PINs through the command: where they come from, which one is verified, and what is told of it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include "NewCard.h"
#include "TestCommand.h"
#include "tools/Secret.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Enters `pin` at every prompt.
Surroundings typing(const std::string& pin) {
    Surroundings surroundings;
    surroundings.askSecret = [pin](const std::string&, Secret& secret) {
        for (const char c : pin)
            if (!secret.push_back(static_cast<std::uint8_t>(c))) return false;
        return true;
    };
    return surroundings;
}

/// A copy of a sample card beside a file with a PIN.
class Login : public testing::Test {
protected:
    std::string copyOf(const std::string& card) {
        std::filesystem::copy(sampleCard(card), folder_.path() / card,
                              std::filesystem::copy_options::recursive);
        return folder_ / card;
    }
    std::string fileWith(const std::string& pin) {
        writeFile(folder_ / "pin", pin);
        return folder_ / "pin";
    }
    Result with(const std::string& card, const std::string& pin,
                std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--card", card, "--pin-file", fileWith(pin)});
        return run(arguments);
    }
    std::string write() {
        writeFile(folder_ / "list.json",
                  R"([{"op": "updateTokenInfo", "set": {"label": "mine"}}])");
        return folder_ / "list.json";
    }
    std::string triesLine(const std::string& card) {
        const std::string text = readFile(card + "/CARD");
        const std::size_t start = text.find("pin 1 ");
        return text.substr(start, text.find('\n', start) - start);
    }

    TemporaryFolder folder_;
};

TEST_F(Login, OpensAFileThatWantsAPin) {
    const std::string card = copyOf("pin-to-read");
    EXPECT_EQ(run({"--card", card, "list"}).exit, 1);
    const Result result = with(card, "1234\n", {"--json", "list"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.json()["privateKeys"].size(), 1u);
    EXPECT_THAT(result.err, HasSubstr("PIN \"PIN\" (auth:1): 3 tries left"));
}

TEST_F(Login, OpensItForEveryCommandThatReads) {
    const std::string card = copyOf("pin-to-read");
    for (const std::vector<std::string>& command : {std::vector<std::string>{"list"},
                                                    {"show", "1"},
                                                    {"dump"},
                                                    {"token-info"},
                                                    {"free-fid", "--kind", "privateKey"}}) {
        EXPECT_EQ(with(card, "1234", command).exit, 0) << command[0];
    }
    EXPECT_THAT(with(card, "1234", {"check"}).out, Not(HasSubstr("unreadable")));
}

TEST_F(Login, LetsThePinBeTypedIn) {
    const std::string card = copyOf("pin-to-read");
    EXPECT_EQ(run({"--card", card, "--login", "1", "list"}, typing("1234")).exit, 0);
    EXPECT_EQ(run({"--card", card, "--login", "auth:1", "list"}, typing("1234")).exit, 0);
    const Result nobody = run({"--card", card, "--login", "1", "list"});
    EXPECT_EQ(nobody.exit, 2);
    EXPECT_THAT(nobody.err, HasSubstr("--pin-file"));
}

TEST_F(Login, TakesThePinFromTheEnvironmentAndWipesIt) {
    const std::string card = copyOf("pin-to-read");
    setenv("TOVI_TEST_PIN", "1234", 1);
    EXPECT_EQ(run({"--card", card, "--pin-env", "TOVI_TEST_PIN", "list"}).exit, 0);
    EXPECT_STREQ(getenv("TOVI_TEST_PIN"), "");
    unsetenv("TOVI_TEST_PIN");
    EXPECT_EQ(run({"--card", card, "--pin-env", "TOVI_TEST_PIN", "list"}).exit, 2);
    setenv("TOVI_TEST_PIN", std::string(256, '1').c_str(), 1);
    EXPECT_EQ(run({"--card", card, "--pin-env", "TOVI_TEST_PIN", "list"}).exit, 2);
    unsetenv("TOVI_TEST_PIN");
}

TEST_F(Login, TellsOfAWrongPinAndTheTriesLeft) {
    const std::string card = copyOf("pin-to-read");
    Result result = with(card, "9999", {"--json", "list"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()["error"]["message"], "wrong PIN, 2 tries left");
    EXPECT_EQ(result.json()["error"]["code"], 0x163C2);
    EXPECT_THAT(triesLine(card), HasSubstr("left=2"));
    EXPECT_EQ(with(card, "9999", {"--json", "list"}).json()["error"]["message"],
              "wrong PIN, 1 try left");
    EXPECT_EQ(with(card, "9999", {"--json", "list"}).json()["error"]["message"],
              "PIN \"PIN\" (auth:1) is blocked");
    result = with(card, "1234", {"--json", "list"});
    EXPECT_EQ(result.json()["error"]["message"], "PIN \"PIN\" (auth:1) is blocked");
    EXPECT_EQ(result.json()["error"]["code"], 0x16983);
}

TEST_F(Login, GivesTheTriesBackWhenThePinIsRight) {
    const std::string card = copyOf("pin-to-read");
    with(card, "9999", {"list"});
    EXPECT_EQ(with(card, "1234", {"list"}).exit, 0);
    EXPECT_THAT(triesLine(card), Not(HasSubstr("left")));
}

TEST_F(Login, CostsNoTryForAPinThatCannotBeRight) {
    const std::string card = copyOf("pin-to-read");
    for (const char* pin : {"", "123", "12345678 ", "12345678901234", "abcd"}) {
        const Result result = with(card, pin, {"list"});
        EXPECT_EQ(result.exit, 1) << pin;
        EXPECT_THAT(result.err, HasSubstr("PIN \"PIN\" (auth:1) ")) << pin;
    }
    EXPECT_THAT(triesLine(card), Not(HasSubstr("left")));
}

TEST_F(Login, TakesAFileOfOneLine) {
    const std::string card = copyOf("pin-to-read");
    EXPECT_EQ(with(card, "1234\r\n", {"list"}).exit, 0);
    for (const std::string& contents : {std::string("1234\n5678\n"), std::string(300, '1')})
        EXPECT_THAT(with(card, contents, {"list"}).err, HasSubstr("PIN file"));
    const Result missing = run({"--card", card, "--pin-file", folder_ / "none", "list"});
    EXPECT_EQ(missing.exit, 1);
    EXPECT_THAT(missing.err, HasSubstr("cannot be read"));
    EXPECT_EQ(run({"--card", card, "--pin-file", folder_ / "", "list"}).exit, 1);
    EXPECT_THAT(triesLine(card), Not(HasSubstr("left")));
}

TEST_F(Login, AsksWhichPinWhereThereAreSeveral) {
    const std::string card = copyOf("rich");
    const Result none = with(card, "1234", {"--login", "9", "list"});
    EXPECT_EQ(none.exit, 2);
    EXPECT_THAT(none.err, HasSubstr("\"User PIN\" (auth:1)"));
    const Result biometric = with(card, "1234", {"--login", "3", "list"});
    EXPECT_EQ(biometric.exit, 1);
    EXPECT_THAT(biometric.err, HasSubstr("is no PIN"));
    EXPECT_EQ(run({"--card", card, "--login", "x", "list"}).exit, 2);
    EXPECT_EQ(run({"--card", card, "--login", "70000000000000000000", "list"}).exit, 2);
    EXPECT_EQ(run({"--card", card, "--pin-env", "A", "--pin-file", "b", "list"}).exit, 2);
    EXPECT_THAT(with(copyOf("no-token-info"), "1234", {"list"}).err, HasSubstr("tovi:"));
}

TEST_F(Login, LetsWritesThrough) {
    const std::string card = copyOf("rich");
    const std::string list = write();
    const Result denied = run({"--card", card, "apply", list});
    EXPECT_EQ(denied.exit, 1);
    EXPECT_THAT(denied.err, HasSubstr("--login REF"));
    EXPECT_THAT(run({"--quiet", "--card", card, "apply", list}).err, Not(HasSubstr("--login")));
    EXPECT_EQ(with(card, "12345678", {"--login", "2", "apply", list}).exit, 0);
    EXPECT_EQ(run({"--json", "--card", card, "token-info"}).json()["label"], "mine");
}

TEST_F(Login, TakesThePinThatGuardsTheObject) {
    const std::string card = copyOf("rich");
    const Json objects = run({"--json", "--card", card, "list"}).json();
    Json guarded;
    for (const Json& key : objects["privateKeys"])
        if (key["authId"] == "01") guarded = key["recordNumber"];
    ASSERT_FALSE(guarded.is_null());
    const Result result = with(card, "1234", {"delete", std::to_string(guarded.get<int>())});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("\"User PIN\" (auth:1)"));
}

/// Record numbers without a PIN are not those with it: 24 is a data object of PIN 2 then.
TEST_F(Login, TakesNoGuardForARecordThatHasNoNumberYet) {
    const std::string card = copyOf("rich");
    std::string description = readFile(card + "/CARD");
    const std::string rule = "2048 update=pin:1";
    description.replace(description.find(rule), rule.size(), rule + " read=pin:1");
    writeFile(card + "/CARD", description);
    const Result result = with(card, "1234", {"show", "24"});
    EXPECT_EQ(result.exit, 0) << result.err;
    const Result exported = with(card, "1234", {"export", "24"});
    EXPECT_THAT(exported.err, HasSubstr("\"User PIN\" (auth:1)"));
    EXPECT_THAT(exported.err, HasSubstr("secret key 24"));
    EXPECT_THAT(exported.err, Not(HasSubstr("SO PIN")));
}

TEST_F(Login, AsksForNoPinThatCannotBePresented) {
    Surroundings surroundings;
    bool isAsked = false;
    surroundings.askSecret = [&](const std::string&, Secret&) { return isAsked = true; };
    const Result result = run({"--card", copyOf("rich"), "--login", "3", "list"}, surroundings);
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("is no PIN"));
    EXPECT_FALSE(isAsked);
}

TEST_F(Login, DoesNotAdviseAPinWhereOneWasPresented) {
    const std::string card = copyOf("pin-to-read");
    EXPECT_THAT(with(card, "9999", {"list"}).err, Not(HasSubstr("--login")));
    EXPECT_THAT(with(card, "", {"list"}).err, Not(HasSubstr("--login")));
    // One that was of no use is another matter.
    EXPECT_THAT(with(copyOf("rich"), "1234", {"apply", write()}).err, HasSubstr("--login"));
}

TEST_F(Login, IsInterruptedAtThePrompt) {
    const std::string card = copyOf("pin-to-read");
    std::atomic<bool> interrupted = false;
    Surroundings surroundings = typing("");
    surroundings.askSecret = [&](const std::string&, Secret&) {
        interrupted = true;
        return false;
    };
    surroundings.interrupted = &interrupted;
    EXPECT_EQ(run({"--card", card, "--login", "1", "list"}, surroundings).exit, 130);
}

TEST_F(Login, ShowsNoPinInATrace) {
    const std::string card = copyOf("pin-to-read");
    const Result result = with(card, "1234", {"--trace", "list"});
    EXPECT_THAT(result.err, HasSubstr("00200001 (data hidden)"));
    EXPECT_THAT(result.err, Not(HasSubstr("31323334")));
}

/// A person at a terminal, who is asked where nothing was said of a PIN.
Surroundings present(const std::string& pin) {
    Surroundings surroundings = typing(pin);
    surroundings.showsProgress = true;
    return surroundings;
}

TEST_F(Login, AsksThePersonWhenTheCardRefusesToBeRead) {
    const std::string card = copyOf("pin-to-read");
    const Result result = run({"--json", "--card", card, "list"}, present("1234"));
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.json()["privateKeys"].size(), 1u);
    EXPECT_THAT(result.err, HasSubstr("3 tries left"));
    EXPECT_EQ(run({"--card", card, "list"}, typing("1234")).exit, 1) << "nobody sees the question";
}

TEST_F(Login, ChoosesNoPinOfSeveral) {
    const std::string card = copyOf("pin-to-read");
    writeFile(folder_ / "list.json", Json::array({writePin("02", 2)}).dump());
    ASSERT_EQ(with(card, "1234", {"apply", folder_ / "list.json"}).exit, 0);
    const Result asked = run({"--card", card, "list"}, present("1234"));
    EXPECT_EQ(asked.exit, 1);
    EXPECT_THAT(asked.err, HasSubstr("Failed to decode PrKDF")) << "and nothing was asked";
    const Result given = with(card, "1234", {"list"});
    EXPECT_EQ(given.exit, 2);
    EXPECT_THAT(given.err, HasSubstr("(auth:1), PIN \"PIN 02\" (auth:2)"));
    EXPECT_THAT(triesLine(card), Not(HasSubstr("left")));
}

TEST_F(Login, AsksThePersonWhenTheCardRefusesAWrite) {
    const std::string card = copyOf("rich");
    writeFile(folder_ / "list.json", R"([
      {"op": "update", "recordNumber": 1, "set": {"label": "first"}},
      {"op": "update", "recordNumber": 2, "set": {"label": "second"}}])");
    const Result result =
        run({"--json", "--card", card, "apply", folder_ / "list.json"}, present("1234"));
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("\"User PIN\" (auth:1): 3 tries left"));
    EXPECT_EQ(run({"--json", "--card", card, "show", "1"}).json()["label"], "first");
    EXPECT_EQ(run({"--json", "--card", card, "show", "2"}).json()["label"], "second");
}

TEST_F(Login, AsksOnce) {
    const std::string card = copyOf("rich");
    writeFile(folder_ / "list.json", R"([
      {"op": "update", "recordNumber": 1, "set": {"label": "first"}},
      {"op": "update", "recordNumber": 2, "set": {"label": "second"}}])");
    const Result result =
        run({"--json", "--card", card, "apply", folder_ / "list.json", "--keep-going"},
            present("9999"));
    EXPECT_EQ(result.exit, 1);
    const Json list = result.json();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]["error"]["message"], "wrong PIN, 2 tries left");
    EXPECT_EQ(list[1]["error"]["code"], 0x16A84) << "refused, and not asked again";
    EXPECT_THAT(triesLine(card), HasSubstr("left=2"));
    EXPECT_EQ(run({"--json", "--card", card, "show", "1"}).json()["label"],
              run({"--json", "--card", sampleCard("rich"), "show", "1"}).json()["label"]);
}

TEST_F(Login, IsNotAskedForWithoutNeed) {
    EXPECT_EQ(run({"--card", copyOf("rich"), "list"}, present("wrong")).err, "");
}

}  // namespace
}  // namespace tovi::test
