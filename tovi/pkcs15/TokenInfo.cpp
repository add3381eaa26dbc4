#include "tovi/pkcs15/TokenInfo.h"

#include <type_traits>

#include "tovi/asn1/Schema.h"
#include "tovi/pkcs15/Bounds.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr NamedNumber tokenFlagsBits[] = {
    {"readonly", 0}, {"loginRequired", 1}, {"prnGeneration", 2}, {"eidCompliant", 3}};

constexpr Member securityEnvironmentInfoRows[] = {
    mandatory<&SecurityEnvironmentInfo::se>("se").range(0, ubSeInfo),
    expected<&SecurityEnvironmentInfo::owner>("owner"),
    extension<&SecurityEnvironmentInfo::unknown>(),
};

constexpr Member recordInfoRows[] = {
    optional<&RecordInfo::oDFRecordLength>("oDFRecordLength").tagged(0).range(0, ubRecordLength),
    optional<&RecordInfo::prKDFRecordLength>("prKDFRecordLength")
        .tagged(1)
        .range(0, ubRecordLength),
    optional<&RecordInfo::puKDFRecordLength>("puKDFRecordLength")
        .tagged(2)
        .range(0, ubRecordLength),
    optional<&RecordInfo::sKDFRecordLength>("sKDFRecordLength").tagged(3).range(0, ubRecordLength),
    optional<&RecordInfo::cDFRecordLength>("cDFRecordLength").tagged(4).range(0, ubRecordLength),
    optional<&RecordInfo::dODFRecordLength>("dODFRecordLength").tagged(5).range(0, ubRecordLength),
    optional<&RecordInfo::aODFRecordLength>("aODFRecordLength").tagged(6).range(0, ubRecordLength),
};

constexpr ASN1::Tag otherReferences[] = {ASN1::context(1)};

constexpr Type algorithmReference() {
    Type type = derived<AlgorithmReference>("Reference", ASN1::unsignedType, {0, ubReference},
                                            {0, acceptedReference});
    // What reads and writes plain numbers serves the number in it.
    type.decode = [](const Type& self, const ASN1::Element& element, void* value,
                     ASN1::Reader& in) {
        return ASN1::unsignedType.decode(self, element, &ASN1::as<AlgorithmReference>(value).number,
                                         in);
    };
    type.encode = [](const Type& self, const void* value, ASN1::Writer& out) {
        ASN1::unsignedType.encode(self, &ASN1::as<AlgorithmReference>(value).number, out);
    };
    type.measure = [](const void* value) {
        return ASN1::unsignedType.measure(&ASN1::as<AlgorithmReference>(value).number);
    };
    type.otherForm = [](void* value) -> ASN1::Boxed<ASN1::OpenData>& {
        return ASN1::as<AlgorithmReference>(value).otherForm;
    };
    type.otherTags = otherReferences;
    return type;
}

constexpr Type unboundedReference = derived<std::uint64_t>(
    "Reference", ASN1::unsignedType, {0, ubReference}, {0, ASN1::Bounds::highest});

constexpr Member algorithmInfoRows[] = {
    mandatory<&AlgorithmInfo::reference>("reference"),
    mandatory<&AlgorithmInfo::algorithm>("algorithm")
        .spelled("PKCS15-ALGORITHM.&id ({AlgorithmSet})"),
    mandatory<&AlgorithmInfo::parameters>("parameters")
        .spelled("PKCS15-ALGORITHM.&Parameters ({AlgorithmSet}{@algorithm})"),
    mandatory<&AlgorithmInfo::supportedOperations>("supportedOperations")
        .spelled("PKCS15-ALGORITHM.&Operations ({AlgorithmSet}{@algorithm})"),
    optional<&AlgorithmInfo::algId>("algId").spelled(
        "PKCS15-ALGORITHM.&objectIdentifier ({AlgorithmSet}{@algorithm})"),
    // No bound: ISO/IEC 7816-15 has none.
    optional<&AlgorithmInfo::algRef>("algRef").as(unboundedReference),
    // No marker stands here, but what a later edition puts behind must not make TokenInfo
    // unreadable.
    extension<&AlgorithmInfo::unknown>().kindness(),
};

constexpr Member lastUpdateRows[] = {
    alternative<&LastUpdate::value, LastUpdate::generalizedTime>("generalizedTime"),
    alternative<&LastUpdate::value, LastUpdate::referencedTime>("referencedTime")
        .spelled("ReferencedValue {GeneralizedTime}"),
    extension<&LastUpdate::value, LastUpdate::unknown>(),
};

constexpr NamedNumber versions[] = {{"v1", 0}};
constexpr Type versionType = numbered(versions, "v1, ...");

constexpr Member tokenInfoRows[] = {
    mandatory<&TokenInfo::version>("version").as(versionType),
    expected<&TokenInfo::serialNumber>("serialNumber"),
    optional<&TokenInfo::manufacturerID>("manufacturerID"),
    optional<&TokenInfo::label>("label").tagged(0),
    mandatory<&TokenInfo::tokenflags>("tokenflags"),
    optional<&TokenInfo::seInfo>("seInfo"),
    optional<&TokenInfo::recordInfo>("recordInfo").tagged(1),
    optional<&TokenInfo::supportedAlgorithms>("supportedAlgorithms").tagged(2),
    extension<&TokenInfo::unknown>(),
    optional<&TokenInfo::issuerId>("issuerId").tagged(3),
    optional<&TokenInfo::holderId>("holderId").tagged(4),
    optional<&TokenInfo::lastUpdate>("lastUpdate").explicitly(5),
    optional<&TokenInfo::preferredLanguage>("preferredLanguage"),
};

}  // namespace

constinit const Type TokenFlags::type = namedBits<TokenFlags>("TokenFlags", tokenFlagsBits);
constinit const Type SecurityEnvironmentInfo::type =
    sequence<SecurityEnvironmentInfo>("SecurityEnvironmentInfo", securityEnvironmentInfoRows);
constinit const Type RecordInfo::type = sequence<RecordInfo>("RecordInfo", recordInfoRows);
constinit const Type AlgorithmReference::type = algorithmReference();
constinit const Type AlgorithmInfo::type =
    sequence<AlgorithmInfo>("AlgorithmInfo", algorithmInfoRows);
constinit const Type LastUpdate::type = choice<LastUpdate>("LastUpdate", lastUpdateRows);
constinit const Type TokenInfo::type = sequence<TokenInfo>("TokenInfo", tokenInfoRows);

}  // namespace PKCS15
