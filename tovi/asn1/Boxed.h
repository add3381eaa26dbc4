#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "tovi/Export.h"

namespace ASN1 {

/// An optional value kept on the heap, with the interface of std::optional: for what is large and
/// seldom there, and for types that contain themselves. A copy copies the value.
template <class T>
class TOVI_API Boxed {
public:
    /// As std::optional has them.
    using value_type = T;

    Boxed() noexcept = default;
    /// Without a value, or with the one given.
    Boxed(std::nullopt_t) noexcept {}
    // A template, so that T may be incomplete while Boxed<T> is a member of it.
    template <class U>
    requires std::same_as<std::remove_cvref_t<U>, T> Boxed(U&& value)
        : object_(std::make_unique<T>(std::forward<U>(value))) {}
    Boxed(const Boxed& other) {
        if (other.object_) object_ = std::make_unique<T>(*other.object_);
    }
    Boxed(Boxed&&) noexcept = default;
    Boxed& operator=(const Boxed& other) {
        Boxed copy(other);
        object_.swap(copy.object_);
        return *this;
    }
    Boxed& operator=(Boxed&&) noexcept = default;
    ~Boxed() = default;

    /// As std::optional has them: only a box with a value may be looked into.
    bool has_value() const noexcept { return object_ != nullptr; }
    explicit operator bool() const noexcept { return has_value(); }
    T& operator*() { return *object_; }
    const T& operator*() const { return *object_; }
    T* operator->() { return object_.get(); }
    const T* operator->() const { return object_.get(); }
    /// The value; nullptr without one.
    T* get() noexcept { return object_.get(); }
    const T* get() const noexcept { return object_.get(); }

    /// Replaces the value by a fresh one.
    template <class... Arguments>
    T& emplace(Arguments&&... arguments) {
        object_ = std::make_unique<T>(std::forward<Arguments>(arguments)...);
        return *object_;
    }
    /// Removes the value.
    void reset() noexcept { object_.reset(); }

private:
    std::unique_ptr<T> object_;
};

}  // namespace ASN1
