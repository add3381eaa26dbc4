#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"

namespace tovi::test {

using RecordList = std::vector<Blob>;

/// A record under tests/data in a kind of directory file that it could be in.
struct RecordCase {
    std::string name;
    Directory kind;
    Blob file;           ///< as it lies on the card, with whatever stands behind the records
    RecordList records;  ///< all that are in it
    std::size_t position = 0;
    bool isExtended = false;  ///< has members of a later version of each of its types

    const Blob& record() const { return records[position]; }
    /// Whether the library updates such records; else `refusal` is what it says.
    bool canBeUpdated() const;
    const Failure& refusal() const;

    friend std::ostream& operator<<(std::ostream& out, const RecordCase& each) {
        return out << each.name;
    }
};

/// Those of samples, plain and extended, and of the files of cards in use.
const std::vector<RecordCase>& recordCases();
std::vector<RecordCase> updatableCases();
std::vector<RecordCase> refusedCases();

/// A name for tests: "prk_rsa_0_in_PrKDF".
std::string testName(const RecordCase& each);

/// The first record of EF(TokenInfo) of a card in use.
Blob tokenInfoOfCard(const std::string& name);

}  // namespace tovi::test
