#include "tools/Segment.h"

#include <gtest/gtest.h>

#include "tools/Text.h"

namespace tovi::test {
namespace {

/// "record@0+4" of each segment.
std::vector<std::string> shown(const std::vector<Segment>& segments) {
    std::vector<std::string> texts;
    for (const Segment& segment : segments) {
        texts.push_back(std::string(segmentName(segment.kind)) + "@" +
                        std::to_string(segment.offset) + "+" +
                        std::to_string(segment.octets.size()));
    }
    return texts;
}

DirectoryFile transparent(const char* octets) {
    DirectoryFile file;
    const Blob contents = *fromHex(octets);
    file.octets.assign(contents.begin(), contents.end());
    return file;
}

using Texts = std::vector<std::string>;

TEST(OpenOuterSequence, CutsTheRecordIntoItsEntries) {
    const DirectoryFile file = transparent("003009A00630040402440100FFFF");
    std::vector<Segment> segments = segmentsOf(odfFile, file);
    EXPECT_EQ(shown(segments), (Texts{"gap@0+1", "record@1+11", "gap@12+2"}));
    EXPECT_EQ(openOuterSequence(segments), 1u);
    EXPECT_EQ(shown(segments),
              (Texts{"gap@0+1", "wrapper@1+2", "record@3+8", "gap@11+1", "gap@12+2"}));
    EXPECT_TRUE(segments[2].value);
    EXPECT_EQ(toHex(segments[2].octets), "A006300404024401");
}

TEST(OpenOuterSequence, CountsUndecodableEntries) {
    const DirectoryFile file = transparent("300CA006300404024401A0023001");
    std::vector<Segment> segments = segmentsOf(odfFile, file);
    EXPECT_EQ(openOuterSequence(segments), 2u);
    EXPECT_EQ(shown(segments), (Texts{"wrapper@0+2", "record@2+8", "undecodable@10+4"}));
    EXPECT_TRUE(segments[2].isRecord());
    EXPECT_FALSE(segments[0].isRecord());
}

TEST(OpenOuterSequence, LeavesAnEntryAlone) {
    const DirectoryFile file = transparent("A006300404024401");
    std::vector<Segment> segments = segmentsOf(odfFile, file), none;
    EXPECT_EQ(openOuterSequence(segments), 1u);
    EXPECT_EQ(shown(segments), (Texts{"record@0+8"}));
    EXPECT_EQ(openOuterSequence(none), 1u);
}

TEST(OpenOuterSequence, KeepsTheNumberOfTheRecordOfALinearFile) {
    DirectoryFile file;
    file.info.structure = FileStructure::linearVariable;
    file.slots = {Blob{}, *fromHex("3008A006300404024401")};
    file.places = {{.start = 1, .length = 10}};
    std::vector<Segment> segments = segmentsOf(odfFile, file);
    EXPECT_EQ(openOuterSequence(segments), 1u);
    EXPECT_EQ(shown(segments), (Texts{"gap@0+0", "wrapper@0+2", "record@2+8"}));
    EXPECT_EQ(segments[1].slot, 2u);
    EXPECT_EQ(segments[2].slot, 2u);
}

}  // namespace
}  // namespace tovi::test
