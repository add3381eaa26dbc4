#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/pkcs15/EnvelopedData.h"
#include "tovi/pkcs15/PKCS15Objects.h"

/// Tokens in software: a whole application in one value.
namespace PKCS15 {

///     PasswordInfo ::= SEQUENCE {
///         hint   Label OPTIONAL,
///         algId  AlgorithmIdentifier {{KeyDerivationAlgorithms}},
///         ... }
struct TOVI_API PasswordInfo : ASN1::Sequence<PasswordInfo> {
    std::optional<Label> hint;
    AlgorithmIdentifier algId;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

/// The CHOICE in place of KeyManagementInfo.keyInfo.
struct TOVI_API ManagedKeyInfo : ASN1::Choice<ManagedKeyInfo> {
    enum Alternative : std::size_t { recipientInfo, passwordInfo, none };
    std::variant<RecipientInfo, PasswordInfo, std::monostate> value{std::monostate()};
    static const ASN1::Type type;
};

/// The SEQUENCE in place of KeyManagementInfo's elements.
struct TOVI_API ManagedKey : ASN1::Sequence<ManagedKey> {
    Identifier keyId;        ///< of the key that is managed
    ManagedKeyInfo keyInfo;  ///< how it is managed
    static const ASN1::Type type;
};

///     KeyManagementInfo ::= SEQUENCE OF SEQUENCE {
///         keyId    Identifier,
///         keyInfo  CHOICE {
///             recipientInfo  RecipientInfo,
///             passwordInfo   [0] PasswordInfo } }
using KeyManagementInfo = std::vector<ManagedKey>;
TOVI_API extern const ASN1::Type keyManagementInfoType;

///     PKCS15Token ::= SEQUENCE {
///         version            INTEGER { v1(0) } (v1, ...),
///         keyManagementInfo  [0] KeyManagementInfo OPTIONAL,
///         pkcs15Objects      SEQUENCE OF PKCS15Objects }
struct TOVI_API PKCS15Token : ASN1::Sequence<PKCS15Token> {
    ASN1::INTEGER version;
    std::optional<KeyManagementInfo> keyManagementInfo;
    std::vector<PKCS15Objects> pkcs15Objects;
    static const ASN1::Type type;
};

}  // namespace PKCS15
