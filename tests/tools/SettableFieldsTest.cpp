// Whatever `list` shows and an object may be given is taken, also where the record says less.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;
using testing::Not;

struct Taken {
    const char* name;
    Json first;      ///< an operation, or null
    Json operation;  ///< the one that is taken
};
void PrintTo(const Taken& taken, std::ostream* out) { *out << taken.name; }

class SettableFields : public testing::TestWithParam<Taken> {};

TEST_P(SettableFields, AreTaken) {
    const NewCard card;
    Json list = Json::array();
    if (!GetParam().first.is_null()) list.push_back(GetParam().first);
    list.push_back(GetParam().operation);
    const Result result = card.apply(list);
    EXPECT_EQ(result.exit, 0) << result.err << result.out;
    EXPECT_EQ(card.run({"list"}).exit, 0);
}

Json write(const char* kind, const Json& info) {
    return {{"op", "write"}, {"kind", kind}, {"info", info}};
}
Json data(const Json& info) { return write("dataObject", info); }
Json certificate(const Json& info) { return write("certificate", info); }
Json auth(const char* type, const Json& more) {
    Json info = {{"type", type}, {"authObjectId", "01"}};
    info.update(more);
    return write("authObject", info);
}
Json set(const Json& fields) { return {{"op", "update"}, {"recordNumber", 1}, {"set", fields}}; }
Json setPin(const Json& fields) { return {{"op", "update"}, {"auth", 1}, {"set", fields}}; }
Json ecKey(const Json& more = Json::object()) {
    Json info = {{"id", "01"}, {"keyType", "EC"}};
    info.update(more);
    return write("privateKey", info);
}
const Json des = {{"id", "01"}, {"algorithmName", "DES"}, {"keyLength", 8}};

INSTANTIATE_TEST_SUITE_P(
    All, SettableFields,
    testing::Values(
        Taken{"referenceOfData", {}, data({{"reference", 1}})},
        Taken{"referenceOfCertificate", {}, certificate({{"reference", 0}})},
        Taken{"setReference", writeData("A"), set({{"reference", 1}})},
        Taken{"referenceOfExternal", {}, auth("external", {{"reference", 1}, {"cha", "01"}})},
        Taken{"usageOfData", {}, data({{"attributes", {{"CKA_SIGN", true}}}})},
        Taken{"otherAttribute", {}, writePrivateKey("01", {{"attributes", {{"CKA_0x102", "01"}}}})},
        Taken{"flagsThatDiffer",
              {},
              data({{"attributes", {{"CKA_PRIVATE", true}}}, {"isPrivate", false}})},
        Taken{"noFlags", {}, certificate({{"isModifiable", false}})},
        Taken{"noFlagsOfAuth", {}, auth("external", {{"isModifiable", false}, {"cha", "01"}})},
        Taken{"setNoFlags", writeData("A"), set({{"isModifiable", false}})},
        Taken{"setPublic", writeData("A", {{"isPrivate", true}, {"isModifiable", false}}),
              set({{"isPrivate", false}})},
        Taken{"lengthOfEC", {}, ecKey({{"modulusLength", 256}})},
        Taken{"setTypeOfTheSameShape", ecKey(), set({{"keyType", "DSA"}})},
        Taken{"setNative", writePrivateKey("01"), set({{"native", true}})},
        Taken{"setAlgorithm", write("secretKey", des),
              set({{"algorithmName", "TripleDES"}, {"keyLength", 24}})},
        Taken{"usageBits", {}, certificate({{"trustedUsage", 512}})},
        Taken{"setNoUsage", certificate({{"trustedUsage", 256}}), set({{"trustedUsage", nullptr}})},
        Taken{"pathOfAuthKey",
              {},
              auth("authKey", {{"path", {{"path", "4401"}}}, {"authKeyId", "01"}})},
        Taken{"indexWithoutPath", {}, writePin("01", 1, {{"path", {{"path", ""}, {"index", 1}}}})},
        Taken{"setNoPinFlags", writePin("01", 1), setPin({{"pinFlags", nullptr}})},
        Taken{"nothing",
              {},
              data({{"label", nullptr},
                    {"applicationName", nullptr},
                    {"authId", nullptr},
                    {"path", nullptr},
                    {"userConsent", nullptr},
                    {"reference", nullptr}})}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SettableFields, LeaveTheFlagsOutThatAreAllFalse) {
    const NewCard card;
    const auto dump = [&] { return card.run({"dump", "DODF"}).out; };
    ASSERT_EQ(card.apply(Json::array({writeData("A")})).exit, 0);
    EXPECT_THAT(dump(), HasSubstr("\"flags\""));
    ASSERT_EQ(card.apply(Json::array({set({{"isModifiable", false}})})).exit, 0);
    EXPECT_THAT(dump(), Not(HasSubstr("\"flags\"")));
}

TEST(SettableFields, TakeTheFlagsFromTheirFieldsWhereAttributesSayOtherwise) {
    const NewCard card;
    ASSERT_EQ(card.apply(Json::array({writeData("A")})).exit, 0);
    Json object = card.list()["dataObjects"][0];
    const Json fields = {{"attributes", object["attributes"]}, {"isPrivate", true}};
    ASSERT_EQ(card.apply(Json::array({set(fields)})).exit, 0);
    EXPECT_EQ(card.list()["dataObjects"][0]["isPrivate"], true);
}

TEST(SettableFields, TakeFlagsThatAttributesAloneName) {
    const NewCard card;
    const Json list = {data({{"attributes", {{"CKA_PRIVATE", true}, {"CKA_MODIFIABLE", false}}}}),
                       set({{"attributes", {{"CKA_MODIFIABLE", true}}}})};
    ASSERT_EQ(card.apply(Json::array({list[0]})).exit, 0);
    EXPECT_EQ(card.list()["dataObjects"][0]["isPrivate"], true);
    EXPECT_EQ(card.list()["dataObjects"][0]["isModifiable"], false);
    ASSERT_EQ(card.apply(Json::array({list[1]})).exit, 0);
    EXPECT_EQ(card.list()["dataObjects"][0]["isModifiable"], true);
}

TEST(SettableFields, KeepLogonWhenTheUsageIsNone) {
    const NewCard card;
    ASSERT_EQ(
        card.apply({certificate({{"trustedUsage", 256}}), set({{"trustedUsage", nullptr}})}).exit,
        0);
    EXPECT_EQ(card.list()["certificates"][0]["trustedUsage"], 267);
    ASSERT_EQ(card.apply(Json::array({set({{"trustedUsage", 0}})})).exit, 0);
    EXPECT_EQ(card.list()["certificates"][0]["trustedUsage"], nullptr);
}

TEST(SettableFields, TakeAwayWhatIsNull) {
    const NewCard card;
    const Json place = {{"path", "4B01"}, {"index", 1}, {"length", 2}};
    ASSERT_EQ(card.apply({writeData("A", {{"authId", "01"}, {"userConsent", 1}, {"path", place}}),
                          set({{"authId", nullptr},
                               {"userConsent", nullptr},
                               {"applicationName", nullptr},
                               {"path", nullptr}})})
                  .exit,
              0);
    const Json object = card.list()["dataObjects"][0];
    EXPECT_EQ(object["authId"], "");
    EXPECT_EQ(object["userConsent"], nullptr);
    EXPECT_EQ(object["applicationName"], "");
    EXPECT_EQ(object["path"]["path"], "");
    EXPECT_EQ(object["path"]["length"], 0);
}

TEST(SettableFields, GiveAnObjectWithoutReferenceOneUntilTheNextRead) {
    const NewCard card;
    const Json object = auth("external", {{"reference", 3}, {"cha", "01"}});
    const Json label = {{"op", "update"}, {"auth", 3}, {"set", {{"label", "E"}}}};
    EXPECT_EQ(card.apply({object, label}).exit, 0);
    EXPECT_EQ(card.list()["authObjects"][0]["label"], "E");
    EXPECT_EQ(card.list()["authObjects"][0]["reference"], nullptr);
}

/// The fields of an object of `list` that an object may be given.
Json settable(Json object) {
    for (const char* derived : {"recordNumber", "objectType", "label", "keyInfoReference",
                                "publicKey", "container", "fid", "sharesFile", "isDecoded"}) {
        object.erase(derived);
    }
    return object;
}

TEST(SettableFields, AreThoseThatListShows) {
    const NewCard card;
    ASSERT_EQ(
        card.apply({writePrivateKey("01", {{"isPrivate", true}, {"isModifiable", false}}),
                    writePublicKey("01"), write("secretKey", des),
                    certificate({{"id", "01"}, {"trustedUsage", 256}}), certificate({{"id", "02"}}),
                    writeData("D"), writePin("05", 1), auth("external", {{"cha", "01"}})})
            .exit,
        0);
    const Json before = card.list();
    const NewCard copy;
    Json list = Json::array();
    const std::pair<const char*, const char*> kinds[] = {
        {"privateKeys", "privateKey"}, {"publicKeys", "publicKey"},
        {"secretKeys", "secretKey"},   {"certificates", "certificate"},
        {"dataObjects", "dataObject"}, {"authObjects", "authObject"}};
    for (const auto& [key, kind] : kinds) {
        for (const Json& object : before[key]) list.push_back(write(kind, settable(object)));
    }
    const Result result = copy.apply(list);
    EXPECT_EQ(result.exit, 0) << result.err;
    const Json after = copy.list();
    for (const auto& [key, kind] : kinds) EXPECT_EQ(after[key].dump(), before[key].dump()) << kind;
}

}  // namespace
}  // namespace tovi::test
