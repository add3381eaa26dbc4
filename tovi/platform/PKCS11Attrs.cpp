#include "tovi/interfaces/PKCS11Attrs.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {
namespace {

using Param = PKCS11Attrs::Param;

/// The boolean attributes that have a bit, in numeric order.
constexpr std::array<unsigned long, 12> booleans = {
    CKA_PRIVATE,        CKA_ENCRYPT, CKA_DECRYPT,      CKA_WRAP,
    CKA_UNWRAP,         CKA_SIGN,    CKA_SIGN_RECOVER, CKA_VERIFY,
    CKA_VERIFY_RECOVER, CKA_DERIVE,  CKA_MODIFIABLE,   CKA_ALWAYS_AUTHENTICATE};

/// The bit of a boolean attribute; 0 for any other.
std::uint16_t bitOf(unsigned long attribute) {
    const auto found = std::lower_bound(booleans.begin(), booleans.end(), attribute);
    if (found == booleans.end() || *found != attribute) return 0;
    return static_cast<std::uint16_t>(1u << (found - booleans.begin()));
}

bool isBoolean(ASN1::View value) { return value.size() == 1 && value[0] <= 1; }

bool isBefore(const Param& a, const Param& b) { return a.attribute < b.attribute; }

/// The first of `params` whose number is `attribute` or above.
std::vector<Param>::iterator firstFrom(std::vector<Param>& params, unsigned long attribute) {
    return std::lower_bound(
        params.begin(), params.end(), attribute,
        [](const Param& param, unsigned long number) { return param.attribute < number; });
}

constexpr std::size_t numberSize = 4;

void appendNumber(Blob& encoded, std::size_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        encoded.push_back(static_cast<std::uint8_t>(number >> shift));
}

/// Takes a number off the front of `rest`; false when it is cut.
bool takeNumber(ASN1::View& rest, std::uint32_t& number) {
    if (rest.size() < numberSize) return false;
    number = 0;
    for (const std::uint8_t octet : rest.first(numberSize)) number = number << 8 | octet;
    rest = rest.subspan(numberSize);
    return true;
}

/// Decodes an exported set into `params`, in numeric order. An attribute that comes twice, perhaps
/// with two values, makes no set.
bool decode(ASN1::View rest, std::vector<Param>& params) {
    while (!rest.empty()) {
        std::uint32_t attribute = 0;
        std::uint32_t length = 0;
        if (!takeNumber(rest, attribute) || !takeNumber(rest, length)) return false;
        if (length > rest.size()) return false;
        params.push_back({attribute, Blob(rest.first(length))});
        rest = rest.subspan(length);
    }
    std::sort(params.begin(), params.end(), isBefore);
    const auto sameNumber = [](const Param& a, const Param& b) {
        return a.attribute == b.attribute;
    };
    return std::adjacent_find(params.begin(), params.end(), sameNumber) == params.end();
}

}  // namespace

PKCS11Attrs::PKCS11Attrs(const PKCS11Attrs& other)
    : present_(other.present_), values_(other.values_), valid_(other.valid_) {
    if (other.others_) others_ = std::make_unique<std::vector<Param>>(*other.others_);
}

PKCS11Attrs& PKCS11Attrs::operator=(const PKCS11Attrs& other) {
    if (this != &other) *this = PKCS11Attrs(other);
    return *this;
}

bool PKCS11Attrs::IsValid() const { return valid_; }

bool PKCS11Attrs::Import(const Blob& encoded) {
    std::vector<Param> params;
    const bool valid = decode(encoded, params);
    PKCS11Attrs fresh;
    if (valid)
        for (const Param& param : params) fresh.SetParam(param.attribute, param.value);
    fresh.valid_ = valid;
    *this = std::move(fresh);
    return valid;
}

Blob PKCS11Attrs::Export() const {
    Blob encoded;
    for (const Param& param : Params()) {
        appendNumber(encoded, param.attribute);
        appendNumber(encoded, param.value.size());
        encoded.append(ASN1::View(param.value));
    }
    return encoded;
}

void PKCS11Attrs::SetParam(unsigned long attribute, const Blob& value) {
    if (std::uint64_t{attribute} > 0xFFFFFFFF)
        throw SmartcardException("invalid attribute", "PKCS11Attrs::SetParam");
    const std::uint16_t bit = bitOf(attribute);
    const bool asBit = bit != 0 && isBoolean(value);
    setOther(attribute, asBit ? nullptr : &value);  // what may fail comes before the bits change
    present_ = static_cast<std::uint16_t>(asBit ? present_ | bit : present_ & ~bit);
    values_ = static_cast<std::uint16_t>(asBit && value[0] == 1 ? values_ | bit : values_ & ~bit);
}

void PKCS11Attrs::setOther(unsigned long attribute, const Blob* value) {
    if (!value && !others_) return;
    if (!others_) others_ = std::make_unique<std::vector<Param>>();
    const auto at = firstFrom(*others_, attribute);
    const bool found = at != others_->end() && at->attribute == attribute;
    if (!value) {
        if (found) others_->erase(at);
    } else if (found) {
        at->value = *value;
    } else {
        others_->insert(at, {attribute, *value});
    }
}

unsigned char PKCS11Attrs::GetParam(unsigned long attribute) const {
    if (const std::uint16_t bit = bitOf(attribute); (present_ & bit) != 0)
        return (values_ & bit) != 0;
    if (!others_) return 0;
    const auto at = firstFrom(*others_, attribute);
    const bool found = at != others_->end() && at->attribute == attribute;
    return found && at->value.size() == 1 && at->value[0] != 0;
}

std::vector<PKCS11Attrs::Param> PKCS11Attrs::Params() const {
    std::vector<Param> params;
    for (std::size_t i = 0; i < booleans.size(); ++i)
        if ((present_ >> i & 1) != 0)
            params.push_back({booleans[i], Blob{static_cast<std::uint8_t>(values_ >> i & 1)}});
    const auto middle = static_cast<std::ptrdiff_t>(params.size());
    if (others_) params.insert(params.end(), others_->begin(), others_->end());
    std::inplace_merge(params.begin(), params.begin() + middle, params.end(), isBefore);
    return params;
}

}  // namespace tovi
