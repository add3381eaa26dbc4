#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestCommand.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

TEST(Show, PrintsEachObjectAsListDoes) {
    const Json list = runJson("rich", {"list"}).json();
    std::size_t shown = 0;
    for (const char* kind :
         {"privateKeys", "publicKeys", "trustedPublicKeys", "secretKeys", "certificates",
          "trustedCertificates", "usefulCertificates", "dataObjects", "containers"}) {
        for (const Json& object : list[kind]) {
            const Result result = runJson("rich", {"show", object["recordNumber"].dump()});
            EXPECT_EQ(result.exit, 0);
            EXPECT_EQ(result.json().dump(), object.dump());
            ++shown;
        }
    }
    EXPECT_EQ(shown + 1, list["fat"].size()) << "every row but that of TokenInfo";
}

TEST(Show, FindsAuthenticationObjectsByReference) {
    const Json list = runJson("rich", {"list"}).json()["authObjects"];
    for (const char* reference : {"1", "2", "3", "4"}) {
        const Result result = runJson("rich", {"show", std::string("auth:") + reference});
        EXPECT_EQ(result.exit, 0);
        EXPECT_EQ(result.json()["reference"].dump(), reference);
        EXPECT_NE(std::find(list.begin(), list.end(), result.json()), list.end());
    }
}

TEST(Show, PrintsTokenInfoAsRecordZero) {
    EXPECT_EQ(runJson("rich", {"show", "0"}).json().dump(),
              runJson("rich", {"list"}).json()["tokenInfo"].dump());
}

TEST(Show, ShowsARecordThatDidNotDecode) {
    const Json object = runJson("rich", {"show", "3"}).json();
    EXPECT_EQ(object["objectType"], 64);
    EXPECT_EQ(object["isDecoded"], false);
    EXPECT_EQ(object["label"], "");
}

TEST(Show, RefusesWhatIsNotThere) {
    const Json record = runJson("plain", {"show", "4"}).json()["error"];
    EXPECT_EQ(record["message"], "invalid record number");
    EXPECT_EQ(record["operation"], "PKCS15Container::checkObjectType");
    const Json huge = runJson("plain", {"show", "18446744073709551615"}).json()["error"];
    EXPECT_EQ(huge["message"], "invalid record number");
    EXPECT_EQ(huge["operation"], "PKCS15Container::checkObjectType");
    const Json reference = runJson("plain", {"show", "auth:2"}).json()["error"];
    EXPECT_EQ(reference["message"], "invalid object reference");
    EXPECT_EQ(reference["operation"], "PKCS15Container::getAuthInfo");
    EXPECT_EQ(runJson("plain", {"show", "4"}).exit, 1);
    EXPECT_EQ(runJson("plain", {"show", "auth:2"}).exit, 1);
}

TEST(ShowText, AddsTheRecordInValueNotation) {
    const Result result = run({"--card", sampleCard("rich"), "show", "2"});
    EXPECT_EQ(result.exit, 0);
    for (const char* text : {"private key 2\n", "Alice signature", "CKA_SIGN", "keyReference 144",
                             "usage {sign, nonRepudiation}", "userConsent 1"}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
    EXPECT_THAT(result.out, HasSubstr("\nRecord PrKDF[1]\n  privateRSAKey : {\n"));
    EXPECT_THAT(run({"--card", sampleCard("rich"), "show", "3"}).out,
                HasSubstr("Record PrKDF[2]\n"));
    EXPECT_THAT(run({"--card", sampleCard("rich"), "show", "auth:1"}).out,
                HasSubstr("lastPinChange"));
    EXPECT_THAT(run({"--card", sampleCard("rich"), "show", "0"}).out,
                HasSubstr("preferredLanguage \"en\""));
}

TEST(ShowText, KeepsLabelsFromActingOnTheTerminal) {
    for (const char* record : {"0", "1", "2", "3", "4", "5", "6"}) {
        const Result result = run({"--card", sampleCard("hostile-labels"), "show", record});
        EXPECT_EQ(result.exit, 0);
        for (const char character : result.out) {
            EXPECT_TRUE(static_cast<unsigned char>(character) >= 0x20 || character == '\n');
        }
    }
}

}  // namespace
}  // namespace tovi::test
