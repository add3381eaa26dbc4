#pragma once

#include <variant>

#include "tovi/Export.h"
#include "tovi/pkcs15/Authentication.h"
#include "tovi/pkcs15/Certificate.h"
#include "tovi/pkcs15/DataObject.h"
#include "tovi/pkcs15/PrivateKey.h"
#include "tovi/pkcs15/PublicKey.h"
#include "tovi/pkcs15/SecretKey.h"

/// Records of EF(ODF).
namespace PKCS15 {

///     PrivateKeys  ::= PathOrObjects {PrivateKeyType}
///     SecretKeys   ::= PathOrObjects {SecretKeyType}
///     PublicKeys   ::= PathOrObjects {PublicKeyType}
///     Certificates ::= PathOrObjects {CertificateType}
///     DataObjects  ::= PathOrObjects {DataType}
///     AuthObjects  ::= PathOrObjects {AuthenticationType}
using PrivateKeys = PathOrObjects<PrivateKeyType>;
using SecretKeys = PathOrObjects<SecretKeyType>;
using PublicKeys = PathOrObjects<PublicKeyType>;
using Certificates = PathOrObjects<CertificateType>;
using DataObjects = PathOrObjects<DataType>;
using AuthObjects = PathOrObjects<AuthenticationType>;

///     PKCS15Objects ::= CHOICE {
///         privateKeys          [0] EXPLICIT PrivateKeys,
///         publicKeys           [1] EXPLICIT PublicKeys,
///         trustedPublicKeys    [2] EXPLICIT PublicKeys,
///         secretKeys           [3] EXPLICIT SecretKeys,
///         certificates         [4] EXPLICIT Certificates,
///         trustedCertificates  [5] EXPLICIT Certificates,
///         usefulCertificates   [6] EXPLICIT Certificates,
///         dataObjects          [7] EXPLICIT DataObjects,
///         authObjects          [8] EXPLICIT AuthObjects,
///         ... }
struct TOVI_API PKCS15Objects : ASN1::Choice<PKCS15Objects> {
    enum Alternative : std::size_t {
        privateKeys,
        publicKeys,
        trustedPublicKeys,
        secretKeys,
        certificates,
        trustedCertificates,
        usefulCertificates,
        dataObjects,
        authObjects,
        unknown,
        none,
    };
    std::variant<PrivateKeys, PublicKeys, PublicKeys, SecretKeys, Certificates, Certificates,
                 Certificates, DataObjects, AuthObjects, ASN1::OpenData, std::monostate>
        value{std::monostate()};
    static const ASN1::Type type;

    PrivateKeys& select_privateKeys() { return select<privateKeys>(); }
    PublicKeys& select_publicKeys() { return select<publicKeys>(); }
    PublicKeys& select_trustedPublicKeys() { return select<trustedPublicKeys>(); }
    SecretKeys& select_secretKeys() { return select<secretKeys>(); }
    Certificates& select_certificates() { return select<certificates>(); }
    Certificates& select_trustedCertificates() { return select<trustedCertificates>(); }
    Certificates& select_usefulCertificates() { return select<usefulCertificates>(); }
    DataObjects& select_dataObjects() { return select<dataObjects>(); }
    AuthObjects& select_authObjects() { return select<authObjects>(); }
};

/// The path of the file that an entry names; nullptr for entries given in place, protected and
/// unknown ones.
TOVI_API const Path* filePath(const PKCS15Objects& entry);

}  // namespace PKCS15
