#include "tovi/card/VirtualCard.h"

#include <gtest/gtest.h>

#include "tests/card/CardTools.h"

namespace tovi::test {
namespace {

/// Remembers what it was asked to keep, and refuses when told so.
class FakeStorage final : public VirtualCardStorage {
public:
    void storeContents(const VirtualFile& file, const Blob& contents) override {
        keep(pathName(file.description.path) + " " + hexOf(contents));
    }
    void storeRecords(const VirtualFile& file, const std::vector<Blob>& records) override {
        std::string text = pathName(file.description.path);
        for (const Blob& record : records) text += " " + hexOf(record);
        keep(text);
    }
    void storeTriesLeft(std::uint8_t reference, unsigned left) override {
        keep(std::to_string(reference) + ":" + std::to_string(left));
    }

    std::vector<std::string> kept;
    bool refuses = false;

private:
    void keep(std::string what) {
        if (refuses) throw SmartcardException("full", "FakeStorage::keep");
        kept.push_back(std::move(what));
    }
};

VirtualCard pinCard() {
    VirtualCard card = smallCard();
    card.add({.reference = 1, .value = octets("31323334"), .tries = 3, .left = 3});
    VirtualFile& file = *card.files().find(octets("3F0050154401"));
    file.description.update = {AccessRule::Kind::pin, 1};
    answer(card, "00A4080C 04 50154401");
    return card;
}

TEST(VirtualCard, RefusesClassesInstructionsAndLengthsItDoesNotKnow) {
    VirtualCard card = smallCard();
    EXPECT_EQ(answer(card, ""), "6700");
    EXPECT_EQ(answer(card, "00A400"), "6700");
    EXPECT_EQ(answer(card, "00A4000C 05 3F00"), "6700");
    EXPECT_EQ(answer(card, "80A4000C 02 3F00"), "6E00");
    EXPECT_EQ(answer(card, "01A4000C 02 3F00"), "6E00");
    EXPECT_EQ(answer(card, "00440000"), "6D00");
}

TEST(VirtualCard, RefusesExtendedLengthWhereSwitchedOff) {
    VirtualCard card = smallCard();
    EXPECT_EQ(answer(card, "00A40804 000004 50154401 0000").substr(0, 4), "620E");
    card.settings().extendedLength = false;
    EXPECT_EQ(answer(card, "00A40804 000004 50154401 0000"), "6700");
}

TEST(VirtualCard, PutsAChainTogether) {
    VirtualCard card = smallCard();
    EXPECT_EQ(answer(card, "10A4080C 02 5015"), "9000");
    EXPECT_EQ(answer(card, "00A4080C 02 4401"), "9000");
    EXPECT_EQ(answer(card, "10D60000 01 AA"), "9000");
    EXPECT_EQ(answer(card, "10D60000 01 BB"), "9000");
    EXPECT_EQ(card.files().find(octets("3F0050154401"))->contents[0], 0x01);  // not yet
    EXPECT_EQ(answer(card, "00D60000 01 CC"), "9000");
    EXPECT_EQ(answer(card, "00B00000 04"), "AABBCC049000");
}

TEST(VirtualCard, DropsAChainThatIsBroken) {
    VirtualCard card = smallCard();
    answer(card, "00A4080C 04 50154401");
    answer(card, "10D60000 01 AA");
    EXPECT_EQ(answer(card, "00B00000 01"), "6883");
    EXPECT_EQ(answer(card, "00B00000 01"), "019000");
    card.settings().commandChaining = false;
    EXPECT_EQ(answer(card, "10D60000 01 AA"), "6884");
    EXPECT_EQ(answer(card, "00B00000 01"), "019000");
}

TEST(VirtualCard, DoesNotCollectAChainWithoutEnd) {
    VirtualCard card = smallCard();
    const Blob part = CommandApdu{0x10, 0xD6, 0, 0, filled(65535, 0), 0}.encode();
    EXPECT_EQ(hexOf(card.process(part)), "9000");
    EXPECT_EQ(hexOf(card.process(part)), "6700");
    EXPECT_EQ(answer(card, "00A4080C 04 50154401"), "9000");
}

TEST(VirtualCard, KeepsDataForGetResponseWhereSwitchedSo) {
    VirtualCard card = smallCard();
    card.settings().useGetResponse = true;
    EXPECT_EQ(answer(card, "00A40804 04 50154401"), "6110");
    EXPECT_EQ(answer(card, "00C00000 04"), "620E8002610C");
    EXPECT_EQ(answer(card, "00C00000 00"),
              "0020"
              "820101"
              "83024401"
              "880108"
              "9000");
    EXPECT_EQ(answer(card, "00C00000 00"), "6985");
    EXPECT_EQ(answer(card, "00B0001E 03"), "6102");
    EXPECT_EQ(answer(card, "00C00000 02"), "1F206282");
}

TEST(VirtualCard, ForgetsWaitingDataWithTheNextCommand) {
    VirtualCard card = smallCard();
    card.settings().useGetResponse = true;
    answer(card, "00A40804 04 50154401");
    answer(card, "00A4080C 04 50154401");
    EXPECT_EQ(answer(card, "00C00000 00"), "6985");
    answer(card, "00A40804 04 50154401");
    EXPECT_EQ(answer(card, "00C00100 00"), "6A86");
    EXPECT_EQ(answer(card, "00C00000"), "6700");
    EXPECT_EQ(answer(card, "00C00000 02"), "620E610E");
}

TEST(VirtualCard, SplitsResponsesWhereTheyAreTooLong) {
    VirtualCard card = smallCard();
    card.settings().maxResponse = 4;
    EXPECT_EQ(answer(card, "00A40804 04 50154401 00"), "620E8002610C");
    EXPECT_EQ(answer(card, "00C00000 00"), "002082016108");
}

TEST(VirtualCard, GivesTheRestOfALongRecordBehind61) {
    VirtualCard card = smallCard();
    VirtualFile& file =
        card.addLinear(octets("3F004600"), FileDescription::Kind::linearFixed, 600, 1);
    file.records = {pattern(600)};
    answer(card, "00A4080C 02 4600");
    EXPECT_EQ(answer(card, "00B20104 00"), hexOf(slice(pattern(600), 0, 256)) + "6100");
    EXPECT_EQ(answer(card, "00C00000 00"), hexOf(slice(pattern(600), 256, 256)) + "6158");
    EXPECT_EQ(answer(card, "00C00000 58"), hexOf(slice(pattern(600), 512, 88)) + "9000");
}

TEST(VirtualCard, InsistsOnTheExactLengthWhereSwitchedSo) {
    VirtualCard card = smallCard();
    card.settings().exactLength = true;
    EXPECT_EQ(answer(card, "00A40804 04 50154401 00"), "6C10");
    EXPECT_EQ(answer(card, "00A40804 04 50154401 10").substr(0, 4), "620E");
    EXPECT_EQ(answer(card, "00B0001E 00"), "6C02");
    EXPECT_EQ(answer(card, "00B0001E 02"), "1F209000");
}

TEST(VirtualCard, LetsAnUpdatePassOnceThePinIsVerified) {
    VirtualCard card = pinCard();
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "6982");
    EXPECT_EQ(answer(card, "00200001 04 31323335"), "63C2");
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "6982");
    EXPECT_EQ(answer(card, "00200001 04 31323334"), "9000");
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "9000");
    EXPECT_EQ(answer(card, "00200001"), "9000");
    card.reset();
    EXPECT_EQ(answer(card, "00200001"), "63C3");
    EXPECT_EQ(answer(card, "00B00000 01"), "6986");  // the master file is current
    answer(card, "00A4080C 04 50154401");
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "6982");
}

TEST(VirtualCard, RefusesVerifyWithOtherParameters) {
    VirtualCard card = pinCard();
    EXPECT_EQ(answer(card, "00200101 04 31323334"), "6A86");
    EXPECT_EQ(answer(card, "00200002 04 31323334"), "6A88");
    EXPECT_EQ(answer(card, "00200002"), "6A88");
}

TEST(VirtualCard, StoresEveryChangeBeforeItHappens) {
    VirtualCard card = pinCard();
    FakeStorage storage;
    card.setStorage(&storage);
    answer(card, "00200001 04 00000000");
    answer(card, "00200001 04 31323334");
    answer(card, "00D6001F 01 AA");
    answer(card, "00A4080C 04 50154402");
    answer(card, "00E20000 02 0102");
    ASSERT_EQ(storage.kept.size(), 4u);
    EXPECT_EQ(storage.kept[0], "1:2");
    EXPECT_EQ(storage.kept[1], "1:3");
    EXPECT_EQ(storage.kept[2].substr(0, 19), "3F00/5015/4401 0102");
    EXPECT_EQ(storage.kept[2].substr(storage.kept[2].size() - 4), "1FAA");
    EXPECT_EQ(storage.kept[3], "3F00/5015/4402 0102");
}

TEST(VirtualCard, ChangesNothingThatCannotBeStored) {
    VirtualCard card = pinCard();
    answer(card, "00200001 04 31323334");
    FakeStorage storage;
    storage.refuses = true;
    card.setStorage(&storage);
    EXPECT_EQ(answer(card, "00D60000 01 AA"), "6581");
    EXPECT_EQ(answer(card, "000E0000"), "6581");
    EXPECT_EQ(answer(card, "00B00000 01"), "019000");
    EXPECT_EQ(answer(card, "00200001 04 00000000"), "6581");
    EXPECT_EQ(card.pins().left(1), 3u);
    EXPECT_EQ(answer(card, "00200001"), "63C3");  // what failed verifies nothing
    answer(card, "00A4080C 04 50154402");
    EXPECT_EQ(answer(card, "00E20000 02 0102"), "6581");
    EXPECT_TRUE(card.files().find(octets("3F0050154402"))->records.empty());
    storage.refuses = false;
    EXPECT_EQ(answer(card, "00E20000 02 0102"), "9000");
}

TEST(VirtualCard, IsCopiedWithContentsAndStateButWithoutStorage) {
    VirtualCard card = pinCard();
    FakeStorage storage;
    card.setStorage(&storage);
    answer(card, "00200001 04 31323334");
    VirtualCard copy = card;
    EXPECT_EQ(answer(copy, "00D60000 01 AA"), "9000");
    EXPECT_EQ(answer(copy, "00B00000 01"), "AA9000");
    EXPECT_EQ(answer(card, "00B00000 01"), "019000");
    EXPECT_TRUE(storage.kept.empty());
    card = copy;
    EXPECT_EQ(answer(card, "00B00000 01"), "AA9000");
    EXPECT_EQ(answer(card, "00D60000 01 BB"), "9000");
    EXPECT_EQ(answer(copy, "00B00000 01"), "AA9000");
}

TEST(VirtualCard, LeavesOutContentsThatDoNotFit) {
    VirtualCard card;
    EXPECT_EQ(hexOf(card.addTransparent(octets("3F004400"), 2, octets("010203")).contents), "0102");
    EXPECT_EQ(hexOf(card.addTransparent(octets("3F004401"), 4, octets("0102")).contents),
              "01020000");
}

TEST(VirtualCardChannel, PassesCommandsToTheCard) {
    VirtualCard card = smallCard();
    VirtualCardChannel channel(card);
    EXPECT_EQ(hexOf(channel.transmit(octets("00A4080C0450154401"))), "9000");
}

}  // namespace
}  // namespace tovi::test
