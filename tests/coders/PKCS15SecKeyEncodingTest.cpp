#include <gtest/gtest.h>

#include "tests/coders/CoderKinds.h"

namespace tovi::test {
namespace {

using Info = SecretKeys::Info;

Info keyOf(const Blob& name, std::uint64_t length) {
    return infoWith<SecretKeys>([&](Info& info) {
        info.algorithmName = name;
        info.keyLength = length;
    });
}

struct SecretKeyCase {
    const char* name;
    std::uint64_t octets;
    SecretKey alternative;
};
const SecretKeyCase allTypes[] = {{"DES", 8, SecretKey::des},
                                  {"TripleDES", 16, SecretKey::des2},
                                  {"TripleDES", 24, SecretKey::des3}};

/// The record of keyOf.
SecretKeyRecord recordOf(const SecretKeyCase& key) {
    return {.type = key.alternative,
            .common = modifiable,
            .keyLen = static_cast<std::int64_t>(8 * key.octets),
            .value = path("4B01")};
}

const Failure invalidKeyType = smartcardFailure("invalid key type", SecretKeys::operation);

// ---- new records ----

TEST(EncodeSecretKey, ChoosesTheAlternativeByNameAndLength) {
    for (const SecretKeyCase& each : allTypes)
        EXPECT_EQ(written<SecretKeys>(keyOf(text(each.name), each.octets)),
                  secretKey(recordOf(each)));
}

TEST(EncodeSecretKey, WritesEverythingThatAnInfoHolds) {
    for (const SecretKeyCase& each : allTypes) {
        Info info = keyOf(text(each.name), each.octets);
        info.label = text("mine");
        info.isPrivate = true;
        info.authId = {0x02};
        info.userConsent = 1;
        info.id = hex("5152");
        info.SetParam(CKA_ENCRYPT, B_CK_TRUE);
        info.SetParam(CKA_DERIVE, B_CK_TRUE);
        info.reference = 200;
        info.path = {hex("4C07"), 5, 6};
        EXPECT_EQ(written<SecretKeys>(info),
                  secretKey({.type = each.alternative,
                             .common = {.label = "mine",
                                        .flags = namedBits({0, 1}),
                                        .authId = Blob{0x02},
                                        .userConsent = 1},
                             .id = hex("5152"),
                             .usage = namedBits({encrypt, derive}),
                             .keyReference = 200,
                             .keyLen = static_cast<std::int64_t>(8 * each.octets),
                             .value = path("4C07", 5, 6)}));
    }
}

TEST(EncodeSecretKey, RefusesEveryOtherNameAndLength) {
    const struct {
        Blob name;
        std::uint64_t length;
    } cases[] = {
        {text("DES"), 16},
        {text("DES"), 24},
        {text("DES"), 7},
        {text("DES"), 0},
        {text("TripleDES"), 8},
        {text("TripleDES"), 32},
        {text("TripleDES"), 0},
        {text("des"), 8},
        {text("DEs"), 8},
        {text("tripledes"), 16},
        {text("TRIPLEDES"), 24},
        {text("TripleDES "), 24},
        {text(" DES"), 8},
        {text("DE"), 8},
        {text("DES3"), 24},
        {text("AES"), 16},
        {text("AES"), 32},
        {{}, 8},
        {{}, 16},
        {{}, 24},
        {text("TripleDE"), 16},
        {hex("44455300"), 8},
        {text("DES"), 0x100000008},
        {text("TripleDES"), ~0ull},
    };
    for (const auto& each : cases)
        expectRefused<SecretKeys>(keyOf(each.name, each.length), invalidKeyType);
}

TEST(EncodeSecretKey, TakesTheLabelForTheIdOfAKeyWithoutOne) {
    Info info = keyOf(text("DES"), 8);
    info.id.clear();
    info.label = text("label");
    const Blob expected = secretKey({.type = SecretKey::des,
                                     .common = {.label = "label", .flags = modifiable.flags},
                                     .id = text("label"),
                                     .keyLen = 64,
                                     .value = path("4B01")});
    EXPECT_EQ(written<SecretKeys>(info), expected);
    EXPECT_EQ(updated<SecretKeys>(secretKey({.type = SecretKey::des, .id = hex("0102")}), info),
              expected);
}

TEST(EncodeSecretKey, WritesAnEmptyIdWithNeither) {
    Info info = keyOf(text("DES"), 8);
    info.id.clear();
    SecretKeyRecord expected = recordOf(allTypes[0]);
    expected.id = {};
    EXPECT_EQ(written<SecretKeys>(info), secretKey(expected));
}

TEST(EncodeSecretKey, RefusesAnIdThatIsTooLongBeItALabel) {
    expectRefused<SecretKeys>(infoWith<SecretKeys>([](Info& info) { info.id = times(256, 0x51); }));
    // 200 characters make a sound label, but no identifier.
    std::string umlauts;
    for (int i = 0; i < 200; ++i) umlauts += "ü";
    expectRefused<SecretKeys>(infoWith<SecretKeys>([&](Info& info) {
        info.id.clear();
        info.label = text(umlauts);
    }));
}

TEST(EncodeSecretKey, NeverWritesNative) {
    for (const bool native : {false, true}) {
        Info info = keyOf(text("DES"), 8);
        info.native = native;
        EXPECT_EQ(written<SecretKeys>(info), secretKey(recordOf(allTypes[0])));
    }
}

// ---- updates ----

TEST(EncodeSecretKey, KeepsTheNativeMemberAsItStands) {
    for (const bool native : {false, true}) {
        Info info = keyOf(text("DES"), 8);
        info.native = native;
        SecretKeyRecord stored = recordOf(allTypes[0]);
        stored.native = false;
        EXPECT_EQ(updated<SecretKeys>(secretKey(stored), info), secretKey(stored));
    }
}

TEST(EncodeSecretKey, WritesTheLengthInBitsWhateverTheRecordSaid) {
    for (const SecretKeyCase& each : allTypes) {
        const Info info = keyOf(text(each.name), each.octets);
        const Blob expected = secretKey(recordOf(each));
        for (const Blob& subClass : {Blob(), sequence(), sequence(integer(1)),
                                     sequence(integer(-5)), sequence(integer(1 << 30))})
            EXPECT_EQ(updated<SecretKeys>(
                          secretKey({.type = each.alternative, .subClass = subClass}), info),
                      expected);
    }
}

TEST(EncodeSecretKey, KeepsTheAlternativeOfAStoredKey) {
    for (const std::uint8_t tag : Blob{0x30, 0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, 0xA8,
                                       0xA9, 0xAA, 0xAB, 0xAC, 0xAD})
        for (const SecretKeyCase& each : allTypes)
            EXPECT_EQ(updated<SecretKeys>(retagged(tag, secretKey()),
                                          keyOf(text(each.name), each.octets)),
                      retagged(tag, secretKey(recordOf(each))));
}

TEST(EncodeSecretKey, LooksAtNameAndLengthForAnUpdateToo) {
    EXPECT_EQ(refusal<SecretKeys>({secretKey({.type = SecretKey::des3})},
                                  keyOf(text("TripleDES"), 32), 0),
              invalidKeyType);
    EXPECT_EQ(refusal<SecretKeys>({secretKey()}, keyOf(text("Generic"), 8), 0), invalidKeyType);
}

TEST(EncodeSecretKey, CannotFillAKeyOfAnotherShape) {
    const Blob other = context(14, objectIdentifier({1, 2, 3}), secretKey());
    EXPECT_EQ(refusal<SecretKeys>({other}, SecretKeys::info(), 0), encodingError<SecretKeys>());
}

TEST(EncodeSecretKey, KeepsWhatInfosDoNotHold) {
    const Blob later = hex("9E 01 2A");
    const auto record = [&](const Common& common, const Blob& id, const Blob& usage,
                            const Blob& reference, std::int64_t keyLen, const Blob& value) {
        const Blob keyClass = sequence(octetString(id), usage, boolean(false), namedBits({0, 3}),
                                       reference, element(0x18, text("20250101000000Z")), later);
        return element(
            0xA4, join({common.encoded(), keyClass, context(0, sequence(integer(keyLen), later)),
                        context(1, sequence(value, later))}));
    };
    const Blob stored = record({.label = "before"}, {0x51}, namedBits({sign}), integer(4), 192,
                               context(0, octetString(times(24, 7))));
    Info info = keyOf(text("TripleDES"), 16);
    info.label = text("after");
    info.SetParam(CKA_DECRYPT, B_CK_TRUE);
    EXPECT_EQ(updated<SecretKeys>(stored, info),
              record({.label = "after", .flags = modifiable.flags}, {0x51}, namedBits({decrypt}),
                     {}, 128, path("4B01")));
}

TEST(EncodeSecretKey, WritesBackAnIdThatWasReadTooLong) {
    SecretKeyRecord stored = recordOf(allTypes[0]);
    stored.id = times(256, 0x51);
    Info info = keyOf(text("DES"), 8);
    info.id = stored.id;
    EXPECT_EQ(updated<SecretKeys>(secretKey(stored), info), secretKey(stored));
}

}  // namespace
}  // namespace tovi::test
