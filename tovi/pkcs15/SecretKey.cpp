#include "tovi/pkcs15/SecretKey.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

constexpr Member genericSecretKeyAttributesRows[] = {
    mandatory<&GenericSecretKeyAttributes::value>("value"),
    extension<&GenericSecretKeyAttributes::unknown>(),
};

constexpr Member otherKeyRows[] = {
    mandatory<&OtherKey::keyType>("keyType"),
    mandatory<&OtherKey::keyAttr>("keyAttr"),
};

using Key = SecretKeyType;

constexpr Member secretKeyTypeRows[] = {
    alternative<&Key::value, Key::genericSecretKey>("genericSecretKey"),
    alternative<&Key::value, Key::rc2key>("rc2key").tagged(0),
    alternative<&Key::value, Key::rc4key>("rc4key").tagged(1),
    alternative<&Key::value, Key::desKey>("desKey").tagged(2),
    alternative<&Key::value, Key::des2Key>("des2Key").tagged(3),
    alternative<&Key::value, Key::des3Key>("des3Key").tagged(4),
    alternative<&Key::value, Key::castKey>("castKey").tagged(5),
    alternative<&Key::value, Key::cast3Key>("cast3Key").tagged(6),
    alternative<&Key::value, Key::cast128Key>("cast128Key").tagged(7),
    alternative<&Key::value, Key::rc5Key>("rc5Key").tagged(8),
    alternative<&Key::value, Key::ideaKey>("ideaKey").tagged(9),
    alternative<&Key::value, Key::skipjackKey>("skipjackKey").tagged(10),
    alternative<&Key::value, Key::batonKey>("batonKey").tagged(11),
    alternative<&Key::value, Key::juniperKey>("juniperKey").tagged(12),
    alternative<&Key::value, Key::rc6Key>("rc6Key").tagged(13),
    alternative<&Key::value, Key::otherKey>("otherKey").tagged(14),
    extension<&Key::value, Key::unknown>(),
};

}  // namespace

constinit const Type GenericSecretKeyAttributes::type = sequence<GenericSecretKeyAttributes>(
    "GenericSecretKeyAttributes", genericSecretKeyAttributesRows);
constinit const Type OtherKey::type = sequence<OtherKey>("OtherKey", otherKeyRows);
constinit const Type SecretKeyType::type =
    choice<SecretKeyType>("SecretKeyType", secretKeyTypeRows);

}  // namespace PKCS15
