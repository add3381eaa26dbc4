#include "tovi/platform/StretchCheck.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeCard.h"

namespace tovi {
namespace {

using test::FakeCard;
using test::times;
using test::transparentFile;

const Blob path = {0x3F, 0x00, 0x44, 0x01};

Blob pattern(std::size_t size) {
    Blob octets = times(size, 0x00);
    for (std::size_t i = 0; i < size; ++i) octets[i] = static_cast<std::uint8_t>(i % 251);
    return octets;
}

/// A file of 1000 octets, the first `known` of which were read.
struct Checked {
    explicit Checked(std::size_t known) {
        card.files[path] = transparentFile(pattern(1000));
        const Blob octets = pattern(known);
        file.octets.assign(octets.begin(), octets.end());
        file.size = 1000;
        file.isWhole = known == 1000;
        card.selectFile(path);
    }

    Blob& octets() { return card.files[path].octets; }

    static FakeCard shortCard() {
        FakeCard card;
        card.mostRead = 100;
        return card;
    }

    FakeCard card = shortCard();
    DirectoryFile file;
    StretchCheck check{card, file};
};

TEST(StretchCheck, ReadsOnlyTheStretch) {
    Checked checked(1000);
    EXPECT_TRUE(checked.check.see(300, 410));
    EXPECT_EQ(checked.card.reads, 2u);
    EXPECT_EQ(checked.card.octetsSent, 110u);
    EXPECT_TRUE(checked.check.see(500, 500));
    EXPECT_EQ(checked.card.reads, 2u);
}

TEST(StretchCheck, SeesEveryOctetOfTheStretchAndNoOther) {
    for (const std::size_t offset : {299u, 300u, 355u, 409u, 410u}) {
        Checked checked(1000);
        checked.octets()[offset] ^= 0x01;
        EXPECT_EQ(checked.check.see(300, 410), offset < 300 || offset >= 410) << offset;
    }
}

TEST(StretchCheck, ReadsNothingTwice) {
    Checked checked(1000);
    EXPECT_TRUE(checked.check.see(300, 400));
    EXPECT_TRUE(checked.check.see(310, 390));
    EXPECT_EQ(checked.card.octetsSent, 100u);
    EXPECT_TRUE(checked.check.see(250, 450));
    EXPECT_EQ(checked.card.octetsSent, 200u);
    EXPECT_TRUE(checked.check.see(250, 450));
    EXPECT_EQ(checked.card.octetsSent, 200u);
}

TEST(StretchCheck, ReadsTheRestOfTheFile) {
    Checked checked(350);
    EXPECT_TRUE(checked.check.see(10, 20));
    EXPECT_TRUE(checked.file.isWhole);
    EXPECT_EQ(Blob(checked.file.octets.begin(), checked.file.octets.end()), pattern(1000));
    EXPECT_EQ(checked.card.octetsSent, 660u);
    EXPECT_EQ(checked.card.reads, 8u);
    EXPECT_TRUE(checked.check.see(340, 1000));
    EXPECT_EQ(checked.card.octetsSent, 670u) << "the rest has just been read";
}

TEST(StretchCheck, ReadsOverAShortPieceInBetweenRatherThanTwice) {
    Checked checked(950);
    EXPECT_TRUE(checked.check.see(905, 920));
    EXPECT_EQ(checked.card.reads, 1u);
    EXPECT_EQ(checked.card.octetsSent, 95u);
}

TEST(StretchCheck, SeesThatTheFileBecameShorter) {
    Checked checked(1000);
    checked.octets() = pattern(400);
    EXPECT_TRUE(checked.check.see(300, 400));
    EXPECT_FALSE(checked.check.see(300, 401));
}

TEST(StretchCheck, LearnsTheSizeOfAFileThatIsShorterThanTold) {
    Checked checked(350);
    checked.octets() = pattern(430);
    EXPECT_TRUE(checked.check.see(0, 0));
    EXPECT_TRUE(checked.file.isWhole);
    EXPECT_EQ(checked.file.size, 430u);
    EXPECT_EQ(checked.file.octets.size(), 430u);
}

TEST(StretchCheck, KeepsWhatCameBeforeAFailure) {
    Checked checked(350);
    checked.card.failingCommand = checked.card.commands() + 3;
    EXPECT_THROW(checked.check.see(0, 0), SmartcardException);
    EXPECT_FALSE(checked.file.isWhole);
    EXPECT_EQ(checked.file.octets.size(), 550u);
    checked.card.failingCommand = 0;
    EXPECT_TRUE(checked.check.see(0, 0));
    EXPECT_EQ(checked.file.octets.size(), 1000u);
}

}  // namespace
}  // namespace tovi
