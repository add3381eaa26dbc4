#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tovi/asn1/Octets.h"
#include "tovi/card/Wipe.h"

namespace tovi {

/// A PIN on its way to the card. It stays in one place, never on the heap, and is wiped there.
class Secret {
public:
    /// As much as one VERIFY carries.
    static constexpr std::size_t capacity = 255;

    Secret() = default;
    ~Secret() { clear(); }
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;

    /// False, and nothing is added, when there is no room.
    [[nodiscard]] bool push_back(std::uint8_t octet) {
        if (size_ == capacity) return false;
        octets_[size_++] = octet;
        return true;
    }
    void pop_back() { octets_[--size_] = 0; }
    void clear() {
        wipe(octets_.data(), octets_.size());
        size_ = 0;
    }

    bool empty() const { return size_ == 0; }
    std::size_t size() const { return size_; }
    std::uint8_t operator[](std::size_t i) const { return octets_[i]; }
    std::uint8_t& operator[](std::size_t i) { return octets_[i]; }
    ASN1::View octets() const { return ASN1::View(octets_.data(), size_); }
    std::string_view text() const { return {reinterpret_cast<const char*>(octets_.data()), size_}; }

private:
    std::array<std::uint8_t, capacity> octets_ = {};
    std::size_t size_ = 0;
};

}  // namespace tovi
