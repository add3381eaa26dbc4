#include "tovi/coders/CommonAttributes.h"

#include <cstring>

#include "tovi/coders/KeyUsage.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {

namespace {

constexpr unsigned int privateBit = 0;
constexpr unsigned int modifiableBit = 1;

}  // namespace

void getCommonAttributes(PKCS15Object& object, PKCS11Attrs& attributes,
                         const PKCS15::CommonObjectAttributes& common) {
    if (common.flags) {
        object.isPrivate = common.flags->test(privateBit);
        object.isModifiable = common.flags->test(modifiableBit);
    }
    attributes.SetParam(CKA_PRIVATE, object.isPrivate ? B_CK_TRUE : B_CK_FALSE);
    attributes.SetParam(CKA_MODIFIABLE, object.isModifiable ? B_CK_TRUE : B_CK_FALSE);
    if (common.authId) object.authId = *common.authId;
    if (common.userConsent) object.userConsent = static_cast<std::int32_t>(*common.userConsent);
}

void getPKCS15Label(Blob& label, const PKCS15::CommonObjectAttributes& common,
                    const char* defaultLabel) {
    if (common.label) {
        label = *common.label;
    } else if (defaultLabel) {
        const auto* text = reinterpret_cast<const std::uint8_t*>(defaultLabel);
        label.assign(ASN1::View(text, std::strlen(defaultLabel)));
    }
}

void getPath(PKCS15Path& path, const PKCS15::Path& value) {
    ASN1_assign(path.path, value.efidOrPath);
    path.index = static_cast<std::uint16_t>(value.index.value_or(0));
    path.length = static_cast<std::uint16_t>(value.length.value_or(0));
}

}  // namespace tovi
