#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>

#include "tovi/Export.h"
#include "tovi/asn1/AbstractData.h"

namespace ASN1 {

/// What the bases below do, for a value of any type.
TOVI_API bool hasOptionalField(const Type& type, const void* value, std::size_t optionalIndex);
TOVI_API void includeOptionalField(const Type& type, void* value, std::size_t optionalIndex,
                                   std::size_t position);
TOVI_API void removeOptionalField(const Type& type, void* value, std::size_t optionalIndex);
TOVI_API void setSelection(const Type& type, void* value, std::size_t position);
TOVI_API std::string_view selectionName(const Type& type, const void* value);

/// Base of every SEQUENCE: its members by number.
///
/// Optional indexes count the OPTIONAL and DEFAULT members, positions count all members; both begin
/// at 0 and leave out extension markers. Numbers that name no member do nothing.
template <class T>
struct TOVI_API Sequence {
    /// Whether the member is there.
    bool hasOptionalField(std::size_t optionalIndex) const {
        return ASN1::hasOptionalField(*TypeOf<T>::value, self(), optionalIndex);
    }
    /// Brings the member into being, with a fresh value, unless it is there. `position` names the
    /// same member as `optionalIndex`; if it does not, nothing happens.
    void includeOptionalField(std::size_t optionalIndex, std::size_t position) {
        ASN1::includeOptionalField(*TypeOf<T>::value, self(), optionalIndex, position);
    }
    /// Makes the member absent.
    void removeOptionalField(std::size_t optionalIndex) {
        ASN1::removeOptionalField(*TypeOf<T>::value, self(), optionalIndex);
    }
    /// Whether the value keeps every size and range of its type.
    bool isValid() const { return AbstractData(*TypeOf<T>::value, self()).isValid(); }
    /// A deep copy.
    std::unique_ptr<T> clone() const { return std::make_unique<T>(*self()); }

private:
    T* self() { return static_cast<T*>(this); }
    const T* self() const { return static_cast<const T*>(this); }
};

/// The value itself, out of its box if it is in one; a fresh one for an empty box.
template <class T>
T& unboxed(T& value) {
    return value;
}
template <class T>
T& unboxed(Boxed<T>& box) {
    return box ? *box : box.emplace();
}
/// The same to look at; nullptr for an empty box.
template <class T>
const T* unboxedOrNull(const T* value) {
    return value;
}
template <class T>
const T* unboxedOrNull(const Boxed<T>* box) {
    return box ? box->get() : nullptr;
}

/// Base of every CHOICE, whose alternatives are those of the std::variant `value`.
///
/// `enum Alternative` numbers them: the positions of the notation from 0 on, then `unknown` (an
/// alternative of a later version, kept as it came) where the type is extensible, then `none`, as
/// which a fresh CHOICE begins.
template <class T>
struct TOVI_API Choice {
    /// Selects the alternative at `position` with a fresh value; a position beyond them does
    /// nothing.
    void setSelection(std::size_t position) {
        ASN1::setSelection(*TypeOf<T>::value, self(), position);
    }
    /// The number of the alternative held: an enumerator of Alternative.
    std::size_t selection() const { return self()->value.index(); }
    /// Its name as the ASN.1 module spells it; empty for none and for unknown ones.
    std::string_view selectionName() const {
        return ASN1::selectionName(*TypeOf<T>::value, self());
    }
    /// Selects an alternative and returns its fresh value.
    template <std::size_t Alternative>
    auto& select() {
        return unboxed(self()->value.template emplace<Alternative>());
    }
    /// The value of an alternative; nullptr while another one is selected.
    template <std::size_t Alternative>
    auto* getIf() {
        auto* held = std::get_if<Alternative>(&self()->value);
        return held ? &unboxed(*held) : nullptr;
    }
    template <std::size_t Alternative>
    auto* getIf() const {
        return unboxedOrNull(std::get_if<Alternative>(&self()->value));
    }
    /// Whether the value keeps every size and range of its type.
    bool isValid() const { return AbstractData(*TypeOf<T>::value, self()).isValid(); }
    /// A deep copy.
    std::unique_ptr<T> clone() const { return std::make_unique<T>(*self()); }

private:
    T* self() { return static_cast<T*>(this); }
    const T* self() const { return static_cast<const T*>(this); }
};

}  // namespace ASN1
