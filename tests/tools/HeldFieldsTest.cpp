// What the record of an object would not keep is refused before anything is written.

#include "tools/HeldFields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"

namespace tovi::test {
namespace {

using testing::HasSubstr;

struct Lost {
    const char* name;
    Json first;      ///< an operation, or null
    Json operation;  ///< the one that is refused
    const char* message;
};
void PrintTo(const Lost& lost, std::ostream* out) { *out << lost.name; }

class LostValues : public testing::TestWithParam<Lost> {};

TEST_P(LostValues, AreRefusedByPositionAndField) {
    const NewCard card;
    const bool hasFirst = !GetParam().first.is_null();
    Json list = Json::array();
    if (hasFirst) list.push_back(GetParam().first);
    list.push_back(GetParam().operation);
    const Result result = card.apply(list);
    EXPECT_EQ(result.exit, 2) << result.out;
    EXPECT_THAT(result.err, HasSubstr(std::string("operations[") + (hasFirst ? "1" : "0") + "]" +
                                      GetParam().message));
    EXPECT_EQ(card.list()["fat"].size(), 1u) << "nothing was written";
    if (!hasFirst) return;
    // The same holds for what is on the card already.
    ASSERT_EQ(card.apply(Json::array({GetParam().first})).exit, 0);
    EXPECT_EQ(card.apply(Json::array({GetParam().operation})).exit, 2);
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
const Json des = {{"id", "01"}, {"algorithmName", "DES"}, {"keyLength", 8}};

INSTANTIATE_TEST_SUITE_P(
    All, LostValues,
    testing::Values(
        Lost{"referenceOfData", {}, data({{"reference", 1}}), ".info.reference: no record"},
        Lost{"referenceOfCertificate", {}, certificate({{"reference", 0}}), ".info.reference: no"},
        Lost{"setReference", writeData("A"), set({{"reference", 1}}), ".set.reference: no record"},
        Lost{"usageOfData",
             {},
             data({{"attributes", {{"CKA_SIGN", true}}}}),
             ".info.attributes.CKA_SIGN: no record"},
        Lost{"otherAttribute",
             {},
             writePrivateKey("01", {{"attributes", {{"CKA_0x102", "01"}}}}),
             ".info.attributes.CKA_0x102: no record"},
        Lost{"attributeNoBoolean",
             {},
             writePrivateKey("01", {{"attributes", {{"CKA_SIGN", "0100"}}}}),
             ".info.attributes.CKA_SIGN: expected true or false"},
        Lost{"contradiction",
             {},
             data({{"attributes", {{"CKA_PRIVATE", true}}}, {"isPrivate", false}}),
             ".info.attributes.CKA_PRIVATE: isPrivate says otherwise"},
        Lost{"flags", {}, certificate({{"isModifiable", false}}), ".info.isModifiable: an object"},
        Lost{"flagsOfAuth",
             {},
             auth("external", {{"isModifiable", false}, {"cha", "01"}}),
             ".info.isModifiable: an object"},
        Lost{"flagAttribute",
             {},
             data({{"attributes", {{"CKA_MODIFIABLE", false}}}}),
             ".info.attributes: an object"},
        Lost{"setFlags", writeData("A"), set({{"isModifiable", false}}), ".set.isModifiable: an"},
        Lost{"setPublic", writeData("A", {{"isPrivate", true}, {"isModifiable", false}}),
             set({{"isPrivate", false}}), ".set.isPrivate: an object"},
        Lost{"lengthOfEC",
             {},
             writePrivateKey("01", {{"keyType", "EC"}}),
             ".info.modulusLength: only records of RSA keys"},
        Lost{"setKeyType", writePrivateKey("01"), set({{"keyType", "EC"}}), ".set.keyType: a rec"},
        Lost{"setNative", writePrivateKey("01"), set({{"native", true}}), ".set.native: an update"},
        Lost{"setAlgorithm", write("secretKey", des),
             set({{"algorithmName", "TripleDES"}, {"keyLength", 24}}), ".set.algorithmName: a"},
        Lost{"usageBits", {}, certificate({{"trustedUsage", 512}}), ".info.trustedUsage: no rec"},
        Lost{"setNoUsage", certificate({{"trustedUsage", 256}}), set({{"trustedUsage", nullptr}}),
             ".set.trustedUsage: null leaves"},
        Lost{"referenceOfExternal",
             {},
             auth("external", {{"reference", 1}, {"cha", "01"}}),
             ".info.reference: no record"},
        Lost{"pathOfAuthKey",
             {},
             auth("authKey", {{"path", {{"path", "4401"}}}}),
             ".info.path: no record"},
        Lost{"indexWithoutPath",
             {},
             writePin("01", 1, {{"path", {{"path", ""}, {"index", 1}}}}),
             ".info.path: no record"},
        Lost{"setNoFlags", writePin("01", 1), setPin({{"pinFlags", nullptr}}),
             ".set.pinFlags: expected a value"},
        Lost{"setNoLength", writePin("01", 1), setPin({{"minLength", nullptr}}),
             ".set.minLength: expected a value"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(HeldFields, TakesFlagsThatTheirAttributesName) {
    const NewCard card;
    const Json list = {data({{"attributes", {{"CKA_PRIVATE", true}, {"CKA_MODIFIABLE", false}}}}),
                       set({{"attributes", {{"CKA_MODIFIABLE", true}}}})};
    ASSERT_EQ(card.apply(Json::array({list[0]})).exit, 0);
    EXPECT_EQ(card.list()["dataObjects"][0]["isPrivate"], true);
    EXPECT_EQ(card.list()["dataObjects"][0]["isModifiable"], false);
    ASSERT_EQ(card.apply(Json::array({list[1]})).exit, 0);
    EXPECT_EQ(card.list()["dataObjects"][0]["isModifiable"], true);
}

/// The fields of an object of `list` that an object may be given.
Json settable(Json object) {
    for (const char* derived : {"recordNumber", "objectType", "label", "keyInfoReference",
                                "publicKey", "container", "fid", "sharesFile", "isDecoded"}) {
        object.erase(derived);
    }
    return object;
}

TEST(HeldFields, TakesWhatListShowsOfObjectsThatWereWritten) {
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
