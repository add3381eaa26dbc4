#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "tovi/Export.h"
#include "tovi/interfaces/Blob.h"

namespace tovi {

/// A set of PKCS#11 attributes, keyed by CKA_ number; the base of every info class.
///
/// Valid from construction. The boolean attributes that keys and certificates carry are kept as two
/// bits each; any other attribute as its octets.
class TOVI_API PKCS11Attrs {
public:
    PKCS11Attrs() = default;
    PKCS11Attrs(const PKCS11Attrs& other);
    PKCS11Attrs(PKCS11Attrs&&) noexcept = default;
    PKCS11Attrs& operator=(const PKCS11Attrs& other);
    PKCS11Attrs& operator=(PKCS11Attrs&&) noexcept = default;
    virtual ~PKCS11Attrs() = default;

    /// False after an Import that failed; writing such an info is refused.
    virtual bool IsValid() const;

    /// Replaces all attributes by those encoded in `encoded`: for each, the CKA_ number and the
    /// length of the value, four octets each, most significant first, and the value. False for
    /// anything else; the set is then empty and not valid.
    virtual bool Import(const Blob& encoded);
    /// The encoding that Import takes, attributes in numeric order.
    Blob Export() const;

    /// Sets an attribute. A boolean is B_CK_TRUE or B_CK_FALSE, one octet 01 or 00. Throws
    /// SmartcardException "invalid attribute" for a number of more than 32 bits.
    void SetParam(unsigned long attribute, const Blob& value);
    /// The value of a boolean attribute: 1 (CK_TRUE) or 0; 0 also when the set does not hold it or
    /// its value is not one octet.
    unsigned char GetParam(unsigned long attribute) const;

    /// One attribute and its octets.
    struct Param {
        unsigned long attribute = 0;  ///< CKA_ number
        Blob value;                   ///< its octets
        friend bool operator==(const Param&, const Param&) = default;
    };
    /// All attributes, in numeric order.
    std::vector<Param> Params() const;

private:
    /// Keeps the octets of an attribute that is no bit; null removes them.
    void setOther(unsigned long attribute, const Blob* value);

    std::uint16_t present_ = 0;  // one bit a known boolean attribute
    std::uint16_t values_ = 0;
    bool valid_ = true;
    std::unique_ptr<std::vector<Param>> others_;  // in numeric order; may be null or empty
};

}  // namespace tovi
