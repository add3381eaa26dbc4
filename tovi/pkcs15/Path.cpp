#include "tovi/pkcs15/Path.h"

#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/Bounds.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

// tagRef, appFileRef, appTagRef.
constexpr ASN1::Tag otherPaths[] = {ASN1::context(0), ASN1::context(1), ASN1::context(2)};

constexpr Type filePath() {
    Type type = derived<FilePath>("OCTET STRING", ASN1::octetStringType);
    type.otherForm = [](void* value) -> ASN1::Boxed<ASN1::OpenData>& {
        return ASN1::as<FilePath>(value).otherForm;
    };
    type.otherTags = otherPaths;
    return type;
}

constexpr Member pathRows[] = {
    mandatory<&Path::efidOrPath>("efidOrPath"),
    optional<&Path::index>("index").range(0, ubIndex),
    optional<&Path::length>("length").tagged(0).range(0, ubIndex),
};

AlgorithmIdentifier sha1Identifier() {
    AlgorithmIdentifier identifier;
    identifier.algorithm = {1, 3, 14, 3, 2, 26};
    identifier.parameters = ASN1::OpenData({0x05, 0x00});
    return identifier;
}

constexpr Member digestInfoWithDefaultRows[] = {
    defaulted<&DigestInfoWithDefault::digestAlg, sha1Identifier>("digestAlg", "alg-id-sha1")
        .spelled("AlgorithmIdentifier {{DigestAlgorithms}}"),
    mandatory<&DigestInfoWithDefault::digest>("digest").size(8, 128),
};

constexpr Member urlWithDigestRows[] = {
    mandatory<&UrlWithDigest::url>("url"),
    mandatory<&UrlWithDigest::digest>("digest"),
};

constexpr Member urlRows[] = {
    alternative<&URL::value, URL::url>("url"),
    alternative<&URL::value, URL::urlWithDigest>("urlWithDigest").tagged(3),
    alternative<&URL::value, URL::ia5Url>("ia5Url").kindness(),
};

constexpr Member referencedValueRows[] = {
    alternative<&ReferencedValue::value, ReferencedValue::url>("url"),
    alternative<&ReferencedValue::value, ReferencedValue::path>("path"),
};

}  // namespace

constinit const Type FilePath::type = filePath();
constinit const Type Path::type = sequence<Path>("Path", pathRows);
constinit const Type DigestInfoWithDefault::type =
    sequence<DigestInfoWithDefault>("DigestInfoWithDefault", digestInfoWithDefaultRows);
constinit const Type UrlWithDigest::type = sequence<UrlWithDigest>("", urlWithDigestRows);
constinit const Type URL::type = choice<URL>("URL", urlRows);
constinit const Type ReferencedValue::type =
    choice<ReferencedValue>("ReferencedValue", referencedValueRows);

}  // namespace PKCS15
