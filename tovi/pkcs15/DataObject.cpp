#include "tovi/pkcs15/DataObject.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

constexpr Member commonDataObjectAttributesRows[] = {
    optional<&CommonDataObjectAttributes::applicationName>("applicationName"),
    optional<&CommonDataObjectAttributes::applicationOID>("applicationOID"),
    extension<&CommonDataObjectAttributes::unknown>(),
};

constexpr Type oidValue() {
    Type type = choice<OidValue>("ObjectValue", Opaque::members, Opaque::parameters);
    type.otherForm = [](void* value) -> ASN1::Boxed<ASN1::OpenData>& {
        return ASN1::as<OidValue>(value).otherForm;
    };
    return type;
}

constexpr Member oidDORows[] = {
    mandatory<&OidDO::id>("id"),
    mandatory<&OidDO::value>("value"),
};

constexpr Member dataTypeRows[] = {
    alternative<&DataType::value, DataType::opaqueDO>("opaqueDO"),
    alternative<&DataType::value, DataType::externalIDO>("externalIDO").tagged(0),
    alternative<&DataType::value, DataType::oidDO>("oidDO").tagged(1),
    extension<&DataType::value, DataType::unknown>(),
};

}  // namespace

constinit const Type CommonDataObjectAttributes::type = sequence<CommonDataObjectAttributes>(
    "CommonDataObjectAttributes", commonDataObjectAttributesRows);
constinit const Type OidValue::type = oidValue();
constinit const Type OidDO::type = sequence<OidDO>("OidDO", oidDORows);
constinit const Type DataType::type = choice<DataType>("DataType", dataTypeRows);

}  // namespace PKCS15
