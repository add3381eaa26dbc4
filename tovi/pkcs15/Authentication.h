#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/asn1/Expected.h"
#include "tovi/pkcs15/Basic.h"
#include "tovi/pkcs15/PKCS15Object.h"
#include "tovi/pkcs15/Path.h"

/// Records of EF(AODF).
namespace PKCS15 {

/// ISO/IEC 7816-15 has the identifier as optional.
///
///     CommonAuthenticationObjectAttributes ::= SEQUENCE {
///         authId  Identifier,
///         ... }
struct TOVI_API CommonAuthenticationObjectAttributes
    : ASN1::Sequence<CommonAuthenticationObjectAttributes> {
    ASN1::Expected<Identifier> authId;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     PinFlags ::= BIT STRING {
///         case-sensitive (0), local (1), change-disabled (2), unblock-disabled (3), initialized
///         (4), needs-padding (5), unblockingPin (6), soPin (7), disable-allowed (8),
///         integrity-protected (9), confidentiality-protected (10), exchangeRefData (11) }
struct TOVI_API PinFlags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t {
        case_sensitive,
        local,
        change_disabled,
        unblock_disabled,
        initialized,
        needs_padding,
        unblockingPin,
        soPin,
        disable_allowed,
        integrity_protected,
        confidentiality_protected,
        exchangeRefData,
    };
    static const ASN1::Type type;
};

///     PinType ::= ENUMERATED { bcd, ascii-numeric, utf8, ..., half-nibble-bcd, iso9564-1 }
struct TOVI_API PinType : ASN1::ENUMERATED {
    using ASN1::ENUMERATED::ENUMERATED;
    /// The numbers that the notation names.
    enum Number : std::int64_t { bcd, ascii_numeric, utf8, half_nibble_bcd, iso9564_1 };
    static const ASN1::Type type;
};

///     PinAttributes ::= SEQUENCE {
///         pinFlags       PinFlags,
///         pinType        PinType,
///         minLength      INTEGER (pkcs15-lb-minPinLength..pkcs15-ub-minPinLength),
///         storedLength   INTEGER (0..pkcs15-ub-storedPinLength),
///         maxLength      INTEGER OPTIONAL,
///         pinReference   [0] Reference DEFAULT 0,
///         padChar        OCTET STRING (SIZE (1)) OPTIONAL,
///         lastPinChange  GeneralizedTime OPTIONAL,
///         path           Path OPTIONAL,
///         ... }
struct TOVI_API PinAttributes : ASN1::Sequence<PinAttributes> {
    PinFlags pinFlags;
    PinType pinType;
    std::uint64_t minLength = 4;
    std::uint64_t storedLength = 0;
    std::optional<ASN1::INTEGER> maxLength;
    std::optional<std::uint64_t> pinReference;
    std::optional<ASN1::OCTET_STRING> padChar;
    std::optional<ASN1::GeneralizedTime> lastPinChange;
    std::optional<Path> path;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     BiometricFlags ::= BIT STRING {
///         local (1), change-disabled (2), unblock-disabled (3), initialized (4), disable-allowed
///         (8), integrity-protected (9), confidentiality-protected (10) }
struct TOVI_API BiometricFlags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t {
        local = 1,
        change_disabled = 2,
        unblock_disabled = 3,
        initialized = 4,
        disable_allowed = 8,
        integrity_protected = 9,
        confidentiality_protected = 10,
    };
    static const ASN1::Type type;
};

/// The ENUMERATED in place of FingerPrint.hand and IrisScan.eye.
struct TOVI_API BodySide : ASN1::ENUMERATED {
    using ASN1::ENUMERATED::ENUMERATED;
    /// The numbers that the notation names.
    enum Number : std::int64_t { left, right };
    static const ASN1::Type type;
};

/// The ENUMERATED in place of FingerPrint.finger.
struct TOVI_API Finger : ASN1::ENUMERATED {
    using ASN1::ENUMERATED::ENUMERATED;
    /// The numbers that the notation names.
    enum Number : std::int64_t { thumb, pointerFinger, middleFinger, ringFinger, littleFinger };
    static const ASN1::Type type;
};

///     FingerPrint ::= SEQUENCE {
///         hand    ENUMERATED { left, right },
///         finger  ENUMERATED { thumb, pointerFinger, middleFinger, ringFinger, littleFinger },
///         ... }
struct TOVI_API FingerPrint : ASN1::Sequence<FingerPrint> {
    BodySide hand;
    Finger finger;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     IrisScan ::= SEQUENCE {
///         eye  ENUMERATED { left, right },
///         ... }
struct TOVI_API IrisScan : ASN1::Sequence<IrisScan> {
    BodySide eye;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     BiometricType ::= CHOICE {
///         fingerPrint  FingerPrint,
///         irisScan     [0] IrisScan,
///         ... }
struct TOVI_API BiometricType : ASN1::Choice<BiometricType> {
    enum Alternative : std::size_t { fingerPrint, irisScan, unknown, none };
    std::variant<FingerPrint, IrisScan, ASN1::OpenData, std::monostate> value{std::monostate()};
    static const ASN1::Type type;
};

/// ISO/IEC 7816-15:2016 also has [APPLICATION 96] and [APPLICATION 97] in place of the attributes:
/// such an element is kept in `otherForm` and written back in place of all members.
///
///     BiometricAttributes ::= SEQUENCE {
///         bioFlags      BiometricFlags,
///         templateId    OBJECT IDENTIFIER,
///         bioType       BiometricType,
///         bioReference  Reference DEFAULT 0,
///         lastChange    GeneralizedTime OPTIONAL,
///         path          Path OPTIONAL,
///         ... }
struct TOVI_API BiometricAttributes : ASN1::Sequence<BiometricAttributes> {
    BiometricFlags bioFlags;
    ASN1::OBJECT_IDENTIFIER templateId;
    BiometricType bioType;
    std::optional<std::uint64_t> bioReference;
    std::optional<ASN1::GeneralizedTime> lastChange;
    std::optional<Path> path;
    ASN1::Unknown unknown;
    ASN1::Boxed<ASN1::OpenData> otherForm;
    static const ASN1::Type type;
};

///     AuthKeyAttributes ::= SEQUENCE {
///         derivedKey  BOOLEAN DEFAULT TRUE,
///         authKeyId   Identifier,
///         ... }
struct TOVI_API AuthKeyAttributes : ASN1::Sequence<AuthKeyAttributes> {
    std::optional<bool> derivedKey;
    Identifier authKeyId;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     CertBasedAuthenticationAttributes ::= SEQUENCE {
///         cha  OCTET STRING,
///         ... }
struct TOVI_API CertBasedAuthenticationAttributes
    : ASN1::Sequence<CertBasedAuthenticationAttributes> {
    ASN1::OCTET_STRING cha;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     ExternalAuthObjectAttributes ::= CHOICE {
///         authKeyAttributes    AuthKeyAttributes,
///         certBasedAttributes  [0] CertBasedAuthenticationAttributes,
///         ... }
struct TOVI_API ExternalAuthObjectAttributes : ASN1::Choice<ExternalAuthObjectAttributes> {
    enum Alternative : std::size_t { authKeyAttributes, certBasedAttributes, unknown, none };
    std::variant<AuthKeyAttributes, CertBasedAuthenticationAttributes, ASN1::OpenData,
                 std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    auto& select_authKeyAttributes() { return select<authKeyAttributes>(); }
    auto& select_certBasedAttributes() { return select<certBasedAttributes>(); }
};

///     AuthenticationObject { AuthObjectAttributes } ::= PKCS15Object {
///         CommonAuthenticationObjectAttributes, NULL, AuthObjectAttributes }
template <class AuthObjectAttributes>
using AuthenticationObject =
    PKCS15Object<CommonAuthenticationObjectAttributes, ASN1::Null, AuthObjectAttributes>;

///     AuthenticationType ::= CHOICE {
///         pin                    AuthenticationObject {PinAttributes},
///         ...,
///         biometricTemplate  [0] AuthenticationObject {BiometricAttributes},
///         authKey            [1] AuthenticationObject {AuthKeyAttributes},
///         external           [2] AuthenticationObject {ExternalAuthObjectAttributes} }
struct TOVI_API AuthenticationType : ASN1::Choice<AuthenticationType> {
    enum Alternative : std::size_t { pin, biometricTemplate, authKey, external, unknown, none };
    std::variant<AuthenticationObject<PinAttributes>, AuthenticationObject<BiometricAttributes>,
                 AuthenticationObject<AuthKeyAttributes>,
                 AuthenticationObject<ExternalAuthObjectAttributes>, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    auto& select_pin() { return select<pin>(); }
    auto& select_biometricTemplate() { return select<biometricTemplate>(); }
    auto& select_authKey() { return select<authKey>(); }
    auto& select_external() { return select<external>(); }
};

}  // namespace PKCS15
