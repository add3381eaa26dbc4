#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/CardFile.h"
#include "tests/support/ContainerView.h"
#include "tests/writing/Plan.h"
#include "tovi/card/CommandExchange.h"

namespace tovi::test {

/// A card, and what a container that has read it is to do with one file.
struct Scenario {
    std::string name;
    VirtualCard card;
    CardCapabilities capabilities;
    FileShape shape = FileShape::filledWith00;
    std::optional<Directory> directory;  ///< none: EF(TokenInfo)
    std::optional<Blob> secondFile;      ///< the absolute path of another file of the kind
    std::vector<Step> steps;
    /// Records that are longer than one command: the one that is being written may be found as one
    /// that does not decode.
    bool mayBreakARecord = false;

    /// The absolute path of the file.
    Blob file() const;
    /// The records of the file in what a container holds.
    std::vector<Blob> records(const ContainerView& view) const;
    /// What keeps the file on a card from being compact; empty when nothing does.
    std::string looseness(const VirtualCard& on, const std::vector<Blob>& records) const;
    /// Writes something of the file as it is, or a new record where there is none: whatever was
    /// left open is closed.
    void touch(PKCS15Container& container, ISCardOS* os) const;
};

/// How full the file is.
enum class Filling {
    empty,       ///< no record before the first step
    half,        ///< as many octets of padding as of records, when all is done
    fullBefore,  ///< not an octet of padding; for steps that need none
    fullAfter    ///< not an octet of padding at the highest tide
};
inline constexpr Filling fillings[] = {Filling::empty, Filling::half, Filling::fullBefore,
                                       Filling::fullAfter};

/// How commands go to the card.
struct Connection {
    std::string name;
    CardCapabilities capabilities;
};
Connection shortCommands();  ///< of 255 octets
Connection extendedLength();
Connection chainedCommands();  ///< that write 400 octets at once
/// All of them.
std::vector<Connection> connections();

/// What a set of scenarios works on.
struct Setting {
    Directory directory = Directory::dataObjects;
    FileShape shape = FileShape::filledWith00;
    Filling filling = Filling::half;
    Connection connection = shortCommands();
    std::string name() const;
};

/// All plans for the kind; those of them for which the file has room.
std::vector<Scenario> allScenarios(const Setting& setting);
/// The short ones of them.
std::vector<Scenario> shortScenarios(const Setting& setting);
/// The plans for EF(TokenInfo).
std::vector<Scenario> tokenInfoScenarios(FileShape shape, const Connection& connection);
/// Records that do not fit into one command.
std::vector<Scenario> longRecordScenarios(FileShape shape, const Connection& connection);
/// A file with gaps, an erased entry and stale octets, such as other programs leave.
std::vector<Scenario> untidyScenarios();
/// Two files of one kind; of a setting, all but the filling counts.
std::vector<Scenario> twoFileScenarios(const Setting& setting);

/// A card with one directory file of that kind.
VirtualCard cardWith(Directory directory, FileShape shape, const std::vector<Blob>& records,
                     std::size_t room);

/// Records of the kind, of 30 to 110 octets.
std::vector<Blob> usualRecords(Directory directory);

}  // namespace tovi::test
