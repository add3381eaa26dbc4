#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/pkcs15/Basic.h"

namespace PKCS15 {

///     CommonObjectFlags ::= BIT STRING { private (0), modifiable (1) }
struct TOVI_API CommonObjectFlags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t { private_, modifiable };
    static const ASN1::Type type;
};

///     AccessMode ::= BIT STRING { read (0), update (1), execute (2) }
struct TOVI_API AccessMode : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t { read, update, execute };
    static const ASN1::Type type;
};

/// Who has to be authenticated before an object may be used.
///
///     SecurityCondition ::= CHOICE {
///         authId  Identifier,
///         not     [0] EXPLICIT SecurityCondition,
///         and     [1] SEQUENCE SIZE (2..pkcs15-ub-securityConditions) OF SecurityCondition,
///         or      [2] SEQUENCE SIZE (2..pkcs15-ub-securityConditions) OF SecurityCondition,
///         ... }
struct TOVI_API SecurityCondition : ASN1::Choice<SecurityCondition> {
    enum Alternative : std::size_t { authId, not_, and_, or_, unknown, none };
    /// The conditions that `and` or `or` joins.
    using List = std::vector<SecurityCondition>;
    std::variant<Identifier, ASN1::Boxed<SecurityCondition>, List, List, ASN1::OpenData,
                 std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;
};

///     AccessControlRule ::= SEQUENCE {
///         accessMode         AccessMode,
///         securityCondition  SecurityCondition,
///         ... }
struct TOVI_API AccessControlRule : ASN1::Sequence<AccessControlRule> {
    AccessMode accessMode;
    SecurityCondition securityCondition;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

/// What every object of the card directory may carry.
///
///     CommonObjectAttributes ::= SEQUENCE {
///         label               Label OPTIONAL,
///         flags               CommonObjectFlags OPTIONAL,
///         authId              Identifier OPTIONAL,
///         ...,
///         userConsent         INTEGER (1..pkcs15-ub-userConsent) OPTIONAL,
///         accessControlRules  SEQUENCE SIZE (1..MAX) OF AccessControlRule OPTIONAL }
struct TOVI_API CommonObjectAttributes : ASN1::Sequence<CommonObjectAttributes> {
    std::optional<Label> label;
    std::optional<CommonObjectFlags> flags;
    std::optional<Identifier> authId;
    ASN1::Unknown unknown;
    std::optional<std::uint64_t> userConsent;  ///< valid from 0 to 32767
    ASN1::Boxed<std::vector<AccessControlRule>> accessControlRules;
    static const ASN1::Type type;

    /// Brings the member into being unless it is there, or sets it.
    Label& set_label() { return label ? *label : label.emplace(); }
    CommonObjectFlags& set_flags() { return flags ? *flags : flags.emplace(); }
    Identifier& set_authId() { return authId ? *authId : authId.emplace(); }
    void set_userConsent(unsigned count) { userConsent = count; }
};

}  // namespace PKCS15
