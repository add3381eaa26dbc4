#include "tests/platform/AuthEntries.h"

namespace tovi::test {
namespace {

TEST(EncodeAuthInfo, WritesAnAuthenticationKey) {
    EXPECT_EQ(written(newAuthKey()), derivedKey) << "derived keys are the default";
    Info info = newAuthKey();
    info.derivedKey = false;
    EXPECT_EQ(written(info), storedKey);
    info.authKeyId.clear();
    EXPECT_EQ(written(info),
              authRecord(0xA1, sequence(modifiable), sequence(boolean(false), octetString({}))));
}

TEST(EncodeAuthInfo, UpdatesAnAuthenticationKey) {
    EXPECT_EQ(updated(derivedKey, [](Info& info) { info.label.clear(), info.derivedKey = false; }),
              storedKey);
    EXPECT_EQ(updated(storedKey, [](Info& info) { info.label.clear(), info.derivedKey = true; }),
              derivedKey);
    EXPECT_EQ(updated(derivedKey, [](Info& info) { info.label.clear(), info.authKeyId = {0x01}; }),
              authRecord(0xA1, sequence(modifiable), sequence(octetString({0x01}))));
}

TEST(EncodeAuthInfo, WritesNoReferenceAndNoFileOfTheSecretKeyBehindAnAuthenticationKey) {
    EXPECT_EQ(
        updated(derivedKey,
                [](Info& info) { info.label.clear(), info.reference = 3, info.fid = 0x6001; }),
        derivedKey);
}

TEST(EncodeAuthInfo, WritesExternalAuthenticationByCertificate) {
    EXPECT_EQ(written(newExternal()), certificateBased);
    EXPECT_EQ(updated(certificateBased, [](Info& info) { info.label.clear(), info.cha = {0x09}; }),
              authRecord(0xA2, sequence(modifiable), context(0, octetString({0x09}))));
}

TEST(EncodeAuthInfo, CannotFillExternalAuthenticationByKey) {
    EXPECT_EQ(failureOfEncoding({externalByKey()}, newExternal(), 0), encodingError);
}

// ---- what infos do not hold ----

const Blob later = hex("870102");  // [7], a member of a later version

TEST(EncodeAuthInfo, KeepsMembersOfLaterVersionsThroughAnUpdate) {
    const auto record = [](const char* label) {
        return element(0x30, join({sequence(utf8String(label), modifiable, later),
                                   sequence(octetString({0x07}), later),
                                   context(1, sequence(mandatoryOfPin, hex("80020083"), later))}));
    };
    EXPECT_EQ(updated(record("old"), [](Info& info) { info.label = text("new"); }), record("new"));
}

TEST(EncodeAuthInfo, KeepsMembersOfLaterVersionsInEveryKind) {
    const auto common = [](const char* label) { return sequence(utf8String(label), modifiable); };
    const auto bio = [&](const char* label) {
        return authRecord(
            0xA0, common(label),
            sequence(bioFlagsAndTemplate, sequence(enumerated(1), enumerated(3), later), later));
    };
    const auto eye = [&](const char* label) {
        return authRecord(0xA0, common(label),
                          sequence(bioFlagsAndTemplate, context(0, enumerated(0), later)));
    };
    const auto otherType = [&](const char* label) {
        return authRecord(0xA0, common(label), sequence(bioFlagsAndTemplate, hex("A90155")));
    };
    const auto key = [&](const char* label) {
        return authRecord(0xA1, common(label), sequence(octetString({0x4B}), later));
    };
    const auto external = [&](const char* label) {
        return authRecord(0xA2, common(label), context(0, octetString({0x4B}), later));
    };
    const std::function<Blob(const char*)> records[] = {bio, eye, otherType, key, external};
    for (const auto& record : records)
        EXPECT_EQ(updated(record("old"), [](Info& info) { info.label = text("new"); }),
                  record("new"))
            << &record - records;
}

TEST(EncodeAuthInfo, KeepsTheSubclassAttributes) {
    const Blob record = element(0x30, join({sequence(modifiable), identifier7, context(0, null()),
                                            context(1, sequence(mandatoryOfPin))}));
    EXPECT_EQ(updated(record, withoutLabel), record);
}

TEST(EncodeAuthInfo, KeepsNumbersThatInfosDoNotHold) {
    const Blob flagsBeyond32 = hex("0306 07 04 00 00 00 80");
    for (const Blob& record : {
             authRecord(0x30, sequence(modifiable),
                        sequence(flagsBeyond32, enumerated(1), integer(4), integer(8),
                                 integer(0x100000000))),
             authRecord(0x30, sequence(modifiable), sequence(mandatoryOfPin, integer(-5))),
             authRecord(0x30, sequence(modifiable), sequence(mandatoryOfPin, hex("80030 0FFFF"))),
             authRecord(
                 0xA0, sequence(modifiable),
                 sequence(namedBits({1}), objectIdentifier({2, 25, 0x123456789}), ringFinger)),
         })
        EXPECT_EQ(updated(record, withoutLabel), record);
}

TEST(EncodeAuthInfo, KeepsFlagsBeyondThoseThatChange) {
    const Blob flags = hex("0306 07 04 00 00 00 80");    // 5 and 32
    const Blob changed = hex("0306 07 80 00 00 00 80");  // 0 and 32
    const Blob rest = join({enumerated(1), integer(4), integer(8)});
    EXPECT_EQ(updated(authRecord(0x30, sequence(modifiable), sequence(flags, rest)),
                      [](Info& info) { info.label.clear(), info.pinFlags = 1; }),
              authRecord(0x30, sequence(modifiable), sequence(changed, rest)));
}

TEST(EncodeAuthInfo, KeepsAPathThatTheInfoSays) {
    const Blob indexAlone = sequence(octetString(hex("6001")), integer(5));
    const Blob otherForm = sequence(context(0, octetString({0x01})));  // tagRef
    for (const Blob& stored : {indexAlone, otherForm}) {
        const Blob record =
            authRecord(0x30, sequence(modifiable), sequence(mandatoryOfPin, stored));
        EXPECT_EQ(updated(record, withoutLabel), record);
        EXPECT_EQ(
            updated(record,
                    [](Info& info) {
                        info.label.clear(), info.path = {hex("6002"), 0, 0};
                    }),
            authRecord(0x30, sequence(modifiable), sequence(mandatoryOfPin, test::path("6002"))));
    }
}

TEST(EncodeAuthInfo, OfWhatWasReadGivesTheSameOctets) {
    for (const Blob& record :
         {wholePin, templateRecord(join({ringFinger, integer(5), time2025, path5016})),
          templateRecord(leftEye), storedKey, certificateBased}) {
        const bool hasLabel = record == wholePin;
        EXPECT_EQ(updated(record, hasLabel ? [](Info&) {} : withoutLabel), record);
    }
}

// ---- constraints ----

TEST(EncodeAuthInfo, WritesTheConstraintsOfEveryKind) {
    const Blob rules = acceptableRules();
    const Blob common = sequence(modifiable, rules);
    const auto constrained = [&](Info info) {
        info.auxValue3 = &rules;
        return written(info);
    };
    EXPECT_EQ(constrained(newPin()), authRecord(0x30, common, sequence(mandatoryOfPin)));
    EXPECT_EQ(constrained(newTemplate()),
              authRecord(0xA0, common, sequence(bioFlagsAndTemplate, ringFinger)));
    EXPECT_EQ(constrained(newAuthKey()),
              authRecord(0xA1, common, sequence(octetString({0x4B, 0x31}))));
    EXPECT_EQ(constrained(newExternal()),
              authRecord(0xA2, common, context(0, octetString({0x01, 0x02, 0x03}))));
}

TEST(EncodeAuthInfo, KeepsTheConstraintsWhenThereAreNoneToWrite) {
    const Blob record =
        authRecord(0x30, sequence(modifiable, acceptableRules()), sequence(mandatoryOfPin));
    EXPECT_EQ(updated(record, withoutLabel), record);
}

TEST(EncodeAuthInfo, RefusesConstraintsThatAreNone) {
    const Blob bad = integer(1);
    for (Info info : {newPin(), newTemplate(), newAuthKey(), newExternal()}) {
        info.auxValue3 = &bad;
        EXPECT_EQ(failureOfNew(info), encodingError);
    }
}

// ---- failures ----

TEST(EncodeAuthInfo, WritesNothingForAnInfoThatIsNotValid) {
    Info info = newPin();
    info.Import({0x01});
    ASSERT_FALSE(info.IsValid());
    for (const unsigned long index : {noIndex, 0UL, 77UL}) {
        Aodf aodf({leastPin});
        EXPECT_EQ(aodf.encode(info, index), noIndex);
        EXPECT_EQ(aodf.records(), leastPin);
        EXPECT_EQ(aodf.raws.size(), 1u);
    }
}

TEST(EncodeAuthInfo, CannotFillARecordOfAnotherKind) {
    const Blob records[] = {leastPin, templateRecord(ringFinger), derivedKey, certificateBased};
    const Info infos[] = {newPin(), newTemplate(), newAuthKey(), newExternal()};
    for (std::size_t stored = 0; stored < 4; ++stored)
        for (std::size_t kind = 0; kind < 4; ++kind) {
            if (kind == stored) continue;
            EXPECT_EQ(failureOfEncoding({records[stored]}, infos[kind], 0), encodingError);
        }
}

TEST(EncodeAuthInfo, CannotFillARecordOfAnUnknownKind) {
    EXPECT_EQ(failureOfEncoding({unknownAuthObject()}, newPin(), 0), encodingError);
    EXPECT_EQ(failureOfEncoding({unknownAuthObject()}, Info(), 0), encodingError);
}

TEST(EncodeAuthInfo, RefusesAnInfoOfNoKind) {
    EXPECT_EQ(failureOfNew(Info()), encodingError);
    Info info = newPin();
    info.type = static_cast<AuthType>(4);
    EXPECT_EQ(failureOfNew(info), encodingError);
    EXPECT_EQ(failureOfEncoding({leastPin}, Info(), 0), encodingError);
}

TEST(EncodeAuthInfo, RefusesAnIndexWithoutARecord) {
    EXPECT_EQ(failureOfEncoding({leastPin}, newPin(), 1), encodingError);
    EXPECT_EQ(failureOfEncoding({leastPin}, newPin(), noIndex - 1), encodingError);
    EXPECT_EQ(failureOfEncoding({}, newPin(), 0), encodingError);
    EXPECT_EQ(failureOfEncoding({undecodable()}, newPin(), 0), encodingError)
        << "what did not decode";
}

TEST(EncodeAuthInfo, RefusesWhatBreaksAConstraint) {
    const Change changes[] = {
        [](Info& info) { info.minLength = 3; },
        [](Info& info) { info.minLength = 9; },
        [](Info& info) { info.storedLength = 65; },
        [](Info& info) { info.label = times(256, 'A'); },
        [](Info& info) { info.authId = times(256, 'A'); },
        [](Info& info) { info.authObjectId = times(256, 'A'); },
        [](Info& info) { info.userConsent = 32768; },
        [](Info& info) { info.userConsent = -2; },
    };
    for (const Change& change : changes) {
        Info info = newPin();
        change(info);
        EXPECT_EQ(failureOfNew(info), encodingError) << &change - changes;
        EXPECT_EQ(failureOfUpdate(leastPin, change), encodingError) << &change - changes;
    }
    Info key = newAuthKey();
    key.authKeyId = times(256, 0x01);
    EXPECT_EQ(failureOfNew(key), encodingError);
}

TEST(EncodeAuthInfo, WritesBackWhatWasReadInvalid) {
    const auto record = [](const char* label) {
        return authRecord(0x30, sequence(utf8String(label), modifiable),
                          sequence(namedBits({4, 5}), enumerated(1), integer(3), integer(8)));
    };
    EXPECT_EQ(updated(record("old"), [](Info& info) { info.label = text("new"); }), record("new"));
}

TEST(EncodeAuthInfo, ReplacesInMemoryOnlyWithoutACard) {
    Aodf aodf({leastPin});
    Info info = aodf.info(0);
    info.label = text("A");
    EXPECT_EQ(
        PKCS15AuthCT::encodeAuthInfoBase(&aodf.env, nullptr, aodf.handler, info, aodf.raws, 0), 0u);
    EXPECT_EQ(aodf.records(), leastPin);
    EXPECT_EQ(aodf.info(0).label, text("A"));
}

TEST(EncodeAuthInfo, NeedsACardForANewRecord) {
    Aodf aodf({leastPin});
    EXPECT_EQ(failureOf([&] {
                  PKCS15AuthCT::encodeAuthInfoBase(&aodf.env, nullptr, aodf.handler, newPin(),
                                                   aodf.raws, noIndex);
              }),
              smartcardFailure("no card", "ProfileDFHandler::WriteSequence"));
    EXPECT_EQ(aodf.raws.size(), 1u);
}

TEST(EncodeAuthInfo, PassesOnWhatTheCardSays) {
    Aodf aodf({leastPin});
    aodf.card.isWritable = false;
    const Failure refusal = {smartcardId, "refused", "FakeCard", statusWordCode + 0x6982};
    EXPECT_EQ(failureOf([&] { aodf.encode(newPin(), noIndex); }), refusal);
    Info info = aodf.info(0);
    info.label = text("A");
    EXPECT_EQ(failureOf([&] { aodf.encode(info, 0); }), refusal);
    EXPECT_EQ(aodf.raws.size(), 1u);
    EXPECT_EQ(aodf.info(0).label, text("pin"));
    EXPECT_EQ(aodf.records(), leastPin);
}

}  // namespace
}  // namespace tovi::test
