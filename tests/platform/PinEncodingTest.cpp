#include "tests/platform/AuthEntries.h"

namespace tovi::test {
namespace {

TEST(EncodePinInfo, WritesAPinWithAllThatItCanSay) { EXPECT_EQ(written(fullPin()), wholePin); }

TEST(EncodePinInfo, WritesAPinWithNothingOptional) {
    EXPECT_EQ(written(newPin()), leastPin);
    Info info = newPin();
    info.reference = noReference;
    EXPECT_EQ(written(info), leastPin) << "the reference is 0 where none is given";
}

TEST(EncodePinInfo, WritesAPinThatReadsAsItWasGiven) {
    const Info info = infoOf(decoded<Auth>(written(fullPin())));
    EXPECT_EQ(info.pinFlags, fullPin().pinFlags);
    EXPECT_EQ(info.maxLength, 200u);
    EXPECT_EQ(info.reference, 131);
    EXPECT_EQ(info.path.path, hex("3F005016"));
    EXPECT_EQ(info.path.length, 128);
    EXPECT_EQ(info.lastChange, text("20250101000000Z"));
}

TEST(EncodePinInfo, WritesEveryPinFlagAndEveryPinType) {
    Info info = newPin();
    info.pinFlags = 0xFFF;
    info.pinType = 4;
    const Blob expected = sequence(hex("030304FFF0"), enumerated(4), integer(4), integer(8));
    EXPECT_EQ(written(info), authRecord(0x30, sequence(modifiable), expected));
    info.pinFlags = 0;
    const Blob withoutFlags = sequence(hex("030100"), enumerated(4), integer(4), integer(8));
    EXPECT_EQ(written(info), authRecord(0x30, sequence(modifiable), withoutFlags));
}

const Option pinOptions[] = {
    {"maxLength", integer(200), [](Info& info) { info.maxLength = 200; },
     [](Info& info) { info.maxLength = noAuthValue; }},
    {"pinReference", hex("80020083"), [](Info& info) { info.reference = 131; },
     [](Info& info) { info.reference = 0; }},
    {"padChar", octetString({0xFF}),
     [](Info& info) { info.hasPadChar = true, info.padChar = 0xFF; },
     [](Info& info) { info.hasPadChar = false; }},
    {"lastPinChange", time2025, [](Info& info) { info.lastChange = text("20250101000000Z"); },
     [](Info& info) { info.lastChange.clear(); }},
    {"path", path5016,
     [](Info& info) {
         info.path = {hex("3F005016"), 0, 128};
     },
     [](Info& info) { info.path = {}; }},
};

TEST(EncodePinInfo, HasAnOptionalMemberOfAPinExactlyWhenTheInfoHasAValue) {
    for (const Option& option : pinOptions) {
        const Blob with =
            authRecord(0x30, sequence(modifiable), sequence(mandatoryOfPin, option.element));
        EXPECT_EQ(updated(leastPin, [&](Info& info) { info.label.clear(), option.set(info); }),
                  with)
            << option.name;
        EXPECT_EQ(updated(with, [&](Info& info) { info.label.clear(), option.clear(info); }),
                  leastPin)
            << option.name;
        EXPECT_EQ(updated(with, withoutLabel), with) << option.name;
    }
}

TEST(EncodePinInfo, HasAnOptionalCommonMemberExactlyWhenTheInfoHasAValue) {
    const Blob least = sequence(mandatoryOfPin);
    const auto withCommon = [&](const Blob& common) { return authRecord(0x30, common, least); };
    EXPECT_EQ(updated(wholePin,
                      [](Info& info) {
                          info.label.clear(), info.authId.clear(), info.isPrivate = false;
                          info.userConsent = noUserConsent, info.isModifiable = false;
                          for (const Option& option : pinOptions) option.clear(info);
                      }),
              withCommon(sequence()));
    const auto common = [&](const Change& change) {
        return updated(leastPin, [&](Info& info) { info.label.clear(), change(info); });
    };
    EXPECT_EQ(common([](Info& info) { info.label = text("A"); }),
              withCommon(sequence(utf8String("A"), modifiable)));
    EXPECT_EQ(common([](Info& info) { info.authId = {0x05}; }),
              withCommon(sequence(modifiable, octetString({0x05}))));
    EXPECT_EQ(common([](Info& info) { info.userConsent = 0; }),
              withCommon(sequence(modifiable, integer(0))));
    EXPECT_EQ(common([](Info& info) { info.isPrivate = true, info.isModifiable = false; }),
              withCommon(sequence(namedBits({0}))));
}

TEST(EncodePinInfo, WritesEachMandatoryMemberOfAPin) {
    EXPECT_EQ(updated(leastPin,
                      [](Info& info) {
                          info.label.clear();
                          info.authObjectId = {0x08, 0x09};
                          info.pinFlags = 2, info.pinType = 0;
                          info.minLength = 6, info.storedLength = 16;
                      }),
              element(0x30, join({sequence(modifiable), sequence(octetString({0x08, 0x09})),
                                  context(1, sequence(namedBits({1}), enumerated(0), integer(6),
                                                      integer(16)))})));
}

TEST(EncodePinInfo, LeavesAMandatoryMemberAloneThatTheInfoHasNoValueFor) {
    EXPECT_EQ(updated(wholePin,
                      [](Info& info) {
                          info.pinFlags = info.pinType = noAuthValue;
                          info.minLength = info.storedLength = noAuthValue;
                      }),
              wholePin);
}

TEST(EncodePinInfo, NeedsAllMandatoryNumbersOfANewPin) {
    for (const auto member :
         {&AuthInfo::pinFlags, &AuthInfo::pinType, &AuthInfo::minLength, &AuthInfo::storedLength}) {
        Info info = newPin();
        info.*member = noAuthValue;
        EXPECT_EQ(failureOfNew(info), encodingError);
    }
}

TEST(EncodePinInfo, KeepsAnIdentifierThatIsLeftOutLeftOut) {
    // ISO/IEC 7816-15 has it as optional.
    const Blob leftOut = element(
        0x30, join({sequence(modifiable), sequence(), context(1, sequence(mandatoryOfPin))}));
    EXPECT_EQ(updated(leftOut, withoutLabel), leftOut);
    EXPECT_EQ(updated(leftOut, [](Info& info) { info.label.clear(), info.authObjectId = {0x07}; }),
              leastPin);
    const Blob empty = element(0x30, join({sequence(modifiable), sequence(octetString({})),
                                           context(1, sequence(mandatoryOfPin))}));
    EXPECT_EQ(updated(empty, withoutLabel), empty);
    EXPECT_EQ(updated(leastPin, [](Info& info) { info.label.clear(), info.authObjectId.clear(); }),
              empty);
}

}  // namespace
}  // namespace tovi::test
