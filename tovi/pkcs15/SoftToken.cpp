#include "tovi/pkcs15/SoftToken.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr Member passwordInfoRows[] = {
    optional<&PasswordInfo::hint>("hint"),
    mandatory<&PasswordInfo::algId>("algId").spelled(
        "AlgorithmIdentifier {{KeyDerivationAlgorithms}}"),
    extension<&PasswordInfo::unknown>(),
};

constexpr Member managedKeyInfoRows[] = {
    alternative<&ManagedKeyInfo::value, ManagedKeyInfo::recipientInfo>("recipientInfo")
        .spelled("RecipientInfo"),
    alternative<&ManagedKeyInfo::value, ManagedKeyInfo::passwordInfo>("passwordInfo").tagged(0),
};

constexpr Member managedKeyRows[] = {
    mandatory<&ManagedKey::keyId>("keyId"),
    mandatory<&ManagedKey::keyInfo>("keyInfo"),
};

constexpr NamedNumber versions[] = {{"v1", 0}};
constexpr Type versionType = numbered(versions, "v1, ...");

constexpr Member pkcs15TokenRows[] = {
    mandatory<&PKCS15Token::version>("version").as(versionType),
    optional<&PKCS15Token::keyManagementInfo>("keyManagementInfo")
        .tagged(0)
        .as(keyManagementInfoType),
    mandatory<&PKCS15Token::pkcs15Objects>("pkcs15Objects"),
};

}  // namespace

constinit const Type PasswordInfo::type = sequence<PasswordInfo>("PasswordInfo", passwordInfoRows);
constinit const Type ManagedKeyInfo::type = choice<ManagedKeyInfo>("", managedKeyInfoRows);
constinit const Type ManagedKey::type = sequence<ManagedKey>("", managedKeyRows);
constinit const Type keyManagementInfoType =
    named("KeyManagementInfo", *ASN1::TypeOf<KeyManagementInfo>::value);
constinit const Type PKCS15Token::type = sequence<PKCS15Token>("PKCS15Token", pkcs15TokenRows);

}  // namespace PKCS15
