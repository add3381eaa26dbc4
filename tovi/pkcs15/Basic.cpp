#include "tovi/pkcs15/Basic.h"

#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/Bounds.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

constexpr Member credentialIdentifierRows[] = {
    mandatory<&CredentialIdentifier::idType>("idType").spelled(
        "KEY-IDENTIFIER.&id ({IdentifierSet})"),
    mandatory<&CredentialIdentifier::idValue>("idValue").spelled(
        "KEY-IDENTIFIER.&Value ({IdentifierSet}{@idType})"),
};

}  // namespace

constinit const Type Identifier::type =
    derived<Identifier>("Identifier", ASN1::octetStringType, {0, ubIdentifier});
constinit const Type Label::type = derived<Label>("Label", ASN1::utf8StringType, {0, ubLabel});
constinit const Type referenceType = derived<std::uint64_t>(
    "Reference", ASN1::unsignedType, {0, ubReference}, {0, acceptedReference});
constinit const Type CredentialIdentifier::type =
    sequence<CredentialIdentifier>("CredentialIdentifier", credentialIdentifierRows);

}  // namespace PKCS15
