#include "tests/platform/AuthEntries.h"

namespace tovi::test {
namespace {

TEST(EncodeBioInfo, WritesATemplateOfAFinger) {
    EXPECT_EQ(written(newTemplate()), templateRecord(ringFinger));
    Info info = newTemplate();
    info.reference = 5;
    info.lastChange = text("20250101000000Z");
    info.path = {hex("6001"), 0, 0};
    EXPECT_EQ(written(info),
              templateRecord(join({ringFinger, integer(5), time2025, test::path("6001")})));
}

TEST(EncodeBioInfo, WritesATemplateOfAnEye) {
    Info info = newTemplate();
    info.bioType = 1;
    info.side = 0;
    info.finger = noAuthValue;
    EXPECT_EQ(written(info), templateRecord(leftEye));
}

TEST(EncodeBioInfo, HasAnOptionalMemberOfATemplateExactlyWhenTheInfoHasAValue) {
    const Option options[] = {
        {"bioReference", integer(5), [](Info& info) { info.reference = 5; },
         [](Info& info) { info.reference = noReference; }},
        {"lastChange", time2025, [](Info& info) { info.lastChange = text("20250101000000Z"); },
         [](Info& info) { info.lastChange.clear(); }},
        {"path", path5016,
         [](Info& info) {
             info.path = {hex("3F005016"), 0, 128};
         },
         [](Info& info) { info.path = {}; }},
    };
    const Blob least = templateRecord(ringFinger);
    for (const Option& option : options) {
        const Blob with = templateRecord(join({ringFinger, option.element}));
        EXPECT_EQ(updated(least, [&](Info& info) { info.label.clear(), option.set(info); }), with)
            << option.name;
        EXPECT_EQ(updated(with, [&](Info& info) { info.label.clear(), option.clear(info); }), least)
            << option.name;
    }
}

TEST(EncodeBioInfo, MakesAnEyeOfAFingerAndAFingerOfAnEye) {
    EXPECT_EQ(updated(templateRecord(ringFinger),
                      [](Info& info) { info.label.clear(), info.bioType = 1, info.side = 0; }),
              templateRecord(leftEye));
    const auto toFinger = [](Info& info) {
        info.label.clear(), info.bioType = 0, info.side = 1, info.finger = 3;
    };
    EXPECT_EQ(updated(templateRecord(leftEye), toFinger), templateRecord(ringFinger));
    EXPECT_EQ(failureOfUpdate(templateRecord(leftEye), [](Info& info) { info.bioType = 0; }),
              encodingError)
        << "which finger?";
}

TEST(EncodeBioInfo, LeavesATemplateAloneThatTheInfoHasNoValueFor) {
    EXPECT_EQ(updated(templateRecord(ringFinger),
                      [](Info& info) {
                          info.label.clear(), info.templateId.clear();
                          info.bioFlags = noAuthValue;
                          info.bioType = info.side = info.finger = noAuthValue;
                      }),
              templateRecord(ringFinger));
    EXPECT_EQ(
        updated(templateRecord(ringFinger),
                [](Info& info) { info.label.clear(), info.side = 0, info.finger = noAuthValue; }),
        templateRecord(sequence(enumerated(0), enumerated(3))));
}

TEST(EncodeBioInfo, NeedsAllThatIsMandatoryOfANewTemplate) {
    const Change changes[] = {
        [](Info& info) { info.bioFlags = noAuthValue; },
        [](Info& info) { info.templateId.clear(); },
        [](Info& info) { info.bioType = noAuthValue; },
        [](Info& info) { info.bioType = 2; },
        [](Info& info) { info.bioType = ~std::uint64_t{0}; },
        [](Info& info) { info.side = noAuthValue; },
        [](Info& info) { info.finger = noAuthValue; },
        [](Info& info) { info.side = 2; },
        [](Info& info) { info.finger = 5; },
        [](Info& info) { info.finger = ~std::uint64_t{0}; },
        [](Info& info) { info.bioType = 1, info.side = noAuthValue; },
    };
    for (const Change& change : changes) {
        Info info = newTemplate();
        change(info);
        EXPECT_EQ(failureOfNew(info), encodingError) << &change - changes;
    }
}

TEST(EncodeBioInfo, RefusesTemplateIdentifiersThatAreNone) {
    for (const Blob& arcs :
         {hex("0000000100"), hex("00000001"), hex("00000003 00000001"), hex("00000001 00000028")}) {
        EXPECT_EQ(failureOfUpdate(templateRecord(ringFinger),
                                  [&](Info& info) { info.templateId = arcs; }),
                  encodingError);
    }
}

TEST(EncodeBioInfo, KeepsATemplateInAnotherForm) {
    // [APPLICATION 96] in place of the attributes (ISO/IEC 7816-15:2016).
    const Blob other = authRecord(0xA0, sequence(modifiable), hex("7F60028100"));
    EXPECT_EQ(updated(other, [](Info& info) { info.label = text("A"); }),
              authRecord(0xA0, sequence(utf8String("A"), modifiable), hex("7F60028100")));
    const Change changes[] = {
        [](Info& info) { info.bioFlags = 2; },
        [](Info& info) { info.templateId = hex("00000001 00000002"); },
        [](Info& info) { info.bioType = 1; },
        [](Info& info) { info.reference = 5; },
        [](Info& info) { info.lastChange = text("20250101000000Z"); },
        [](Info& info) { info.path.path = hex("6001"); },
    };
    for (const Change& change : changes) EXPECT_EQ(failureOfUpdate(other, change), encodingError);
}

}  // namespace
}  // namespace tovi::test
