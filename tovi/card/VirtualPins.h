#pragma once

#include <cstdint>
#include <map>

#include "tovi/Export.h"
#include "tovi/card/CardDescription.h"

namespace tovi {

class VirtualCardStorage;

/// The PINs of a virtual card: values, tries counters, and which are verified since the last reset.
class TOVI_API VirtualPins {
public:
    /// Adds a PIN or replaces the one with that reference.
    void add(const PinDescription& pin);

    /// True when `rule` lets an operation pass now.
    bool allows(const AccessRule& rule) const;

    /// Compares `value` with the PIN, and returns a status word (ISO/IEC 7816-4): 9000,
    /// 63CX with the tries left, 6983 when there are none, 6A88 for an unknown reference.
    ///
    /// A tries counter that goes down is in `storage`, unless that is null, before the comparison
    /// is answered.
    std::uint16_t verify(std::uint8_t reference, ASN1::View value, VirtualCardStorage* storage);

    /// What VERIFY without data asks for: 9000 when verified, else as above; no try is lost.
    std::uint16_t state(std::uint8_t reference) const;

    /// Forgets what was verified, as a reset does.
    void reset();

    /// Tries left; 0 for an unknown reference.
    unsigned left(std::uint8_t reference) const;

private:
    struct Pin {
        PinDescription description;
        bool verified = false;
    };
    static void setLeft(Pin& pin, unsigned left, VirtualCardStorage* storage);

    std::map<std::uint8_t, Pin> pins_;
};

}  // namespace tovi
