#include <gtest/gtest.h>

#include <new>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tests/support/ScriptedCardOS.h"
#include "tovi/card/FaultyChannels.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

constexpr const char* readOperation = "PKCS15Container::readFromCard";
const std::string selectTokenInfo = "selectFile 3F0050155032";
const std::string selectODF = "selectFile 3F0050155031";
const SmartcardException refusal("refused", "card", 0x16F00);

/// What readFromCard says when the card fails as the script wants.
Failure failureOfReading(const CardBuilder& builder, const ScriptedCardOS::Script& script) {
    TestCard card(builder);
    ScriptedCardOS os(*card.os(), script);
    const auto container = makeContainer();
    const Failure failure = failureOf([&] { container->readFromCard(&os); });
    EXPECT_FALSE(container->hasBeenRead());
    return failure;
}

Failure failureOfReading(const CardBuilder& builder) { return failureOfReading(builder, {}); }

Failure readFailure(const char* message) { return smartcardFailure(message, readOperation); }

// ---- selecting ----

TEST(SelectApp, IsFalseWithoutACard) { EXPECT_FALSE(PKCS15Container::selectApp(nullptr)); }

TEST(SelectApp, SelectsByIdentifierWithoutAskingForAResponse) {
    TestCard card{CardBuilder()};
    ScriptedCardOS os(*card.os());
    EXPECT_TRUE(PKCS15Container::selectApp(&os));
    EXPECT_EQ(os.calls(),
              std::vector<std::string>{"selectApplication A000000063504B43532D3135 0C"});
}

template <class Failure>
bool selectsInSpiteOf(const Failure& failure) {
    TestCard card{CardBuilder()};
    ScriptedCardOS os(*card.os(), throwingAt(0, failure));
    return PKCS15Container::selectApp(&os);
}

TEST(SelectApp, IsFalseForEveryExceptionOfTheFamily) {
    EXPECT_FALSE(selectsInSpiteOf(refusal));
    EXPECT_FALSE(selectsInSpiteOf(LogicalException("logic", "card")));
    EXPECT_FALSE(selectsInSpiteOf(Exception("any", "card")));
}

TEST(SelectApp, PassesExceptionsOfOtherTypesOn) {
    EXPECT_THROW(selectsInSpiteOf(std::bad_alloc()), std::bad_alloc);
    EXPECT_THROW(selectsInSpiteOf(42), int);
}

TEST(ReadFromCard, FailsWithoutACard) {
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->readFromCard(nullptr); }),
              readFailure("Failed to select PKCS15 AID"));
}

TEST(ReadFromCard, ReadsNothingWhenTheApplicationCannotBeSelected) {
    TestCard card(fullCard());
    ScriptedCardOS os(*card.os(), throwingAt(0, refusal));
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->readFromCard(&os); }),
              readFailure("Failed to select PKCS15 AID"));
    EXPECT_EQ(os.calls().size(), 1u);
    EXPECT_TRUE(container->getRawTokenInfos().empty());
    EXPECT_FALSE(container->hasBeenRead());
}

TEST(ReadFromCard, FailsOnACardWithoutTheApplication) {
    VirtualCard card;
    VirtualCardChannel channel(card);
    ISO7816CardOS os(channel);
    EXPECT_EQ(failureOf([&] { makeContainer()->readFromCard(&os); }),
              readFailure("Failed to select PKCS15 AID"));
}

TEST(ReadFromCard, PassesOtherExceptionsOfTheSelectionOn) {
    EXPECT_THROW(failureOfReading(CardBuilder(), throwingAt(0, std::bad_alloc())), std::bad_alloc);
}

// ---- EF(TokenInfo) ----

TEST(ReadFromCard, FailsWhenTheTokenInfoCannotBeRead) {
    const Failure expected = readFailure("Failed to decode and validate TokenInfo");
    EXPECT_EQ(failureOfReading(CardBuilder(), throwingAt(selectTokenInfo, refusal)), expected);
    EXPECT_EQ(failureOfReading(CardBuilder(), throwingAt("readBinary 0", refusal)), expected);
    EXPECT_EQ(failureOfReading(CardBuilder().withoutFile(PKCS15_EF_TOKEN_INFO)), expected);
}

TEST(ReadTokenInfo, NamesItselfWhenTheFileCannotBeRead) {
    TestCard card(CardBuilder().withoutFile(PKCS15_EF_TOKEN_INFO));
    EXPECT_EQ(failureOf([&] { makeContainer()->readTokenInfo(card.os()); }),
              smartcardFailure("Failed to decode and validate TokenInfo",
                               "PKCS15Container::readTokenInfo"));
}

TEST(ReadFromCard, FailsOnTwoTokenInfos) {
    EXPECT_EQ(failureOfReading(CardBuilder().tokenInfo(join({tokenInfo(), tokenInfo()}))),
              readFailure("More than one TokenInfo"));
}

TEST(ReadFromCard, CountsUndecodableTokenInfosToo) {
    EXPECT_EQ(failureOfReading(CardBuilder().tokenInfo(join({tokenInfo(), undecodable()}))),
              readFailure("More than one TokenInfo"));
}

TEST(ReadTokenInfo, NamesItselfWhenThereAreTwo) {
    TestCard card(CardBuilder().tokenInfo(join({tokenInfo(), tokenInfo()})));
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->readTokenInfo(card.os()); }),
              smartcardFailure("More than one TokenInfo", "PKCS15Container::readTokenInfo"));
    EXPECT_EQ(container->getRawTokenInfos().size(), 2u);
}

TEST(ReadTokenInfo, PassesOverRecordsWithAnotherTag) {
    TestCard card(CardBuilder().tokenInfo(join({element(0x61, {}), tokenInfo()})));
    const auto container = makeContainer();
    container->readTokenInfo(card.os());
    EXPECT_EQ(container->getRawTokenInfos().size(), 1u);
}

TEST(ReadTokenInfo, AcceptsAFileWithoutRecordsWhichTheReadThenRefuses) {
    const CardBuilder builder = CardBuilder().tokenInfo({});
    TestCard card(builder);
    const auto container = makeContainer();
    container->readTokenInfo(card.os());
    EXPECT_TRUE(container->getRawTokenInfos().empty());
    EXPECT_EQ(failureOfReading(builder), readFailure("invalid TokenInfo"));
}

TEST(ReadFromCard, FailsOnATokenInfoThatDoesNotDecode) {
    EXPECT_EQ(failureOfReading(CardBuilder().tokenInfo(undecodable())),
              readFailure("invalid TokenInfo"));
}

TEST(ReadFromCard, ReadsAllFilesBeforeItLooksIntoTheTokenInfo) {
    TestCard card(CardBuilder().tokenInfo({}).dataObjects({dataRecord()}));
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->readFromCard(card.os()); }),
              readFailure("invalid TokenInfo"));
    EXPECT_EQ(container->getRawDataObjects().size(), 1u);
    EXPECT_TRUE(container->getDataInfos().empty());
}

TEST(ReadFromCard, FailsWhenTheTableAlreadyHasARow) {
    TestCard card{CardBuilder()};
    const auto container = makeContainer();
    container->newFATRecord(dataObject, false);
    EXPECT_EQ(failureOf([&] { container->readFromCard(card.os()); }),
              readFailure("TokenInfo must be record[0]"));
    EXPECT_FALSE(container->hasBeenRead());
}

// ---- EF(ODF) ----

TEST(ReadFromCard, FailsWhenTheODFCannotBeRead) {
    const Failure expected = readFailure("Failed to decode and validate ODF");
    EXPECT_EQ(failureOfReading(CardBuilder(), throwingAt(selectODF, refusal)), expected);
    EXPECT_EQ(failureOfReading(CardBuilder().withoutFile(PKCS15_EF_ODF)), expected);
}

TEST(ReadODF, NamesItselfWhenTheFileCannotBeRead) {
    TestCard card(CardBuilder().withoutFile(PKCS15_EF_ODF));
    EXPECT_EQ(failureOf([&] { makeContainer()->readODF(card.os()); }),
              smartcardFailure("Failed to decode and validate ODF", "PKCS15Container::readODF"));
}

// ---- directory files ----

const char* const directoryFailures[] = {
    "Failed to decode PrKDF",     "Failed to decode PuKDF", "Failed to decode TrustedPuKDF",
    "Failed to decode SKDF",      "Failed to decode CDF",   "Failed to decode TrustedCDF",
    "Failed to decode UsefulCDF", "Failed to decode DODF",  "Failed to decode AODF"};

class EveryDirectory : public testing::TestWithParam<unsigned> {
protected:
    Directory kind() const { return static_cast<Directory>(GetParam()); }
    const char* message() const { return directoryFailures[GetParam()]; }
    CardBuilder cardWithoutTheFile() const {
        return CardBuilder().directory(kind(), {}).withoutFile(directoryFID(kind()));
    }
};

INSTANTIATE_TEST_SUITE_P(ReadDirectoryFiles, EveryDirectory, testing::Range(0u, directoryCount),
                         [](const auto& each) {
                             return std::string(directoryFailures[each.param]).substr(17);
                         });

TEST_P(EveryDirectory, FailsWithItsOwnMessageWhenTheFileIsMissing) {
    EXPECT_EQ(failureOfReading(cardWithoutTheFile()), readFailure(message()));
}

TEST_P(EveryDirectory, FailsWithItsOwnMessageWhenTheCardRefusesToRead) {
    const CardBuilder builder = CardBuilder().directory(kind(), {undecodable()});
    const std::string select = selectFileCall(absolutePath(directoryFID(kind())));
    EXPECT_EQ(failureOfReading(builder, throwingAt(select, refusal)), readFailure(message()));
}

TEST_P(EveryDirectory, NamesTheReadingOfDirectoryFilesBeforeTheFailureIsRewrapped) {
    TestCard card(cardWithoutTheFile());
    const auto container = makeContainer();
    container->readODF(card.os());
    EXPECT_EQ(failureOf([&] { container->readDirectoryFiles(card.os()); }),
              smartcardFailure(message(), "PKCS15Container::readDirectoryFiles"));
}

TEST_P(EveryDirectory, FailsWithItsOwnMessageForAPathThatNamesNoFile) {
    const CardBuilder builder = CardBuilder().odfRecord(odfEntry(GetParam(), path("440100")));
    EXPECT_EQ(failureOfReading(builder), readFailure(message()));
}

TEST(ReadFromCard, ReadsNoFileBehindOneThatCannotBeRead) {
    TestCard card(CardBuilder()
                      .privateKeys({privateKey()})
                      .certificates({certificate()})
                      .dataObjects({dataRecord()})
                      .withoutFile(directoryFID(Directory::certificates)));
    ScriptedCardOS os(*card.os());
    const auto container = makeContainer();
    EXPECT_EQ(failureOf([&] { container->readFromCard(&os); }),
              readFailure("Failed to decode CDF"));
    EXPECT_EQ(os.calls().back(), "selectFile 3F0050154405");
    EXPECT_EQ(container->getRawPrivateKeys().size(), 1u);  // what was decoded stays
    EXPECT_EQ(container->getRawODF().size(), 3u);
    EXPECT_TRUE(container->getRawDataObjects().empty());
    EXPECT_TRUE(container->getPrivateKeyInfos().empty());
    EXPECT_TRUE(container->getFATRecords().empty());
}

TEST(ReadFromCard, FailsForAnEntryOfTheODFThatHasAnEmptyPath) {
    TestCard card(CardBuilder().odfRecord(odfEntry(4, path(""))));
    EXPECT_EQ(failureOf([&] { makeContainer()->readFromCard(card.os()); }),
              readFailure("Failed to decode CDF"));
}

// ---- exceptions of other classes ----

/// The files whose reading a failure can hit, by the call that begins it.
const std::string beginnings[] = {selectTokenInfo, selectODF, "selectFile 3F0050154408"};

CardBuilder cardWithData() { return CardBuilder().dataObjects({dataRecord()}); }

TEST(ReadFromCard, RewrapsOtherExceptionsOfTheFamilyWithTheirMessageOnly) {
    for (const std::string& call : beginnings) {
        EXPECT_EQ(failureOfReading(cardWithData(),
                                   throwingAt(call, LogicalException("logic", "card", 7))),
                  readFailure("logic"))
            << call;
        EXPECT_EQ(failureOfReading(cardWithData(), throwingAt(call, Exception("any", "card", 7))),
                  readFailure("any"))
            << call;
    }
}

TEST(ReadFromCard, RewrapsANullMessageAsAnEmptyOne) {
    for (const std::string& call : beginnings)
        EXPECT_EQ(failureOfReading(cardWithData(), throwingAt(call, Exception(nullptr, "card"))),
                  readFailure(""))
            << call;
}

TEST(ReadFromCard, ThrowsAnExceptionThatIsOfTheVeryClass) {
    TestCard card(cardWithData());
    ScriptedCardOS os(*card.os(), throwingAt(selectODF, LogicalException("logic", "card")));
    const auto container = makeContainer();
    try {
        container->readFromCard(&os);
        FAIL() << "nothing thrown";
    } catch (const Exception& failure) {
        EXPECT_EQ(typeid(failure), typeid(SmartcardException));
    }
}

TEST(ReadFromCard, PassesExceptionsOutsideOfTheFamilyOn) {
    for (const std::string& call : beginnings) {
        EXPECT_THROW(failureOfReading(cardWithData(), throwingAt(call, std::bad_alloc())),
                     std::bad_alloc);
        EXPECT_THROW(failureOfReading(cardWithData(), throwingAt(call, 42)), int);
    }
}

TEST(ReadSteps, PassOtherExceptionsOfTheFamilyOnAsTheyAre) {
    TestCard card(cardWithData());
    const auto container = makeContainer();
    const LogicalException logic("logic", "card", 7);
    const Failure asItIs = {40, "logic", "card", 7};
    ScriptedCardOS failing(*card.os(), [&](std::size_t, const std::string&) { throw logic; });
    EXPECT_EQ(failureOf([&] { container->readTokenInfo(&failing); }), asItIs);
    EXPECT_EQ(failureOf([&] { container->readODF(&failing); }), asItIs);
    container->readODF(card.os());
    EXPECT_EQ(failureOf([&] { container->readDirectoryFiles(&failing); }), asItIs);
}

// ---- a failure at every place ----

TEST(ReadFromCard, BearsAFailureOfEveryCall) {
    TestCard card(fullCard());
    ScriptedCardOS whole(*card.os());
    makeContainer()->readFromCard(&whole);
    ASSERT_GT(whole.calls().size(), 20u);
    for (std::size_t n = 0; n < whole.calls().size(); ++n) {
        ScriptedCardOS os(*card.os(), throwingAt(n, refusal));
        const auto container = makeContainer();
        const Failure failure = failureOf([&] { container->readFromCard(&os); });
        EXPECT_EQ(failure.id, smartcardId) << n;
        EXPECT_TRUE(failure.message.starts_with("Failed to")) << failure.message;
        EXPECT_EQ(failure.operation, readOperation);
        EXPECT_EQ(failure.code, 0);
        EXPECT_EQ(os.calls().size(), n + 1) << "nothing is asked for behind a failure";
        EXPECT_FALSE(container->hasBeenRead());
        container->clear();
        container->readFromCard(card.os());
        EXPECT_EQ(container->getContainerInfos().size(), 1u);
    }
}

TEST(ReadFromCard, BearsAForeignExceptionOfEveryCall) {
    TestCard card(fullCard());
    ScriptedCardOS whole(*card.os());
    makeContainer()->readFromCard(&whole);
    for (std::size_t n = 0; n < whole.calls().size(); ++n) {
        ScriptedCardOS os(*card.os(), throwingAt(n, std::bad_alloc()));
        const auto container = makeContainer();
        EXPECT_THROW(container->readFromCard(&os), std::bad_alloc);
        EXPECT_FALSE(container->hasBeenRead());
        container->clear();
        container->readFromCard(card.os());
        EXPECT_TRUE(container->hasBeenRead());
    }
}

TEST(ReadFromCard, BearsACardPulledOutAtEveryCommand) {
    TestCard card(fullCard());
    for (std::size_t n = 0;; ++n) {
        ASSERT_LT(n, 1000u);
        TearingChannel torn(card.channel(), n, TearingChannel::Moment::beforeCommand);
        ISO7816CardOS os(torn);
        const auto container = makeContainer();
        const Failure failure = failureOf([&] { container->readFromCard(&os); });
        if (!torn.torn()) {
            EXPECT_EQ(failure, Failure());
            break;
        }
        EXPECT_EQ(failure.operation, readOperation) << n;
        EXPECT_EQ(failure.code, 0);
        EXPECT_FALSE(container->hasBeenRead());
    }
}

}  // namespace
}  // namespace tovi::test
