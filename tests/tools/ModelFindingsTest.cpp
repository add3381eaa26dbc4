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

TEST(FindUnsupported, ReportsAnAlternativeThatTheModelHasNoObjectFor) {
    TestApplication application;
    Json key = publicKey("01", "4B01")["publicRSAKey"];
    key["typeAttributes"].erase("modulusLength");
    Json kea;
    kea["publicKEAKey"] = key;
    application.add("PuKDF", "4402", Json::array({kea, {{"hex", "A9020500"}}, brokenRecord}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("undecodable-record"),
                            "unsupported-record | public key 1 | - | "
                            "alternative publicKEAKey is not understood",
                            "unsupported-record | public key 2 | - | "
                            "an alternative of a later edition is not understood"));
}

TEST(FindSkippedFiles, ReportsEntriesThatNameNoFile) {
    TestApplication application;
    application.replace("5031", Json::array({{{"hex", "A404A0023000"}},      // objects in place
                                             {{"hex", "A906300404024401"}},  // of a later edition
                                             {{"hex", "A0073005A003020105"}}}));
    EXPECT_THAT(
        application.findings(),
        testing::IsSupersetOf(
            {"skipped-entry | - | EF(ODF) | entry 2 names no file: its objects are not read",
             "skipped-entry | - | EF(ODF) | "
             "entry 3, privateKeys, names no file: its objects are not read"}));
}

TEST(FindDanglingAuthIds, ReportsNamesOfNothing) {
    TestApplication application;
    application.add("PrKDF", "4401",
                    Json::array({privateKey("01", "4B01", "05"), privateKey("02", "4B02", "06")}));
    application.add("PuKDF", "4402",
                    Json::array({publicKey("01", "4B11"), publicKey("02", "4B12")}));
    application.add("AODF", "4409", Json::array({pin("05", 1)}));
    EXPECT_THAT(application.findings(), ElementsAre("dangling-auth-id | private key 2 | - | "
                                                    "authId 06 names no authentication object"));
}

TEST(FindDanglingAuthIds, LooksForTheSecretKeyOfAnAuthenticationKey) {
    const auto authKey = [](const char* id) {
        Json record = pin("07", 0)["pin"];
        record["typeAttributes"] = {{"authKeyId", id}};
        Json key;
        key["authKey"] = record;
        return key;
    };
    TestApplication good, bad;
    good.add("SKDF", "4404", Json::array({secretKey("AA", "4D01")}));
    good.add("AODF", "4409", Json::array({authKey("AA")}));
    EXPECT_THAT(good.findings(), IsEmpty());
    bad.add("SKDF", "4404", Json::array({secretKey("AA", "4D01")}));
    bad.add("AODF", "4409", Json::array({authKey("AB")}));
    EXPECT_THAT(bad.findings(), ElementsAre(HasSubstr("| - | authKeyId AB names no secret key")));
}

TEST(FindKeysWithoutCertificate, IsContentWithAPublicKey) {
    TestApplication application;
    application.add("PrKDF", "4401",
                    Json::array({privateKey("01", "4B01"), privateKey("02", "4B02"),
                                 privateKey("03", "4B03")}));
    application.add("PuKDF", "4402", Json::array({publicKey("01", "4B11")}));
    application.add("CDF", "4405", Json::array({certificate("02", "4E02")}));
    EXPECT_THAT(application.findings(),
                ElementsAre("key-without-certificate | private key 3 | - | "
                            "no certificate and no public key has the id '03'"));
}

TEST(FindKeysWithoutCertificate, LeavesOutRecordsThatAreNoKeys) {
    TestApplication application;
    application.add("PrKDF", "4401", Json::array({brokenRecord}));
    EXPECT_THAT(application.findings(), ElementsAre(HasSubstr("undecodable-record")));
}

TEST(FindKeysWithoutCertificate, TakesNoRecordThatIsNoneForAPartner) {
    TestApplication application;
    application.add("PrKDF", "4401", Json::array({privateKey("", "4B01"), brokenRecord}));
    application.add("PuKDF", "4402", Json::array({brokenRecord}));
    application.add("CDF", "4405", Json::array({brokenRecord, certificate("", "4E01")}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("undecodable-record"), HasSubstr("undecodable-record"),
                            HasSubstr("undecodable-record")))
        << "key and certificate without an identifier are partners";
    TestApplication lone;
    lone.add("PrKDF", "4401", Json::array({privateKey("", "4B01")}));
    lone.add("PuKDF", "4402", Json::array({brokenRecord}));
    EXPECT_THAT(lone.findings(), ElementsAre(HasSubstr("undecodable-record"),
                                             HasSubstr("key-without-certificate | private key 1")));
}

TEST(FindCertificatesWithoutKey, TakesNoRecordThatIsNoneForAKey) {
    TestApplication application;
    application.add("PrKDF", "4401", Json::array({brokenRecord}));
    application.add("CDF", "4405", Json::array({certificate("", "4E01")}));
    EXPECT_THAT(application.findings(),
                ElementsAre(HasSubstr("undecodable-record"),
                            HasSubstr("certificate-without-key | certificate 2")));
}

TEST(FindCertificatesWithoutKey, LooksAtCertificatesOfTheHolderOnly) {
    TestApplication application;
    Json issuer = certificate("03", "4E03");
    issuer["x509Certificate"]["classAttributes"]["authority"] = true;
    application.add("CDF", "4405", Json::array({certificate("02", "4E02"), issuer, brokenRecord}));
    application.add("TrustedCDF", "4406", Json::array({certificate("04", "4E04")}));
    application.add("UsefulCDF", "4407", Json::array({certificate("05", "4E05")}));
    EXPECT_THAT(application.findings(), ElementsAre(HasSubstr("undecodable-record"),
                                                    "certificate-without-key | certificate 1 | - | "
                                                    "no private key has the id '02'"));
}

TEST(FindDuplicateIds, ComparesWithinAList) {
    TestApplication application;
    application.add("PuKDF", "4402",
                    Json::array({publicKey("01", "4B01"), publicKey("01", "4B02"),
                                 publicKey("", "4B03"), publicKey("", "4B04")}));
    application.add("TrustedPuKDF", "4403", Json::array({publicKey("01", "4B05")}));
    application.add("AODF", "4409", Json::array({pin("07", 1), pin("07", 2)}));
    EXPECT_THAT(application.findings(),
                ElementsAre("duplicate-id | public key 2 | - | id 01 is that of public key 1",
                            "duplicate-id | authentication object auth:2 | - | "
                            "id 07 is that of authentication object auth:1"));
}

TEST(FindSharedFiles, ComparesWithinAList) {
    TestApplication application;
    application.add(
        "PuKDF", "4402",
        Json::array({publicKey("01", "4B01"), publicKey("02", "4B01"), publicKey("03", "4B03")}));
    application.add("TrustedPuKDF", "4403", Json::array({publicKey("04", "4B01")}));
    EXPECT_THAT(application.findings(), ElementsAre("shared-file | public key 2 | - | "
                                                    "file 4B01 is also that of public key 1"));
}

TEST(FindObjectsOutside, TakesRelativePathsAsInside) {
    TestApplication application;
    application.add("PuKDF", "4402",
                    Json::array({publicKey("01", "3F0050154B01"), publicKey("02", "4B02"),
                                 publicKey("03", "3F0060154B03"), publicKey("04", "3FFF4B04"),
                                 publicKey("05", "3F00")}));
    application.add("AODF", "4409", Json::array({pin("07", 1, "3F00"), pin("08", 2, "3F006015")}));
    EXPECT_THAT(application.findings(),
                ElementsAre("path-outside-application | public key 3 | - | "
                            "path 3F0060154B03 does not lie below 3F005015",
                            "path-outside-application | public key 5 | - | "
                            "path 3F00 does not lie below 3F005015",
                            "path-outside-application | authentication object auth:2 | - | "
                            "path 3F006015 does not lie below 3F005015"))
        << "a PIN of the whole card lies in the master file";
}

Json area(const char* file, unsigned index, unsigned length) {
    return {{"efidOrPath", file}, {"index", index}, {"length", length}};
}

std::vector<std::string> overlaps(TestApplication& application) {
    std::vector<std::string> found;
    for (const std::string& finding : application.findings()) {
        if (finding.rfind("overlapping-areas", 0) == 0) found.push_back(finding);
    }
    return found;
}

TEST(FindOverlaps, TakesTouchingAreasAsApart) {
    TestApplication application;
    application.add(
        "DODF", "4408",
        Json::array({dataObject("B", area("4F01", 10, 10)), dataObject("A", area("4F01", 0, 10)),
                     dataObject("C", area("4F02", 5, 10))}));
    EXPECT_THAT(overlaps(application), IsEmpty());
}

TEST(FindOverlaps, ReportsOctetsOfTwoObjects) {
    TestApplication application;
    application.add("DODF", "4408",
                    Json::array({dataObject("A", area("4F01", 0, 100)),
                                 dataObject("B", area("3F0050154F01", 10, 5)),
                                 dataObject("C", area("4F01", 99, 2))}));
    EXPECT_THAT(overlaps(application),
                ElementsAre("overlapping-areas | data object 2 | - | "
                            "octets 10 to 14 of 3F0050154F01 are also those of data object 1",
                            "overlapping-areas | data object 3 | - | "
                            "octets 99 to 99 of 3F0050154F01 are also those of data object 1"));
}

TEST(FindOverlaps, TakesTheIndexOfALinearFileAsRecordNumber) {
    TestApplication application;
    application.addFile(
        {{"path", "3F00/5015/4F01"}, {"structure", "linear"}, {"size", 5}, {"record", 100}});
    application.add(
        "DODF", "4408",
        Json::array({dataObject("A", area("4F01", 1, 50)), dataObject("B", area("4F01", 2, 50)),
                     dataObject("C", area("4F01", 2, 0))}));
    EXPECT_THAT(overlaps(application),
                ElementsAre("overlapping-areas | data object 3 | - | "
                            "record 2 of 3F0050154F01 is also that of data object 2"));
}

TEST(FindOverlaps, ComparesObjectsOfAllKinds) {
    TestApplication application;
    Json key = secretKey("AA", "4F01");
    key["genericSecretKey"]["typeAttributes"]["value"]["indirect"]["path"] = area("4F01", 4, 4);
    application.add("SKDF", "4404", Json::array({key}));
    application.add("DODF", "4408", Json::array({dataObject("A", area("4F01", 0, 5))}));
    EXPECT_THAT(overlaps(application),
                ElementsAre(HasSubstr("secret key 1 | - | octets 4 to 4 of 3F0050154F01")));
}

}  // namespace
}  // namespace tovi::test
