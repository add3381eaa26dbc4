#include "tovi/pkcs15/CommonObjectAttributes.h"

#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/Bounds.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr NamedNumber commonObjectFlagsBits[] = {{"private", 0}, {"modifiable", 1}};

constexpr NamedNumber accessModeBits[] = {{"read", 0}, {"update", 1}, {"execute", 2}};

using Condition = SecurityCondition;

constexpr Member securityConditionRows[] = {
    alternative<&Condition::value, Condition::authId>("authId"),
    alternative<&Condition::value, Condition::not_>("not").explicitly(0),
    alternative<&Condition::value, Condition::and_>("and").tagged(1).size(2, ubSecurityConditions),
    alternative<&Condition::value, Condition::or_>("or").tagged(2).size(2, ubSecurityConditions),
    extension<&Condition::value, Condition::unknown>(),
};

constexpr Member accessControlRuleRows[] = {
    mandatory<&AccessControlRule::accessMode>("accessMode"),
    mandatory<&AccessControlRule::securityCondition>("securityCondition"),
    extension<&AccessControlRule::unknown>(),
};

constexpr Member commonObjectAttributesRows[] = {
    optional<&CommonObjectAttributes::label>("label"),
    optional<&CommonObjectAttributes::flags>("flags"),
    optional<&CommonObjectAttributes::authId>("authId"),
    extension<&CommonObjectAttributes::unknown>(),
    optional<&CommonObjectAttributes::userConsent>("userConsent")
        .range(1, ubUserConsent)
        .accepting(0, acceptedUserConsent),
    optional<&CommonObjectAttributes::accessControlRules>("accessControlRules").size(1),
};

}  // namespace

constinit const Type CommonObjectFlags::type =
    namedBits<CommonObjectFlags>("CommonObjectFlags", commonObjectFlagsBits);
constinit const Type AccessMode::type = namedBits<AccessMode>("AccessMode", accessModeBits);
constinit const Type SecurityCondition::type =
    choice<SecurityCondition>("SecurityCondition", securityConditionRows);
constinit const Type AccessControlRule::type =
    sequence<AccessControlRule>("AccessControlRule", accessControlRuleRows);
constinit const Type CommonObjectAttributes::type =
    sequence<CommonObjectAttributes>("CommonObjectAttributes", commonObjectAttributesRows);

}  // namespace PKCS15
