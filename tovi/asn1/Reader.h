#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "tovi/Export.h"
#include "tovi/asn1/Error.h"
#include "tovi/asn1/Octets.h"
#include "tovi/asn1/Tag.h"

namespace ASN1 {

/// One element of the input. Both views point into the caller's octets.
struct TOVI_API Element {
    Tag tag;
    bool constructed = false;
    View content;  ///< without end-of-contents octets
    View whole;    ///< first identifier octet to last octet
};

/// Walks the elements of one nesting level of hostile BER (X.690): definite and indefinite lengths,
/// tags and lengths longer than need be.
///
/// Never reads outside its input, never allocates on success, and nests at most `maxDepth` levels.
/// A failing operation returns false (or nothing) and leaves what went wrong in the Error that all
/// readers of one input share; the first failure stays.
class TOVI_API Reader {
public:
    static constexpr unsigned maxDepth = 24;

    Reader(View input, Error& error) : Reader(input, input.data(), maxDepth, error) {}

    bool atEnd() const { return rest_.empty(); }
    View rest() const { return rest_; }
    /// Looks at the next element without taking it.
    [[nodiscard]] bool peek(Element& out) const {
        return parse(out) && (out.tag != universal(0) || fail(Error::badTag));
    }
    /// A reader over the content of `element`, one level deeper.
    [[nodiscard]] std::optional<Reader> enter(const Element& element) const {
        if (!element.constructed || depth_ == 0) return failToEnter(element);
        return Reader(element.content, origin_, depth_ - 1, *error_);
    }
    void skip(const Element& element) { rest_ = rest_.subspan(element.whole.size()); }
    /// Takes the next element.
    [[nodiscard]] bool next(Element& out) {
        if (!peek(out)) return false;
        skip(out);
        return true;
    }

    /// These record a failure and return false, so that a decoder can return their result.
    bool fail(Error::Kind kind) const { return fail(kind, rest_.data()); }
    bool fail(Error::Kind kind, const std::uint8_t* at) const;
    bool failUnexpected(const Element& found, const Type* expected, Tag expectedTag = {}) const;
    /// Puts `name` in front of the path of the pending failure and returns false.
    bool within(std::string_view name) const;
    bool withinItem(std::size_t index) const;
    /// Forgets the pending failure: the caller has another reading of the same octets.
    void forgive() const;

private:
    Reader(View input, const std::uint8_t* origin, unsigned depth, Error& error)
        : rest_(input), origin_(origin), error_(&error), depth_(depth) {}
    std::nullopt_t failToEnter(const Element& element) const;
    bool parse(Element& out) const {
        // Nearly all headers have two octets.
        if (rest_.size() < 2 || (rest_[0] & 0x1F) == 0x1F || rest_[1] >= 0x80 ||
            rest_[1] > rest_.size() - 2)
            return parseAnyHeader(out);
        out.tag = {Tag::Class(rest_[0] & 0xC0), rest_[0] & 0x1Fu};
        out.constructed = (rest_[0] & 0x20) != 0;
        out.content = rest_.subspan(2, rest_[1]);
        out.whole = rest_.first(rest_[1] + std::size_t{2});
        return true;
    }
    bool parseAnyHeader(Element& out) const;
    bool parseLongTag(std::size_t& at, std::uint32_t& number) const;
    bool parseLongLength(std::size_t& at, std::size_t& length) const;
    bool measureIndefinite(std::size_t headerSize, Element& out) const;

    View rest_;
    const std::uint8_t* origin_;
    Error* error_;
    unsigned depth_;  ///< levels left
};

}  // namespace ASN1
