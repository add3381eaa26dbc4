#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/CardFile.h"
#include "tests/support/ContainerView.h"
#include "tests/support/Objects.h"

namespace tovi::test {

/// An application as plain lists of records: what a card and its container are to hold after each
/// operation, told in the simplest way.
class CardModel {
public:
    /// Adds an empty directory file. `size`: octets of a transparent file, records of a linear one.
    void addFile(Directory kind, const Blob& path, FileShape shape, std::size_t size,
                 std::size_t recordSize);
    void setTokenInfo(const std::string& label, std::size_t fileSize);

    enum class Result { done, noRoom, noFile };

    // Each does what the container does; but for `done` nothing has changed. Positions count all
    // records of a kind.
    Result write(Directory kind, const Content& content);
    Result update(Directory kind, std::size_t position, const Content& content);
    void remove(Directory kind, std::size_t position);
    Result setTokenLabel(const std::string& label);
    void writeContainer(const std::string& label);
    void updateContainer(std::size_t position, const std::string& label);
    void removeContainer(std::size_t position);
    /// Gives all objects new record numbers, and makes key containers of the private keys alone.
    void readAgain();

    /// What a container is to hold.
    ContainerView view() const;
    std::size_t count(Directory kind) const;
    /// The content of the object at `position`.
    const Content& at(Directory kind, std::size_t position) const;
    std::size_t containerCount() const { return containers_.size(); }
    const std::vector<FATInfo>& rows() const { return rows_; }

    /// The files that the last operation wrote to may be left loose: it was interrupted.
    void expectLoose(Directory kind);
    /// A card that holds all this.
    VirtualCard makeCard() const;
    /// What keeps a file of the card from being compact; empty when nothing does.
    std::string looseness(const VirtualCard& card) const;

private:
    struct Object {
        Content content;
        Blob record;
        std::uint64_t number = noRecord;
    };
    /// A record of a linear file, free or not, or one of a transparent file.
    struct Place {
        std::optional<Object> object;
        std::size_t length = 0;  ///< octets of a record of a variable linear file
    };
    struct File {
        Blob path;
        FileShape shape = FileShape::filledWith00;
        std::size_t size = 0;
        std::size_t recordSize = 0;
        std::vector<Place> places;
        bool mayBeLoose = false;
    };
    struct KeyContainer {
        std::string label;
        std::uint64_t number = 0;
    };
    /// Where an object stands.
    struct Position {
        File* file;
        std::size_t place;
    };

    std::vector<File>& files(Directory kind) { return files_[static_cast<unsigned>(kind)]; }
    const std::vector<File>& files(Directory kind) const {
        return files_[static_cast<unsigned>(kind)];
    }
    Position find(Directory kind, std::size_t position);
    static std::optional<std::size_t> placeFor(const File& file, const Blob& record);
    static std::size_t octetsIn(const File& file);
    static std::vector<Blob> recordsIn(const File& file);
    std::uint64_t takeRow(std::uint8_t type, bool isPrivate);
    std::uint64_t addRow(std::uint8_t type, bool isPrivate);
    void freeRowOf(std::uint64_t number);

    std::array<std::vector<File>, directoryCount> files_;
    std::vector<KeyContainer> containers_;
    std::vector<FATInfo> rows_;
    std::string tokenLabel_;
    std::string readTokenLabel_;  ///< a token without label is given one
    std::size_t tokenInfoSize_ = 0;
};

}  // namespace tovi::test
