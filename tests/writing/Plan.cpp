#include "tests/writing/Plan.h"

#include <algorithm>

namespace tovi::test {

namespace {

/// Where in the list an object is, as it is when the step is performed.
enum class At { first, middle, last };

std::string nameOf(At at) {
    return at == At::first ? "first" : at == At::middle ? "middle" : "last";
}

std::size_t positionOf(const PKCS15Container& container, Directory kind, At at) {
    const std::size_t count =
        lookAt(container, kind, [](const auto& infos, const auto&) { return infos.size(); });
    return at == At::first ? 0 : at == At::middle ? count / 2 : count - 1;
}

/// Of a label (pkcs15-ub-label).
constexpr int mostCharacters = 255;

Plan operator+(Plan first, const Plan& then) {
    first.name += ", " + then.name;
    first.steps.insert(first.steps.end(), then.steps.begin(), then.steps.end());
    return first;
}

Plan write(Directory kind, std::size_t labelSize, unsigned ordinal = 100) {
    const auto letter = static_cast<char>('A' + ordinal % 20);
    const Content content = contentOf(letter, labelSize, ordinal);
    return {"write " + std::to_string(labelSize), {[=](PKCS15Container& container, ISCardOS* os) {
                writeObject(container, os, kind, content);
            }}};
}

/// Updates with a label that has `growth` characters more.
Plan update(Directory kind, At at, int growth) {
    return {"update " + nameOf(at) + " by " + std::to_string(growth),
            {[=](PKCS15Container& container, ISCardOS* os) {
                const std::size_t position = positionOf(container, kind, at);
                const int held = static_cast<int>(labelOf(container, kind, position).size());
                const int size = std::clamp(held + growth, 1, mostCharacters);
                updateObject(container, os, kind, position,
                             contentOf('z', static_cast<std::size_t>(size), 200));
            }}};
}

Plan rewrite(Directory kind, At at) {
    return {"rewrite " + nameOf(at), {[=](PKCS15Container& container, ISCardOS* os) {
                const std::size_t position = positionOf(container, kind, at);
                relabelObject(container, os, kind, position, labelOf(container, kind, position));
            }}};
}

Plan remove(Directory kind, At at) {
    return {"remove " + nameOf(at), {[=](PKCS15Container& container, ISCardOS* os) {
                deleteObject(container, os, kind, positionOf(container, kind, at));
            }}};
}

constexpr int muchShorter = -1000;

Plan updateLabel(std::size_t size) {
    return {"label of " + std::to_string(size), {[=](PKCS15Container& container, ISCardOS* os) {
                updateTokenLabel(container, os, std::string(size, 'T'));
            }}};
}

}  // namespace

Content contentOf(char letter, std::size_t labelSize, unsigned ordinal) {
    Content content;
    content.label = std::string(labelSize, letter);
    content.name = {'k', letter};
    content.number = static_cast<std::uint16_t>(ordinal);  // a reference, too
    return content;
}

std::vector<Plan> plansForRecords(Directory kind) {
    std::vector<Plan> plans = {write(kind, 20), write(kind, 200), rewrite(kind, At::middle)};
    for (const At at : {At::first, At::middle, At::last}) {
        for (const int growth : {0, -1, muchShorter, 1, 100})
            plans.push_back(update(kind, at, growth));
        plans.push_back(remove(kind, at));
    }
    plans.push_back(remove(kind, At::first) + write(kind, 150) + update(kind, At::middle, 60));
    plans.push_back(write(kind, 30) + write(kind, 70, 101) + remove(kind, At::middle) +
                    remove(kind, At::last));
    plans.push_back(update(kind, At::first, 90) + update(kind, At::last, muchShorter) +
                    remove(kind, At::middle) + write(kind, 10));
    plans.push_back(remove(kind, At::first) + remove(kind, At::first) + write(kind, 40));
    plans.push_back(update(kind, At::middle, muchShorter) + update(kind, At::last, 20));
    return plans;
}

std::vector<Plan> plansForNothing(Directory kind) {
    return {write(kind, 20), write(kind, 200),
            write(kind, 20) + update(kind, At::first, 50) + remove(kind, At::first),
            write(kind, 60) + write(kind, 90, 101) + write(kind, 200, 102) +
                update(kind, At::first, 30) + remove(kind, At::middle)};
}

std::vector<Plan> shortPlans(Directory kind) {
    return {write(kind, 60), update(kind, At::first, 60), remove(kind, At::first),
            remove(kind, At::middle) + write(kind, 30) + update(kind, At::middle, 40)};
}

std::vector<Plan> tokenInfoPlans() {
    return {updateLabel(30), updateLabel(3), updateLabel(31), updateLabel(140),
            updateLabel(0) + updateLabel(90) + updateLabel(20)};
}

void touchObject(PKCS15Container& container, ISCardOS* os, Directory kind, std::size_t position) {
    const std::string label = labelOf(container, kind, position);
    relabelObject(container, os, kind, position, std::string(label.size(), '-'));
    relabelObject(container, os, kind, position, label);
}

}  // namespace tovi::test
