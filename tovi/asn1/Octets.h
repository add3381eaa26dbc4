#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <span>
#include <type_traits>

#include "tovi/Export.h"

namespace ASN1 {

/// Octets that belong to somebody else.
using View = std::span<const std::uint8_t>;

/// A string of octets with the interface of a std::vector.
///
/// Up to `inPlace` octets live inside the object: identifiers, paths, labels and short INTEGERs,
/// which is nearly everything in a directory record, cost no allocation. Copies are deep, moves
/// never throw and leave the source empty. Growing either succeeds or throws (std::bad_alloc,
/// std::length_error beyond 4 GiB) and leaves the contents as they were. Arguments may lie inside
/// the object itself.
class TOVI_API Octets {
public:
    /// As a std::vector has them.
    using value_type = std::uint8_t;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = std::uint8_t&;
    using const_reference = const std::uint8_t&;
    using pointer = std::uint8_t*;
    using const_pointer = const std::uint8_t*;
    using iterator = std::uint8_t*;
    using const_iterator = const std::uint8_t*;

    /// The most octets that cost no allocation.
    static constexpr std::size_t inPlace = 24;

    constexpr Octets() noexcept : room_{}, size_(0), capacity_(inPlace) {}
    /// Up to `inPlace` octets make a constant (constinit).
    constexpr Octets(std::initializer_list<std::uint8_t> octets) : Octets() {
        if (std::is_constant_evaluated())
            for (const std::uint8_t octet : octets) room_.local[size_++] = octet;
        else
            append(View(octets));
    }
    /// The octets given, `count` times `value`, or a range of anything that converts to octets.
    Octets(View octets) : Octets() { append(octets); }
    Octets(std::size_t count, std::uint8_t value) : Octets() { resize(count, value); }
    template <std::input_iterator It>
    Octets(It first, It last) : Octets() {
        assign(first, last);
    }
    /// Copies, moves and takes over, as a std::vector does.
    Octets(const Octets& other) : Octets() {
        if (other.isInPlace()) {
            copyObject(other);
        } else {
            append(View(other));
        }
    }
    Octets(Octets&& other) noexcept {
        copyObject(other);
        other.forget();
    }
    Octets& operator=(const Octets& other) {
        if (this != &other) assign(View(other));
        return *this;
    }
    Octets& operator=(Octets&& other) noexcept {
        if (this == &other) return *this;
        release();
        copyObject(other);
        other.forget();
        return *this;
    }
    Octets& operator=(View octets) { return assign(octets), *this; }
    Octets& operator=(std::initializer_list<std::uint8_t> octets) {
        return assign(View(octets)), *this;
    }
    ~Octets() { release(); }

    /// As a std::vector has them: an index, front() and back() need an octet that is there.
    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    std::size_t capacity() const noexcept { return capacity_; }
    std::uint8_t* data() noexcept { return isInPlace() ? room_.local : room_.heap; }
    const std::uint8_t* data() const noexcept { return isInPlace() ? room_.local : room_.heap; }
    iterator begin() noexcept { return data(); }
    iterator end() noexcept { return data() + size_; }
    const_iterator begin() const noexcept { return data(); }
    const_iterator end() const noexcept { return data() + size_; }
    std::uint8_t& operator[](std::size_t index) { return data()[index]; }
    const std::uint8_t& operator[](std::size_t index) const { return data()[index]; }
    std::uint8_t& front() { return data()[0]; }
    const std::uint8_t& front() const { return data()[0]; }
    std::uint8_t& back() { return data()[size_ - 1]; }
    const std::uint8_t& back() const { return data()[size_ - 1]; }

    /// Empties the string and keeps its room.
    void clear() noexcept { size_ = 0; }
    /// As a std::vector has them, ranges also as a View; `fill` is what resize() adds.
    void reserve(std::size_t capacity) {
        if (capacity > capacity_) grow(capacity);
    }
    void resize(std::size_t size, std::uint8_t fill = 0) {
        const std::size_t old = size_;
        setSize(size);
        if (size > old) std::memset(data() + old, fill, size - old);
    }
    void push_back(std::uint8_t value) {
        if (size_ == capacity_) grow(std::size_t{size_} + 1);
        data()[size_++] = value;
    }
    void pop_back() { --size_; }
    void assign(View octets) {
        if (octets.size() > capacity_) return replace(octets);
        if (octets.size() <= inPlace)
            copyShort(data(), octets);
        else
            std::memmove(data(), octets.data(), octets.size());
        size_ = static_cast<std::uint32_t>(octets.size());
    }
    void assign(std::initializer_list<std::uint8_t> octets) { assign(View(octets)); }
    void assign(std::size_t count, std::uint8_t value) {
        clear();
        resize(count, value);
    }
    template <std::input_iterator It>
    void assign(It first, It last) {
        Octets fresh;
        for (; first != last; ++first) fresh.push_back(static_cast<std::uint8_t>(*first));
        *this = std::move(fresh);
    }
    void assign(const std::uint8_t* first, const std::uint8_t* last) { assign(View(first, last)); }
    void append(View octets);
    template <std::input_iterator It>
    void append(It first, It last) {
        append(View(Octets(first, last)));
    }
    /// Inserts before `at`; returns where the first inserted octet stands.
    iterator insert(const_iterator at, View octets);
    template <std::input_iterator It>
    iterator insert(const_iterator at, It first, It last) {
        return insert(at, View(Octets(first, last)));
    }
    /// Removes [first, last); returns what follows.
    iterator erase(const_iterator first, const_iterator last);
    iterator erase(const_iterator at) { return erase(at, at + 1); }
    void swap(Octets& other) noexcept {
        Octets kept(std::move(other));
        other = std::move(*this);
        *this = std::move(kept);
    }

    friend bool operator==(const Octets& a, const Octets& b) noexcept {
        return a.size_ == b.size_ && (a.empty() || std::memcmp(a.data(), b.data(), a.size_) == 0);
    }
    friend std::strong_ordering operator<=>(const Octets& a, const Octets& b) noexcept {
        return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end());
    }

private:
    bool isInPlace() const noexcept { return capacity_ == inPlace; }
    void copyObject(const Octets& other) noexcept {
        room_ = other.room_;
        size_ = other.size_;
        capacity_ = other.capacity_;
    }
    void forget() noexcept {
        size_ = 0;
        capacity_ = inPlace;
    }
    void release() noexcept {
        if (!isInPlace()) delete[] room_.heap;
    }
    /// Copies up to inPlace octets, which may overlap, without a call.
    static void copyShort(std::uint8_t* to, View from) noexcept {
        const std::uint8_t* const octets = from.data();
        const std::size_t size = from.size();
        if (size >= 8) {
            std::uint64_t head, middle, tail;
            std::memcpy(&head, octets, 8);
            std::memcpy(&middle, octets + (size >= 16 ? 8 : 0), 8);
            std::memcpy(&tail, octets + size - 8, 8);
            std::memcpy(to, &head, 8);
            std::memcpy(to + (size >= 16 ? 8 : 0), &middle, 8);
            std::memcpy(to + size - 8, &tail, 8);
        } else if (size >= 4) {
            std::uint32_t head, tail;
            std::memcpy(&head, octets, 4);
            std::memcpy(&tail, octets + size - 4, 4);
            std::memcpy(to, &head, 4);
            std::memcpy(to + size - 4, &tail, 4);
        } else if (size > 0) {
            const std::uint8_t head = octets[0], middle = octets[size / 2], tail = octets[size - 1];
            to[0] = head, to[size / 2] = middle, to[size - 1] = tail;
        }
    }
    void setSize(std::size_t size) {
        if (size > capacity_) grow(size);
        size_ = static_cast<std::uint32_t>(size);
    }
    void grow(std::size_t size);
    void replace(View octets);

    union Room {
        std::uint8_t local[inPlace];
        std::uint8_t* heap;
    };
    Room room_;
    std::uint32_t size_;
    std::uint32_t capacity_;  ///< exactly inPlace while the octets are in the object
};

inline void swap(Octets& a, Octets& b) noexcept { a.swap(b); }

}  // namespace ASN1
