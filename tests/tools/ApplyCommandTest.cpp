#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <streambuf>

#include "NewCard.h"
#include "tools/Command.h"

namespace tovi::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

Json update(unsigned record, const Json& set) {
    return {{"op", "update"}, {"recordNumber", record}, {"set", set}};
}
Json erase(unsigned record) { return {{"op", "delete"}, {"recordNumber", record}}; }

std::vector<std::string> labelsOf(const Json& objects) {
    std::vector<std::string> labels;
    for (const Json& object : objects) labels.push_back(object["label"]);
    return labels;
}

TEST(Apply, GivesARecordNumberToEachNewObject) {
    const NewCard card;
    const Result result =
        card.apply({writePrivateKey("01"), writePin("05", 1), writeData("D"), writePin("06", 2)});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.json().dump(),
              R"([{"op":"write","recordNumber":1},{"op":"write","recordNumber":0},)"
              R"({"op":"write","recordNumber":2},{"op":"write","recordNumber":1}])")
        << "authentication objects are counted by their place in the file";
    const Json list = card.list();
    EXPECT_THAT(labelsOf(list["privateKeys"]), ElementsAre("Key 01"));
    EXPECT_THAT(labelsOf(list["dataObjects"]), ElementsAre("D"));
    EXPECT_THAT(labelsOf(list["authObjects"]), ElementsAre("PIN 05", "PIN 06"));
}

TEST(Apply, RepeatsTheNamesOfObjectsInItsResult) {
    const NewCard card;
    const Result result = card.apply({writeData("A"),
                                      writePin("05", 1),
                                      update(1, {{"label", "B"}}),
                                      {{"op", "update"}, {"auth", 1}, {"set", {{"label", "P"}}}},
                                      {{"op", "updateTokenInfo"}, {"set", {{"label", "T"}}}},
                                      {{"op", "clearAndRead"}},
                                      erase(1),
                                      {{"op", "delete"}, {"auth", 1}}});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.json().dump(),
              R"([{"op":"write","recordNumber":1},{"op":"write","recordNumber":0},)"
              R"({"op":"update","recordNumber":1},{"op":"update","auth":1},)"
              R"({"op":"updateTokenInfo"},{"op":"clearAndRead"},)"
              R"({"op":"delete","recordNumber":1},{"op":"delete","auth":1}])");
    const Json list = card.list();
    EXPECT_EQ(list["tokenInfo"]["label"], "T");
    EXPECT_EQ(list["dataObjects"], Json::array());
    EXPECT_EQ(list["authObjects"], Json::array());
}

TEST(Apply, TakesAFileAndDoesNothingForAnEmptyList) {
    const NewCard card;
    const TemporaryFolder folder;
    writeFile(folder / "list.json", "[]");
    const Result result = card.run({"apply", folder / "list.json"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.json(), Json::array());
}

TEST(Apply, WritesEveryKindOfObjectAsListShowsIt) {
    const NewCard card;
    const auto write = [](const char* kind, const Json& info) -> Json {
        return {{"op", "write"}, {"kind", kind}, {"info", info}};
    };
    const Json place = {{"path", "3F0050154B01"}, {"index", 2}, {"length", 30}};
    Json key = writePrivateKey("01", {{"native", false},
                                      {"reference", 7},
                                      {"path", place},
                                      {"authId", "0A"},
                                      {"isPrivate", true},
                                      {"isModifiable", false},
                                      {"userConsent", 3}})["info"];
    const Json certificate = {
        {"label", "C"}, {"id", "01"}, {"serialNumber", "00FF"}, {"trustedUsage", 256}};
    const Json secret = {{"labelHex", "C3A9"},
                         {"id", "0B"},
                         {"algorithmName", "TripleDES"},
                         {"keyLength", 16},
                         {"attributes", {{"CKA_ENCRYPT", true}}}};
    const Result result = card.apply(
        {write("privateKey", key), write("publicKey", key), write("trustedPublicKey", key),
         write("secretKey", secret), write("certificate", certificate),
         write("trustedCertificate", certificate), write("usefulCertificate", certificate),
         write("dataObject", {{"label", "D"}, {"applicationName", "app"}, {"path", place}}),
         write("container", {{"label", "K"}, {"exchangeCertificateRecord", 5}})});
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json list = card.list();
    for (const char* kind : {"privateKeys", "publicKeys", "trustedPublicKeys"}) {
        ASSERT_EQ(list[kind].size(), 1u) << kind;
        const Json& object = list[kind][0];
        for (const auto& [field, value] : key.items()) {
            if (field == "attributes") continue;
            EXPECT_EQ(object[field], value) << kind << field;
        }
        EXPECT_EQ(object["attributes"]["CKA_SIGN"], true);
        EXPECT_EQ(object["attributes"]["CKA_PRIVATE"], true);
        EXPECT_EQ(object["fid"], "4B01");
        EXPECT_EQ(object["isDecoded"], true);
    }
    EXPECT_EQ(list["secretKeys"][0]["label"], "\xC3\xA9");
    EXPECT_EQ(list["secretKeys"][0]["keyLength"], 16);
    for (const char* kind : {"certificates", "trustedCertificates", "usefulCertificates"}) {
        EXPECT_EQ(list[kind][0]["serialNumber"], "00FF") << kind;
        EXPECT_EQ(list[kind][0]["trustedUsage"], 267) << kind;
    }
    EXPECT_EQ(list["dataObjects"][0]["path"], place);
    EXPECT_EQ(list["dataObjects"][0]["applicationName"], "app");
}

TEST(Apply, WritesEveryTypeOfAuthenticationObject) {
    const NewCard card;
    const auto write = [](const Json& info) -> Json {
        return {{"op", "write"}, {"kind", "authObject"}, {"info", info}};
    };
    const Json pin = {{"type", "pin"},        {"label", "P"},
                      {"authObjectId", "01"}, {"pinFlags", {"local", "soPin"}},
                      {"pinType", "utf8"},    {"minLength", 4},
                      {"storedLength", 12},   {"maxLength", 10},
                      {"padChar", "FF"},      {"lastPinChange", "20240229120000Z"},
                      {"reference", 129},     {"authId", "02"}};
    const Json biometric = {{"type", "biometric"},
                            {"label", "B"},
                            {"authObjectId", "02"},
                            {"bioFlags", {"local", "initialized"}},
                            {"templateId", "1.2.840.113549"},
                            {"bioType", "fingerPrint"},
                            {"lastChange", nullptr},
                            {"reference", 3}};
    const Json authKey = {{"type", "authKey"},
                          {"label", "K"},
                          {"authObjectId", "03"},
                          {"derivedKey", false},
                          {"authKeyId", "AA"}};
    const Json external = {
        {"type", "external"}, {"label", "E"}, {"authObjectId", "04"}, {"cha", "0102"}};
    const Result result =
        card.apply({write(pin), write(biometric), write(authKey), write(external)});
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json objects = card.list()["authObjects"];
    ASSERT_EQ(objects.size(), 4u);
    std::size_t i = 0;
    for (const Json& wanted : {pin, biometric, authKey, external}) {
        for (const auto& [field, value] : wanted.items()) {
            EXPECT_EQ(objects[i][field], value) << field;
        }
        ++i;
    }
}

TEST(Apply, ChangesTheFieldsOfAnObjectAndNoOthers) {
    const NewCard card;
    ASSERT_EQ(card.apply(Json::array({writePrivateKey(
                             "01", {{"reference", 9}, {"userConsent", 1}, {"authId", "0A"}})}))
                  .exit,
              0);
    Json expected = card.list()["privateKeys"][0];
    expected["label"] = "new";
    expected["labelHex"] = "6E6577";
    expected["path"] = {{"path", "3F0050154B99"}, {"index", 0}, {"length", 0}};
    expected["fid"] = "4B99";
    expected["userConsent"] = nullptr;
    expected["attributes"]["CKA_DECRYPT"] = true;
    const Result result =
        card.apply(Json::array({update(1, {{"label", "new"},
                                           {"path", {{"path", "3F0050154B99"}}},
                                           {"userConsent", nullptr},
                                           {"attributes", {{"CKA_DECRYPT", true}}}})}));
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(card.list()["privateKeys"][0].dump(), expected.dump())
        << "attributes are added to those there are";
}

TEST(Apply, ChangesEachKindOfObject) {
    const NewCard card;
    const auto write = [](const char* kind, const Json& info) -> Json {
        return {{"op", "write"}, {"kind", kind}, {"info", info}};
    };
    Json list = {writePrivateKey("01"),
                 writePublicKey("02"),
                 write("trustedPublicKey", writePublicKey("03")["info"]),
                 write("secretKey", {{"id", "04"}, {"algorithmName", "DES"}, {"keyLength", 8}}),
                 write("certificate", {{"id", "05"}}),
                 write("trustedCertificate", {{"id", "06"}}),
                 write("usefulCertificate", {{"id", "07"}}),
                 write("dataObject", {{"label", "8"}}),
                 write("container", {{"label", "9"}})};
    for (unsigned record = 1; record <= 9; ++record) {
        list.push_back(update(record, {{"label", "changed"}}));
    }
    const Result result = card.apply(list);
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json after = card.list();
    for (const char* kind :
         {"privateKeys", "publicKeys", "trustedPublicKeys", "secretKeys", "certificates",
          "trustedCertificates", "usefulCertificates", "dataObjects"}) {
        EXPECT_THAT(labelsOf(after[kind]), ElementsAre("changed")) << kind;
    }
}

TEST(Apply, LinksAPublicKeyToThePrivateKeyThatItNames) {
    const NewCard card;
    Json key = writePublicKey("02");
    key["privateKey"] = 1;
    EXPECT_EQ(card.apply({writePrivateKey("01"), key}).exit, 0);
    key["privateKey"] = nullptr;
    EXPECT_EQ(card.apply(Json::array({key})).exit, 0);
    const Json list = card.list();
    EXPECT_EQ(list["publicKeys"].size(), 2u);
}

TEST(Apply, WritesAnObjectWhoseLinkFails) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePrivateKey("01"), writePublicKey("01")}).exit, 0);
    Json key = writePublicKey("02");
    const std::pair<unsigned, const char*> links[] = {{0, "invalid object type"},
                                                      {2, "invalid object type"},
                                                      {40, "invalid record number"},
                                                      {70000, "invalid record number"}};
    Json list = Json::array();
    for (const auto& [record, message] : links) {
        key["privateKey"] = record;
        list.push_back(key);
    }
    const Result result = card.apply(list, {"--keep-going"});
    EXPECT_EQ(result.exit, 1);
    for (std::size_t i = 0; i < std::size(links); ++i) {
        EXPECT_EQ(result.json()[i]["error"]["message"], links[i].second);
        EXPECT_EQ(result.json()[i]["recordNumber"], 4 + i) << "behind the key container";
    }
    EXPECT_EQ(result.json()[2].dump(),
              R"({"op":"write","recordNumber":6,"error":{"message":"invalid record number",)"
              R"("operation":"PKCS15Container::checkObjectType","code":0}})");
    EXPECT_EQ(card.list()["publicKeys"].size(), 1 + std::size(links));
    EXPECT_THAT(run({"--card", card.path(), "apply", "-"}, {.in = Json::array({key}).dump()}).out,
                HasSubstr("publicKey  record 8, but failed: invalid record number"));
}

TEST(Apply, KeepsAContainerWhoseLinkFails) {
    const NewCard card;
    ASSERT_EQ(card.apply({writePrivateKey("01"), writePublicKey("01")}).exit, 0);
    Json list = Json::array();
    for (const char* field : {"exchangeKeyRecord", "signatureKeyRecord",
                              "exchangeCertificateRecord", "signatureCertificateRecord"}) {
        list.push_back({{"op", "write"}, {"kind", "container"}, {"info", {{field, 2}}}});
    }
    const std::size_t links = list.size();
    for (unsigned i = 0; i < links; ++i) list.push_back(erase(4 + i));
    const Json results = card.apply(list, {"--keep-going"}).json();
    for (unsigned i = 0; i < links; ++i) {
        EXPECT_EQ(results[i]["error"]["message"], "invalid object type");
        EXPECT_EQ(results[i]["recordNumber"], 4 + i) << "behind the container of the key";
        EXPECT_FALSE(results[links + i].contains("error"));
    }
}

TEST(Apply, LeavesWhatTokenInfoDoesNotName) {
    const NewCard card({"--serial", "0102", "--manufacturer", "M"});
    const auto apply = [&](const Json& set) {
        const Result result = card.apply(Json::array({{{"op", "updateTokenInfo"}, {"set", set}}}));
        EXPECT_EQ(result.exit, 0) << result.err;
        return card.list()["tokenInfo"];
    };
    const Json algorithm = {
        {"algorithm", 5}, {"algId", "010203"}, {"supportedOperations", {"hash"}}};
    Json expected = card.list()["tokenInfo"];
    expected["supportedAlgorithms"] = Json::array({algorithm});
    EXPECT_EQ(apply({{"supportedAlgorithms", {algorithm}}}), expected);
    expected["serialNumber"] = "0A";
    expected["readonly"] = expected["loginRequired"] = true;
    expected["prnGeneration"] = expected["eidCompliant"] = true;
    EXPECT_EQ(apply({{"serialNumber", "0A"},
                     {"readonly", true},
                     {"loginRequired", true},
                     {"prnGeneration", true},
                     {"eidCompliant", true}}),
              expected);
    EXPECT_THAT(card.run({"dump", "TokenInfo"}).out, Not(HasSubstr("\"label\"")))
        << "the model's label for a token without one is not written";
    expected["label"] = "L";
    expected["labelHex"] = "4C";
    expected["manufacturerID"] = "";
    EXPECT_EQ(apply({{"labelHex", "4C"}, {"manufacturerID", ""}}), expected);
}

TEST(Apply, LeavesTheAlgorithmsOfACardForAnEmptyList) {
    const NewCard card;
    const Json none = {{"op", "updateTokenInfo"},
                       {"set", {{"label", "T"}, {"supportedAlgorithms", Json::array()}}}};
    const Json one = {{"op", "updateTokenInfo"},
                      {"set", {{"supportedAlgorithms", {{{"algorithm", 1}, {"algId", "0102"}}}}}}};
    EXPECT_EQ(card.apply({none, one, none}).exit, 0);
    const Json tokenInfo = card.list()["tokenInfo"];
    EXPECT_EQ(tokenInfo["label"], "T");
    ASSERT_EQ(tokenInfo["supportedAlgorithms"].size(), 1u);
    EXPECT_EQ(tokenInfo["supportedAlgorithms"][0]["algId"], "0102");
}

// ---- failures ----

TEST(Apply, EndsWithTheOperationThatFailed) {
    const NewCard card;
    const Result result = card.apply({writeData("A"), erase(7), writeData("B")});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json().dump(),
              R"([{"op":"write","recordNumber":1},{"op":"delete","recordNumber":7,"error":)"
              R"({"message":"invalid record number",)"
              R"("operation":"PKCS15Container::deleteObjectInfo","code":0}}])");
    EXPECT_EQ(result.err,
              "tovi: operations[1]: invalid record number "
              "(PKCS15Container::deleteObjectInfo, code 0)\n");
    EXPECT_THAT(labelsOf(card.list()["dataObjects"]), ElementsAre("A"));
}

TEST(Apply, GoesOnBehindAFailureWhenAskedTo) {
    const NewCard card;
    const Result result = card.apply(
        {erase(0), writeData("A"), update(9, {{"label", "x"}}), writeData("B")}, {"--keep-going"});
    EXPECT_EQ(result.exit, 1);
    const Json list = result.json();
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[0]["error"]["message"], "object is the TokenInfo");
    EXPECT_EQ(list[1]["recordNumber"], 1);
    EXPECT_EQ(list[2]["recordNumber"], 9);
    EXPECT_EQ(list[2]["error"]["message"], "invalid record number");
    EXPECT_EQ(list[3]["recordNumber"], 2);
    EXPECT_THAT(labelsOf(card.list()["dataObjects"]), ElementsAre("A", "B"));
}

struct ContainersError {
    const char* name;
    Json operation;
    const char* message;
    const char* where;
};
void PrintTo(const ContainersError& error, std::ostream* out) { *out << error.name; }

class ApplyErrors : public testing::TestWithParam<ContainersError> {};

TEST_P(ApplyErrors, AreTheContainersOwn) {
    const NewCard card;
    const Result result = card.apply(Json::array({GetParam().operation}));
    EXPECT_EQ(result.exit, 1);
    const Json list = result.json();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]["op"], GetParam().operation["op"]);
    EXPECT_EQ(list[0]["error"]["message"], GetParam().message);
    EXPECT_EQ(list[0]["error"]["operation"], GetParam().where);
}

Json writeOf(const char* kind, const Json& info) {
    return {{"op", "write"}, {"kind", kind}, {"info", info}};
}

Json algorithm(const Json& row) {
    return {{"op", "updateTokenInfo"}, {"set", {{"supportedAlgorithms", {row}}}}};
}

INSTANTIATE_TEST_SUITE_P(
    All, ApplyErrors,
    testing::Values(
        ContainersError{"noRecord", update(40, {{"label", "x"}}), "invalid record number",
                        "PKCS15Container::checkObjectType"},
        ContainersError{"tokenInfo", update(0, {{"label", "x"}}), "invalid object type",
                        "PKCS15Container::updateInfo"},
        ContainersError{"deleteNoRecord", erase(40), "invalid record number",
                        "PKCS15Container::deleteObjectInfo"},
        ContainersError{"updateNoReference",
                        {{"op", "update"}, {"auth", 3}, {"set", {{"label", "x"}}}},
                        "invalid object reference",
                        "PKCS15Container::updateAuthInfo"},
        ContainersError{"deleteNoReference",
                        {{"op", "delete"}, {"auth", 3}},
                        "invalid object reference",
                        "PKCS15Container::deleteAuthInfo"},
        ContainersError{"keyWithoutType", writeOf("privateKey", {{"id", "01"}}), "invalid key type",
                        "PKCS15KeyCT::encodeKeyInfoBase"},
        ContainersError{"keyWithoutLength", writeOf("privateKey", {{"keyType", "RSA"}}),
                        "modulusLength not initialized", "PKCS15KeyCT::encodeRSAKeyInfo"},
        ContainersError{"secretKey",
                        writeOf("secretKey", {{"algorithmName", "AES"}, {"keyLength", 16}}),
                        "invalid key type", "PKCS15SecKeyCT::encodeBlockCipherKeyInfoBase"},
        ContainersError{"certificateType", writeOf("certificate", {{"certificateType", 1}}),
                        "invalid certificate type", "PKCS15CertCT::encodeCertInfoBase"},
        ContainersError{"longLabel", writeData(std::string(256, 'x')), "ASN1 encoding error",
                        "PKCS15DataCT::encodeDataInfoBase"},
        ContainersError{"longId", writePrivateKey(std::string(512, '0')), "ASN1 encoding error",
                        "PKCS15KeyCT::encodeKeyInfoBase"},
        ContainersError{"userConsent", writeData("A", {{"userConsent", 32768}}),
                        "ASN1 encoding error", "PKCS15DataCT::encodeDataInfoBase"},
        ContainersError{"hugeRecord", erase(70000), "invalid record number",
                        "PKCS15Container::deleteObjectInfo"},
        ContainersError{"updateHugeRecord", update(70000, {{"label", "x"}}),
                        "invalid record number", "PKCS15Container::checkObjectType"},
        ContainersError{"noIdentifier", algorithm({{"algorithm", 1}}), "encoding error",
                        "PKCS15Container::encodeTokenInfo"},
        ContainersError{"emptyIdentifier", algorithm({{"algId", ""}}), "encoding error",
                        "PKCS15Container::encodeTokenInfo"},
        ContainersError{"oneArc", algorithm({{"algId", "01"}}), "encoding error",
                        "PKCS15Container::encodeTokenInfo"},
        ContainersError{"impossibleArc", algorithm({{"algId", "0128"}}), "encoding error",
                        "PKCS15Container::encodeTokenInfo"},
        ContainersError{"incompletePin", writeOf("authObject", {{"type", "pin"}}),
                        "ASN1 encoding error", "PKCS15AuthCT::encodeAuthInfoBase"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Apply, LeavesAKeyThatCannotBeOfTheWantedType) {
    const NewCard card;
    ASSERT_EQ(card.apply(Json::array({writePrivateKey("01")})).exit, 0);
    const Json before = card.list();
    const Result result = card.apply(Json::array({update(1, {{"keyType", "EC"}})}));
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()[0].dump(),
              R"({"op":"update","recordNumber":1,"error":{"message":"ASN1 encoding error",)"
              R"("operation":"PKCS15KeyCT::encodeKeyInfoBase","code":0}})");
    EXPECT_EQ(card.list(), before);
}

TEST(Apply, ReportsAFullFileByTheContainersCode) {
    const NewCard card({"--file-size", "100"});
    const Json list = card.apply({writeData("A"), writeData(std::string(90, 'x'))}).json();
    EXPECT_EQ(list[1]["error"]["message"], "not enough memory");
    EXPECT_EQ(list[1]["error"]["code"], 0x16A84);
    EXPECT_THAT(labelsOf(card.list()["dataObjects"]), ElementsAre("A"));
}

TEST(Apply, FailsAsAWholeWhenTheApplicationCannotBeRead) {
    const TemporaryFolder folder;
    writeFile(folder / "list.json", "[]");
    const Result result =
        run({"--json", "--card", sampleCard("no-token-info"), "apply", folder / "list.json"});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.json()["error"]["message"], "invalid TokenInfo");
    EXPECT_EQ(run({"--card", sampleCard("plain"), "apply", folder / "none.json"}).exit, 1);
}

TEST(Apply, ReportsAWriteThatTheFolderDoesNotTake) {
    const NewCard card;
    std::filesystem::remove(card.path() + "/3F00/5015/4408");
    std::filesystem::create_directory(card.path() + "/3F00/5015/4408");
    EXPECT_EQ(card.apply(Json::array({writeData("A")})).exit, 1);
}

// ---- wrong usage ----

TEST(Apply, ChecksTheWholeListBeforeItTouchesTheCard) {
    const NewCard card;
    const Result result = card.apply({writeData("A"), {{"op", "write"}}});
    EXPECT_EQ(result.exit, 2);
    EXPECT_TRUE(result.json().contains("error"));
    EXPECT_THAT(result.err, HasSubstr("standard input: operations[1]: expected 'kind'"));
    EXPECT_EQ(card.list()["dataObjects"], Json::array());
    EXPECT_EQ(run({"--card", "/nowhere", "apply", "-"}, {.in = "[1]"}).exit, 2)
        << "not even asked for";
}

TEST(Apply, ChecksFieldsAgainstTheObjectsThatThereAreAndWillBe) {
    const NewCard card;
    ASSERT_EQ(card.apply({writeData("A"), writePin("05", 1)}).exit, 0);
    const Result wrongKind = card.apply({writeData("B"), update(1, {{"keyLength", 8}})});
    EXPECT_EQ(wrongKind.exit, 2);
    EXPECT_THAT(wrongKind.err, HasSubstr("operations[1].set.keyLength: no such field"));
    const Json cha = {{"op", "update"}, {"auth", 1}, {"set", {{"cha", "01"}}}};
    const Result wrongType = card.apply({writeData("B"), cha});
    EXPECT_EQ(wrongType.exit, 2);
    EXPECT_THAT(wrongType.err, HasSubstr("operations[1].set.cha: no such field"));
    const Result ofTheList =
        card.apply({erase(1), writePrivateKey("01"), update(1, {{"applicationName", "x"}})});
    EXPECT_EQ(ofTheList.exit, 2) << "the key takes the number of the data object";
    EXPECT_THAT(labelsOf(card.list()["dataObjects"]), ElementsAre("A")) << "nothing was done";
}

TEST(Apply, ChecksFieldsInTimeWhereTheObjectIsNotKnownAhead) {
    const NewCard card;
    const Result result =
        card.apply({writeData("A"), {{"op", "clearAndRead"}}, update(1, {{"keyLength", 8}})});
    EXPECT_EQ(result.exit, 1);
    const Json error = result.json()[2]["error"];
    EXPECT_EQ(error["message"], "operations[2].set.keyLength: no such field");
    EXPECT_EQ(error["operation"], "tovi apply");
    EXPECT_EQ(result.err, "tovi: operations[2].set.keyLength: no such field (tovi apply, code 0)\n")
        << "the place is told once";
}

// ---- for people ----

TEST(ApplyText, ShowsWhatCameOfEachOperation) {
    const NewCard card;
    const Json list = {writeData("A"), writePin("05", 1), update(1, {{"label", "B"}}), erase(5)};
    const Result result = run({"--card", card.path(), "apply", "-"}, {.in = list.dump()});
    EXPECT_EQ(result.exit, 1);
    EXPECT_EQ(result.out,
              "operation  object      result\n"
              "write      dataObject  record 1\n"
              "write      authObject  entry 0\n"
              "update     record 1    done\n"
              "delete     record 5    failed: invalid record number\n");
    EXPECT_EQ(run({"--card", card.path(), "--quiet", "apply", "-"}, {.in = "[]"}).out, "");
}

TEST(Apply, ShowsProgressOfLongListsOnATerminal) {
    const NewCard card;
    Json list = Json::array();
    for (int i = 0; i < 9; ++i) list.push_back({{"op", "clearAndRead"}});
    const auto errors = [&](const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"--card", card.path(), "apply", "-"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments, {.in = list.dump(), .showsProgress = true}).err;
    };
    EXPECT_THAT(errors({}), IsEmpty()) << "a short list";
    list.push_back({{"op", "clearAndRead"}});
    EXPECT_THAT(errors({}), StartsWith("\r[....................................."));
    EXPECT_THAT(errors({}), HasSubstr(" 9/10"));
    EXPECT_THAT(errors({}), HasSubstr("[########################################] 10/10\r   "))
        << "complete before it goes";
    EXPECT_THAT(errors({"--quiet"}), IsEmpty());
    EXPECT_THAT(errors({"--trace"}), Not(HasSubstr("9/10")));
    EXPECT_THAT(card.apply(list).err, IsEmpty()) << "no terminal";
}

TEST(Apply, TakesTheProgressAwayBeforeItTellsOfAnError) {
    const NewCard card;
    Json list = Json::array();
    for (int i = 0; i < 10; ++i) list.push_back({{"op", "clearAndRead"}});
    list[4] = erase(7);
    const std::string err = run({"--card", card.path(), "apply", "--keep-going", "-"},
                                {.in = list.dump(), .showsProgress = true})
                                .err;
    const std::string cleared = "\r" + std::string(47, ' ') + "\r";  // "[", 40 columns, "] 4/10"
    EXPECT_THAT(err, HasSubstr(" 4/10" + cleared +
                               "tovi: operations[4]: invalid record number "
                               "(PKCS15Container::deleteObjectInfo, code 0)\n"
                               "\r[####################....................] 5/10"));
    EXPECT_THAT(err, HasSubstr(" 10/10\r"));
    const std::string stopped =
        run({"--card", card.path(), "apply", "-"}, {.in = list.dump(), .showsProgress = true}).err;
    EXPECT_THAT(stopped, testing::EndsWith("code 0)\n"));
}

TEST(Apply, DoesNothingWhenInterruptedBefore) {
    const NewCard card;
    const std::atomic<bool> interrupted = true;
    const Result result = card.run(
        {"apply", "-"}, {.in = Json::array({writeData("A")}).dump(), .interrupted = &interrupted});
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(card.list()["dataObjects"], Json::array());
}

/// The user, who wants to stop when the first UPDATE BINARY appears in the trace.
class HastyUser final : public std::streambuf {
public:
    std::atomic<bool> interrupted = false;
    std::string seen;

protected:
    int overflow(int character) override {
        seen += static_cast<char>(character);
        if (seen.find("> 00D6") != std::string::npos) interrupted = true;
        return traits_type::not_eof(character);
    }
};

/// `apply` of a list that this user interrupts.
Result interruptedApply(const NewCard& card, HastyUser& user, const Json& list,
                        std::vector<std::string> arguments) {
    std::istringstream in(list.dump());
    std::ostringstream out;
    std::ostream err(&user);
    Console console{in, out, err, false, card.path(), &user.interrupted};
    arguments.insert(arguments.end(), {"--trace", "apply", "-"});
    const int exit = runCommandLine(arguments, console);
    return {exit, out.str(), user.seen};
}

TEST(Apply, FinishesTheOperationInWhichItIsInterrupted) {
    const NewCard card;
    HastyUser user;
    const Result result =
        interruptedApply(card, user, {writeData("A"), writeData("B")}, {"--json"});
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(result.json().dump(), R"([{"op":"write","recordNumber":1}])")
        << "a whole document of what was done";
    EXPECT_THAT(result.err, HasSubstr("1 of 2 operations were performed"));
    EXPECT_THAT(labelsOf(card.list()["dataObjects"]), ElementsAre("A"));
}

TEST(Apply, TellsPeopleWhatItDidBeforeItWasInterrupted) {
    const NewCard card;
    HastyUser user;
    const Result result = interruptedApply(card, user, {writeData("A"), writeData("B")}, {});
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(result.out,
              "operation  object      result\n"
              "write      dataObject  record 1\n");
}

TEST(Apply, IsDoneWhenTheInterruptComesInTheLastOperation) {
    const NewCard card;
    HastyUser user;
    const Result result = interruptedApply(card, user, Json::array({writeData("A")}), {"--json"});
    EXPECT_EQ(result.exit, 0);
    EXPECT_TRUE(user.interrupted);
    EXPECT_EQ(result.json().size(), 1u);
}

}  // namespace
}  // namespace tovi::test
