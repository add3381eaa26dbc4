#include <type_traits>
#include <utility>

#include "tools/InfoFromJson.h"
#include "tools/ObjectKinds.h"
#include "tools/Operation.h"

namespace tovi {
namespace {

/// A new object with a record number.
template <class Info>
class WriteObject final : public Operation {
public:
    /// `privateKey` is what a public key is linked to.
    WriteObject(const ObjectKind<Info>& kind, PKCS15ObjectInfo<Info> info, unsigned long privateKey)
        : kind_(kind), info_(std::move(info)), privateKey_(privateKey) {}

    Json head() const override { return {{"op", "write"}}; }
    std::string object() const override { return kind_.name; }
    void foretell(Forecast& forecast) const override { forecast.write(kind_.objectType); }
    void perform(PKCS15Container& model, ISCardOS& os, Json& result) const override {
        PKCS15ObjectInfo<Info> info = info_;
        try {
            result["recordNumber"] = writeObject(kind_, model, os, info, privateKey_);
        } catch (...) {
            // An object that could not be linked stands all the same.
            if (info.recordNumber != noRecord) result["recordNumber"] = info.recordNumber;
            throw;
        }
    }

private:
    const ObjectKind<Info>& kind_;
    PKCS15ObjectInfo<Info> info_;
    unsigned long privateKey_;
};

/// A new authentication object. Its place in the file stands in for a record number.
class WriteAuth final : public Operation {
public:
    explicit WriteAuth(PKCS15ObjectInfo<AuthInfo> info) : info_(std::move(info)) {
        // A record that says no reference says 0 (PKCS#15 v1.1, 6.8.1 and 6.8.2).
        const bool isRead = info_.type == AuthType::pin || info_.type == AuthType::biometric;
        if (isRead && info_.reference == noReference) info_.reference = 0;
    }

    Json head() const override { return {{"op", "write"}}; }
    std::string object() const override { return authObjectKind; }
    void foretell(Forecast& forecast) const override { forecast.writeAuth(info_); }
    void perform(PKCS15Container& model, ISCardOS& os, Json& result) const override {
        result["recordNumber"] = model.writeAuthInfo(&os, info_);
    }

private:
    PKCS15ObjectInfo<AuthInfo> info_;
};

/// The private key that a public key is linked to.
unsigned long privateKeyOf(const JsonPlace& place) {
    if (!place.has("privateKey") || place.at("privateKey").isNull()) return noPrivateKey;
    return place.at("privateKey").number(lastRecordNumber);
}

}  // namespace

OperationPointer makeWriteOperation(const JsonPlace& place) {
    const JsonPlace kindPlace = needed(place, "kind");
    const std::string name = kindPlace.text();
    OperationPointer operation;
    const auto make = [&](const auto& kind) {
        using Info = typename std::remove_cvref_t<decltype(kind)>::Info;
        if (name != kind.name) return;
        if constexpr (std::is_same_v<Info, PublicKeyInfo>) {
            place.allow({"op", "kind", "info", "privateKey"});
        } else {
            place.allow({"op", "kind", "info"});
        }
        operation = std::make_unique<WriteObject<Info>>(
            kind, newObject<Info>(needed(place, "info")), privateKeyOf(place));
    };
    forEachObjectKind(make);
    if (name == authObjectKind) {
        place.allow({"op", "kind", "info"});
        operation = std::make_unique<WriteAuth>(newObject<AuthInfo>(needed(place, "info")));
    }
    if (!operation) kindPlace.fail("a kind of object such as privateKey");
    return operation;
}

}  // namespace tovi
