#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tools/JsonInfos.h"
#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {

/// How an authentication object is named: by its reference, or, as not every one has a reference,
/// by its own identifier. Either names the first object that has it.
struct AuthName {
    std::uint16_t reference = noReference;  ///< noReference: named by the identifier
    Blob authObjectId = {};

    bool names(const PKCS15ObjectInfo<AuthInfo>& info) const;
    /// "1" or "id=0A", as behind "auth:".
    std::string text() const;
    /// The reference as a number, or "id=0A".
    Json json() const;
};

/// The name that `text` is; none for other texts.
std::optional<AuthName> parseAuthName(std::string_view text);
/// The same from a list of operations. Throws UsageError that names the place.
AuthName authNameField(const JsonPlace& place);

/// The position of the first object of that name in the model; none when there is none.
std::optional<std::size_t> findAuth(const PKCS15Container& model, const AuthName& name);

/// Deletes the first object of that name. Throws as PKCS15Container::deleteAuthInfo does, also for
/// objects that its reference of one octet cannot name.
void deleteAuth(PKCS15Container& model, ISCardOS& os, const AuthName& name);

/// "invalid object reference", as the container says it in `operation`.
SmartcardException noSuchAuthObject(const char* operation);

}  // namespace tovi
