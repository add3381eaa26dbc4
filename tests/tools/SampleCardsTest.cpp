#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "TestCommand.h"
#include "tools/CardPlan.h"

namespace tovi::test {
namespace {

/// Every file below `folder`, by its path there.
std::map<std::string, std::string> filesIn(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        files[std::filesystem::relative(entry.path(), folder).string()] = readFile(entry.path());
    }
    return files;
}

std::vector<std::string> describedCards() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TOVI_TEST_CARDS "/descriptions")) {
        names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class SampleCards : public testing::TestWithParam<std::string> {};

TEST_P(SampleCards, AreWhatTheirDescriptionsMake) {
    const TemporaryFolder folder;
    const std::string description =
        std::string(TOVI_TEST_CARDS "/descriptions/") + GetParam() + ".json";
    cardPlanFromFile(description).make(folder.path() / "card");
    EXPECT_EQ(filesIn(folder.path() / "card"), filesIn(sampleCard(GetParam())));
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, SampleCards, testing::ValuesIn(describedCards()), testName);

TEST(SampleCardFolders, HaveADescriptionEach) {
    const std::vector<std::string> described = describedCards();
    for (const auto& entry : std::filesystem::directory_iterator(TOVI_TEST_CARDS)) {
        if (!entry.is_directory() || entry.path().filename() == "descriptions") continue;
        EXPECT_TRUE(std::binary_search(described.begin(), described.end(),
                                       entry.path().filename().string()))
            << entry.path();
    }
}

}  // namespace
}  // namespace tovi::test
