#include "tovi/pkcs15/EnvelopedData.h"

#include "tovi/asn1/Schema.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr NamedNumber versions[] = {{"v0", 0}, {"v1", 1}, {"v2", 2}, {"v3", 3}, {"v4", 4}};
constexpr Type versionType = numbered(versions, "v0 | v1 | v2, ...");

constexpr Member encryptedContentInfoRows[] = {
    mandatory<&EncryptedContentInfo::contentType>("contentType"),
    mandatory<&EncryptedContentInfo::contentEncryptionAlgorithm>("contentEncryptionAlgorithm")
        .spelled("AlgorithmIdentifier {{KeyDerivationAlgorithms}}"),
    optional<&EncryptedContentInfo::encryptedContent>("encryptedContent").tagged(0),
};

constexpr Member envelopedDataRows[] = {
    mandatory<&EnvelopedData::version>("version").as(versionType),
    optional<&EnvelopedData::originatorInfo>("originatorInfo").tagged(0),
    mandatory<&EnvelopedData::recipientInfos>("recipientInfos").as(recipientInfosType),
    mandatory<&EnvelopedData::encryptedContentInfo>("encryptedContentInfo"),
    optional<&EnvelopedData::unprotectedAttrs>("unprotectedAttrs")
        .tagged(1)
        .as(setOf<std::vector<Attribute>>)
        .size(1),
};

}  // namespace

constinit const Type EncryptedContentInfo::type =
    sequence<EncryptedContentInfo>("EncryptedContentInfo", encryptedContentInfoRows);
constinit const Type EnvelopedData::type =
    sequence<EnvelopedData>("EnvelopedData", envelopedDataRows);

}  // namespace PKCS15
