#include "tovi/coders/PKCS15DataCT.h"

#include <gtest/gtest.h>

#include "tests/support/Records.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {
namespace {

using Info = PKCS15ObjectInfo<DataInfo>;

std::optional<bool> decode(const Blob& record, Info& info) {
    return PKCS15DataCT::decodeData(decoded<PKCS15::DataType>(record), info);
}

/// The info of a record, which has to be understood.
Info infoOf(const DataRecord& record) {
    Info info;
    EXPECT_EQ(decode(dataRecord(record), info), std::optional(true));
    return info;
}

TEST(DecodeData, TakesEverythingThatAnInfoHasAPlaceFor) {
    const Info info = infoOf({.common = {.label = "mine",
                                         .flags = namedBits({0}),
                                         .authId = Blob{0x02},
                                         .userConsent = 1},
                              .applicationName = "tovi",
                              .applicationOID = objectIdentifier({1, 2, 3}),
                              .value = path("4E07", 5, 6)});
    EXPECT_EQ(info.label, text("mine"));
    EXPECT_EQ(info.applicationName, text("tovi"));
    EXPECT_TRUE(info.isPrivate);
    EXPECT_FALSE(info.isModifiable);
    EXPECT_EQ(info.authId, Blob{0x02});
    EXPECT_EQ(info.userConsent, 1);
    EXPECT_EQ(info.GetParam(CKA_PRIVATE), 1);
    EXPECT_EQ(info.Params().size(), 2u);
    EXPECT_EQ(info.path.path, hex("4E07"));
    EXPECT_EQ(info.path.index, 5);
    EXPECT_EQ(info.path.length, 6);
    EXPECT_EQ(info.fid, 0x4E07u);
}

TEST(DecodeData, LeavesDefaultsWhereARecordSaysNothing) {
    const Info info = infoOf({});
    EXPECT_EQ(info.label, text("opaqueDO"));
    EXPECT_TRUE(info.applicationName.empty());
    EXPECT_TRUE(info.isModifiable);
}

TEST(DecodeData, TakesNoNameFromTheIdentifierOfTheApplication) {
    EXPECT_TRUE(infoOf({.applicationOID = objectIdentifier({1, 2, 3})}).applicationName.empty());
}

TEST(DecodeData, LeavesNoPathForAValueThatStandsInTheRecord) {
    const Info info = infoOf({.value = context(0, octetString({1, 2}))});
    EXPECT_TRUE(info.path.path.empty());
    EXPECT_EQ(info.fid, noFID);
}

TEST(DecodeData, LeavesTheInfoUntouchedForOtherAlternatives) {
    for (const Blob& record : {dataRecord({.type = Data::external}),
                               dataRecord({.type = Data::oid}), retagged(0xA9, dataRecord())}) {
        Info info;
        info.label = text("before");
        EXPECT_EQ(decode(record, info), std::nullopt);
        EXPECT_EQ(info.label, text("before"));
        EXPECT_TRUE(info.Params().empty());
    }
}

TEST(DecodeData, ReportsAnUnacceptableAccessControlPartAndFillsTheInfoAllTheSame) {
    Info info;
    EXPECT_EQ(decode(dataRecord({.common = {.accessControlRules = unacceptableRules()}}), info),
              std::optional(false));
    EXPECT_EQ(info.fid, 0x4E01u);
    EXPECT_EQ(info.label, text("opaqueDO"));
}

}  // namespace
}  // namespace tovi::test
