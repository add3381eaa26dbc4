#include "tools/ApplicationFiles.h"

#include <gtest/gtest.h>

#include "TestCard.h"
#include "tools/Text.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

const Blob root = {0x3F, 0x00, 0x50, 0x15};

Blob below(std::uint16_t fid) {
    Blob path = root;
    path.push_back(static_cast<std::uint8_t>(fid >> 8));
    path.push_back(static_cast<std::uint8_t>(fid));
    return path;
}

/// An application whose EF(ODF) holds `odf`, in hex.
struct Application : TestCard {
    explicit Application(const char* odf) {
        card.addFolder(root, PKCS15_AID);
        card.addTransparent(below(0x5031), 128, *fromHex(odf));
        card.addTransparent(below(0x5032), 64, *fromHex("300A02010004010103020640"));
    }
};

TEST(LocateApplicationFiles, FollowsEveryEntryThatNamesAFile) {
    Application test(
        "A806300404024409"          // authObjects: 4409
        "A004A0023000"              // privateKeys, held in the entry itself
        "A70A300804063F0050154408"  // dataObjects: 3F0050154408
        "AA0405000500"              // of a later edition
        "A406300404024409");        // certificates: 4409 again
    const auto files = locateApplicationFiles(test.os, ApplicationPlace(root));
    ASSERT_EQ(files.size(), 5u);
    EXPECT_EQ(files[0].kind->name, "TokenInfo");
    EXPECT_EQ(files[1].kind->name, "ODF");
    EXPECT_EQ(files[2].kind->name, "AODF");
    EXPECT_EQ(files[2].path, below(0x4409));
    EXPECT_FALSE(files[2].isRepeated);
    EXPECT_EQ(files[3].kind->name, "DODF");
    EXPECT_EQ(files[3].path, below(0x4408));
    EXPECT_EQ(files[4].kind->name, "CDF");
    EXPECT_TRUE(files[4].isRepeated);
}

TEST(LocateApplicationFiles, NeedsTheApplicationAndNoMore) {
    TestCard empty;
    EXPECT_THROW(locateApplicationFiles(empty.os, ApplicationPlace(root)), SmartcardException);
    empty.card.addFolder(root, PKCS15_AID);
    EXPECT_EQ(locateApplicationFiles(empty.os, ApplicationPlace(root)).size(), 2u);
}

TEST(LocateApplicationFiles, GoesByTheDirectoryWhereThatSaysMore) {
    Application test("");
    test.card.addTransparent(below(0x5131), 16, *fromHex("A006300404024401"));
    const ApplicationPlace place(root, {.odf = Blob{0x51, 0x31}, .tokenInfo = below(0x5132)});
    const auto files = locateApplicationFiles(test.os, place);
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0].path, below(0x5132));
    EXPECT_EQ(files[1].path, below(0x5131));
    EXPECT_EQ(files[2].path, below(0x4401));
    EXPECT_EQ(place.unusedSpace, below(0x5033));
}

TEST(ReadApplicationFile, OpensTheSequenceAroundTheEntriesOfTheODF) {
    Application test("3010A006300404024401A106300404024402");
    const ApplicationFile file = readApplicationFile(test.os, {&odfFile, below(0x5031)});
    EXPECT_EQ(file.count(Segment::Kind::wrapper), 1u);
    EXPECT_EQ(file.count(Segment::Kind::record), 2u);
    EXPECT_EQ(file.readByRecords, 2u);
}

TEST(ReadApplicationFile, CutsATransparentFileIntoSegments) {
    Application test("");
    test.card.addTransparent(below(0x4408), 30,
                             *fromHex("FF"            // padding
                                      "A0020500"      // no value of DataType
                                      "AB00"          // of a later edition
                                      "0004AABBCCDD"  // an erased record of four octets
                                      "000000"        // padding
                                      "8001FF"));     // no record
    const ApplicationFile file =
        readApplicationFile(test.os, {&directoryFileKind(7), below(0x4408)});
    ASSERT_FALSE(file.error);
    std::vector<std::string> segments;
    for (const Segment& segment : file.segments) {
        segments.push_back(std::string(segmentName(segment.kind)) + "@" +
                           std::to_string(segment.offset) + "+" +
                           std::to_string(segment.octets.size()));
    }
    EXPECT_EQ(segments, (std::vector<std::string>{"gap@0+1", "undecodable@1+4", "record@5+2",
                                                  "erased@7+6", "gap@13+3", "stale@16+14"}));
    EXPECT_EQ(file.count(Segment::Kind::record), 1u);
    EXPECT_FALSE(file.segments[1].error.empty());
    EXPECT_TRUE(file.segments[2].value);
    EXPECT_EQ(file.name(), "EF(DODF) 3F0050154408");
}

TEST(ReadApplicationFile, CutsRecordsOfALinearFileIntoSegments) {
    Application test("");
    test.card.addLinear(below(0x4408), FileDescription::Kind::linearVariable, 20, 9).records = {
        *fromHex("AB000000"), *fromHex(""), *fromHex("FF00"), *fromHex("80AB00"),
        *fromHex("AB00AA")};
    const ApplicationFile file =
        readApplicationFile(test.os, {&directoryFileKind(7), below(0x4408)});
    std::vector<std::string> segments;
    for (const Segment& segment : file.segments) {
        segments.push_back(std::string(segmentName(segment.kind)) + " " +
                           std::to_string(segment.slot) + ": " + toHex(segment.octets));
    }
    EXPECT_EQ(segments,
              (std::vector<std::string>{"record 1: AB00", "gap 1: 0000", "gap 2: ", "gap 3: FF00",
                                        "stale 4: 80AB00", "record 5: AB00", "stale 5: AA"}));
}

TEST(ReadApplicationFile, KeepsTheReasonWhenAFileCannotBeRead) {
    Application test("");
    const ApplicationFile file =
        readApplicationFile(test.os, {&directoryFileKind(0), below(0x4401)});
    ASSERT_TRUE(file.error);
    EXPECT_EQ(file.error->code, 0x16A82);
    EXPECT_TRUE(file.segments.empty());
    EXPECT_EQ(file.name(), "EF(PrKDF) 3F0050154401");
}

TEST(ReadApplicationFile, DoesNotReadARepeatedFile) {
    Application test("");
    const ApplicationFile file =
        readApplicationFile(test.os, {&directoryFileKind(0), below(0x4401), true});
    EXPECT_TRUE(file.isRepeated);
    EXPECT_FALSE(file.error);
}

TEST(ReadApplicationFile, ShowsRecordsOfNoKnownType) {
    Application test("");
    test.card.addTransparent(below(0x4F4F), 4, *fromHex("A0020500"));
    const ApplicationFile file = readApplicationFile(test.os, {&otherFile, below(0x4F4F)});
    ASSERT_EQ(file.segments.size(), 1u);
    EXPECT_EQ(file.segments[0].kind, Segment::Kind::record);
    EXPECT_FALSE(file.segments[0].value);
    EXPECT_EQ(file.name(), "EF 3F0050154F4F");
}

}  // namespace
}  // namespace tovi::test
