#include "tools/PinChoice.h"

#include <vector>

#include "tools/Failure.h"
#include "tools/Text.h"

namespace tovi {
namespace {

using Pin = PKCS15ObjectInfo<AuthInfo>;

constexpr std::uint32_t unblockingPin = 1 << 6;  // PinFlags of PKCS#15 v1.1, 6.8.2

bool isVerifiable(const Pin& object) {
    const bool unblocks = object.pinFlags != noAuthValue && (object.pinFlags & unblockingPin) != 0;
    return object.type == AuthType::pin && !unblocks;
}

std::string listOf(const std::vector<const Pin*>& pins) {
    std::string text;
    for (const Pin* pin : pins) text += (text.empty() ? "" : ", ") + nameOfPin(*pin);
    return text.empty() ? "the card has no PIN" : "the card has " + text;
}

}  // namespace

std::optional<AuthName> parseLogin(const std::string& login) {
    const bool isPrefixed = login.rfind("auth:", 0) == 0;
    return parseAuthName(isPrefixed ? login.substr(5) : login);
}

std::string nameOfPin(const Pin& pin) {
    const std::string label(pin.label.begin(), pin.label.end());
    std::string name = "PIN \"" + forTerminal(label) + "\"";
    if (pin.reference != noReference) name += " (auth:" + std::to_string(pin.reference) + ")";
    return name;
}

const Pin* onlyPin(const PKCS15Container& model) {
    const Pin* only = nullptr;
    for (const Pin& object : model.getAuthInfos()) {
        if (!isVerifiable(object)) continue;
        if (only != nullptr) return nullptr;
        only = &object;
    }
    return only;
}

const Pin& choosePin(const PKCS15Container& model, const std::string& login, const Blob& guard) {
    const std::optional<AuthName> name = parseLogin(login);
    std::vector<const Pin*> pins;
    for (const Pin& object : model.getAuthInfos()) {
        if (name && name->names(object)) return object;
        if (login.empty() && !guard.empty() && object.authObjectId == guard) return object;
        if (isVerifiable(object)) pins.push_back(&object);
    }
    if (!login.empty())
        throw UsageError("--login: no PIN is called " + login + "; " + listOf(pins));
    if (pins.size() != 1) throw UsageError("choose a PIN with --login REF: " + listOf(pins));
    return *pins.front();
}

}  // namespace tovi
