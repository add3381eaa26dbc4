#include "tovi/coders/PKCS15CertCT.h"

#include <algorithm>
#include <string>

#include "tovi/coders/CommonAttributes.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

const ASN1::OBJECT_IDENTIFIER SMARTCARD_LOGON_OID = {1, 3, 6, 1, 4, 1, 311, 20, 2, 2};

namespace {

template <class Info>
std::optional<bool> decode(const PKCS15::CertificateType& record, PKCS15ObjectInfo<Info>& info) {
    const auto* object = record.getIf<PKCS15::CertificateType::x509Certificate>();
    if (!object) return std::nullopt;
    const PKCS15::X509CertificateAttributes& x509 = object->typeAttributes;
    getPKCS15Attributes(info, object->commonObjectAttributes);
    getPKCS15Label(info.label, object->commonObjectAttributes,
                   std::string(record.selectionName()).c_str());
    info.certificateType = CKC_X_509;
    ASN1_assign(info.id, object->classAttributes.iD);
    if (x509.serialNumber) ASN1_assign(info.serialNumber, x509.serialNumber->octets());
    PKCS15CertCT::decodeTrustedUsage(object->classAttributes, info);
    getPKCS15Path(info.path, x509.value);
    getFID(info);
    return PKCS15CT::decodeAuthConstraints(object->commonObjectAttributes);
}

}  // namespace

void PKCS15CertCT::decodeTrustedUsage(const PKCS15::CommonCertificateAttributes& attributes,
                                      CertificateInfo& info) {
    info.trustedUsage = noTrustedUsage;
    if (!attributes.trustedUsage || !attributes.trustedUsage->extKeyUsage) return;
    const auto& purposes = *attributes.trustedUsage->extKeyUsage;
    if (std::find(purposes.begin(), purposes.end(), SMARTCARD_LOGON_OID) != purposes.end())
        info.trustedUsage = trustedUsageLogonDecoded;
}

std::optional<bool> PKCS15CertCT::decodeCertificate(const PKCS15::CertificateType& record,
                                                    PKCS15ObjectInfo<CertificateInfo>& info) {
    return decode(record, info);
}

std::optional<bool> PKCS15CertCT::decodeTrustedCertificate(
    const PKCS15::CertificateType& record, PKCS15ObjectInfo<TrustedCertificateInfo>& info) {
    return decode(record, info);
}

std::optional<bool> PKCS15CertCT::decodeUsefulCertificate(
    const PKCS15::CertificateType& record, PKCS15ObjectInfo<UsefulCertificateInfo>& info) {
    return decode(record, info);
}

}  // namespace tovi
