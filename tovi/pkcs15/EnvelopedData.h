#pragma once

#include <optional>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Values.h"
#include "tovi/pkcs15/Imported.h"

/// Enveloped values. Their parameter is the type of what is encrypted, which never shows on the
/// wire, so these are no templates.
namespace PKCS15 {

///     EncryptedContentInfo { Type } ::= SEQUENCE {
///         contentType                 OBJECT IDENTIFIER,
///         contentEncryptionAlgorithm  AlgorithmIdentifier {{KeyDerivationAlgorithms}},
///         encryptedContent            [0] OCTET STRING OPTIONAL }
struct TOVI_API EncryptedContentInfo : ASN1::Sequence<EncryptedContentInfo> {
    ASN1::OBJECT_IDENTIFIER contentType;
    AlgorithmIdentifier contentEncryptionAlgorithm;
    std::optional<ASN1::OCTET_STRING> encryptedContent;
    static const ASN1::Type type;
};

///     EnvelopedData { Type } ::= SEQUENCE {
///         version               INTEGER { v0(0), v1(1), v2(2), v3(3), v4(4) } (v0 | v1 | v2, ...),
///         originatorInfo        [0] OriginatorInfo OPTIONAL,
///         recipientInfos        RecipientInfos,
///         encryptedContentInfo  EncryptedContentInfo {Type},
///         unprotectedAttrs      [1] SET SIZE (1..MAX) OF Attribute OPTIONAL }
struct TOVI_API EnvelopedData : ASN1::Sequence<EnvelopedData> {
    ASN1::INTEGER version;
    std::optional<OriginatorInfo> originatorInfo;
    RecipientInfos recipientInfos;
    EncryptedContentInfo encryptedContentInfo;
    std::optional<std::vector<Attribute>> unprotectedAttrs;
    static const ASN1::Type type;
};

}  // namespace PKCS15
