#include "tools/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestApplication.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Json brokenRecord = {{"hex", "30090201073004040200AA"}};

TEST(FindUnreadable, ReportsAFileThatIsNotThere) {
    TestApplication application;
    application.replace("5031",
                        Json::array({{{"privateKeys", {{"path", {{"efidOrPath", "44FF"}}}}}}}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("unreadable-file | - | EF(PrKDF) 3F00501544FF | SELECT"),
                            HasSubstr("unreadable-application | - | - | Failed to decode PrKDF")));
}

TEST(FindUndecodable, ReportsWhereAndWhy) {
    TestApplication application;
    application.add("PuKDF", "4402", Json::array({publicKey("01", "4B01"), brokenRecord}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("undecodable-record | - | EF(PuKDF) 3F0050154402 | "
                                      "offset 35, 11 octets: ")));
}

TEST(FindUndecodable, NamesTheRecordOfALinearFile) {
    TestApplication application;
    application.add("PuKDF", "4402", Json::array({publicKey("01", "4B01"), brokenRecord}),
                    {{"structure", "linear"}, {"size", 5}, {"record", 100}});
    EXPECT_THAT(application.findings(), ElementsAre(HasSubstr("record 2, 11 octets: ")));
}

TEST(FindUndecodable, ReportsARecordThatRunsPastItsFile) {
    TestApplication application;
    application.add("PuKDF", "4402", Json::array({{{"cut", 20}, {"of", publicKey("01", "4B01")}}}));
    application.add("PrKDF", "4401", Json::array());
    EXPECT_THAT(
        application.findings(),
        ElementsAre(HasSubstr("undecodable-record | - | EF(PuKDF) 3F0050154402 | offset 0")))
        << "the record takes the rest of the file";
}

TEST(FindInvalid, ReportsARecordBeyondTheRangesOfItsType) {
    TestApplication application;
    Json key = publicKey("01", "4B01");
    key["publicRSAKey"]["commonObjectAttributes"]["userConsent"] = 32767;
    application.add("PuKDF", "4402", Json::array({key}));
    EXPECT_THAT(application.findings(), IsEmpty());
    key["publicRSAKey"]["commonObjectAttributes"]["userConsent"] = 32768;
    application.add("PuKDF", "4412", Json::array({key}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("invalid-record | - | EF(PuKDF) 3F0050154412 | offset 0")));
}

TEST(FindStale, ReportsOctetsThatAreNoRecord) {
    TestApplication application;
    application.add("PuKDF", "4402",
                    Json::array({publicKey("01", "4B01"), {{"hex", "020082040100"}}}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("stale-octets | - | EF(PuKDF) 3F0050154402 | offset 35: ")));
}

TEST(FindUnread, ReportsRecordsBehindALongGap) {
    TestApplication application;
    application.add("PuKDF", "4402",
                    Json::array({publicKey("01", "4B01"),
                                 {{"gap", 1500}},
                                 publicKey("02", "4B02"),
                                 publicKey("03", "4B03")}),
                    {{"size", 9000}});
    EXPECT_THAT(
        application.findings(),
        ElementsAre(HasSubstr("unread-records | - | EF(PuKDF) 3F0050154402 | 2 of 3 records")));
}

TEST(FindNearlyFull, ReportsLessThanATenth) {
    // The record takes 35 octets.
    TestApplication full, enough, empty;
    full.add("PuKDF", "4402", Json::array({publicKey("01", "4B01")}), {{"size", 38}});
    EXPECT_THAT(
        full.findings(),
        ElementsAre("file-nearly-full | - | EF(PuKDF) 3F0050154402 | 3 of 38 octets are free"));
    enough.add("PuKDF", "4402", Json::array({publicKey("01", "4B01")}), {{"size", 39}});
    EXPECT_THAT(enough.findings(), IsEmpty());
    empty.add("PuKDF", "4402", Json::array(), {{"size", 1}});
    EXPECT_THAT(empty.findings(), IsEmpty());
}

TEST(FindNearlyFull, CountsTheRecordsOfALinearFile) {
    const Json linear = {{"structure", "linear"}, {"size", 10}, {"record", 60}};
    Json keys = Json::array();
    for (const char* id : {"01", "02", "03", "04", "05", "06", "07", "08", "09"}) {
        keys.push_back(publicKey(id, std::string("4B") + id));
    }
    TestApplication enough, full;
    enough.add("PuKDF", "4402", keys, linear);
    EXPECT_THAT(enough.findings(), IsEmpty());
    keys.push_back({{"hex", "00"}});
    enough.add("PuKDF", "4412", Json::array(), linear);
    EXPECT_THAT(enough.findings(), IsEmpty());
    keys.back() = publicKey("0A", "4B0A");
    full.add("PuKDF", "4402", keys, linear);
    EXPECT_THAT(
        full.findings(),
        ElementsAre("file-nearly-full | - | EF(PuKDF) 3F0050154402 | 0 of 10 records are free"));
}

TEST(FindNearlyFull, LooksAtTheODFAndTokenInfoToo) {
    TestApplication application;
    application.resize("5031", 8).resize("5032", 12).add("PuKDF", "4402", Json::array());
    EXPECT_THAT(
        application.findings(),
        ElementsAre(HasSubstr("EF(TokenInfo) 3F0050155032 | 1 of 12 octets are free"),
                    "file-nearly-full | - | EF(ODF) 3F0050155031 | 0 of 8 octets are free"));
}

TEST(FindNearlyFull, LetsALinearTokenInfoHaveItsOneRecord) {
    EXPECT_EQ(runJson("linear", {"check"}).exit, 0);
}

TEST(FindRepeated, ReportsAFileThatIsNamedTwice) {
    TestApplication application;
    application.add("DODF", "4408", Json::array());
    const Json entry = {{"dataObjects", {{"path", {{"efidOrPath", "4408"}}}}}};
    const Json other = {{"authObjects", {{"path", {{"efidOrPath", "3F0050154408"}}}}}};
    application.replace("5031", Json::array({entry, other}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("repeated-file | - | EF(AODF) 3F0050154408")));
}

TEST(FindFileOutside, ReportsADirectoryFileOfAnotherApplication) {
    TestApplication application;
    application.replace("5031",
                        Json::array({{{"dataObjects", {{"path", {{"efidOrPath", "3F002F00"}}}}}}}));
    EXPECT_THAT(application.findings(),
                testing::Contains(HasSubstr("path-outside-application | - | EF(DODF) 3F002F00")));
}

TEST(FindTokenInfoCount, ReportsNoneAndTwo) {
    const Json one = {{"version", 0}, {"serialNumber", "01"}, {"tokenflags", Json::array()}};
    TestApplication none, two;
    none.replace("5032", Json::array());
    EXPECT_THAT(none.findings(),
                ElementsAre("token-info | - | EF(TokenInfo) 3F0050155032 | 0 records, expected one",
                            HasSubstr("unreadable-application | - | - | invalid TokenInfo")));
    two.replace("5032", Json::array({one, one}));
    EXPECT_THAT(two.findings(),
                ElementsAre("token-info | - | EF(TokenInfo) 3F0050155032 | 2 records, expected one",
                            HasSubstr("unreadable-application | - | - | More than one TokenInfo")));
}

}  // namespace
}  // namespace tovi::test
