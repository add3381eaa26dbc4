#include "tools/Operation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NewCard.h"
#include "tools/Failure.h"

namespace tovi::test {
namespace {

using testing::StartsWith;

struct Refusal {
    const char* name;
    Json operation;
    const char* message;
};
void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }

class OperationRefusals : public testing::TestWithParam<Refusal> {};

TEST_P(OperationRefusals, NamePositionAndField) {
    const Json list = {{{"op", "clearAndRead"}}, GetParam().operation};
    try {
        operationsFromJson(list);
        FAIL() << "accepted";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), StartsWith(std::string("operations[1]") + GetParam().message));
    }
}

Json write(const char* kind, const Json& info) {
    return {{"op", "write"}, {"kind", kind}, {"info", info}};
}
Json key(const Json& fields) { return write("privateKey", fields); }
Json pin(Json fields) {
    fields["type"] = "pin";
    return write("authObject", fields);
}
Json set(const Json& fields) { return {{"op", "update"}, {"recordNumber", 1}, {"set", fields}}; }
Json setAuth(const Json& fields) { return {{"op", "update"}, {"auth", 1}, {"set", fields}}; }
Json token(const Json& fields) { return {{"op", "updateTokenInfo"}, {"set", fields}}; }

INSTANTIATE_TEST_SUITE_P(
    Forms, OperationRefusals,
    testing::Values(
        Refusal{"noObject", 7, ": expected an object"},
        Refusal{"noOp", {{"kind", "privateKey"}}, ": expected 'op'"},
        Refusal{"numberAsOp", {{"op", 1}}, ".op: expected a text"},
        Refusal{"unknownOp", {{"op", "erase"}}, ".op: expected write, update, delete"},
        Refusal{"noKind", {{"op", "write"}, {"info", Json::object()}}, ": expected 'kind'"},
        Refusal{"unknownKind", write("key", {}), ".kind: expected a kind of object"},
        Refusal{"noInfo", {{"op", "write"}, {"kind", "certificate"}}, ": expected 'info'"},
        Refusal{"infoNoObject", write("certificate", "x"), ".info: expected an object"},
        Refusal{"unknownMember",
                {{"op", "write"},
                 {"kind", "certificate"},
                 {"info", Json::object()},
                 {"set", Json::object()}},
                ": expected no member 'set'"},
        Refusal{
            "privateKeyOfPrivateKey",
            {{"op", "write"}, {"kind", "privateKey"}, {"info", Json::object()}, {"privateKey", 1}},
            ": expected no member 'privateKey'"},
        Refusal{
            "privateKeyText",
            {{"op", "write"}, {"kind", "publicKey"}, {"info", Json::object()}, {"privateKey", "1"}},
            ".privateKey: expected a number"},
        Refusal{"privateKeyHuge",
                {{"op", "write"},
                 {"kind", "publicKey"},
                 {"info", Json::object()},
                 {"privateKey", 0xFFFFFFFF}},
                ".privateKey: expected a number from 0 to 4294967294"},
        Refusal{
            "noRecord", {{"op", "update"}, {"set", Json::object()}}, ": expected 'recordNumber'"},
        Refusal{"noSet", {{"op", "update"}, {"recordNumber", 1}}, ": expected 'set'"},
        Refusal{"negativeRecord",
                {{"op", "delete"}, {"recordNumber", -1}},
                ".recordNumber: expected a number from 0 to 4294967294"},
        Refusal{"hugeRecord",
                {{"op", "delete"}, {"recordNumber", 0xFFFFFFFF}},
                ".recordNumber: expected a number from 0 to 4294967294"},
        Refusal{"halfRecord", {{"op", "delete"}, {"recordNumber", 1.5}}, ".recordNumber"},
        Refusal{"hugeReference",
                {{"op", "delete"}, {"auth", 65535}},
                ".auth: expected a number from 0 to 65534"},
        Refusal{
            "referenceText", {{"op", "delete"}, {"auth", "1"}}, ".auth: expected a reference, or"},
        Refusal{
            "emptyIdentifier", {{"op", "delete"}, {"auth", "id="}}, ".auth: expected a reference"},
        Refusal{
            "oddIdentifier", {{"op", "delete"}, {"auth", "id=0"}}, ".auth: expected a reference"},
        Refusal{"recordAndReference",
                {{"op", "delete"}, {"auth", 1}, {"recordNumber", 1}},
                ": expected no member 'recordNumber'"},
        Refusal{"readWithMore",
                {{"op", "clearAndRead"}, {"set", Json::object()}},
                ": expected no member"},
        Refusal{"tokenInfoWithRecord",
                {{"op", "updateTokenInfo"}, {"recordNumber", 0}, {"set", Json::object()}},
                ": expected no member 'recordNumber'"}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Fields, OperationRefusals,
    testing::Values(
        Refusal{"unknown", key({{"colour", 1}}), ".info.colour: no such field"},
        Refusal{"derived", key({{"fid", "4B01"}}), ".info.fid: no such field"},
        Refusal{"ofAnotherKind", key({{"keyLength", 8}}), ".info.keyLength: no such field"},
        Refusal{"twoLabels", key({{"label", "a"}, {"labelHex", "61"}}),
                ".info.labelHex: label and"},
        Refusal{"labelNumber", key({{"label", 1}}), ".info.label: expected a text"},
        Refusal{"oddHex", key({{"id", "012"}}), ".info.id: expected octets in hexadecimal"},
        Refusal{"noHex", key({{"authId", "0x01"}}), ".info.authId: expected octets"},
        Refusal{"keyType", key({{"keyType", "AES"}}), ".info.keyType: expected RSA, DSA, DH or EC"},
        Refusal{"keyTypeNumber", key({{"keyType", 0}}), ".info.keyType: expected a text"},
        Refusal{"modulusLength", key({{"modulusLength", 65535}}),
                ".info.modulusLength: expected a number from 0 to 65534"},
        Refusal{"reference", key({{"reference", 65535}}), ".info.reference: expected a number"},
        Refusal{"userConsent", key({{"userConsent", -1}}),
                ".info.userConsent: expected a number from 0 to 2147483647"},
        Refusal{"native", key({{"native", 1}}), ".info.native: expected true or false"},
        Refusal{"isPrivate", key({{"isPrivate", "yes"}}), ".info.isPrivate: expected true"},
        Refusal{"pathText", key({{"path", "4B01"}}), ".info.path: expected {"},
        Refusal{"pathEmpty", key({{"path", {{"index", 1}}}}), ".info.path: expected 'path'"},
        Refusal{"pathMember", key({{"path", {{"path", ""}, {"offset", 1}}}}),
                ".info.path.offset: no such field"},
        Refusal{"pathIndex", key({{"path", {{"path", ""}, {"index", 65536}}}}),
                ".info.path.index: expected a number from 0 to 65535"},
        Refusal{"attribute", key({{"attributes", {{"CKA_NOTHING", true}}}}),
                ".info.attributes.CKA_NOTHING: no such attribute"},
        Refusal{"attributeNumber", key({{"attributes", {{"CKA_SIGN", 1}}}}),
                ".info.attributes.CKA_SIGN: expected true or false"},
        Refusal{"attributeText", key({{"attributes", {{"CKA_SIGN", "01"}}}}),
                ".info.attributes.CKA_SIGN: expected true or false"},
        Refusal{"attributeTrue", key({{"attributes", {{"CKA_0x102", true}}}}),
                ".info.attributes.CKA_0x102: expected a text"},
        Refusal{"attributeHex", key({{"attributes", {{"CKA_0x102", "1"}}}}),
                ".info.attributes.CKA_0x102: expected octets"},
        Refusal{"attributesList", key({{"attributes", {"CKA_SIGN"}}}),
                ".info.attributes: expected"},
        Refusal{"keyLength", write("secretKey", {{"keyLength", -8}}), ".info.keyLength: expected"},
        Refusal{"trustedUsage", write("certificate", {{"trustedUsage", 65535}}),
                ".info.trustedUsage: expected a number from 0 to 65534"},
        Refusal{"serialNumber", write("usefulCertificate", {{"serialNumber", 1}}),
                ".info.serialNumber: expected a text"},
        Refusal{"container", write("container", {{"exchangeKeyRecord", "1"}}),
                ".info.exchangeKeyRecord: expected a number"},
        Refusal{"containerPath", write("container", {{"path", {{"path", ""}}}}),
                ".info.path: no such field"},
        Refusal{"setUnknown", set({{"colour", 1}}), ".set.colour: no such field"},
        Refusal{"setWrong", set({{"keyLength", "8"}}), ".set.keyLength: expected a number"},
        Refusal{"setTwoLabels", set({{"label", ""}, {"labelHex", ""}}), ".set.labelHex: label and"},
        Refusal{"setNoObject", set(1), ".set: expected an object"}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    AuthFields, OperationRefusals,
    testing::Values(
        Refusal{"noType", write("authObject", {{"label", "x"}}), ".info: expected 'type'"},
        Refusal{"type", write("authObject", {{"type", "PIN"}}), ".info.type: expected pin, bio"},
        Refusal{"noObject", write("authObject", 1), ".info: expected an object"},
        Refusal{"ofAnotherType", pin({{"cha", "01"}}), ".info.cha: no such field"},
        Refusal{"attributes", pin({{"attributes", {}}}), ".info.attributes: no such field"},
        Refusal{"flag", pin({{"pinFlags", {"local", "remote"}}}),
                ".info.pinFlags[1]: expected one"},
        Refusal{"flags", pin({{"pinFlags", "local"}}), ".info.pinFlags: expected an array"},
        Refusal{"pinType", pin({{"pinType", "hex"}}), ".info.pinType: expected one of the names"},
        Refusal{"length", pin({{"minLength", -1}}), ".info.minLength: expected a number"},
        Refusal{"padChar", pin({{"padChar", "FFFF"}}), ".info.padChar: expected one octet"},
        Refusal{"reference", pin({{"reference", "1"}}), ".info.reference: expected a number"},
        Refusal{"change", pin({{"lastPinChange", 2024}}), ".info.lastPinChange: expected a text"},
        Refusal{"templateId", write("authObject", {{"type", "biometric"}, {"templateId", "1..2"}}),
                ".info.templateId: expected an object identifier"},
        Refusal{"bioType", write("authObject", {{"type", "biometric"}, {"bioType", "voice"}}),
                ".info.bioType: expected one of the names"},
        Refusal{"derivedKey", write("authObject", {{"type", "authKey"}, {"derivedKey", "yes"}}),
                ".info.derivedKey: expected true or false"},
        Refusal{"cha", write("authObject", {{"type", "external"}, {"cha", "0"}}), ".info.cha"},
        Refusal{"setType", setAuth({{"type", "pin"}}), ".set.type: no such field"},
        Refusal{"setReference", setAuth({{"reference", 2}}), ".set.reference: no such field"},
        Refusal{"setUnknown", setAuth({{"pin", 2}}), ".set.pin: no such field"},
        Refusal{"setWrong", setAuth({{"maxLength", "8"}}), ".set.maxLength: expected a number"}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    TokenInfoFields, OperationRefusals,
    testing::Values(
        Refusal{"unknown", token({{"colour", 1}}), ".set.colour: no such field"},
        Refusal{"twoLabels", token({{"label", ""}, {"labelHex", ""}}), ".set.labelHex: label and"},
        Refusal{"serialNumber", token({{"serialNumber", "1"}}), ".set.serialNumber: expected"},
        Refusal{"version", token({{"version", "1"}}), ".set.version: expected a number"},
        Refusal{"readonly", token({{"readonly", 1}}), ".set.readonly: expected true or false"},
        Refusal{"algorithms", token({{"supportedAlgorithms", 1}}), ".set.supportedAlgorithms: exp"},
        Refusal{"algorithm", token({{"supportedAlgorithms", {1}}}), ".set.supportedAlgorithms[0]"},
        Refusal{"algorithmField", token({{"supportedAlgorithms", {{{"name", 1}}}}}),
                ".set.supportedAlgorithms[0].name: no such field"},
        Refusal{"operation",
                token({{"supportedAlgorithms", {{{"supportedOperations", {"sign"}}}}}}),
                ".set.supportedAlgorithms[0].supportedOperations[0]: expected one of the names"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(OperationsFromJson, ExpectsAList) {
    EXPECT_THROW(operationsFromJson(Json::object()), UsageError);
    EXPECT_TRUE(operationsFromJson(Json::array()).empty());
}

TEST(OperationsFromJson, TakesARemark) {
    const Json list = {{{"op", "clearAndRead"}, {"about", "now"}}};
    EXPECT_EQ(operationsFromJson(list).size(), 1u);
}

TEST(Operation, TellsWhatItIsAbout) {
    const Json list = {writeData("A"),
                       set(Json::object()),
                       setAuth(Json::object()),
                       token(Json::object()),
                       {{"op", "delete"}, {"auth", 256}},
                       {{"op", "delete"}, {"auth", "id=0a"}}};
    std::string heads, objects;
    for (const OperationPointer& operation : operationsFromJson(list)) {
        heads += operation->head().dump();
        objects += operation->object() + ",";
    }
    EXPECT_EQ(heads, R"({"op":"write"}{"op":"update","recordNumber":1}{"op":"update","auth":1})"
                     R"({"op":"updateTokenInfo"}{"op":"delete","auth":256})"
                     R"({"op":"delete","auth":"id=0A"})");
    EXPECT_EQ(objects, "dataObject,record 1,auth:1,,auth:256,auth:id=0A,");
}

}  // namespace
}  // namespace tovi::test
