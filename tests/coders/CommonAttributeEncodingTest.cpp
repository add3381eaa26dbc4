#include "tovi/coders/CommonAttributeEncoding.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/coders/CoderKinds.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

/// A record with every common attribute that an info can hold.
const Common everything = {.label = "before",
                           .flags = namedBits({0, 1}),
                           .authId = Blob{0x07},
                           .userConsent = 9,
                           .accessControlRules = acceptableRules()};

// ---- through the coder of every kind ----

template <class Kind>
class EncodeCommonAttributes : public testing::Test {
protected:
    using Info = typename Kind::Info;

    /// Expects that the info changed so makes a record with `common`, be it a new record or one
    /// written over one that has everything; the latter keeps its rules.
    template <class Change>
    static void expectCommon(Change change, Common common) {
        const Info info = infoWith<Kind>(change);
        EXPECT_EQ(written<Kind>(info), Kind::record(common));
        common.accessControlRules = everything.accessControlRules;
        EXPECT_EQ(updated<Kind>(Kind::record(everything), info), Kind::record(common));
        common.accessControlRules = {};
        EXPECT_EQ(updated<Kind>(Kind::record({}), info), Kind::record(common));
    }
};
TYPED_TEST_SUITE(EncodeCommonAttributes, AllKinds);

TYPED_TEST(EncodeCommonAttributes, WritesAllOfThemInOrder) {
    this->expectCommon(
        [](auto& info) {
            info.label = text("Schlüssel");
            info.isPrivate = true;
            info.authId = {0x01, 0x02};
            info.userConsent = 3;
        },
        {.label = "Schlüssel",
         .flags = namedBits({0, 1}),
         .authId = Blob{0x01, 0x02},
         .userConsent = 3});
}

TYPED_TEST(EncodeCommonAttributes, WritesNoFlagsForAnObjectNeitherPrivateNorModifiable) {
    this->expectCommon([](auto& info) { info.isModifiable = false; }, {});
}

TYPED_TEST(EncodeCommonAttributes, WritesEachFlagInItsBit) {
    this->expectCommon(
        [](auto& info) {
            info.isModifiable = false;
            info.isPrivate = true;
        },
        {.flags = bitString({0x80}, 7)});
    this->expectCommon([](auto&) {}, {.flags = bitString({0x40}, 6)});
    this->expectCommon([](auto& info) { info.isPrivate = true; }, {.flags = bitString({0xC0}, 6)});
}

TYPED_TEST(EncodeCommonAttributes, KeepsFlagsThatNoVersionNamesWhileThereAreOthers) {
    const Blob stored = TypeParam::record({.flags = namedBits({0, 5})});
    auto info = TypeParam::info();
    EXPECT_EQ(updated<TypeParam>(stored, info), TypeParam::record({.flags = namedBits({1, 5})}));
    info.isModifiable = false;
    EXPECT_EQ(updated<TypeParam>(stored, info), TypeParam::record({}));
}

TYPED_TEST(EncodeCommonAttributes, HasALabelExactlyWhenTheInfoHas) {
    this->expectCommon([](auto& info) { info.label = text("after"); },
                       {.label = "after", .flags = modifiable.flags});
    this->expectCommon([](auto& info) { info.label.clear(); }, modifiable);
}

TYPED_TEST(EncodeCommonAttributes, HasAnAuthIdExactlyWhenTheInfoHas) {
    this->expectCommon([](auto& info) { info.authId = {0x00}; },
                       {.flags = modifiable.flags, .authId = Blob{0x00}});
    this->expectCommon([](auto& info) { info.authId.clear(); }, modifiable);
}

TYPED_TEST(EncodeCommonAttributes, HasAUserConsentUnlessTheInfoSaysNone) {
    this->expectCommon([](auto& info) { info.userConsent = -1; }, modifiable);
    for (const std::int32_t count : {0, 1, 200, 32767})
        this->expectCommon([&](auto& info) { info.userConsent = count; },
                           {.flags = modifiable.flags, .userConsent = count});
}

TYPED_TEST(EncodeCommonAttributes, RefusesAnyOtherNegativeUserConsentAndOneThatIsTooLarge) {
    for (const std::int32_t count : {-2, std::numeric_limits<std::int32_t>::min(), 32768,
                                     std::numeric_limits<std::int32_t>::max()})
        expectRefused<TypeParam>(infoWith<TypeParam>([&](auto& i) { i.userConsent = count; }));
}

TYPED_TEST(EncodeCommonAttributes, KeepsMembersOfLaterVersions) {
    // One in front of userConsent, where the extension marker of v1.1 is, and one at the end.
    const Blob later = hex("9E 01 2A"), last = hex("9F 1F 00");
    const auto record = [&](const std::string& label, const Blob& flags, std::int64_t consent) {
        const Blob rest = join({later, integer(consent), acceptableRules(), last});
        return TypeParam::record({.label = label, .flags = flags, .accessControlRules = rest});
    };
    const auto info = infoWith<TypeParam>([](auto& i) {
        i.label = text("after");
        i.userConsent = 2;
    });
    EXPECT_EQ(updated<TypeParam>(record("before", {}, 9), info),
              record("after", modifiable.flags, 2));
}

TYPED_TEST(EncodeCommonAttributes, CountsTheCharactersOfALabel) {
    std::string umlauts;
    for (int i = 0; i < 255; ++i) umlauts += "ü";
    for (const std::string& label : {std::string(255, 'x'), umlauts})
        this->expectCommon([&](auto& info) { info.label = text(label); },
                           {.label = label, .flags = modifiable.flags});
    for (const std::string& label : {std::string(256, 'x'), umlauts + "x"})
        expectRefused<TypeParam>(infoWith<TypeParam>([&](auto& i) { i.label = text(label); }));
}

TYPED_TEST(EncodeCommonAttributes, CountsTheOctetsOfALabelThatIsNotUTF8) {
    const std::string label(255, '\xFC');
    this->expectCommon([&](auto& info) { info.label = text(label); },
                       {.label = label, .flags = modifiable.flags});
    expectRefused<TypeParam>(infoWith<TypeParam>([&](auto& i) { i.label = times(256, 0xFC); }));
}

TYPED_TEST(EncodeCommonAttributes, RefusesAnAuthIdThatIsTooLong) {
    this->expectCommon([](auto& info) { info.authId = times(255, 0x11); },
                       {.flags = modifiable.flags, .authId = times(255, 0x11)});
    expectRefused<TypeParam>(infoWith<TypeParam>([](auto& i) { i.authId = times(256, 0x11); }));
}

// ---- the value, in every kind ----

TYPED_TEST(EncodeCommonAttributes, WritesTheValueAsAPath) {
    const Blob url = element(0x13, text("http://k"));
    const Blob isProtected = context(1, path("4B01"));
    auto info = infoWith<TypeParam>([](auto& i) { i.path = {hex("3F0050154B77"), 0, 128}; });
    const Blob expected = TypeParam::record(modifiable, path("3F0050154B77", 0, 128));
    EXPECT_EQ(written<TypeParam>(info), expected);
    for (const Blob& stored : {path("4B01", 1, 2), url, isProtected})
        EXPECT_EQ(updated<TypeParam>(TypeParam::record({}, stored), info), expected);
}

TYPED_TEST(EncodeCommonAttributes, WritesAnEmptyPathForAnObjectWithoutOne) {
    const auto info = infoWith<TypeParam>([](auto& i) { i.path = {}; });
    EXPECT_EQ(written<TypeParam>(info), TypeParam::record(modifiable, path("")));
}

// ---- access control rules, in every kind ----

TYPED_TEST(EncodeCommonAttributes, KeepsTheRulesWhenThereAreNoneToWrite) {
    const Blob stored = TypeParam::record(everything);
    Common expected = modifiable;
    expected.accessControlRules = everything.accessControlRules;
    EXPECT_EQ(updated<TypeParam>(stored, TypeParam::info()), TypeParam::record(expected));
    EXPECT_EQ(written<TypeParam>(TypeParam::info()), TypeParam::record(modifiable));
}

TYPED_TEST(EncodeCommonAttributes, WritesTheRulesThatItIsGiven) {
    const Blob rules = sequence(sequence(namedBits({1}), octetString({0x05})),
                                sequence(namedBits({2}), context(0, octetString({0x06}))));
    const auto info = infoWith<TypeParam>([&](auto& i) { i.auxValue3 = &rules; });
    const Blob expected =
        TypeParam::record({.flags = modifiable.flags, .accessControlRules = rules});
    EXPECT_EQ(written<TypeParam>(info), expected);
    EXPECT_EQ(updated<TypeParam>(TypeParam::record(everything), info), expected);
    EXPECT_EQ(updated<TypeParam>(TypeParam::record({}), info), expected);
}

TYPED_TEST(EncodeCommonAttributes, RefusesRulesThatAreNone) {
    const Blob rule = acceptableRules();
    const Blob notMinimal = join({hex("30 81"), Blob(rule.begin() + 1, rule.end())});
    const Blob bad[] = {{},                                    // nothing at all
                        unacceptableRules(),                   // an empty list
                        hex("04 01 01"),                       // not a list
                        hex("30 05 30 03"),                    // cut off
                        join({acceptableRules(), hex("00")}),  // something behind it
                        notMinimal};
    for (const Blob& rules : bad)
        expectRefused<TypeParam>(infoWith<TypeParam>([&](auto& i) { i.auxValue3 = &rules; }));
}

// ---- records that are invalid or are made so ----

TYPED_TEST(EncodeCommonAttributes, WritesBackWhatWasReadInvalid) {
    const std::string tooLong(256, 'x');
    const Blob stored = TypeParam::record({.label = tooLong});
    const auto info = infoWith<TypeParam>([&](auto& i) {
        i.label = text(tooLong);
        i.authId = {0x03};
    });
    EXPECT_EQ(
        updated<TypeParam>(stored, info),
        TypeParam::record({.label = tooLong, .flags = modifiable.flags, .authId = Blob{0x03}}));
    EXPECT_EQ(refusal<TypeParam>({stored}, info, noIndex), encodingError<TypeParam>());
}

TYPED_TEST(EncodeCommonAttributes, WritesBackInvalidPartsThatInfosDoNotHold) {
    const Blob stored = TypeParam::record({.accessControlRules = unacceptableRules()});
    EXPECT_EQ(
        updated<TypeParam>(stored, TypeParam::info()),
        TypeParam::record({.flags = modifiable.flags, .accessControlRules = unacceptableRules()}));
}

TYPED_TEST(EncodeCommonAttributes, MakesAnInvalidRecordValid) {
    const Blob stored = TypeParam::record({.label = std::string(256, 'x')});
    EXPECT_EQ(updated<TypeParam>(stored, TypeParam::info()), TypeParam::record(modifiable));
}

// ---- what a coder does with its arguments, in every kind ----

TYPED_TEST(EncodeCommonAttributes, WritesNothingForAnInfoThatIsNotValid) {
    auto info = TypeParam::info();
    EXPECT_FALSE(info.Import(hex("00")));
    for (const unsigned long index : {noIndex, 0UL, 7UL}) {
        EntryFile<typename TypeParam::Type> file({TypeParam::record({})});
        EXPECT_EQ(encode<TypeParam>(file, info, index), noIndex);
        EXPECT_EQ(file.onCard(), std::vector<Blob>{TypeParam::record({})});
        EXPECT_EQ(file.inMemory(), file.onCard());
    }
}

TYPED_TEST(EncodeCommonAttributes, PutsANewRecordBehindTheOthers) {
    const Blob first = TypeParam::record({.label = "first"});
    const Blob second = TypeParam::record({.label = "second"});
    EntryFile<typename TypeParam::Type> file({first, second});
    EXPECT_EQ(encode<TypeParam>(file, TypeParam::info()), 2u);
    EXPECT_EQ(file.onCard(), (std::vector<Blob>{first, second, TypeParam::record(modifiable)}));
    EXPECT_EQ(file.inMemory(), file.onCard());
    EXPECT_TRUE(file.raws.at(2).isValid);
    EXPECT_FALSE(file.raws.at(2).isDecoded);
}

TYPED_TEST(EncodeCommonAttributes, ReplacesTheRecordOfTheIndex) {
    const Blob first = TypeParam::record({.label = "first"});
    const Blob third = TypeParam::record({.label = "third"});
    EntryFile<typename TypeParam::Type> file({first, TypeParam::record({}), third});
    EXPECT_EQ(encode<TypeParam>(file, TypeParam::info(), 1), 1u);
    EXPECT_EQ(file.onCard(), (std::vector<Blob>{first, TypeParam::record(modifiable), third}));
    EXPECT_EQ(file.inMemory(), file.onCard());
    EXPECT_TRUE(file.raws.at(1).isValid);
    EXPECT_FALSE(file.raws.at(1).isDecoded);
}

TYPED_TEST(EncodeCommonAttributes, RefusesAnIndexWithoutARecord) {
    const std::vector<Blob> records = {TypeParam::record({}), undecodable()};
    for (const unsigned long index : {1UL, 2UL, noIndex - 1})
        EXPECT_EQ(refusal<TypeParam>(records, TypeParam::info(), index),
                  encodingError<TypeParam>());
}

TYPED_TEST(EncodeCommonAttributes, RefusesARecordOfAnUnknownKind) {
    const Blob later = retagged(0xAF, TypeParam::record({}));
    EXPECT_EQ(refusal<TypeParam>({later}, TypeParam::info(), 0), encodingError<TypeParam>());
}

// ---- label, reference, path and serial number by themselves ----

Blob withKeyReference(const Blob& reference) {
    return sequence(octetString({0x45}), namedBits({}), reference);
}

Blob keyReferenceSet(const Blob& stored, std::uint16_t reference) {
    auto attributes = decoded<PKCS15::CommonKeyAttributes>(withKeyReference(stored));
    setPKCS15KeyReference(reference, attributes);
    return ASN1::encode(attributes);
}

TEST(SetPKCS15KeyReference, RemovesTheMemberForNone) {
    EXPECT_EQ(keyReferenceSet(integer(5), 0xFFFF), withKeyReference({}));
    EXPECT_EQ(keyReferenceSet({}, 0xFFFF), withKeyReference({}));
}

TEST(SetPKCS15KeyReference, WritesEveryOtherNumber) {
    for (const int number : {0, 1, 127, 128, 144, 255, 256, 0xFFFE}) {
        const auto reference = static_cast<std::uint16_t>(number);
        EXPECT_EQ(keyReferenceSet(integer(5), reference), withKeyReference(integer(number)));
        EXPECT_EQ(keyReferenceSet({}, reference), withKeyReference(integer(number)));
    }
}

TEST(SetPKCS15Label, HasTheMemberExactlyWhenThereIsALabel) {
    auto attributes = decoded<PKCS15::CommonObjectAttributes>(Common{.label = "before"}.encoded());
    setPKCS15Label(text("after"), attributes);
    EXPECT_EQ(ASN1::encode(attributes), Common{.label = "after"}.encoded());
    setPKCS15Label({}, attributes);
    EXPECT_EQ(ASN1::encode(attributes), sequence());
    setPKCS15Label(hex("610062"), attributes);
    EXPECT_EQ(ASN1::encode(attributes), sequence(element(0x0C, hex("610062"))));
}

template <class Value>
class SetPKCS15Path : public testing::Test {
protected:
    static Blob pathSet(Value value, const PKCS15Path& path) {
        setPKCS15Path(value, path);
        return ASN1::encode(value);
    }
};

using ValueTypes = testing::Types<
    PKCS15::ObjectValue<ASN1::OpenData>, PKCS15::ObjectValue<ASN1::OCTET_STRING>,
    PKCS15::ObjectValue<PKCS15::RSAPrivateKeyObject>, PKCS15::ObjectValue<ASN1::INTEGER>,
    PKCS15::ObjectValue<PKCS15::RSAPublicKeyChoice>, PKCS15::ObjectValue<PKCS15::ECPublicKeyChoice>,
    PKCS15::ObjectValue<PKCS15::DSAPublicKeyChoice>,
    PKCS15::ObjectValue<PKCS15::DHPublicKeyChoice>>;
TYPED_TEST_SUITE(SetPKCS15Path, ValueTypes);

TYPED_TEST(SetPKCS15Path, WritesIndexAndLengthTogetherOrNotAtAll) {
    const Blob file = hex("3F0050154B01");
    EXPECT_EQ(this->pathSet({}, {file, 0, 0}), path("3F0050154B01"));
    EXPECT_EQ(this->pathSet({}, {file, 0, 128}), path("3F0050154B01", 0, 128));
    EXPECT_EQ(this->pathSet({}, {file, 7, 0}), path("3F0050154B01", 7, 0));
    EXPECT_EQ(this->pathSet({}, {file, 0xFFFF, 0xFFFF}), path("3F0050154B01", 0xFFFF, 0xFFFF));
}

TYPED_TEST(SetPKCS15Path, ReplacesWhateverTheValueWas) {
    const auto direct = [] {
        TypeParam value;
        value.template select<TypeParam::direct>();
        return value;
    }();
    EXPECT_EQ(this->pathSet(direct, {hex("4B02"), 0, 0}), path("4B02"));
    const Blob before[] = {
        path("4B01", 3, 4),                                               // another path
        sequence(octetString(hex("4B01")), contextPrimitive(0, {0x08})),  // length alone
        element(0x13, text("http://k")),                                  // URL
        context(1, path("4B01")),                                         // protected elsewhere
    };
    for (const Blob& stored : before)
        EXPECT_EQ(this->pathSet(decoded<TypeParam>(stored), {hex("4B02"), 0, 0}), path("4B02"));
}

Blob withSerialNumber(const Blob& serialNumber) { return sequence(path("4D01"), serialNumber); }

Blob serialNumberSet(const Blob& stored, const Blob& serial) {
    auto attributes = decoded<PKCS15::X509CertificateAttributes>(withSerialNumber(stored));
    setPKCS15SerialNumber(serial, attributes);
    return ASN1::encode(attributes);
}

TEST(SetPKCS15SerialNumber, RemovesTheMemberWhenThereIsNone) {
    EXPECT_EQ(serialNumberSet(integer(5), {}), withSerialNumber({}));
    EXPECT_EQ(serialNumberSet({}, {}), withSerialNumber({}));
}

TEST(SetPKCS15SerialNumber, TakesTheOctetsForBigEndianTwosComplement) {
    const Blob twenty = times(20, 0x7A);
    const Blob cases[] = {{0x00}, {0x07}, {0x80}, {0x00, 0x80}, {0xFF, 0x7F}, twenty};
    for (const Blob& serial : cases) {
        EXPECT_EQ(serialNumberSet(integer(5), serial), withSerialNumber(element(0x02, serial)));
        EXPECT_EQ(serialNumberSet({}, serial), withSerialNumber(element(0x02, serial)));
    }
}

TEST(SetPKCS15SerialNumber, WritesTheFewestOctetsThatHoldTheNumber) {
    EXPECT_EQ(serialNumberSet({}, hex("000007")), withSerialNumber(integer(7)));
    EXPECT_EQ(serialNumberSet({}, hex("FFFFFE")), withSerialNumber(integer(-2)));
}

}  // namespace
}  // namespace tovi::test
