#include "tests/writing/Scenario.h"

#include <algorithm>

#include "tests/support/Wire.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {

namespace {

std::size_t sizeOf(FileShape shape, const std::vector<Blob>& records) {
    return isLinear(shape) ? records.size() : join(records).size();
}

/// How much the file has to hold at the highest tide; octets or records.
std::size_t highestTide(Scenario scenario) {
    const auto container = readNew(scenario.card, scenario.capabilities);
    std::size_t most = sizeOf(scenario.shape, scenario.records(viewOf(*container)));
    Wire wire(scenario.card, scenario.capabilities);
    for (const Step& step : scenario.steps) {
        step(*container, wire.os());
        most = std::max(most, sizeOf(scenario.shape, scenario.records(viewOf(*container))));
    }
    return most;
}

/// Octets or records of room, none when the filling does not go with the steps.
std::optional<std::size_t> roomFor(Filling filling, std::size_t before, std::size_t tide) {
    switch (filling) {
        case Filling::half:
            return 2 * tide - before;
        case Filling::fullBefore:
            return tide == before ? std::optional<std::size_t>(0) : std::nullopt;
        case Filling::fullAfter:
            return tide == before ? std::nullopt : std::optional(tide - before);
        default:
            return tide;
    }
}

template <class MakeCard>
void add(std::vector<Scenario>& scenarios, Scenario scenario, Filling filling,
         const std::vector<Blob>& records, const MakeCard& makeCard) {
    const std::size_t ample = isLinear(scenario.shape) ? 20 : 3000;
    scenario.card = makeCard(ample);
    const std::size_t tide = highestTide(scenario);
    const auto room = roomFor(filling, sizeOf(scenario.shape, records), tide);
    if (!room) return;
    scenario.card = makeCard(*room);
    scenarios.push_back(std::move(scenario));
}

std::vector<Scenario> scenariosOf(const Setting& setting, const std::vector<Plan>& plans) {
    const std::vector<Blob> records =
        setting.filling == Filling::empty ? std::vector<Blob>() : usualRecords(setting.directory);
    std::vector<Scenario> scenarios;
    for (const Plan& plan : plans) {
        Scenario scenario;
        scenario.name = setting.name() + ": " + plan.name;
        scenario.capabilities = setting.connection.capabilities;
        scenario.shape = setting.shape;
        scenario.directory = setting.directory;
        scenario.steps = plan.steps;
        add(scenarios, scenario, setting.filling, records, [&](std::size_t room) {
            return cardWith(setting.directory, setting.shape, records, room);
        });
    }
    return scenarios;
}

std::string nameOf(Filling filling) {
    switch (filling) {
        case Filling::empty:
            return "empty";
        case Filling::half:
            return "half full";
        case Filling::fullBefore:
            return "full";
        default:
            return "full afterwards";
    }
}

/// Gives a scenario of data objects for a card whose DODF is `contents`.
Scenario withContents(const Plan& plan, const Blob& contents) {
    Scenario scenario;
    scenario.name = plan.name;
    scenario.directory = Directory::dataObjects;
    scenario.steps = plan.steps;
    scenario.card = cardWith(Directory::dataObjects, FileShape::filledWith00, {contents}, 0);
    return scenario;
}

}  // namespace

Blob Scenario::file() const {
    return absolutePath(directory ? directoryFID(*directory) : PKCS15_EF_TOKEN_INFO);
}

std::vector<Blob> Scenario::records(const ContainerView& view) const {
    return directory ? view[*directory].records : std::vector<Blob>{view.tokenInfo};
}

std::string Scenario::looseness(const VirtualCard& on, const std::vector<Blob>& records) const {
    if (!secondFile) return test::looseness(on, file(), shape, records);
    // Which of them are in which file is the handler's business.
    std::string reason;
    for (auto border = records.begin(); border <= records.end(); ++border) {
        reason = test::looseness(on, file(), shape, {records.begin(), border}) +
                 test::looseness(on, *secondFile, shape, {border, records.end()});
        if (reason.empty()) break;
    }
    return reason;
}

void Scenario::touch(PKCS15Container& container, ISCardOS* os) const {
    if (!directory) {
        const PKCS15TokenInfo token = container.getTokenInfo();
        updateTokenLabel(container, os, std::string(token.info.label.size(), '-'));
        return container.updateTokenInfo(os, token);
    }
    const std::size_t count = viewOf(container)[*directory].objects.size();
    if (count == 0) writeObject(container, os, *directory, contentOf('n', 1, 250));
    if (count > 0) touchObject(container, os, *directory, 0);
    if (secondFile) touchObject(container, os, *directory, count - 1);
}

Connection shortCommands() { return {"short commands", {}}; }

Connection extendedLength() { return {"extended length", {.extendedLength = true}}; }

Connection chainedCommands() {
    return {"chained commands", {.commandChaining = true, .maxWrite = 400}};
}

std::vector<Connection> connections() {
    return {shortCommands(), extendedLength(), chainedCommands()};
}

std::string Setting::name() const {
    return "directory " + std::to_string(static_cast<unsigned>(directory)) + " " +
           test::nameOf(shape) + ", " + nameOf(filling) + ", " + connection.name;
}

std::vector<Blob> usualRecords(Directory directory) {
    std::vector<Blob> records;
    unsigned ordinal = 0;
    for (const std::size_t labelSize : {40u, 5u, 70u, 55u, 20u, 60u, 33u, 80u}) {
        const auto letter = static_cast<char>('a' + ordinal);
        records.push_back(recordOf(directory, contentOf(letter, labelSize, ++ordinal)));
    }
    return records;
}

VirtualCard cardWith(Directory directory, FileShape shape, const std::vector<Blob>& records,
                     std::size_t room) {
    VirtualCard card =
        CardBuilder().directory(directory, {}).withoutFile(directoryFID(directory)).build();
    addDirectoryFile(card, absolutePath(directoryFID(directory)), shape, records, room);
    return card;
}

std::vector<Scenario> allScenarios(const Setting& setting) {
    return scenariosOf(setting, setting.filling == Filling::empty
                                    ? plansForNothing(setting.directory)
                                    : plansForRecords(setting.directory));
}

std::vector<Scenario> shortScenarios(const Setting& setting) {
    return scenariosOf(setting, setting.filling == Filling::empty
                                    ? plansForNothing(setting.directory)
                                    : shortPlans(setting.directory));
}

std::vector<Scenario> tokenInfoScenarios(FileShape shape, const Connection& connection) {
    const std::vector<Blob> records = {test::tokenInfo({.label = std::string(30, 'L')})};
    std::vector<Scenario> scenarios;
    for (const Filling filling : {Filling::half, Filling::fullBefore, Filling::fullAfter})
        for (const Plan& plan : tokenInfoPlans()) {
            Scenario scenario;
            scenario.name =
                "TokenInfo, " + test::nameOf(shape) + ", " + nameOf(filling) + ": " + plan.name;
            scenario.capabilities = connection.capabilities;
            scenario.shape = shape;
            scenario.steps = plan.steps;
            add(scenarios, scenario, filling, records, [&](std::size_t room) {
                VirtualCard card = CardBuilder().withoutFile(PKCS15_EF_TOKEN_INFO).build();
                addDirectoryFile(card, absolutePath(PKCS15_EF_TOKEN_INFO), shape, records, room);
                return card;
            });
        }
    return scenarios;
}

std::vector<Scenario> longRecordScenarios(FileShape shape, const Connection& connection) {
    constexpr Directory kind = Directory::dataObjects;
    std::vector<Blob> records = usualRecords(kind);
    Content large = contentOf('l', 250, 50);
    large.name = std::string(240, 'l');
    for (const std::size_t at : {std::size_t{0}, records.size() / 2, records.size() + 1}) {
        const auto place = records.begin() + static_cast<std::ptrdiff_t>(at);
        records.insert(place, recordOf(kind, large));
    }
    std::vector<Scenario> scenarios;
    for (const Filling filling : {Filling::half, Filling::fullBefore, Filling::fullAfter})
        for (const Plan& plan : plansForRecords(kind)) {
            Scenario scenario;
            scenario.name = "long records, " + test::nameOf(shape) + ", " + nameOf(filling) + ", " +
                            connection.name + ": " + plan.name;
            scenario.capabilities = connection.capabilities;
            scenario.shape = shape;
            scenario.directory = kind;
            scenario.steps = plan.steps;
            scenario.mayBreakARecord = true;
            add(scenarios, scenario, filling, records,
                [&](std::size_t room) { return cardWith(kind, shape, records, room); });
        }
    return scenarios;
}

std::vector<Scenario> untidyScenarios() {
    const std::vector<Blob> records = usualRecords(Directory::dataObjects);
    Blob erased = records[3];
    erased[0] = 0x00;
    const Blob contents = join({times(3, 0xFF), records[0], Blob{0x00}, times(19, 0xFF), records[1],
                                erased, records[2], times(2, 0x00), records[4], records[5],
                                times(40, 0x00), hex("80AABBCC"), times(100, 0x47)});
    std::vector<Scenario> scenarios;
    for (const Plan& plan : plansForRecords(Directory::dataObjects))
        scenarios.push_back(withContents(plan, contents));
    return scenarios;
}

std::vector<Scenario> twoFileScenarios(const Setting& setting) {
    const Directory kind = setting.directory;
    const Blob second = {0x45, 0x01};
    const std::vector<Blob> records = usualRecords(kind);
    const std::vector<Blob> front(records.begin(), records.begin() + 4);
    const std::vector<Blob> back(records.begin() + 4, records.end());
    VirtualCard card =
        CardBuilder()
            .directory(kind, {})
            .odfRecord(odfEntry(static_cast<unsigned>(kind), sequence(octetString(second))))
            .withoutFile(directoryFID(kind))
            .build();
    const bool isOfRecords = isLinear(setting.shape);
    addDirectoryFile(card, absolutePath(directoryFID(kind)), setting.shape, front,
                     isOfRecords ? 5 : 700);
    addDirectoryFile(card, absolutePath(second), setting.shape, back, isOfRecords ? 1 : 150);
    std::vector<Scenario> scenarios;
    for (const Plan& plan : plansForRecords(kind)) {
        Scenario scenario;
        scenario.name = setting.name() + ", two files: " + plan.name;
        scenario.card = card;
        scenario.capabilities = setting.connection.capabilities;
        scenario.shape = setting.shape;
        scenario.directory = kind;
        scenario.secondFile = absolutePath(second);
        scenario.steps = plan.steps;
        scenarios.push_back(scenario);
    }
    return scenarios;
}

}  // namespace tovi::test
