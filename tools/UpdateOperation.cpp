#include <fmt/format.h>

#include "tools/AuthName.h"
#include "tools/InfoFromJson.h"
#include "tools/ObjectKinds.h"
#include "tools/Operation.h"
#include "tools/TokenInfoUpdate.h"

namespace tovi {
namespace {

/// Calls `visit(kind)` for the kind whose rows have that type; false when there is none.
template <class Visit>
bool withKindOf(std::uint8_t objectType, Visit visit) {
    bool isVisited = false;
    const auto tryKind = [&](const auto& kind) {
        if (kind.objectType != objectType) return;
        visit(kind);
        isVisited = true;
    };
    forEachObjectKind(tryKind);
    return isVisited;
}

/// Fields of the object with a record number.
class UpdateObject final : public Operation {
public:
    UpdateObject(std::uint64_t record, JsonPlace set) : record_(record), set_(std::move(set)) {
        checkFieldsOfAnyKind(set_);
    }

    Json head() const override { return {{"op", "update"}, {"recordNumber", record_}}; }
    std::string object() const override { return fmt::format("record {}", record_); }
    void judge(const Forecast& forecast) const override {
        const auto check = [&](const auto& kind) {
            typename std::remove_cvref_t<decltype(kind)>::Object scratch;
            setFields(scratch, set_);
        };
        withKindOf(forecast.objectTypeOf(record_).value_or(freeRow), check);
    }
    void perform(PKCS15Container& model, ISCardOS& os, Json&) const override {
        const auto& rows = model.getFATRecords();
        const auto update = [&](const auto& kind) {
            updateObject(kind, model, os, changed((model.*kind.get)(record_)));
        };
        const bool isThere = record_ < rows.size();
        if (!isThere || !withKindOf(rows[record_].objectType, update)) refuse(model, os);
    }

private:
    template <class Info>
    PKCS15ObjectInfo<Info> changed(const PKCS15ObjectInfo<Info>& before) const {
        PKCS15ObjectInfo<Info> object = before;
        setFields(object, set_);
        return object;
    }
    /// No object of a kind has that number, so the update of any kind fails, and says why.
    void refuse(PKCS15Container& model, ISCardOS& os) const {
        PKCS15ObjectInfo<PrivateKeyInfo> none;
        none.recordNumber = record_;
        model.updatePrivateKeyInfo(&os, none);
    }

    std::uint64_t record_;
    JsonPlace set_;
};

/// Fields of the first authentication object of a name.
class UpdateAuth final : public Operation {
public:
    UpdateAuth(AuthName name, JsonPlace set) : name_(std::move(name)), set_(std::move(set)) {
        checkFieldsOfAnyAuthObject(set_);
    }

    Json head() const override { return {{"op", "update"}, {"auth", name_.json()}}; }
    std::string object() const override { return "auth:" + name_.text(); }
    void judge(const Forecast& forecast) const override {
        const auto* before = forecast.find(name_);
        if (before != nullptr && before->type != AuthType::none) changed(*before);
    }
    void foretell(Forecast& forecast) const override {
        const auto* before = forecast.find(name_);
        if (before == nullptr || before->type == AuthType::none) return;
        forecast.updateAuth(name_, changed(*before));
    }
    void perform(PKCS15Container& model, ISCardOS& os, Json&) const override {
        const auto position = findAuth(model, name_);
        if (!position) throw noSuchAuthObject("PKCS15Container::updateAuthInfo");
        const auto info = changed(model.getAuthInfos()[*position]);
        model.writeAuthInfo(&os, info, static_cast<unsigned long>(*position));
    }

private:
    PKCS15ObjectInfo<AuthInfo> changed(const PKCS15ObjectInfo<AuthInfo>& before) const {
        PKCS15ObjectInfo<AuthInfo> object = before;
        setFields(object, set_);
        return object;
    }

    AuthName name_;
    JsonPlace set_;
};

/// Fields of EF(TokenInfo).
class UpdateTokenInfo final : public Operation {
public:
    explicit UpdateTokenInfo(JsonPlace set) : set_(std::move(set)) { checkTokenInfoFields(set_); }

    Json head() const override { return {{"op", "updateTokenInfo"}}; }
    std::string object() const override { return ""; }
    void perform(PKCS15Container& model, ISCardOS& os, Json&) const override {
        updateTokenInfo(model, os, set_);
    }

private:
    JsonPlace set_;
};

}  // namespace

OperationPointer makeUpdateOperation(const JsonPlace& place) {
    if (place.has("auth")) {
        place.allow({"op", "auth", "set"});
        return std::make_unique<UpdateAuth>(authNameField(place.at("auth")), needed(place, "set"));
    }
    place.allow({"op", "recordNumber", "set"});
    const std::size_t record = needed(place, "recordNumber").number(lastRecordNumber);
    return std::make_unique<UpdateObject>(record, needed(place, "set"));
}

OperationPointer makeTokenInfoOperation(const JsonPlace& place) {
    place.allow({"op", "set"});
    return std::make_unique<UpdateTokenInfo>(needed(place, "set"));
}

}  // namespace tovi
