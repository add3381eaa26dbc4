#include <algorithm>
#include <iterator>

#include "tovi/coders/CommonAttributeEncoding.h"
#include "tovi/coders/EntryWriting.h"
#include "tovi/coders/PKCS15CertCT.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/interfaces/PKCS15CT.h"

namespace tovi {

namespace {

constexpr const char* HERE = "PKCS15CertCT::encodeCertInfoBase";

using Purposes = std::vector<ASN1::OBJECT_IDENTIFIER>;

void addLogon(PKCS15::Usage& usage) {
    Purposes& purposes = usage.extKeyUsage ? *usage.extKeyUsage : usage.extKeyUsage.emplace();
    if (std::find(purposes.begin(), purposes.end(), SMARTCARD_LOGON_OID) == purposes.end())
        purposes.push_back(SMARTCARD_LOGON_OID);
}

/// The scan goes on behind what it erases: of two logon identifiers that follow each other the
/// second one stays.
void eraseLogon(Purposes& purposes) {
    for (std::size_t i = 0; i < purposes.size(); ++i)
        if (purposes[i] == SMARTCARD_LOGON_OID)
            purposes.erase(std::next(purposes.begin(), static_cast<std::ptrdiff_t>(i)));
}

void removeLogon(PKCS15::CommonCertificateAttributes& attributes) {
    if (!attributes.trustedUsage || !attributes.trustedUsage->extKeyUsage) return;
    PKCS15::Usage& usage = *attributes.trustedUsage;
    eraseLogon(*usage.extKeyUsage);
    if (!usage.extKeyUsage->empty()) return;
    usage.extKeyUsage.reset();
    if (!usage.keyUsage) attributes.trustedUsage.reset();
}

template <class Info, class CertificateObject>
bool encodeCertificateInfo(const PKCS15ObjectInfo<Info>& info, CertificateObject& object) {
    setPKCS15Attributes(info, object.commonObjectAttributes);
    setPKCS15Label(info.label, object.commonObjectAttributes);
    object.classAttributes.iD = info.id;
    PKCS15CertCT::encodeTrustedUsage(object.classAttributes, info);
    setPKCS15SerialNumber(info.serialNumber, object.typeAttributes);
    setPKCS15Path(object.typeAttributes.value, info.path);
    return PKCS15CT::encodeAuthConstraints(info.auxValue3, object.commonObjectAttributes);
}

}  // namespace

void PKCS15CertCT::encodeTrustedUsage(PKCS15::CommonCertificateAttributes& attributes,
                                      const CertificateInfo& info) {
    if (info.trustedUsage == noTrustedUsage) return;
    if (info.trustedUsage & trustedUsageLogon)
        addLogon(attributes.set_trustedUsage());
    else
        removeLogon(attributes);
}

template <class Info>
unsigned long PKCS15CertCT::encodeCertInfoBase(
    ASN1::CoderEnv* env, ISCardOS* os, ProfileDFHandler& handler,
    const PKCS15ObjectInfo<Info>& info, std::vector<ASN1Object<PKCS15::CertificateType>>& raws,
    unsigned long index) {
    using Certificate = PKCS15::CertificateType;
    return encodeEntry(env, os, handler, info, raws, index, HERE,
                       [&](Certificate& certificate, bool isNew) {
                           if (info.certificateType != CKC_X_509)
                               throw SmartcardException("invalid certificate type", HERE);
                           if (isNew) certificate.select_x509Certificate();
                           auto* x509 = certificate.getIf<Certificate::x509Certificate>();
                           return x509 && encodeCertificateInfo(info, *x509);
                       });
}

template unsigned long PKCS15CertCT::encodeCertInfoBase(
    ASN1::CoderEnv*, ISCardOS*, ProfileDFHandler&, const PKCS15ObjectInfo<CertificateInfo>&,
    std::vector<ASN1Object<PKCS15::CertificateType>>&, unsigned long);
template unsigned long PKCS15CertCT::encodeCertInfoBase(
    ASN1::CoderEnv*, ISCardOS*, ProfileDFHandler&, const PKCS15ObjectInfo<TrustedCertificateInfo>&,
    std::vector<ASN1Object<PKCS15::CertificateType>>&, unsigned long);
template unsigned long PKCS15CertCT::encodeCertInfoBase(
    ASN1::CoderEnv*, ISCardOS*, ProfileDFHandler&, const PKCS15ObjectInfo<UsefulCertificateInfo>&,
    std::vector<ASN1Object<PKCS15::CertificateType>>&, unsigned long);

}  // namespace tovi
