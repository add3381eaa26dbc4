#pragma once

#include <utility>

#include "tovi/Export.h"

namespace ASN1 {

/// A member that PKCS#15 v1.1 has as mandatory and ISO/IEC 7816-15 as optional.
///
/// Read as a T. Where the card leaves it out it is empty, and stays left out while it is empty; an
/// empty one that nobody read is written with no content.
template <class T>
class TOVI_API Expected : public T {
public:
    Expected() = default;
    /// Has the value given.
    Expected(const T& value) : T(value) {}
    Expected(T&& value) : T(std::move(value)) {}
    using T::T;
    using T::operator=;

    /// Whether the card leaves it out; `setLeftOut` says so, and is of effect while it is empty.
    bool isLeftOut() const { return leftOut_ && this->empty(); }
    void setLeftOut(bool leftOut) { leftOut_ = leftOut; }

private:
    bool leftOut_ = false;
};

}  // namespace ASN1
