#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "tovi/Export.h"
#include "tovi/asn1/Octets.h"
#include "tovi/asn1/Tag.h"

namespace ASN1 {

/// Builds DER back to front, so that every length is known by the time its header is written.
class TOVI_API Writer {
public:
    Writer() : begin_(local_), start_(local_ + sizeof local_), end_(start_) {}
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// Octets written so far.
    std::size_t size() const { return static_cast<std::size_t>(end_ - start_); }
    void octet(std::uint8_t value) { *room(1) = value; }
    void octets(View octets);
    void header(Tag tag, bool constructed, std::size_t length);

    /// Remembers that a value cannot be written, such as a CHOICE without selection.
    void fail() { failed_ = true; }
    bool failed() const { return failed_; }
    View written() const { return {start_, size()}; }

private:
    std::uint8_t* room(std::size_t size) {
        if (size > static_cast<std::size_t>(start_ - begin_)) grow(size);
        return start_ -= size;
    }
    void grow(std::size_t size);

    std::uint8_t local_[768];  ///< enough for nearly every directory record
    std::unique_ptr<std::uint8_t[]> heap_;
    std::uint8_t* begin_;
    std::uint8_t* start_;
    std::uint8_t* end_;
    bool failed_ = false;
};

}  // namespace ASN1
