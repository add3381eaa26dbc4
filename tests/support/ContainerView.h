#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/CardBuilder.h"

/// What a container holds as plain values, to be compared with what it held before, with another
/// container, or with what a test expects.
namespace tovi::test {

struct ObjectView {
    std::uint64_t recordNumber = noRecord;
    Blob label;
    Blob name;  ///< id; applicationName of a data object, authObjectId of an authentication object
    bool isPrivate = false;
    std::uint16_t fid = noFID16;
    friend bool operator==(const ObjectView&, const ObjectView&) = default;
};

struct DirectoryView {
    std::vector<ObjectView> objects;
    std::vector<Blob> records;  ///< DER of the raw values, empty for one that did not decode
    friend bool operator==(const DirectoryView&, const DirectoryView&) = default;
};

struct ContainerView {
    std::array<DirectoryView, directoryCount> directories;
    std::vector<ObjectView> containers;  ///< key containers: record number and label
    std::vector<FATInfo> rows;
    Blob tokenInfo;   ///< DER of the raw value
    Blob tokenLabel;  ///< of the plain record

    DirectoryView& operator[](Directory kind) { return directories[static_cast<unsigned>(kind)]; }
    const DirectoryView& operator[](Directory kind) const {
        return directories[static_cast<unsigned>(kind)];
    }
    friend bool operator==(const ContainerView&, const ContainerView&) = default;
};

ContainerView viewOf(const PKCS15Container& container);

/// Where the two differ first, for people; empty when they are equal.
std::string difference(const ContainerView& found, const ContainerView& expected);
/// The same for records alone, which is all that two reads of one card have in common when record
/// numbers were given in between.
std::string recordDifference(const ContainerView& found, const ContainerView& expected);

/// What the container contradicts itself in; empty when nothing: lists that stand for the same
/// objects have one length, every used row of the table names one object and every object with a
/// row is named by it, and lookups answer with the object that they are asked for, or refuse.
std::string contradiction(const PKCS15Container& container);

}  // namespace tovi::test
