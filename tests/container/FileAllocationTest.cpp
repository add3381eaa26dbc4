#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"

namespace tovi::test {
namespace {

const FATInfo freeFATRow = {0, 0xFF, 0xFFFF, 0xFFFF};

/// A container whose table has rows of these types.
std::unique_ptr<PKCS15Container> withRows(std::initializer_list<unsigned char> types) {
    auto container = makeContainer();
    for (const unsigned char type : types) container->newFATRecord(type, false);
    return container;
}

const FATInfo& row(const PKCS15Container& container, std::size_t index) {
    return container.getFATRecords().at(index);
}

TEST(NewFATRecord, AppendsARowThatHoldsItsOwnPosition) {
    const auto container = withRows({tokenInfoObject});
    EXPECT_EQ(container->newFATRecord(privateKeyObject, true), 1u);
    EXPECT_EQ(container->newFATRecord(certificateObject, false), 2u);
    EXPECT_EQ(row(*container, 1), (FATInfo{1, 1, 1, 1}));
    EXPECT_EQ(row(*container, 2), (FATInfo{3, 0, 2, 2}));
}

TEST(NewFATRecord, AppendsBehindFreeRows) {
    const auto container = withRows({tokenInfoObject, freeRow});
    EXPECT_EQ(container->newFATRecord(dataObject, false), 2u);
}

TEST(NewFATRecord, StoresTypeZeroAsItIsAndThatRowThenCountsAsFree) {
    const auto container = withRows({tokenInfoObject});
    EXPECT_EQ(container->newFATRecord(freeRow, false), 1u);
    EXPECT_EQ(row(*container, 1), (FATInfo{0, 0, 1, 1}));
    EXPECT_EQ(container->makeFATRecord(dataObject, false), 1u);
    EXPECT_EQ(row(*container, 1), (FATInfo{4, 0, 1, 1}));
}

TEST(NewFATRecord, CountsRowsInSixteenBits) {
    const auto container = makeContainer();
    for (unsigned long i = 0; i < 0x10000; ++i) container->newFATRecord(dataObject, false);
    EXPECT_EQ(container->newFATRecord(dataObject, true), 0u);
    EXPECT_EQ(container->newFATRecord(dataObject, true), 1u);
    EXPECT_EQ(row(*container, 0x10001), (FATInfo{4, 1, 1, 1}));
}

TEST(MakeFATRecord, TakesTheLowestFreeRow) {
    const auto container =
        withRows({tokenInfoObject, privateKeyObject, freeRow, certificateObject, freeRow});
    EXPECT_EQ(container->makeFATRecord(dataObject, true), 2u);
    EXPECT_EQ(row(*container, 2), (FATInfo{4, 1, 2, 2}));
    EXPECT_EQ(container->makeFATRecord(dataObject, false), 4u);
    EXPECT_EQ(container->getFATRecords().size(), 5u);
}

TEST(MakeFATRecord, AppendsWhenNoRowIsFree) {
    const auto container = withRows({tokenInfoObject, privateKeyObject});
    EXPECT_EQ(container->makeFATRecord(dataObject, true), 2u);
    EXPECT_EQ(row(*container, 2), (FATInfo{4, 1, 2, 2}));
}

TEST(MakeFATRecord, AppendsToAnEmptyTable) {
    const auto container = makeContainer();
    EXPECT_EQ(container->makeFATRecord(dataObject, false), 0u);
    EXPECT_EQ(container->getFATRecords().size(), 1u);
}

TEST(MakeFATRecord, NeverGivesRowZeroOutAgain) {
    const auto container = withRows({freeRow, privateKeyObject});
    EXPECT_EQ(container->makeFATRecord(dataObject, false), 2u);
    EXPECT_EQ(row(*container, 0).objectType, freeRow);
}

TEST(MakeFATRecord, LeavesTheRowFreeForTypeZero) {
    const auto container = withRows({tokenInfoObject, freeRow});
    EXPECT_EQ(container->makeFATRecord(freeRow, true), 1u);
    EXPECT_EQ(row(*container, 1), freeFATRow);
}

TEST(MakeFATRecord, StoresTypeZeroAsItIsWhenItAppends) {
    const auto container = withRows({tokenInfoObject});
    EXPECT_EQ(container->makeFATRecord(freeRow, true), 1u);
    EXPECT_EQ(row(*container, 1), (FATInfo{0, 1, 1, 1}));
}

TEST(MakeFATRecord, TakesARowWithAnUndecodableObjectForUsed) {
    const auto container = withRows({tokenInfoObject, unrecognisedObjectType});
    EXPECT_EQ(container->makeFATRecord(dataObject, false), 2u);
}

TEST(UpdateFATRecord, OverwritesARowAndReturnsItsNumber) {
    const auto container = withRows({tokenInfoObject, privateKeyObject, dataObject});
    EXPECT_EQ(container->updateFATRecord(1, certificateObject, true), 1u);
    EXPECT_EQ(row(*container, 1), (FATInfo{3, 1, 1, 1}));
    EXPECT_EQ(row(*container, 2), (FATInfo{4, 0, 2, 2}));
}

TEST(UpdateFATRecord, FreesTheRowForTypeZeroWhateverTheFlag) {
    const auto container = withRows({tokenInfoObject, dataObject, dataObject, dataObject});
    EXPECT_EQ(container->updateFATRecord(3, freeRow, true), 3u);
    EXPECT_EQ(container->updateFATRecord(2, freeRow, false), 2u);
    EXPECT_EQ(row(*container, 3), freeFATRow);
    EXPECT_EQ(row(*container, 2), freeFATRow);
}

TEST(UpdateFATRecord, GivesARowItsOwnPositionBack) {
    const auto container = withRows({tokenInfoObject, dataObject});
    container->updateFATRecord(1, freeRow, false);
    container->updateFATRecord(1, dataObject, false);
    EXPECT_EQ(row(*container, 1), (FATInfo{4, 0, 1, 1}));
}

TEST(UpdateFATRecord, MayOverwriteRowZero) {
    const auto container = withRows({tokenInfoObject});
    EXPECT_EQ(container->updateFATRecord(0, tokenInfoObject, true), 0u);
    EXPECT_EQ(row(*container, 0), (FATInfo{6, 1, 0, 0}));
}

/// A card with one object of each kind, each in a file of its own.
CardBuilder oneFileForEachKind() {
    return CardBuilder()
        .privateKeys({privateKey({.value = path("6001")})})
        .publicKeys({publicKey({.value = path("6002")})})
        .certificates({certificate({.value = path("6003")})})
        .dataObjects({dataRecord({.value = path("6004")})})
        .secretKeys({secretKey({.id = {0x51}, .value = path("6007")}),
                     secretKey({.id = {0x52}, .value = path("60FE")})})
        .trustedPublicKeys({publicKey({.value = path("6012")})})
        .trustedCertificates({certificate({.value = path("6013")})})
        .usefulCertificates({certificate({.value = path("6023")})})
        .authObjects({authKey({.authKeyId = {0x52}})});  // takes the file 60FE over
}

TEST(GetFreeFID, SearchesTheObjectsOfTheTypeAskedForAndNoOthers) {
    const auto container = containerOf(oneFileForEachKind());
    struct Case {
        unsigned char type;
        std::uint16_t used;
    };
    const Case cases[] = {{privateKeyObject, 0x6001},
                          {publicKeyObject, 0x6002},
                          {certificateObject, 0x6003},
                          {dataObject, 0x6004},
                          {secretKeyObject, 0x6007},
                          {trustedPublicKeyObject, 0x6012},
                          {trustedCertificateObject, 0x6013},
                          {usefulCertificateObject, 0x6023},
                          {authObject, 0x60FE},
                          {authObjectAlternate, 0x60FE}};
    for (const Case& asked : cases)
        for (const Case& other : cases) {
            const bool isOwn = asked.used == other.used;
            EXPECT_EQ(container->getFreeFID(other.used, asked.type), other.used + (isOwn ? 1 : 0))
                << "type " << int{asked.type} << " from " << other.used;
        }
}

TEST(GetFreeFID, RefusesTypesWithoutFiles) {
    const auto container = containerOf(oneFileForEachKind());
    for (const unsigned char type : Blob{0, 5, 6, 8, 17, 20, 34, 36, 64, 253})
        EXPECT_EQ(failureOf([&] { container->getFreeFID(0x5000, type); }),
                  smartcardFailure("unsupported object type", "PKCS15Container::getFreeFID"))
            << int{type};
}

TEST(GetFreeFID, PassesTheEndOfTheSearchOnUnchanged) {
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->getFreeFID(0x7FFF, privateKeyObject); }),
              smartcardFailure("no free FID", "getNextFreeFID"));
}

TEST(GetFreeFID, WorksOnAContainerThatWasNeverRead) {
    const auto container = makeContainer();
    EXPECT_EQ(container->getFreeFID(0x5031, dataObject), 0x5034);
    EXPECT_EQ(container->getFreeFID(0x6376, dataObject), 0x6379);
}

TEST(GetFreeFID, DoesNotCountObjectsWithoutAFile) {
    const Blob direct = context(0, octetString({1, 2}));
    const auto container = containerOf(CardBuilder().dataObjects(
        {dataRecord({.value = direct}), undecodable(), dataRecord({.value = path("5000")})}));
    EXPECT_EQ(container->getFreeFID(0x5000, dataObject), 0x5001);
    EXPECT_EQ(container->getFreeFID(0xFFFF, dataObject), 0xFFFF);
}

}  // namespace
}  // namespace tovi::test
