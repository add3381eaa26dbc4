#pragma once

#include <utility>

#include "tests/fidelity/Changes.h"
#include "tests/fidelity/ExpectedUpdate.h"
#include "tests/fidelity/Members.h"

namespace tovi::test {

/// One member of a record that is varied.
struct Place {
    Tlv& (*parent)(Tlv& object);
    const Tags& tags;
    std::size_t slot;
    std::string where;  ///< for the independent decoder
};

// Parents of members.
inline Tlv& commonOf(Tlv& object) { return object.members.at(0); }
inline Tlv& classOf(Tlv& object) { return object.members.at(1); }
inline Tlv& typeOf(Tlv& object) { return object.members.back().members.at(0); }

/// Collects the changes of one record.
class ChangeList {
public:
    ChangeList(Directory kind, const Blob& record)
        : kind_(kind), before_(parseTlv(record)), settled_(settledRecord(kind, record)) {}

    Directory kind() const { return kind_; }
    /// The record as it was, and after an update that changes nothing.
    Tlv& before() { return before_; }
    Tlv& settled() { return settled_; }

    /// What the settled record holds there; null when it is absent.
    const Tlv* at(const Place& place) {
        return member(place.parent(settled_), place.tags, place.slot);
    }
    std::vector<unsigned> bitsAt(const Place& place) {
        return at(place) ? bitsOf(at(place)->contents) : std::vector<unsigned>();
    }

    /// A change of which `edit` says what it does to the settled record. More may be said about the
    /// change that is returned.
    template <class EditRecord>
    Change& add(std::string name, std::string where, DecodedValues values, Edit apply,
                EditRecord edit) {
        Tlv after = settled_;
        edit(after);
        const Edit nothing = [](Fields&) {};
        changes_.push_back({std::move(name), apply, apply, nothing, after.encoded(),
                            settled_.encoded(), std::move(where), std::move(values)});
        return changes_.back();
    }

    /// A member becomes `encoded`; no octets remove it.
    Change& set(std::string name, const Place& place, const Blob& encoded, Edit apply) {
        DecodedValues values;
        if (!encoded.empty()) values[place.where] = inItsWords(parseTlv(encoded));
        return add(std::move(name), place.where, values, std::move(apply), [&](Tlv& object) {
            put(place.parent(object), place.tags, place.slot, encoded);
        });
    }
    /// A member is removed; nothing is to be done when it is absent.
    void remove(std::string name, const Place& place, Edit apply) {
        if (at(place)) set(std::move(name), place, {}, std::move(apply));
    }

    std::vector<Change> taken() { return std::move(changes_); }

private:
    Directory kind_;
    Tlv before_, settled_;
    std::vector<Change> changes_;
};

// The changes of one kind each.
void addKeyChanges(ChangeList& list);
void addSecretKeyChanges(ChangeList& list);
void addAuthChanges(ChangeList& list);

/// Path, index and length of a value that lies in a file, or of the path of an authentication
/// object.
void addPathChanges(ChangeList& list, Tlv& (*path)(Tlv& object), const std::string& where);

}  // namespace tovi::test
