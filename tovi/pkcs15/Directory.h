#pragma once

#include <optional>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Expected.h"
#include "tovi/pkcs15/Basic.h"
#include "tovi/pkcs15/CommonObjectAttributes.h"
#include "tovi/pkcs15/Path.h"

/// Records of EF(DIR) and of EF(UnusedSpace).
namespace PKCS15 {

/// ISO/IEC 7816-15 has the identifier as optional.
///
///     DDO ::= SEQUENCE {
///         oid            OBJECT IDENTIFIER,
///         odfPath        Path OPTIONAL,
///         tokenInfoPath  [0] Path OPTIONAL,
///         unusedPath     [1] Path OPTIONAL,
///         ... }
struct TOVI_API DDO : ASN1::Sequence<DDO> {
    ASN1::Expected<ASN1::OBJECT_IDENTIFIER> oid;
    std::optional<Path> odfPath;
    std::optional<Path> tokenInfoPath;
    std::optional<Path> unusedPath;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

/// An application template (ISO/IEC 7816-4:2005, 8.2.1.3), which may hold further data objects.
///
///     DIRRecord ::= [APPLICATION 1] SEQUENCE {
///         aid    [APPLICATION 15] OCTET STRING,
///         label  [APPLICATION 16] UTF8String OPTIONAL,
///         path   [APPLICATION 17] OCTET STRING,
///         ddo    [APPLICATION 19] DDO OPTIONAL }
struct TOVI_API DIRRecord : ASN1::Sequence<DIRRecord> {
    ASN1::OCTET_STRING aid;
    std::optional<ASN1::UTF8String> label;
    ASN1::Expected<ASN1::OCTET_STRING> path;
    std::optional<DDO> ddo;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

/// A stretch of a file that is free for new objects, and who may use it.
///
///     UnusedSpace ::= SEQUENCE {
///         path                Path,
///         authId              Identifier OPTIONAL,
///         ...,
///         accessControlRules  SEQUENCE OF AccessControlRule OPTIONAL }
struct TOVI_API UnusedSpace : ASN1::Sequence<UnusedSpace> {
    Path path;
    std::optional<Identifier> authId;
    ASN1::Unknown unknown;
    std::optional<std::vector<AccessControlRule>> accessControlRules;
    static const ASN1::Type type;
};

}  // namespace PKCS15
