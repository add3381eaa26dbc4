#include "tests/support/RandomOperations.h"

#include <iterator>

#include "tests/support/ModelledCard.h"

namespace tovi::test {

namespace {

using Result = CardModel::Result;

constexpr std::size_t mostOperations = 60;
/// Records stay short enough for one command, so that none is ever found incomplete.
constexpr std::size_t mostCharacters = 190;
/// From here on numbers are given to files; getFreeFID gives some of them never out.
constexpr std::uint16_t firstNumber = 0x5028;

/// What is chosen, octet by octet; behind the last one there are zeros.
class Choices {
public:
    explicit Choices(ASN1::View octets) : rest_(octets) {}

    bool areOver() const { return rest_.empty(); }
    unsigned octet() {
        if (rest_.empty()) return 0;
        const unsigned octet = rest_.front();
        rest_ = rest_.subspan(1);
        return octet;
    }
    std::size_t below(std::size_t bound) { return octet() % bound; }
    std::string textOf(char letter, std::size_t least, std::size_t most) {
        return std::string(least + below(most - least), letter);
    }

    CardCapabilities capabilities() {
        constexpr CardCapabilities connections[] = {
            {}, {.extendedLength = true}, {.maxRead = 100, .maxWrite = 250}};
        return connections[below(std::size(connections))];
    }

    std::optional<Fault> fault() {
        constexpr unsigned mostCommand = 12;
        const unsigned choice = octet();
        if (choice % 4 != 3) return std::nullopt;
        // Not those status words that say something of the file: they decide where a record goes.
        using Kind = Interruption::Kind;
        constexpr Interruption ways[] = {{Kind::tearBefore},     {Kind::tearAfter},
                                         {Kind::status, 0x6581}, {Kind::status, 0x6982},
                                         {Kind::status, 0x6F00}, {Kind::unreachable},
                                         {Kind::foreign}};
        return Fault{ways[below(std::size(ways))], choice / 4 % mostCommand};
    }

    /// Authentication objects have one number each, since they are named by it.
    Content content(Directory kind, const CardModel& model, char letter) {
        Content content;
        content.label = textOf(letter, 1, mostCharacters);
        const unsigned more = octet();
        content.name = "k" + std::to_string(more);
        content.isPrivate = (more & 1) != 0;
        content.number = kind == Directory::authObjects
                             ? freeReference(model)
                             : static_cast<std::uint16_t>(firstNumber + (more >> 1) % 32);
        return content;
    }

private:
    static std::uint16_t freeReference(const CardModel& model) {
        constexpr Directory kind = Directory::authObjects;
        const auto isUsed = [&](std::uint16_t reference) {
            for (std::size_t i = 0; i < model.count(kind); ++i)
                if (model.at(kind, i).number == reference) return true;
            return false;
        };
        std::uint16_t reference = 1;
        while (isUsed(reference)) ++reference;
        return reference;
    }

    ASN1::View rest_;
};

/// No file, one or two of each kind, of any shape, with some records.
CardModel chooseModel(Choices& choices) {
    CardModel model;
    model.setTokenInfo("token", 30 + choices.below(100));
    for (unsigned i = 0; i < directoryCount; ++i) {
        const auto kind = static_cast<Directory>(i);
        const std::size_t choice = choices.below(8);
        const std::size_t count = choice < 2 ? 2 * choice : 1;
        for (std::size_t n = 0; n < count; ++n) {
            const Blob fid = {static_cast<std::uint8_t>(0x44 + n), directoryFID(kind)[1]};
            const FileShape shape = fileShapes[choices.below(std::size(fileShapes))];
            const std::size_t size = choices.octet();
            model.addFile(kind, absolutePath(fid), shape,
                          isLinear(shape) ? 1 + size % 12 : 60 + 4 * size,
                          choices.below(2) == 0 ? linearRecordSize : 110);
        }
        for (std::size_t left = count == 0 ? 0 : choices.below(6); left > 0; --left)
            model.write(kind, choices.content(kind, model, 'a'));
    }
    return model;
}

ModelledCard chooseCard(Choices& choices) {
    const CardCapabilities capabilities = choices.capabilities();
    return ModelledCard(chooseModel(choices), capabilities);
}

class Player {
public:
    Player(Choices& choices, OperationCounts& counts)
        : choices_(choices), counts_(counts), card_(chooseCard(choices)) {}

    std::string play() {
        std::size_t i = 0;
        for (; i < mostOperations && !choices_.areOver() && card_.difference().empty(); ++i) {
            letter_ = static_cast<char>('a' + i % 26);
            performOne();
        }
        card_.compareFreeFIDs(firstNumber);
        counts_.interrupted += card_.interrupted();
        counts_.failed += card_.failed();
        counts_.refused += card_.refused();
        if (card_.difference().empty()) return {};
        return "operation " + std::to_string(i) + ", " + card_.difference();
    }

private:
    void performOne() {
        const std::size_t choice = choices_.below(16);
        const auto kind = static_cast<Directory>(choices_.below(directoryCount));
        const std::size_t count = card_.model().count(kind);
        if (choice < 4 || (choice < 12 && count == 0)) return write(kind);
        if (choice < 9) return update(kind, choices_.below(count));
        if (choice < 12) return remove(kind, choices_.below(count));
        if (choice == 12) return updateToken();
        if (choice == 13) return changeContainers();
        if (choice == 14) return readAgain();
        reject();
    }

    void write(Directory kind) {
        ++counts_.writes;
        const Content content = choices_.content(kind, card_.model(), letter_);
        card_.perform(
            {[=](auto& container, auto* os) { writeObject(container, os, kind, content); },
             [=](CardModel& model) { return model.write(kind, content); }, kind},
            choices_.fault());
    }

    void update(Directory kind, std::size_t position) {
        ++counts_.updates;
        Content content = choices_.content(kind, card_.model(), letter_);
        if (kind == Directory::authObjects)
            content.number = card_.model().at(kind, position).number;
        card_.perform(
            {[=](auto& container, auto* os) {
                 updateObject(container, os, kind, position, content);
             },
             [=](CardModel& model) { return model.update(kind, position, content); }, kind},
            choices_.fault());
    }

    void remove(Directory kind, std::size_t position) {
        ++counts_.deletions;
        card_.perform(
            {[=](auto& container, auto* os) { deleteObject(container, os, kind, position); },
             [=](CardModel& model) { return model.remove(kind, position), Result::done; }, kind},
            choices_.fault());
    }

    void updateToken() {
        ++counts_.tokenInfos;
        const std::string label = choices_.textOf('t', 0, 120);
        card_.perform({[=](auto& container, auto* os) { updateTokenLabel(container, os, label); },
                       [=](CardModel& model) { return model.setTokenLabel(label); }, std::nullopt},
                      choices_.fault());
    }

    /// They are in memory only.
    void changeContainers() {
        ++counts_.containers;
        const std::size_t choice = choices_.below(4), count = card_.model().containerCount();
        const std::string label = choices_.textOf('c', 1, 30);
        PKCS15ObjectInfo<ContainerInfo> info;
        if (choice < 2 || count == 0) {
            info.label = text(label);
            return card_.perform([&](auto& container) { container.writeContainerInfo(info); },
                                 [&](CardModel& model) { model.writeContainer(label); });
        }
        const std::size_t position = choices_.below(count);
        info = card_.container().getContainerInfos().at(position);
        info.label = text(label);
        if (choice == 2)
            return card_.perform([&](auto& container) { container.updateContainerInfo(info); },
                                 [&](CardModel& model) { model.updateContainer(position, label); });
        const auto number = static_cast<unsigned long>(info.recordNumber);
        card_.perform([&](auto& container) { container.deleteObjectInfo(nullptr, number); },
                      [&](CardModel& model) { model.removeContainer(position); });
    }

    void readAgain() {
        ++counts_.reads;
        card_.readAgain(choices_.fault());
    }

    /// An operation that names nothing, or is not valid.
    void reject() {
        ++counts_.rejected;
        const auto& rows = card_.model().rows();
        const unsigned long number = choices_.octet();
        const auto removal = [](unsigned long row) {
            return [row](auto& container, auto* os) { container.deleteObjectInfo(os, row); };
        };
        if (number < rows.size() && rows[number].objectType == freeRow)
            return card_.reject("object is already empty", removal(number));
        switch (number % 5) {
            case 0:
                return card_.reject("object is the TokenInfo", removal(0));
            case 1:
                return card_.reject("invalid record number",
                                    removal(static_cast<unsigned long>(rows.size()) + number));
            case 2:
                return card_.reject("invalid object type", [](auto& container, auto* os) {
                    PKCS15ObjectInfo<DataInfo> info;
                    info.recordNumber = 0;
                    container.updateDataInfo(os, info);
                });
            case 3:
                return card_.reject("encode info failed", [](auto& container, auto* os) {
                    PKCS15ObjectInfo<DataInfo> info;
                    info.Import({0x00});
                    container.writeDataInfo(os, info);
                });
            default:
                return card_.reject("invalid object reference", [](auto& container, auto* os) {
                    PKCS15ObjectInfo<AuthInfo> info;
                    info.reference = 300;
                    container.updateAuthInfo(os, info);
                });
        }
    }

    Choices& choices_;
    OperationCounts& counts_;
    ModelledCard card_;
    char letter_ = 'a';
};

}  // namespace

std::string performRandomOperations(ASN1::View octets, OperationCounts& counts) {
    Choices choices(octets);
    return Player(choices, counts).play();
}

}  // namespace tovi::test
