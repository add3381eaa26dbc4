#include <gtest/gtest.h>

#include <type_traits>

#include "tests/coders/CoderKinds.h"

namespace tovi::test {
namespace {

struct KeyCase {
    std::uint64_t keyType;
    Key alternative;
};
const KeyCase allTypes[] = {
    {CKK_RSA, Key::rsa}, {CKK_EC, Key::ec}, {CKK_DSA, Key::dsa}, {CKK_DH, Key::dh}};
const KeyCase ofOneShape[] = {{CKK_EC, Key::ec}, {CKK_DSA, Key::dsa}, {CKK_DH, Key::dh}};

/// A member that no version has.
const Blob later = hex("9E 01 2A");

/// Parameters of keyInfo: of a named curve, of DH and DSA (X9.42), none for RSA.
Blob parametersOf(Key alternative) {
    if (alternative == Key::rsa) return null();
    if (alternative == Key::ec) return objectIdentifier({1, 2, 840, 10045, 3, 1, 7});
    return sequence(integer(23), integer(5), integer(11));
}

/// A key with all that an info does not hold: access flags and dates, subject name, key identifiers
/// or trusted usage, keyInfo, and members of later versions.
struct RichKey {
    Key alternative = Key::rsa;
    bool isPrivate = true;
    Common common = {.label = "before"};
    Blob id = {0x45};
    Blob usage = namedBits({sign});  ///< element
    Blob keyReference = {};          ///< element
    Blob value = path("4B01");       ///< element
    std::int64_t modulusLength = 1024;

    Blob encoded() const {
        const Blob dates = join(
            {element(0x18, text("20250101000000Z")), contextPrimitive(0, text("20300101000000Z"))});
        const Blob keyClass = sequence(octetString(id), usage, boolean(false), namedBits({0, 2, 3}),
                                       keyReference, dates, later);
        const Blob modulus = alternative == Key::rsa ? integer(modulusLength) : Blob();
        const Blob keyInfo = sequence(parametersOf(alternative), namedBits({1, 5}));
        return element(static_cast<std::uint8_t>(alternative),
                       join({common.encoded(), keyClass, context(0, subClass()),
                             context(1, sequence(value, modulus, keyInfo, later))}));
    }

private:
    Blob subClass() const {
        const Blob name =
            sequence(element(0x31, sequence(objectIdentifier({2, 5, 4, 3}), utf8String("Test"))));
        if (!isPrivate) return sequence(name, later, context(0, namedBits({5})));
        const Blob identifier = sequence(integer(2), octetString({0xAA}));
        return sequence(name, context(0, identifier), later);
    }
};

template <class Kind>
class EncodeKey : public testing::Test {
protected:
    using Info = typename Kind::Info;

    static Info keyOf(std::uint64_t keyType) {
        return infoWith<Kind>([&](Info& info) {
            info.keyType = keyType;
            info.modulusLength = 1024;
        });
    }
    /// What a record holds of the info keyOf makes.
    static RichKey richKey(Key alternative) {
        return {.alternative = alternative,
                .isPrivate = std::is_same_v<Kind, PrivateKeys>,
                .usage = namedBits({})};
    }
    static Failure modulusLengthMissing() {
        return smartcardFailure("modulusLength not initialized", "PKCS15KeyCT::encodeRSAKeyInfo");
    }
};
TYPED_TEST_SUITE(EncodeKey, AsymmetricKeyKinds);

// ---- new records ----

TYPED_TEST(EncodeKey, ChoosesTheAlternativeByTheKeyType) {
    for (const KeyCase& each : allTypes)
        EXPECT_EQ(written<TypeParam>(this->keyOf(each.keyType)),
                  privateKey({.type = each.alternative, .common = modifiable, .native = false}));
}

TYPED_TEST(EncodeKey, WritesEverythingThatAnInfoHolds) {
    for (const KeyCase& each : allTypes) {
        auto info = this->keyOf(each.keyType);
        info.label = text("mine");
        info.isPrivate = true;
        info.authId = {0x02};
        info.userConsent = 1;
        info.id = hex("4546");
        info.SetParam(CKA_SIGN, B_CK_TRUE);
        info.SetParam(CKA_ALWAYS_AUTHENTICATE, B_CK_TRUE);
        info.native = true;
        info.reference = 144;
        info.modulusLength = 2048;
        info.path = {hex("4B07"), 5, 6};
        EXPECT_EQ(written<TypeParam>(info), privateKey({.type = each.alternative,
                                                        .common = {.label = "mine",
                                                                   .flags = namedBits({0, 1}),
                                                                   .authId = Blob{0x02},
                                                                   .userConsent = 1},
                                                        .id = hex("4546"),
                                                        .usage = namedBits({sign, nonRepudiation}),
                                                        .keyReference = 144,
                                                        .value = path("4B07", 5, 6),
                                                        .modulusLength = 2048}));
    }
}

TYPED_TEST(EncodeKey, RefusesKeyTypesThatAreNone) {
    for (const std::uint64_t keyType :
         {noKeyType, std::uint64_t{4}, std::uint64_t{5}, std::uint64_t{0x100000000}})
        expectRefused<TypeParam>(this->keyOf(keyType),
                                 smartcardFailure("invalid key type", TypeParam::operation));
}

TYPED_TEST(EncodeKey, NeedsTheModulusLengthOfAnRSAKey) {
    auto info = this->keyOf(CKK_RSA);
    info.modulusLength = noModulusLength;
    EXPECT_EQ(refusal<TypeParam>({}, info, noIndex), this->modulusLengthMissing());
    const Blob stored = privateKey({.modulusLength = 2048});
    EXPECT_EQ(refusal<TypeParam>({stored}, info, 0), this->modulusLengthMissing());
}

TYPED_TEST(EncodeKey, LooksForTheModulusLengthBeforeAnythingElseIsWrong) {
    auto info = this->keyOf(CKK_RSA);
    info.modulusLength = noModulusLength;
    const Blob bad = hex("04 00");
    info.auxValue3 = &bad;
    info.id = times(256, 1);
    EXPECT_EQ(refusal<TypeParam>({}, info, noIndex), this->modulusLengthMissing());
}

TYPED_TEST(EncodeKey, WritesEveryOtherModulusLength) {
    for (const int length : {0, 1, 512, 2048, 4096, 0xFFFE}) {
        auto info = this->keyOf(CKK_RSA);
        info.modulusLength = static_cast<std::uint16_t>(length);
        const Blob expected =
            privateKey({.common = modifiable, .native = false, .modulusLength = length});
        EXPECT_EQ(written<TypeParam>(info), expected);
        EXPECT_EQ(updated<TypeParam>(privateKey({.modulusLength = 1024}), info), expected);
    }
}

TYPED_TEST(EncodeKey, DoesNotAskOtherKeysForAModulusLength) {
    for (const KeyCase& each : ofOneShape) {
        auto info = this->keyOf(each.keyType);
        info.modulusLength = noModulusLength;
        EXPECT_EQ(written<TypeParam>(info),
                  privateKey({.type = each.alternative, .common = modifiable, .native = false}));
    }
}

TYPED_TEST(EncodeKey, RefusesAnIdThatIsTooLong) {
    for (const KeyCase& each : allTypes) {
        auto info = this->keyOf(each.keyType);
        info.id = times(255, 1);
        EXPECT_EQ(written<TypeParam>(info), privateKey({.type = each.alternative,
                                                        .common = modifiable,
                                                        .id = times(255, 1),
                                                        .native = false}));
        info.id = times(256, 1);
        EXPECT_EQ(refusal<TypeParam>({}, info, noIndex), encodingError<TypeParam>());
        EXPECT_EQ(refusal<TypeParam>({privateKey({.type = each.alternative})}, info, 0),
                  encodingError<TypeParam>());
    }
}

TYPED_TEST(EncodeKey, WritesAnEmptyId) {
    const auto info = infoWith<TypeParam>([](auto& i) {
        i.id.clear();
        i.label = text("label");
    });
    EXPECT_EQ(written<TypeParam>(info),
              privateKey({.type = Key::ec,
                          .common = {.label = "label", .flags = modifiable.flags},
                          .id = {},
                          .native = false}));
}

TYPED_TEST(EncodeKey, DoesNotWriteTheReferenceOfKeyInfo) {
    for (const KeyCase& each : allTypes) {
        auto info = this->keyOf(each.keyType);
        info.keyInfoReference = 5;
        EXPECT_EQ(written<TypeParam>(info),
                  privateKey({.type = each.alternative, .common = modifiable, .native = false}));
        const Blob stored = privateKey({.type = each.alternative, .keyInfo = integer(9)});
        EXPECT_EQ(updated<TypeParam>(stored, info), privateKey({.type = each.alternative,
                                                                .common = modifiable,
                                                                .native = false,
                                                                .keyInfo = integer(9)}));
    }
}

// ---- native ----

TYPED_TEST(EncodeKey, SaysThatANewKeyIsNotNativeAndNeverThatItIs) {
    for (const KeyCase& each : allTypes) {
        auto info = this->keyOf(each.keyType);
        info.native = true;
        EXPECT_EQ(written<TypeParam>(info),
                  privateKey({.type = each.alternative, .common = modifiable}));
        info.native = false;
        EXPECT_EQ(written<TypeParam>(info),
                  privateKey({.type = each.alternative, .common = modifiable, .native = false}));
    }
}

TYPED_TEST(EncodeKey, LeavesTheNativeMemberOfANativeKeyAsItStands) {
    for (const KeyCase& each : allTypes) {
        auto info = this->keyOf(each.keyType);
        info.native = true;
        const KeyRecord without = {.type = each.alternative, .common = modifiable};
        EXPECT_EQ(updated<TypeParam>(privateKey(without), info), privateKey(without));
        KeyRecord notNative = without;
        notNative.native = false;
        EXPECT_EQ(updated<TypeParam>(privateKey(notNative), info), privateKey(notNative));
        // DER does not write a value that is the default.
        KeyRecord writtenOut = without;
        writtenOut.native = true;
        EXPECT_EQ(updated<TypeParam>(privateKey(writtenOut), info), privateKey(without));
    }
}

TYPED_TEST(EncodeKey, MakesAKeyNotNative) {
    auto info = this->keyOf(CKK_EC);
    for (const std::optional<bool> stored :
         {std::optional<bool>(), std::optional(true), std::optional(false)})
        EXPECT_EQ(updated<TypeParam>(privateKey({.type = Key::ec, .native = stored}), info),
                  privateKey({.type = Key::ec, .common = modifiable, .native = false}));
}

// ---- updates ----

TYPED_TEST(EncodeKey, KeepsWhatInfosDoNotHold) {
    for (const KeyCase& each : allTypes) {
        auto info = this->keyOf(each.keyType);
        info.label = text("after");
        info.id = hex("99");
        info.SetParam(CKA_DECRYPT, B_CK_TRUE);
        info.reference = 3;
        info.modulusLength = 4096;
        info.path.path = hex("4B99");
        RichKey key = this->richKey(each.alternative);
        key.usage = namedBits({sign});
        const Blob stored = key.encoded();
        key.common = {.label = "after", .flags = modifiable.flags};
        key.id = hex("99");
        key.usage = namedBits({decrypt});
        key.keyReference = integer(3);
        key.value = path("4B99");
        key.modulusLength = 4096;
        EXPECT_EQ(updated<TypeParam>(stored, info), key.encoded());
    }
}

TYPED_TEST(EncodeKey, RemovesTheReferenceThatTheInfoHasCleared) {
    for (const KeyCase& each : allTypes) {
        RichKey key = this->richKey(each.alternative);
        key.common = modifiable;
        key.keyReference = integer(12);
        const Blob stored = key.encoded();
        key.keyReference = {};
        EXPECT_EQ(updated<TypeParam>(stored, this->keyOf(each.keyType)), key.encoded());
    }
}

TYPED_TEST(EncodeKey, KeepsTheAlternativeOfAStoredKeyOfTheSameShape) {
    for (const KeyCase& stored : ofOneShape)
        for (const KeyCase& asked : ofOneShape) {
            RichKey key = this->richKey(stored.alternative);
            const Blob before = key.encoded();
            key.common = modifiable;
            EXPECT_EQ(updated<TypeParam>(before, this->keyOf(asked.keyType)), key.encoded());
        }
}

TYPED_TEST(EncodeKey, CannotFillAKeyOfAnotherShape) {
    for (const KeyCase& other : ofOneShape) {
        EXPECT_EQ(
            refusal<TypeParam>({privateKey({.type = other.alternative})}, this->keyOf(CKK_RSA), 0),
            encodingError<TypeParam>());
        EXPECT_EQ(refusal<TypeParam>({privateKey()}, this->keyOf(other.keyType), 0),
                  encodingError<TypeParam>());
    }
}

TYPED_TEST(EncodeKey, CannotFillAKeyOfAnUnknownKind) {
    for (const KeyCase& each : allTypes)
        EXPECT_EQ(
            refusal<TypeParam>({privateKey({.type = Key::kea})}, this->keyOf(each.keyType), 0),
            encodingError<TypeParam>());
}

TYPED_TEST(EncodeKey, PutsAPathInPlaceOfAKeyHeldInTheRecord) {
    const Blob direct = context(0, integer(0x1234));  // a private EC key, a public DH key
    const Key type = std::is_same_v<TypeParam, PrivateKeys> ? Key::ec : Key::dh;
    const Blob stored = privateKey({.type = type, .value = direct});
    EXPECT_EQ(updated<TypeParam>(stored, this->keyOf(CKK_DH)),
              privateKey({.type = type, .common = modifiable, .native = false}));
}

TYPED_TEST(EncodeKey, WritesBackAnIdThatWasReadTooLong) {
    const Blob tooLong = times(300, 0x45);
    auto info = this->keyOf(CKK_EC);
    info.id = tooLong;
    const KeyRecord key = {.type = Key::ec, .common = modifiable, .id = tooLong, .native = false};
    EXPECT_EQ(updated<TypeParam>(privateKey(key), info), privateKey(key));
}

}  // namespace
}  // namespace tovi::test
