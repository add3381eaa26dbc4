#include <gtest/gtest.h>

#include "tests/coders/CoderKinds.h"

namespace tovi::test {
namespace {

Blob withName(const std::optional<std::string>& name, const Blob& oid = {}) {
    return dataRecord({.common = modifiable,
                       .applicationName = name,
                       .applicationOID = oid,
                       .value = path("4B01")});
}

DataObjects::Info named(const std::string& name) {
    return infoWith<DataObjects>([&](auto& info) { info.applicationName = text(name); });
}

TEST(EncodeData, WritesTheSmallestRecord) {
    EXPECT_EQ(written<DataObjects>(DataObjects::info()), withName({}));
}

TEST(EncodeData, WritesEverythingThatAnInfoHolds) {
    const auto info = infoWith<DataObjects>([](auto& i) {
        i.label = text("mine");
        i.isPrivate = true;
        i.authId = {0x02};
        i.userConsent = 1;
        i.applicationName = text("tovi");
        i.path = {hex("4E07"), 5, 6};
    });
    EXPECT_EQ(written<DataObjects>(info), dataRecord({.common = {.label = "mine",
                                                                 .flags = namedBits({0, 1}),
                                                                 .authId = Blob{0x02},
                                                                 .userConsent = 1},
                                                      .applicationName = "tovi",
                                                      .value = path("4E07", 5, 6)}));
}

TEST(EncodeData, HasAnApplicationNameExactlyWhenTheInfoHas) {
    EXPECT_EQ(written<DataObjects>(named("tovi")), withName("tovi"));
    EXPECT_EQ(updated<DataObjects>(withName("before"), named("tovi")), withName("tovi"));
    EXPECT_EQ(updated<DataObjects>(withName({}), named("tovi")), withName("tovi"));
    EXPECT_EQ(updated<DataObjects>(withName("before"), named("")), withName({}));
}

TEST(EncodeData, KeepsTheApplicationIdentifier) {
    const Blob oid = objectIdentifier({1, 2, 3});
    EXPECT_EQ(updated<DataObjects>(withName("before", oid), named("after")),
              withName("after", oid));
    EXPECT_EQ(updated<DataObjects>(withName("before", oid), named("")), withName({}, oid));
}

TEST(EncodeData, CountsTheCharactersOfAnApplicationName) {
    std::string umlauts;
    for (int i = 0; i < 255; ++i) umlauts += "ü";
    EXPECT_EQ(written<DataObjects>(named(umlauts)), withName(umlauts));
    expectRefused<DataObjects>(named(umlauts + "x"));
    expectRefused<DataObjects>(named(std::string(256, 'x')));
}

TEST(EncodeData, KeepsWhatInfosDoNotHold) {
    const Blob later = hex("9E 01 2A");
    const auto record = [&](const Common& common, const Blob& name, const Blob& value) {
        return element(0x30,
                       join({common.encoded(), sequence(name, objectIdentifier({1, 2, 3}), later),
                             context(0, null()), context(1, value)}));
    };
    const Blob stored =
        record({.label = "before"}, utf8String("before"), context(0, octetString(hex("CAFE"))));
    const auto info = infoWith<DataObjects>([](auto& i) {
        i.label = text("after");
        i.applicationName = text("after");
    });
    EXPECT_EQ(
        updated<DataObjects>(stored, info),
        record({.label = "after", .flags = modifiable.flags}, utf8String("after"), path("4B01")));
}

TEST(EncodeData, CannotFillAnObjectOfAnotherKind) {
    for (const Data type : {Data::external, Data::oid})
        EXPECT_EQ(refusal<DataObjects>({dataRecord({.type = type})}, DataObjects::info(), 0),
                  encodingError<DataObjects>());
}

TEST(EncodeData, WritesBackAnApplicationNameThatWasReadTooLong) {
    const std::string tooLong(256, 'x');
    EXPECT_EQ(updated<DataObjects>(withName(tooLong), named(tooLong)), withName(tooLong));
    EXPECT_EQ(refusal<DataObjects>({withName("short")}, named(tooLong), 0),
              encodingError<DataObjects>());
}

}  // namespace
}  // namespace tovi::test
