#include "tools/FileKind.h"

#include "tovi/pkcs15/PKCS15.h"

namespace tovi {

const FileKind tokenInfoFile{"TokenInfo", &PKCS15::TokenInfo::type};
const FileKind odfFile{"ODF", &PKCS15::PKCS15Objects::type};
const FileKind unusedSpaceFile{"UnusedSpace", &PKCS15::UnusedSpace::type};
const FileKind dirFile{"DIR", &PKCS15::DIRRecord::type};
const FileKind otherFile{};

const FileKind& directoryFileKind(std::size_t choice) {
    static const FileKind kinds[] = {
        {"PrKDF", &PKCS15::PrivateKeyType::type},
        {"PuKDF", &PKCS15::PublicKeyType::type},
        {"TrustedPuKDF", &PKCS15::PublicKeyType::type},
        {"SKDF", &PKCS15::SecretKeyType::type},
        {"CDF", &PKCS15::CertificateType::type},
        {"TrustedCDF", &PKCS15::CertificateType::type},
        {"UsefulCDF", &PKCS15::CertificateType::type},
        {"DODF", &PKCS15::DataType::type},
        {"AODF", &PKCS15::AuthenticationType::type},
    };
    return kinds[choice];
}

}  // namespace tovi
