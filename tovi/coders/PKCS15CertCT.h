#pragma once

#include <optional>
#include <vector>

#include "tovi/asn1/ObjectIdentifier.h"
#include "tovi/pkcs15/Certificate.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/Infos.h"

namespace ASN1 {
class CoderEnv;
}

namespace tovi {

class ISCardOS;
class ProfileDFHandler;

/// The extended key usage smart-card logon, 1.3.6.1.4.1.311.20.2.2.
extern const ASN1::OBJECT_IDENTIFIER SMARTCARD_LOGON_OID;

/// The entry coder of certificates (PKCS#15 v1.1).
class PKCS15CertCT {
public:
    /// Fills `info` from an X.509 certificate: true, or false when the access control part of the
    /// record is not acceptable. Nothing for any other alternative. A certificate that stands in
    /// the record itself leaves no path.
    static std::optional<bool> decodeCertificate(const PKCS15::CertificateType& record,
                                                 PKCS15ObjectInfo<CertificateInfo>& info);
    static std::optional<bool> decodeTrustedCertificate(
        const PKCS15::CertificateType& record, PKCS15ObjectInfo<TrustedCertificateInfo>& info);
    static std::optional<bool> decodeUsefulCertificate(
        const PKCS15::CertificateType& record, PKCS15ObjectInfo<UsefulCertificateInfo>& info);

    /// Sets trustedUsage to 267 when the trusted usage names smart-card logon, else to 0xFFFF.
    static void decodeTrustedUsage(const PKCS15::CommonCertificateAttributes& attributes,
                                   CertificateInfo& info);

    /// Writes a certificate to its directory file: a new record for the index noIndex, else over
    /// record `index`. Returns the index of the record, or noIndex for an info that is not valid.
    ///
    /// Throws SmartcardException "invalid certificate type" for any but X.509; "ASN1 encoding
    /// error" for an info that breaks a constraint of the record, or a record of another
    /// alternative; nothing is written then. What the handler throws passes through.
    template <class Info>
    static unsigned long encodeCertInfoBase(ASN1::CoderEnv* env, ISCardOS* os,
                                            ProfileDFHandler& handler,
                                            const PKCS15ObjectInfo<Info>& info,
                                            std::vector<ASN1Object<PKCS15::CertificateType>>& raws,
                                            unsigned long index);

    /// Sees to it that the trusted usage names smart-card logon, or does not, as the logon bit of
    /// info.trustedUsage says; noTrustedUsage leaves it as it is.
    static void encodeTrustedUsage(PKCS15::CommonCertificateAttributes& attributes,
                                   const CertificateInfo& info);
};

}  // namespace tovi
