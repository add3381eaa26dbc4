#pragma once

#include <optional>
#include <variant>

#include "tovi/Export.h"
#include "tovi/pkcs15/CommonKeyAttributes.h"
#include "tovi/pkcs15/ObjectValue.h"
#include "tovi/pkcs15/PKCS15Object.h"

/// Records of EF(SKDF).
namespace PKCS15 {

///     GenericSecretKeyAttributes ::= SEQUENCE {
///         value  ObjectValue { OCTET STRING },
///         ... }
struct TOVI_API GenericSecretKeyAttributes : ASN1::Sequence<GenericSecretKeyAttributes> {
    ObjectValue<ASN1::OCTET_STRING> value;
    ASN1::Unknown unknown;
    static const ASN1::Type type;
};

///     SecretKeyObject { KeyAttributes } ::= PKCS15Object {
///         CommonKeyAttributes, CommonSecretKeyAttributes, KeyAttributes }
template <class KeyAttributes>
using SecretKeyObject = PKCS15Object<CommonKeyAttributes, CommonSecretKeyAttributes, KeyAttributes>;

///     OtherKey ::= SEQUENCE {
///         keyType  OBJECT IDENTIFIER,
///         keyAttr  SecretKeyObject {GenericSecretKeyAttributes} }
struct TOVI_API OtherKey : ASN1::Sequence<OtherKey> {
    ASN1::OBJECT_IDENTIFIER keyType;
    SecretKeyObject<GenericSecretKeyAttributes> keyAttr;
    static const ASN1::Type type;
};

///     SecretKeyType ::= CHOICE {
///         genericSecretKey      SecretKeyObject {GenericSecretKeyAttributes},
///         rc2key           [0]  SecretKeyObject {GenericSecretKeyAttributes},
///         rc4key           [1]  SecretKeyObject {GenericSecretKeyAttributes},
///         desKey           [2]  SecretKeyObject {GenericSecretKeyAttributes},
///         des2Key          [3]  SecretKeyObject {GenericSecretKeyAttributes},
///         des3Key          [4]  SecretKeyObject {GenericSecretKeyAttributes},
///         castKey          [5]  SecretKeyObject {GenericSecretKeyAttributes},
///         cast3Key         [6]  SecretKeyObject {GenericSecretKeyAttributes},
///         cast128Key       [7]  SecretKeyObject {GenericSecretKeyAttributes},
///         rc5Key           [8]  SecretKeyObject {GenericSecretKeyAttributes},
///         ideaKey          [9]  SecretKeyObject {GenericSecretKeyAttributes},
///         skipjackKey      [10] SecretKeyObject {GenericSecretKeyAttributes},
///         batonKey         [11] SecretKeyObject {GenericSecretKeyAttributes},
///         juniperKey       [12] SecretKeyObject {GenericSecretKeyAttributes},
///         rc6Key           [13] SecretKeyObject {GenericSecretKeyAttributes},
///         otherKey         [14] OtherKey,
///         ... }
struct TOVI_API SecretKeyType : ASN1::Choice<SecretKeyType> {
    enum Alternative : std::size_t {
        genericSecretKey,
        rc2key,
        rc4key,
        desKey,
        des2Key,
        des3Key,
        castKey,
        cast3Key,
        cast128Key,
        rc5Key,
        ideaKey,
        skipjackKey,
        batonKey,
        juniperKey,
        rc6Key,
        otherKey,
        unknown,
        none,
    };
    /// Every alternative but otherKey has one shape.
    using Object = SecretKeyObject<GenericSecretKeyAttributes>;
    std::variant<Object, Object, Object, Object, Object, Object, Object, Object, Object, Object,
                 Object, Object, Object, Object, Object, ASN1::Boxed<OtherKey>, ASN1::OpenData,
                 std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    Object& select_genericSecretKey() { return select<genericSecretKey>(); }
    Object& select_rc2key() { return select<rc2key>(); }
    Object& select_rc4key() { return select<rc4key>(); }
    Object& select_desKey() { return select<desKey>(); }
    Object& select_des2Key() { return select<des2Key>(); }
    Object& select_des3Key() { return select<des3Key>(); }
    Object& select_castKey() { return select<castKey>(); }
    Object& select_cast3Key() { return select<cast3Key>(); }
    Object& select_cast128Key() { return select<cast128Key>(); }
    Object& select_rc5Key() { return select<rc5Key>(); }
    Object& select_ideaKey() { return select<ideaKey>(); }
    Object& select_skipjackKey() { return select<skipjackKey>(); }
    Object& select_batonKey() { return select<batonKey>(); }
    Object& select_juniperKey() { return select<juniperKey>(); }
    Object& select_rc6Key() { return select<rc6Key>(); }
    OtherKey& select_otherKey() { return select<otherKey>(); }
};

}  // namespace PKCS15
