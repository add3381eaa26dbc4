#pragma once

#include <memory>
#include <string>

#include "tests/fidelity/Fields.h"
#include "tests/fidelity/RecordCases.h"

namespace tovi::test {

/// A card with the file of a case, and a container that has read it.
class UpdatedCard {
public:
    explicit UpdatedCard(const RecordCase& its);

    /// Updates the object of the case with its info as it was first read, and one edit.
    void update(const Edit& edit);
    /// Reads the card into a new container, which does the updates from now on.
    void readAgain();

    /// The records of the file as they are on the card now.
    RecordList records();
    Blob record() { return records().at(position_); }

    /// What the info says as it was read last, and as it was first read, edited.
    std::string lastRead() const;
    std::string firstRead(const Edit& edit) const;

private:
    Directory kind_;
    std::size_t position_;
    TestCard card_;
    std::unique_ptr<PKCS15Container> first_ = makeContainer();  // writes nothing
    std::unique_ptr<PKCS15Container> container_;
};

/// The only records of EF(TokenInfo) on a card.
Blob tokenInfoRecord(TestCard& card);

}  // namespace tovi::test
