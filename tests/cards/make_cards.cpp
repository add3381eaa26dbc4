// Makes the sample card folders of the tests from their descriptions:
//
//     tovi_make_cards DESCRIPTIONS FOLDER [NAME ...]
//
// Each description NAME.json, or each one named, becomes the card folder FOLDER/NAME, in the place
// of what was there before.

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "tools/CardPlan.h"
#include "tools/Failure.h"

namespace {

std::vector<std::string> namesIn(const std::filesystem::path& descriptions) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(descriptions)) {
        if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool makeCard(const std::filesystem::path& description, const std::filesystem::path& folder) {
    try {
        const tovi::CardPlan plan = tovi::cardPlanFromFile(description);
        std::filesystem::remove_all(folder);
        plan.make(folder);
        return true;
    } catch (const tovi::Exception& exception) {
        std::cerr << description.string() << ": " << tovi::ErrorReport::of(exception).line()
                  << '\n';
    } catch (const std::exception& exception) {
        std::cerr << exception.what() << '\n';
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2) {
        std::cerr << "usage: tovi_make_cards DESCRIPTIONS FOLDER [NAME ...]\n";
        return 2;
    }
    const std::filesystem::path descriptions = arguments[0], folder = arguments[1];
    const std::vector<std::string> names = arguments.size() > 2
                                               ? std::vector(arguments.begin() + 2, arguments.end())
                                               : namesIn(descriptions);
    bool isDone = true;
    for (const std::string& name : names) {
        isDone &= makeCard(descriptions / (name + ".json"), folder / name);
    }
    return isDone ? 0 : 1;
}
