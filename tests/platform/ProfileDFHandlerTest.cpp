#include "tovi/interfaces/ProfileDFHandler.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi {
namespace {

using test::FakeCard;
using test::times;
using test::transparentFile;
using test::operator+;
using Records = std::vector<Blob>;

const Blob application = {0x50, 0x15};
const Blob file = {0x44, 0x01};
const Blob absoluteFile = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x01};

const Blob privateKeys = {0xA0, 0x06, 0x30, 0x04, 0x04, 0x02, 0x44, 0x01};
const Blob authObjects = {0xA8, 0x06, 0x30, 0x04, 0x04, 0x02, 0x44, 0x41};
const Blob sequence = {0x30, 0x03, 0x30, 0x01, 0x55};

Blob sequenceOf(const Blob& contents) {
    return Blob{0x30, static_cast<std::uint8_t>(contents.size())} + contents;
}

/// What a handler finds in a file that holds `octets`.
Records read(const Blob& octets, unsigned char tag, bool flag) {
    FakeCard card;
    card.files[absoluteFile] = transparentFile(octets);
    ProfileDFHandler handler(application);
    handler.SetFilePath(file, nullptr);
    handler.ReadFile(&card, tag, flag);
    return handler.records();
}

/// The absolute path that a handler of `app` selects for `path`.
Blob selectedPath(const Blob& app, const Blob& path) {
    FakeCard card;
    ProfileDFHandler handler(app);
    handler.SetFilePath(path, nullptr);
    EXPECT_THROW(handler.ReadFile(&card, IGNORE_TAG, true), SmartcardException);
    return card.selected.empty() ? Blob() : card.selected.back();
}

TEST(ProfileDFHandler, HasNoRecordsBeforeItReads) {
    EXPECT_TRUE(ProfileDFHandler(application).records().empty());
}

TEST(ProfileDFHandler, SelectsRelativePathsBelowTheApplication) {
    EXPECT_EQ(selectedPath(application, file), absoluteFile);
    EXPECT_EQ(selectedPath({0x50, 0x15, 0x50, 0x16}, {0x44, 0x01, 0x44, 0x02}),
              (Blob{0x3F, 0x00, 0x50, 0x15, 0x50, 0x16, 0x44, 0x01, 0x44, 0x02}));
}

TEST(ProfileDFHandler, TakesPathsFromTheMasterFileOnAsTheyAre) {
    EXPECT_EQ(selectedPath(application, {0x3F, 0x00, 0x44, 0x01}), (Blob{0x3F, 0x00, 0x44, 0x01}));
    EXPECT_EQ(selectedPath({0x3F, 0x00, 0x50, 0x15}, file), absoluteFile);
}

TEST(ProfileDFHandler, SelectsBelowTheMasterFileForAnEmptyApplicationPath) {
    EXPECT_EQ(selectedPath({}, file), (Blob{0x3F, 0x00, 0x44, 0x01}));
}

TEST(ProfileDFHandler, TakesTheCurrentDirectoryOfAPathForTheApplication) {
    EXPECT_EQ(selectedPath(application, {0x3F, 0xFF, 0x44, 0x01}), absoluteFile);
}

TEST(ProfileDFHandler, RefusesPathsThatNameNoFile) {
    for (const Blob& path : {Blob{}, Blob{0x44}, Blob{0x44, 0x01, 0x08}}) {
        FakeCard card;
        ProfileDFHandler handler(application);
        handler.SetFilePath(path, nullptr);
        try {
            handler.ReadFile(&card, IGNORE_TAG, true);
            FAIL();
        } catch (const SmartcardException& failure) {
            EXPECT_STREQ(failure.GetMessage(), "invalid file path");
            EXPECT_STREQ(failure.GetOperation(), "ProfileDFHandler::ReadFile");
        }
        EXPECT_EQ(card.commands(), 0u);
    }
}

TEST(ProfileDFHandler, RefusesToReadWithoutACard) {
    ProfileDFHandler handler(application);
    handler.SetFilePath(file, nullptr);
    try {
        handler.ReadFile(nullptr, IGNORE_TAG, true);
        FAIL();
    } catch (const SmartcardException& failure) {
        EXPECT_STREQ(failure.GetMessage(), "no card");
        EXPECT_STREQ(failure.GetOperation(), "ProfileDFHandler::ReadFile");
        EXPECT_EQ(failure.GetCode(), 0);
    }
}

TEST(ProfileDFHandler, TakesRecordsWithAnyConstructedTag) {
    EXPECT_EQ(read(privateKeys + sequence + authObjects, IGNORE_TAG, true),
              (Records{privateKeys, sequence, authObjects}));
}

TEST(ProfileDFHandler, TakesOnlySequencesWhenAskedFor) {
    EXPECT_EQ(read(privateKeys + sequence + authObjects + sequence, SEQUENCE_TAG, true),
              (Records{sequence, sequence}));
}

TEST(ProfileDFHandler, ReadsEntriesInsideOneOuterSequenceAsIfTheyStoodAlone) {
    const Blob entries = privateKeys + authObjects;
    EXPECT_EQ(read(sequenceOf(entries), IGNORE_TAG, false), (Records{privateKeys, authObjects}));
    EXPECT_EQ(read(sequenceOf(entries) + times(20, 0xFF), IGNORE_TAG, false),
              (Records{privateKeys, authObjects}));
    EXPECT_EQ(read(sequenceOf(Blob{0x00} + entries + times(7, 0x00)), IGNORE_TAG, false),
              (Records{privateKeys, authObjects}));
}

TEST(ProfileDFHandler, LeavesAnOuterSequenceOfOtherFilesAlone) {
    const Blob outer = sequenceOf(privateKeys);
    EXPECT_EQ(read(outer, IGNORE_TAG, true), Records{outer}) << "a record of a directory file";
    EXPECT_EQ(read(outer, SEQUENCE_TAG, false), Records{outer});
    EXPECT_EQ(read(sequenceOf(sequence), IGNORE_TAG, false), Records{sequenceOf(sequence)});
    EXPECT_EQ(read(outer + privateKeys, IGNORE_TAG, false), (Records{outer, privateKeys}));
}

TEST(ProfileDFHandler, KeepsAnOuterSequenceThatIsBroken) {
    const Blob broken = Blob{0x30, 0x20} + privateKeys;
    EXPECT_EQ(read(broken, IGNORE_TAG, false), Records{broken});
}

TEST(ProfileDFHandler, HoldsTheRecordsOfTheFileReadLast) {
    FakeCard card;
    card.files[absoluteFile] = transparentFile(privateKeys);
    const Blob other = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x02};
    card.files[other] = transparentFile(sequence + sequence);
    ProfileDFHandler handler(application);
    handler.SetFilePath(file, nullptr);
    handler.ReadFile(&card, IGNORE_TAG, true);
    handler.SetFilePath(other, "second");
    handler.ReadFile(&card, IGNORE_TAG, true);
    EXPECT_EQ(handler.records(), (Records{sequence, sequence}));
    EXPECT_EQ(card.selects, 2u) << "every reading selects its file itself";
}

TEST(ProfileDFHandler, HasNoRecordsAfterAFailure) {
    FakeCard card;
    card.files[absoluteFile] = transparentFile(privateKeys);
    ProfileDFHandler handler(application);
    handler.SetFilePath(file, nullptr);
    handler.ReadFile(&card, IGNORE_TAG, true);
    ASSERT_EQ(handler.records().size(), 1u);
    for (const std::size_t command : {1u, 2u}) {
        card.failingCommand = card.commands() + command;
        try {
            handler.ReadFile(&card, IGNORE_TAG, true);
            FAIL();
        } catch (const SmartcardException& failure) {
            EXPECT_EQ(failure.GetCode(), statusWordCode + 0x6F00);
        }
        EXPECT_TRUE(handler.records().empty());
    }
    card.failingCommand = 0;
    handler.ReadFile(&card, IGNORE_TAG, true);
    EXPECT_EQ(handler.records(), Records{privateKeys});
}

TEST(ProfileDFHandler, ReadsRealCardsOdf) {
    // Five entries, then an empty primitive [0] and zeros.
    Blob odf;
    Records expected;
    for (const std::uint8_t entry : Blob{0xA8, 0xA0, 0xA1, 0xA4, 0xA7}) {
        expected.push_back({entry, 0x06, 0x30, 0x04, 0x04, 0x02, 0x70, 0x01});
        odf = odf + expected.back();
    }
    EXPECT_EQ(read(odf + Blob{0x80} + times(7, 0x00), IGNORE_TAG, false), expected);
    EXPECT_EQ(read(odf + times(20, 0x00), IGNORE_TAG, false), expected);
    EXPECT_EQ(read(odf + times(3, 0xFF), IGNORE_TAG, false), expected);
}

}  // namespace
}  // namespace tovi
