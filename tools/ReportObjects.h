#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/Html.h"
#include "tools/Model.h"
#include "tools/ObjectText.h"

namespace tovi {

/// An object as the page shows and links it.
struct ReportObject {
    const ListKind* kind = nullptr;
    std::string anchor;  ///< the id of its row: "privateKeys-2"
    std::string name;    ///< "private key 3"
    std::string detail;  ///< "RSA 2048"; empty when it is no key
    std::string label;   ///< shortened; empty when it has none
    Blob authId;         ///< what guards it
    Blob authObjectId;   ///< of an authentication object: its own identifier
    PKCS15Path path;     ///< absolute; empty when its value lies in no file
    std::int64_t publicKey = noLink;
    std::int64_t container = noLink;
    bool isPrivate = false;
    bool isKnown = false;  ///< false for a placeholder of a record that is not understood

    /// "private key 3: Alice".
    std::string title() const { return label.empty() ? name : name + ": " + label; }
};

/// Every object of a model, found by what others call it.
class ReportObjects {
public:
    ReportObjects() = default;
    explicit ReportObjects(const PKCS15Container& model);

    const std::vector<ReportObject>& all() const { return objects_; }
    const std::vector<ObjectTable>& tables() const { return tables_; }
    /// How many of a kind there are.
    std::size_t count(const ListKind& kind) const;
    /// Object `index` of a kind.
    const ReportObject& at(const ListKind& kind, std::size_t index) const;

    // Null when there is none; of several the first one.
    const ReportObject* withRecord(std::uint64_t recordNumber) const;
    const ReportObject* named(const std::string& name) const;
    const ReportObject* authObject(const Blob& authObjectId) const;

private:
    template <class Info>
    ReportObject& add(const ListKind& kind, const PKCS15ObjectInfo<Info>& info, std::size_t index,
                      const Blob& rootPath);

    struct Range {
        std::size_t first = 0, count = 0;
    };
    void addDetails();

    std::vector<ReportObject> objects_;
    std::vector<ObjectTable> tables_;
    std::map<const ListKind*, Range> kinds_;
    std::map<std::uint64_t, std::size_t> byRecord_;
    std::map<std::string, std::size_t> byName_;
    std::map<Blob, std::size_t> byAuthObjectId_;
};

/// How much of a label, or another text of the card, a link or a cell shows.
inline constexpr std::size_t linkLength = 60, cellLength = 200;

/// A link to the row of an object, with its label, else its name.
void linkTo(Html& html, const ReportObject& object);

}  // namespace tovi
