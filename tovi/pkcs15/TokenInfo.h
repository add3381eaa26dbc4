#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/Expected.h"
#include "tovi/pkcs15/Basic.h"
#include "tovi/pkcs15/KeyInfo.h"
#include "tovi/pkcs15/Path.h"

/// EF(TokenInfo).
namespace PKCS15 {

///     TokenFlags ::= BIT STRING {
///         readonly (0), loginRequired (1), prnGeneration (2), eidCompliant (3) }
struct TOVI_API TokenFlags : ASN1::BIT_STRING {
    using ASN1::BIT_STRING::BIT_STRING;
    enum Bit : std::size_t { readonly, loginRequired, prnGeneration, eidCompliant };
    static const ASN1::Type type;
};

/// ISO/IEC 7816-15 has the owner as optional.
///
///     SecurityEnvironmentInfo ::= SEQUENCE {
///         se     INTEGER (0..pkcs15-ub-seInfo),
///         owner  OBJECT IDENTIFIER,
///         ... }
struct TOVI_API SecurityEnvironmentInfo : ASN1::Sequence<SecurityEnvironmentInfo> {
    std::uint64_t se = 0;
    ASN1::Expected<ASN1::OBJECT_IDENTIFIER> owner;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     RecordInfo ::= SEQUENCE {
///         oDFRecordLength    [0] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL,
///         prKDFRecordLength  [1] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL,
///         puKDFRecordLength  [2] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL,
///         sKDFRecordLength   [3] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL,
///         cDFRecordLength    [4] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL,
///         dODFRecordLength   [5] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL,
///         aODFRecordLength   [6] INTEGER (0..pkcs15-ub-recordLength) OPTIONAL }
struct TOVI_API RecordInfo : ASN1::Sequence<RecordInfo> {
    std::optional<std::uint64_t> oDFRecordLength;
    std::optional<std::uint64_t> prKDFRecordLength;
    std::optional<std::uint64_t> puKDFRecordLength;
    std::optional<std::uint64_t> sKDFRecordLength;
    std::optional<std::uint64_t> cDFRecordLength;
    std::optional<std::uint64_t> dODFRecordLength;
    std::optional<std::uint64_t> aODFRecordLength;
    static const ASN1::Type type;
};

/// The number by which keys name a row of TokenInfo.supportedAlgorithms. ISO/IEC 7816-15:2016 also
/// has a [1] OCTET STRING in its place, which is kept in `otherForm` and written back until a
/// number is assigned.
struct TOVI_API AlgorithmReference {
    std::uint64_t number = 0;  ///< 0 with another form
    ASN1::Boxed<ASN1::OpenData> otherForm;

    AlgorithmReference() = default;
    AlgorithmReference(std::uint64_t reference) : number(reference) {}
    /// The number.
    operator std::uint64_t() const { return number; }
    static const ASN1::Type type;
};

/// An algorithm the card knows. A fresh one has NULL as parameters.
///
///     AlgorithmInfo ::= SEQUENCE {
///         reference            Reference,
///         algorithm            PKCS15-ALGORITHM.&id ({AlgorithmSet}),
///         parameters           PKCS15-ALGORITHM.&Parameters ({AlgorithmSet}{@algorithm}),
///         supportedOperations  PKCS15-ALGORITHM.&Operations ({AlgorithmSet}{@algorithm}),
///         algId                PKCS15-ALGORITHM.&objectIdentifier ({AlgorithmSet}{@algorithm})
///                              OPTIONAL,
///         algRef               Reference OPTIONAL }
struct TOVI_API AlgorithmInfo : ASN1::Sequence<AlgorithmInfo> {
    AlgorithmReference reference;
    ASN1::INTEGER algorithm;  ///< a PKCS#11 mechanism number
    ASN1::OpenData parameters{0x05, 0x00};
    Operations supportedOperations;
    std::optional<ASN1::OBJECT_IDENTIFIER> algId;
    std::optional<std::uint64_t> algRef;
    ASN1::Unknown unknown;
    static const ASN1::Type type;

    /// Brings the member into being unless it is there.
    ASN1::OBJECT_IDENTIFIER& set_algId() { return algId ? *algId : algId.emplace(); }
};

///     LastUpdate ::= CHOICE {
///         generalizedTime  GeneralizedTime,
///         referencedTime   ReferencedValue {GeneralizedTime},
///         ... }
struct TOVI_API LastUpdate : ASN1::Choice<LastUpdate> {
    enum Alternative : std::size_t { generalizedTime, referencedTime, unknown, none };
    std::variant<ASN1::GeneralizedTime, ReferencedValue, ASN1::OpenData, std::monostate> value{
        std::monostate()};
    static const ASN1::Type type;
};

/// ISO/IEC 7816-15 has the serial number as optional, and further members.
///
///     TokenInfo ::= SEQUENCE {
///         version              INTEGER { v1(0) } (v1, ...),
///         serialNumber         OCTET STRING,
///         manufacturerID       Label OPTIONAL,
///         label                [0] Label OPTIONAL,
///         tokenflags           TokenFlags,
///         seInfo               SEQUENCE OF SecurityEnvironmentInfo OPTIONAL,
///         recordInfo           [1] RecordInfo OPTIONAL,
///         supportedAlgorithms  [2] SEQUENCE OF AlgorithmInfo OPTIONAL,
///         ...,
///         issuerId             [3] Label OPTIONAL,
///         holderId             [4] Label OPTIONAL,
///         lastUpdate           [5] EXPLICIT LastUpdate OPTIONAL,
///         preferredLanguage    PrintableString OPTIONAL }
struct TOVI_API TokenInfo : ASN1::Sequence<TokenInfo> {
    ASN1::INTEGER version;
    ASN1::Expected<ASN1::OCTET_STRING> serialNumber;
    std::optional<Label> manufacturerID;
    std::optional<Label> label;
    TokenFlags tokenflags;
    std::optional<std::vector<SecurityEnvironmentInfo>> seInfo;
    std::optional<RecordInfo> recordInfo;
    std::optional<std::vector<AlgorithmInfo>> supportedAlgorithms;
    ASN1::Unknown unknown;
    std::optional<Label> issuerId;
    std::optional<Label> holderId;
    std::optional<LastUpdate> lastUpdate;
    std::optional<ASN1::PrintableString> preferredLanguage;
    static const ASN1::Type type;

    /// Brings the member into being unless it is there.
    Label& set_label() { return label ? *label : label.emplace(); }
    Label& set_manufacturerID() {
        return manufacturerID ? *manufacturerID : manufacturerID.emplace();
    }
    std::vector<AlgorithmInfo>& set_supportedAlgorithms() {
        return supportedAlgorithms ? *supportedAlgorithms : supportedAlgorithms.emplace();
    }
};

}  // namespace PKCS15
