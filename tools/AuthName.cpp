#include "tools/AuthName.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "tools/Text.h"

namespace tovi {
namespace {

constexpr std::string_view idPrefix = "id=";
constexpr const char* deleting = "PKCS15Container::deleteAuthInfo";
constexpr std::uint16_t mostOfAnOctet = 0xFF;

using AuthObject = PKCS15ObjectInfo<AuthInfo>;

std::optional<AuthName> parseId(std::string_view digits) {
    const auto octets = fromHex(digits);
    if (!octets || octets->empty()) return std::nullopt;
    return AuthName{noReference, *octets};
}

std::optional<AuthName> parseReference(std::string_view digits) {
    AuthName name;
    const char* end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, name.reference);
    if (digits.empty() || rest != end || error != std::errc{}) return std::nullopt;
    if (name.reference == noReference) return std::nullopt;
    return name;
}

/// A reference of one octet that no object has.
std::uint8_t unusedReference(const std::vector<AuthObject>& objects) {
    for (std::uint16_t reference = 0; reference <= mostOfAnOctet; ++reference) {
        const auto hasIt = [=](const AuthObject& o) { return o.reference == reference; };
        if (std::none_of(objects.begin(), objects.end(), hasIt)) {
            return static_cast<std::uint8_t>(reference);
        }
    }
    throw SmartcardException("failed to delete auth info", deleting);
}

/// Gives the object another reference, in the model alone, by which the container can be told to
/// delete it. The card sees nothing but the deletion.
void deleteRenamed(PKCS15Container& model, ISCardOS& os, std::size_t position) {
    const AuthObject object = model.getAuthInfos()[position];
    AuthObject renamed = object;
    renamed.reference = unusedReference(model.getAuthInfos());
    model.writeAuthInfo(nullptr, renamed, position);
    try {
        model.deleteAuthInfo(&os, static_cast<unsigned char>(renamed.reference));
    } catch (...) {
        model.writeAuthInfo(nullptr, object, position);
        throw;
    }
}

}  // namespace

bool AuthName::names(const AuthObject& info) const {
    if (reference != noReference) return info.reference == reference;
    return info.authObjectId == authObjectId;
}

std::string AuthName::text() const {
    if (reference != noReference) return fmt::format("{}", reference);
    return std::string(idPrefix) + toHex(authObjectId);
}

Json AuthName::json() const { return reference != noReference ? Json(reference) : Json(text()); }

std::optional<AuthName> parseAuthName(std::string_view text) {
    if (text.substr(0, idPrefix.size()) == idPrefix) return parseId(text.substr(idPrefix.size()));
    return parseReference(text);
}

AuthName authNameField(const JsonPlace& place) {
    if (!place.json().is_string()) {
        return {static_cast<std::uint16_t>(place.number(noReference - 1)), {}};
    }
    const std::string text = place.text();
    const auto name = parseAuthName(text);
    if (!name || name->reference != noReference) place.fail("a reference, or id=HEX");
    return *name;
}

std::optional<std::size_t> findAuth(const PKCS15Container& model, const AuthName& name) {
    const auto& infos = model.getAuthInfos();
    const auto found = std::find_if(infos.begin(), infos.end(),
                                    [&](const AuthObject& info) { return name.names(info); });
    if (found == infos.end()) return std::nullopt;
    return static_cast<std::size_t>(found - infos.begin());
}

void deleteAuth(PKCS15Container& model, ISCardOS& os, const AuthName& name) {
    const auto position = findAuth(model, name);
    if (!position) throw noSuchAuthObject(deleting);
    if (name.reference <= mostOfAnOctet) {
        model.deleteAuthInfo(&os, static_cast<unsigned char>(name.reference));
    } else {
        deleteRenamed(model, os, *position);
    }
}

SmartcardException noSuchAuthObject(const char* operation) {
    return {"invalid object reference", operation};
}

}  // namespace tovi
