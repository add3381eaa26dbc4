#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>

#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Keeps the order in which fields are added.
using Json = nlohmann::ordered_json;

// The objects of the model as JSON. Octets are upper-case hexadecimal, texts are UTF-8; both are ""
// when empty. The "no value" of a number is null. Every field of a kind is always present.

/// What an object has besides its info.
struct ObjectState {
    std::optional<std::uint8_t> objectType;  ///< of its row in the file-allocation table
    bool isDecoded = false;                  ///< of its record
};

Json toJson(const PKCS15TokenInfo& info);
Json toJson(const FATInfo& row, std::size_t recordNumber);
Json toJson(const PKCS15ObjectInfo<PrivateKeyInfo>& info, const ObjectState& state);
/// Also of trusted public keys.
Json toJson(const PKCS15Object& object, const PublicKeyInfo& info, const ObjectState& state);
Json toJson(const PKCS15ObjectInfo<BlockCipherKeyInfo>& info, const ObjectState& state);
/// Also of trusted and useful certificates.
Json toJson(const PKCS15Object& object, const CertificateInfo& info, const ObjectState& state);
Json toJson(const PKCS15ObjectInfo<DataInfo>& info, const ObjectState& state);
Json toJson(const PKCS15ObjectInfo<AuthInfo>& info, const ObjectState& state);
Json toJson(const PKCS15ObjectInfo<ContainerInfo>& info, const ObjectState& state);

/// The PKCS#11 attributes by name, in numeric order.
Json toJson(const PKCS11Attrs& attributes);

}  // namespace tovi
