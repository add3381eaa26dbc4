#pragma once

#include <functional>
#include <string>
#include <type_traits>

#include "tovi/records/AuthInfo.h"
#include "tovi/records/Infos.h"
#include "tovi/records/PKCS15Object.h"

namespace tovi::test {

/// The fields of an info, whatever its kind; null is what the kind does not have.
struct Fields {
    PKCS15Object& object;
    PKCS11Attrs& attributes;
    Blob& label;
    Blob* id = nullptr;
    std::uint64_t* keyType = nullptr;
    CertificateInfo* certificate = nullptr;
    BlockCipherKeyInfo* secretKey = nullptr;
    DataInfo* data = nullptr;
    AuthInfo* auth = nullptr;
};

using Edit = std::function<void(Fields&)>;

template <class T>
Fields fieldsOf(PKCS15ObjectInfo<T>& info) {
    Fields fields{info, info, info.label};
    if constexpr (requires { info.id; }) fields.id = &info.id;
    if constexpr (requires { info.keyType; }) fields.keyType = &info.keyType;
    if constexpr (std::is_base_of_v<CertificateInfo, T>) fields.certificate = &info;
    if constexpr (std::is_same_v<BlockCipherKeyInfo, T>) fields.secretKey = &info;
    if constexpr (std::is_same_v<DataInfo, T>) fields.data = &info;
    if constexpr (std::is_same_v<AuthInfo, T>) fields.auth = &info;
    return fields;
}

/// All that a record says, a line a field, so that a test shows in which one two infos differ.
/// Record numbers and what follows from the path are not of the record.
std::string described(const Fields& fields);

}  // namespace tovi::test
