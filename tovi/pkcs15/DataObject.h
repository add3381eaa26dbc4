#pragma once

#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/pkcs15/Basic.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/pkcs15/PKCS15Object.h"

/// Records of EF(DODF).
namespace PKCS15 {

/// At least one of the two; cards and this library write objects with none.
///
///     CommonDataObjectAttributes ::= SEQUENCE {
///         applicationName  Label OPTIONAL,
///         applicationOID   OBJECT IDENTIFIER OPTIONAL,
///         ... }
struct TOVI_API CommonDataObjectAttributes : ASN1::Sequence<CommonDataObjectAttributes> {
    std::optional<Label> applicationName;
    std::optional<ASN1::OBJECT_IDENTIFIER> applicationOID;
    ASN1::Unknown unknown;
    static const ASN1::Type type;

    /// Brings the member into being unless it is there.
    Label& set_applicationName() {
        return applicationName ? *applicationName : applicationName.emplace();
    }
};

///     Opaque ::= ObjectValue { PKCS15-OPAQUE.&Type }
using Opaque = ObjectValue<ASN1::OpenData>;

///     ExternalIDO ::= ObjectValue { PKCS15-OPAQUE.&Type }
using ExternalIDO = ObjectValue<ASN1::OpenData>;

/// The value of an OidDO. ISO/IEC 7816-15:2016 has any one element here: one that is no ObjectValue
/// is kept in `otherForm`, and written back while nothing is selected.
struct TOVI_API OidValue : ObjectValue<ASN1::OpenData> {
    ASN1::Boxed<ASN1::OpenData> otherForm;
    static const ASN1::Type type;
};

///     OidDO ::= SEQUENCE {
///         id     OBJECT IDENTIFIER,
///         value  ObjectValue { PKCS15-OPAQUE.&Type } }
struct TOVI_API OidDO : ASN1::Sequence<OidDO> {
    ASN1::OBJECT_IDENTIFIER id;
    OidValue value;
    static const ASN1::Type type;
};

///     DataObject { DataObjectAttributes } ::= PKCS15Object {
///         CommonDataObjectAttributes, NULL, DataObjectAttributes }
template <class DataObjectAttributes>
using DataObject = PKCS15Object<CommonDataObjectAttributes, ASN1::Null, DataObjectAttributes>;

///     DataType ::= CHOICE {
///         opaqueDO         DataObject {Opaque},
///         externalIDO  [0] DataObject {ExternalIDO},
///         oidDO        [1] DataObject {OidDO},
///         ... }
struct TOVI_API DataType : ASN1::Choice<DataType> {
    enum Alternative : std::size_t { opaqueDO, externalIDO, oidDO, unknown, none };
    std::variant<DataObject<Opaque>, DataObject<ExternalIDO>, DataObject<OidDO>, ASN1::OpenData,
                 std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    auto& select_opaqueDO() { return select<opaqueDO>(); }
    auto& select_externalIDO() { return select<externalIDO>(); }
    auto& select_oidDO() { return select<oidDO>(); }
};

}  // namespace PKCS15
