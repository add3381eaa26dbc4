#include <gtest/gtest.h>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"

namespace tovi::test {
namespace {

CardBuilder cardWith(const TokenInfoRecord& token) {
    return CardBuilder().tokenInfo(tokenInfo(token));
}

PKCS15TokenInfo tokenInfoOf(const TokenInfoRecord& token) {
    return containerOf(cardWith(token))->getTokenInfo();
}

/// What the second TokenInfo leaves when it is read after the first by the same container.
PKCS15TokenInfo tokenInfoOf(const TokenInfoRecord& first, const TokenInfoRecord& second) {
    TestCard firstCard(cardWith(first)), secondCard(cardWith(second));
    const auto container = makeContainer();
    container->readFromCard(firstCard.os());
    container->clear();
    container->readFromCard(secondCard.os());
    return container->getTokenInfo();
}

std::vector<AlgorithmRecord> algorithms(std::initializer_list<AlgorithmRecord> records) {
    return records;
}

TEST(InitTokenInfo, TakesTheLabel) {
    EXPECT_EQ(tokenInfoOf({.label = "My card"}).info.label, text("My card"));
}

TEST(InitTokenInfo, NamesATokenWithoutLabel) {
    const Blob label = tokenInfoOf({}).info.label;
    EXPECT_EQ(label, text("PKCS#15 Token"));
    EXPECT_EQ(label.size(), 13u);
}

TEST(InitTokenInfo, KeepsALabelThatIsEmpty) {
    EXPECT_EQ(tokenInfoOf({.label = ""}).info.label, Blob());
}

TEST(InitTokenInfo, NamesATokenWithoutLabelAlsoAfterOneWithALabel) {
    EXPECT_EQ(tokenInfoOf({.label = "first"}, {}).info.label, text("PKCS#15 Token"));
}

TEST(InitTokenInfo, TakesTheSerialNumber) {
    EXPECT_EQ(tokenInfoOf({.serialNumber = times(40, 0x17)}).info.serialNumber, times(40, 0x17));
}

TEST(InitTokenInfo, HasNoSerialNumberWhereTheCardLeavesItOut) {
    EXPECT_EQ(
        tokenInfoOf({.serialNumber = Blob{1}}, {.serialNumber = std::nullopt}).info.serialNumber,
        Blob());
}

TEST(InitTokenInfo, SetsTheValuesThatCallersUse) {
    const PKCS15TokenInfo token = tokenInfoOf({});
    EXPECT_EQ(token.info.tokenAux1, 0xFF);
    EXPECT_EQ(token.info.tokenAux2, 0);
    EXPECT_EQ(token.info.tokenAux3, 0);
}

TEST(InitTokenInfo, TakesTheVersion) {
    EXPECT_EQ(tokenInfoOf({.version = 0}).version, 0u);
    EXPECT_EQ(tokenInfoOf({.version = 0x123456789}).version, 0x123456789u);
}

TEST(InitTokenInfo, TakesTheManufacturer) {
    EXPECT_EQ(tokenInfoOf({.manufacturerID = "tovi"}).manufacturerID, text("tovi"));
}

TEST(InitTokenInfo, LeavesTheManufacturerAsItWasWhereTheCardNamesNone) {
    EXPECT_EQ(tokenInfoOf({}).manufacturerID, Blob());
    EXPECT_EQ(tokenInfoOf({.manufacturerID = "tovi"}, {}).manufacturerID, text("tovi"));
}

/// The four flags as bits 0 to 3 of a number.
unsigned flags(const PKCS15TokenInfo& token) {
    return (token.readonly ? 1u : 0u) | (token.loginRequired ? 2u : 0u) |
           (token.prnGeneration ? 4u : 0u) | (token.eidCompliant ? 8u : 0u);
}

TEST(InitTokenInfo, TakesEachFlagFromItsBit) {
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0x80}, 0)})), 1u);
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0x40}, 0)})), 2u);
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0x20}, 0)})), 4u);
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0x10}, 0)})), 8u);
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0x0F, 0xFF}, 0)})), 0u);
}

TEST(InitTokenInfo, TakesBitsBeyondTheEndForFalse) {
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({}, 0)})), 0u);
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0x80}, 7)})), 1u);
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0xE0}, 5)})), 7u);
}

TEST(InitTokenInfo, ReplacesTheFlagsOfThePreviousCard) {
    EXPECT_EQ(flags(tokenInfoOf({.flags = bitString({0xF0}, 4)}, {.flags = bitString({}, 0)})), 0u);
}

TEST(InitTokenInfo, TakesARowForEachAlgorithm) {
    const auto rows = tokenInfoOf({.supportedAlgorithms =
                                       algorithms({{.reference = 1, .algorithm = 0x40},
                                                   {.reference = 2, .algorithm = 0x80000001}})})
                          .supportedAlgorithms;
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].algorithm, 0x40u);
    EXPECT_EQ(rows[1].algorithm, 0x80000001u);
    EXPECT_EQ(rows[0].algId, Blob());
}

TEST(InitTokenInfo, TakesTheArcsOfAnAlgorithmAsOctets) {
    const auto rows = tokenInfoOf({.supportedAlgorithms = algorithms(
                                       {{.algId = objectIdentifier({1, 2, 840, 255, 256})}})})
                          .supportedAlgorithms;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].algId, hex("01 02 48 FF 00"));  // 840 is 0348, 256 is 0100
}

TEST(InitTokenInfo, TakesEachOperationOfAnAlgorithmFromItsBit) {
    for (std::size_t bit = 0; bit < 8; ++bit) {
        const auto octet = static_cast<std::uint8_t>(0x80 >> bit);
        const auto rows = tokenInfoOf({.supportedAlgorithms = algorithms(
                                           {{.supportedOperations = bitString({octet, 0x80}, 7)}})})
                              .supportedAlgorithms;
        ASSERT_EQ(rows.size(), 1u);
        for (std::size_t n = 0; n < 8; ++n)
            EXPECT_EQ(rows[0].supportedOperations[n], n == bit) << n << " of " << bit;
    }
}

TEST(InitTokenInfo, TakesOperationsBeyondTheEndForFalse) {
    const auto rows = tokenInfoOf({.supportedAlgorithms =
                                       algorithms({{.supportedOperations = bitString({0xC0}, 6)}})})
                          .supportedAlgorithms;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].supportedOperations,
              (std::array<bool, 8>{true, true, false, false, false, false, false, false}));
}

TEST(InitTokenInfo, LeavesTheAlgorithmsAsTheyWereWhereTheCardListsNone) {
    const auto rows = tokenInfoOf({.supportedAlgorithms = algorithms({{.algorithm = 7}})}, {})
                          .supportedAlgorithms;
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].algorithm, 7u);
}

TEST(InitTokenInfo, DropsRowsThatTheNextCardDoesNotHave) {
    const auto two = algorithms({{.algorithm = 7}, {.algorithm = 8}});
    EXPECT_EQ(tokenInfoOf({.supportedAlgorithms = two},
                          {.supportedAlgorithms = algorithms({{.algorithm = 9}})})
                  .supportedAlgorithms.size(),
              1u);
    EXPECT_TRUE(tokenInfoOf({.supportedAlgorithms = two}, {.supportedAlgorithms = algorithms({})})
                    .supportedAlgorithms.empty());
}

TEST(InitTokenInfo, KeepsTheIdentifierOfARowWhereTheNextCardNamesNone) {
    const auto rows =
        tokenInfoOf({.supportedAlgorithms =
                         algorithms({{.algorithm = 7, .algId = objectIdentifier({1, 2, 3})}})},
                    {.supportedAlgorithms = algorithms({{.algorithm = 8}, {.algorithm = 9}})})
            .supportedAlgorithms;
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].algorithm, 8u);
    EXPECT_EQ(rows[0].algId, hex("010203"));
    EXPECT_EQ(rows[1].algId, Blob());
}

TEST(InitTokenInfo, TakesRowZeroOfTheTable) {
    const auto container = containerOf(CardBuilder());
    ASSERT_EQ(container->getFATRecords().size(), 1u);
    EXPECT_EQ(container->getFATRecords()[0], (FATInfo{6, 0, 0, 0}));
}

TEST(InitTokenInfo, ReadsATokenInfoThatBreaksAConstraint) {
    const std::string longLabel(300, 'x');
    const auto container = containerOf(cardWith({.label = longLabel}));
    EXPECT_FALSE(container->getRawTokenInfos()[0].isValid);
    EXPECT_EQ(container->getTokenInfo().info.label, text(longLabel));
}

TEST(InitTokenInfo, FailsWhenNothingWasRead) {
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->initTokenInfo(); }),
              smartcardFailure("invalid TokenInfo", "PKCS15Container::initTokenInfo"));
    EXPECT_TRUE(container->getFATRecords().empty());
}

TEST(InitTokenInfo, FailsWhenTheRecordDidNotDecode) {
    TestCard card(CardBuilder().tokenInfo(undecodable()));
    const auto container = makeContainer();
    container->readTokenInfo(card.os());
    EXPECT_EQ(failureOf([&] { container->initTokenInfo(); }),
              smartcardFailure("invalid TokenInfo", "PKCS15Container::initTokenInfo"));
}

TEST(InitTokenInfo, FailsWhenItWouldNotBeTheFirstRow) {
    TestCard card(cardWith({.label = "second"}));
    const auto container = makeContainer();
    container->readTokenInfo(card.os());
    container->newFATRecord(dataObject, false);
    EXPECT_EQ(failureOf([&] { container->initTokenInfo(); }),
              smartcardFailure("TokenInfo must be record[0]", "PKCS15Container::initTokenInfo"));
    ASSERT_EQ(container->getFATRecords().size(), 2u) << "the row stays";
    EXPECT_EQ(container->getFATRecords()[0], (FATInfo{4, 0, 0, 0}));
    EXPECT_EQ(container->getFATRecords()[1], (FATInfo{6, 0, 1, 1}));
    EXPECT_EQ(container->getTokenInfo().info.label, Blob());
}

}  // namespace
}  // namespace tovi::test
