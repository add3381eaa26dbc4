#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/asn1/Values.h"
#include "tovi/pkcs15/Imported.h"

namespace PKCS15 {

/// The octets that name a file. ISO/IEC 7816-15:2016 has three more forms of it (tagRef,
/// appFileRef, appTagRef): such an element is kept in `otherForm`, and written back while there are
/// no octets.
struct TOVI_API FilePath : ASN1::OCTET_STRING {
    using ASN1::OCTET_STRING::OCTET_STRING;
    using ASN1::OCTET_STRING::operator=;
    FilePath() = default;
    FilePath(const ASN1::OCTET_STRING& octets) : ASN1::OCTET_STRING(octets) {}
    ASN1::Boxed<ASN1::OpenData> otherForm;
    static const ASN1::Type type;
};

/// Where a value lies on the card. `path` in the notation of PKCS#15 v1.1 is `efidOrPath` here, as
/// in ISO/IEC 7816-15. A card may give index or length alone.
///
///     Path ::= SEQUENCE {
///         path    OCTET STRING,
///         index   INTEGER (0..pkcs15-ub-index) OPTIONAL,
///         length  [0] INTEGER (0..pkcs15-ub-index) OPTIONAL }
struct TOVI_API Path : ASN1::Sequence<Path> {
    FilePath efidOrPath;                  ///< `path` in the notation
    std::optional<std::uint64_t> index;   ///< offset of the first octet, or a record number
    std::optional<std::uint64_t> length;  ///< in octets
    static const ASN1::Type type;

    /// Sets the member.
    void set_index(std::uint64_t offset) { index = offset; }
    void set_length(std::uint64_t octets) { length = octets; }
};

///     DigestInfoWithDefault ::= SEQUENCE {
///         digestAlg  AlgorithmIdentifier {{DigestAlgorithms}} DEFAULT alg-id-sha1,
///         digest     OCTET STRING (SIZE (8..128)) }
struct TOVI_API DigestInfoWithDefault : ASN1::Sequence<DigestInfoWithDefault> {
    std::optional<AlgorithmIdentifier> digestAlg;
    ASN1::OCTET_STRING digest;
    static const ASN1::Type type;
};

/// The SEQUENCE in place of URL.urlWithDigest.
struct TOVI_API UrlWithDigest : ASN1::Sequence<UrlWithDigest> {
    ASN1::IA5String url;           ///< where the value is
    DigestInfoWithDefault digest;  ///< of the value there
    static const ASN1::Type type;
};

///     URL ::= CHOICE {
///         url            PrintableString,
///         urlWithDigest  [3] SEQUENCE {
///             url     IA5String,
///             digest  DigestInfoWithDefault } }
struct TOVI_API URL : ASN1::Choice<URL> {
    /// `ia5Url` is the form that ISO/IEC 7816-15 adds.
    enum Alternative : std::size_t { url, urlWithDigest, ia5Url, none };
    std::variant<ASN1::PrintableString, UrlWithDigest, ASN1::IA5String, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

/// A value somewhere else. The positions are the other way round than in the notation: url 0,
/// path 1.
///
///     ReferencedValue { Type } ::= CHOICE {
///         path  Path,
///         url   URL }
struct TOVI_API ReferencedValue : ASN1::Choice<ReferencedValue> {
    enum Alternative : std::size_t { url, path, none };
    std::variant<ASN1::Boxed<URL>, Path, std::monostate> value{std::monostate()};
    static const ASN1::Type type;

    Path& select_path() { return select<path>(); }
    URL& select_url() { return select<url>(); }
};

}  // namespace PKCS15
