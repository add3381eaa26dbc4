#pragma once

#include <memory>
#include <type_traits>

#include "tovi/Export.h"
#include "tovi/asn1/Builtin.h"

namespace ASN1 {

/// Types that have a description.
template <class T>
concept Described = requires {
    TypeOf<std::remove_cvref_t<T>>::value;
};

/// A value of some described type, for operations that work on all of them. Made from any such
/// value; does not own it, so it must not outlive it.
class TOVI_API AbstractData {
public:
    /// A handle to `value`, or to the object of the C++ type of `type` at `value`.
    template <Described T>
    AbstractData(T&& value) : AbstractData(*TypeOf<std::remove_cvref_t<T>>::value, &value) {}
    AbstractData(const Type& type, const void* value)
        : type_(&type), value_(const_cast<void*>(value)) {}

    /// The description of the value's type.
    const Type& type() const { return *type_; }
    /// Whoever made the handle from a constant value must not write through it.
    void* value() const { return value_; }
    /// Whether the value keeps every size and range of its type, in all its parts.
    bool isValid() const;

private:
    const Type* type_;
    void* value_;
};

/// A value of a type that is known at run time only; fresh at first.
class TOVI_API AnyValue {
public:
    /// Makes a fresh value of `type`, which must outlive it.
    explicit AnyValue(const Type& type);
    AnyValue(const AnyValue& other);
    AnyValue(AnyValue&& other) noexcept;
    AnyValue& operator=(AnyValue other) noexcept;
    ~AnyValue();

    /// The type, and the object of its C++ type.
    const Type& type() const { return *type_; }
    void* get() { return value_; }
    const void* get() const { return value_; }
    operator AbstractData() const { return {*type_, value_}; }

private:
    const Type* type_;
    void* value_;
};

}  // namespace ASN1
