#pragma once

#include <string>

#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

// Each sets one field that objects of the kind have and others need not have; false when `name` is
// none of them. All throw UsageError that names the place, for a value that the field does not
// take.

bool setOwnField(PKCS15ObjectInfo<PrivateKeyInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<PublicKeyInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<TrustedPublicKeyInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<BlockCipherKeyInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<CertificateInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<TrustedCertificateInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<UsefulCertificateInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<DataInfo>& info, const std::string& name, const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<ContainerInfo>& info, const std::string& name,
                 const JsonPlace& value);
bool setOwnField(PKCS15ObjectInfo<AuthInfo>& info, const std::string& name, const JsonPlace& value);

/// The reference, which authentication objects get with the first write and keep.
bool setReference(PKCS15Object& object, const std::string& name, const JsonPlace& value);

}  // namespace tovi
