#pragma once

#include <optional>

#include "tovi/asn1/ObjectIdentifier.h"
#include "tovi/pkcs15/Certificate.h"
#include "tovi/records/Infos.h"

namespace tovi {

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
};

}  // namespace tovi
