#include <type_traits>
#include <utility>

#include "tools/HeldFields.h"
#include "tools/InfoFromJson.h"
#include "tools/ObjectKinds.h"
#include "tools/Operation.h"

namespace tovi {
namespace {

/// The fields that name objects, and the type of row that these have.
using Links = std::vector<std::pair<const char*, std::uint8_t>>;

template <class Info>
Links linksOf() {
    if constexpr (std::is_same_v<Info, PublicKeyInfo>) return {{"privateKey", privateKeyObject}};
    if constexpr (std::is_same_v<Info, ContainerInfo>) {
        return {{"exchangeKeyRecord", privateKeyObject},
                {"exchangeCertificateRecord", certificateObject},
                {"signatureKeyRecord", privateKeyObject},
                {"signatureCertificateRecord", certificateObject}};
    }
    return {};
}

/// A new object with a record number.
template <class Info>
class WriteObject final : public Operation {
public:
    /// `fields` has the links: the operation of a public key, the info of a container.
    WriteObject(const ObjectKind<Info>& kind, PKCS15ObjectInfo<Info> info, JsonPlace fields,
                unsigned long privateKey)
        : kind_(kind),
          info_(std::move(info)),
          fields_(std::move(fields)),
          privateKey_(privateKey) {}

    Json head() const override { return {{"op", "write"}}; }
    std::string object() const override { return kind_.name; }
    NamedObjects names() const override {
        NamedObjects named;
        forEachLink([&](const JsonPlace&, std::uint64_t record, std::uint8_t) {
            named.records.push_back(record);
        });
        return named;
    }
    void judge(Forecast& forecast) const override {
        if (!forecast.knowsRecords()) return;
        forEachLink([&](const JsonPlace& place, std::uint64_t record, std::uint8_t type) {
            if (forecast.objectTypeOf(record) == type) return;
            place.refuse(type == privateKeyObject ? "no private key has that record number"
                                                  : "no certificate has that record number");
        });
    }
    void foretell(Forecast& forecast, std::size_t position) const override {
        forecast.write(kind_.objectType, position, info_);
    }
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
    void failAsMissing(PKCS15Container& model, ISCardOS&) const override {
        model.getPrivateKeyInfo(noPrivateKey);
    }

private:
    /// Calls `visit(place, record, type)` for each link that is not none.
    template <class Visit>
    void forEachLink(Visit visit) const {
        constexpr bool isZeroNone = std::is_same_v<Info, ContainerInfo>;
        for (const auto& [name, type] : linksOf<Info>()) {
            if (!fields_.has(name) || fields_.at(name).isNull()) continue;
            const JsonPlace place = fields_.at(name);
            const std::size_t record = place.number(lastRecordNumber);
            if (record != 0 || !isZeroNone) visit(place, record, type);
        }
    }

    const ObjectKind<Info>& kind_;
    PKCS15ObjectInfo<Info> info_;
    JsonPlace fields_;
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
    void foretell(Forecast& forecast, std::size_t position) const override {
        forecast.writeAuth(info_, position);
    }
    void perform(PKCS15Container& model, ISCardOS& os, Json& result) const override {
        result["recordNumber"] = model.writeAuthInfo(&os, info_);
    }

private:
    PKCS15ObjectInfo<AuthInfo> info_;
};

template <class Info>
PKCS15ObjectInfo<Info> heldObject(const JsonPlace& fields) {
    auto object = newObject<Info>(fields);
    checkHeld<Info>(object, nullptr, fields);
    return object;
}

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
        const JsonPlace info = needed(place, "info");
        const JsonPlace& links = std::is_same_v<Info, ContainerInfo> ? info : place;
        operation = std::make_unique<WriteObject<Info>>(kind, heldObject<Info>(info), links,
                                                        privateKeyOf(place));
    };
    forEachObjectKind(make);
    if (name == authObjectKind) {
        place.allow({"op", "kind", "info"});
        operation = std::make_unique<WriteAuth>(heldObject<AuthInfo>(needed(place, "info")));
    }
    if (!operation) kindPlace.fail("a kind of object such as privateKey");
    return operation;
}

}  // namespace tovi
