#include <fmt/format.h>

#include <algorithm>

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
    void foresee(Forecast& forecast) const override {
        const auto type = forecast.objectTypeOf(record_);
        const auto check = [&](const auto& kind) {
            typename std::remove_cvref_t<decltype(kind)>::Object scratch;
            setFields(scratch, set_);
        };
        if (type) withKindOf(*type, check);
    }
    Json perform(PKCS15Container& model, ISCardOS& os) const override {
        const auto& rows = model.getFATRecords();
        const auto update = [&](const auto& kind) {
            auto object = (model.*kind.get)(record_);
            setFields(object, set_);
            updateObject(kind, model, os, object);
        };
        const bool isThere = record_ < rows.size();
        if (!isThere || !withKindOf(rows[record_].objectType, update)) refuse(model, os);
        return head();
    }

private:
    /// No object of a kind has that number, so the update of any kind fails, and says why.
    void refuse(PKCS15Container& model, ISCardOS& os) const {
        PKCS15ObjectInfo<PrivateKeyInfo> none;
        none.recordNumber = record_;
        model.updatePrivateKeyInfo(&os, none);
    }

    std::uint64_t record_;
    JsonPlace set_;
};

/// Fields of the first authentication object with a reference.
class UpdateAuth final : public Operation {
public:
    UpdateAuth(std::uint16_t reference, JsonPlace set)
        : reference_(reference), set_(std::move(set)) {
        checkFieldsOfAnyAuthObject(set_);
    }

    Json head() const override { return {{"op", "update"}, {"auth", reference_}}; }
    std::string object() const override { return fmt::format("auth:{}", reference_); }
    void foresee(Forecast& forecast) const override {
        const auto type = forecast.authTypeOf(reference_);
        if (!type || *type == AuthType::none) return;
        PKCS15ObjectInfo<AuthInfo> scratch;
        scratch.type = *type;
        setFields(scratch, set_);
    }
    Json perform(PKCS15Container& model, ISCardOS& os) const override {
        const auto& infos = model.getAuthInfos();
        const auto found = std::find_if(infos.begin(), infos.end(), [&](const auto& info) {
            return info.reference == reference_;
        });
        PKCS15ObjectInfo<AuthInfo> info;
        info.reference = reference_;  // which is refused when nothing has it
        if (found != infos.end()) {
            info = *found;
            setFields(info, set_);
        }
        model.updateAuthInfo(&os, info);
        return head();
    }

private:
    std::uint16_t reference_;
    JsonPlace set_;
};

/// Fields of EF(TokenInfo).
class UpdateTokenInfo final : public Operation {
public:
    explicit UpdateTokenInfo(JsonPlace set) : set_(std::move(set)) { checkTokenInfoFields(set_); }

    Json head() const override { return {{"op", "updateTokenInfo"}}; }
    std::string object() const override { return ""; }
    void foresee(Forecast&) const override {}
    Json perform(PKCS15Container& model, ISCardOS& os) const override {
        updateTokenInfo(model, os, set_);
        return head();
    }

private:
    JsonPlace set_;
};

}  // namespace

OperationPointer makeUpdateOperation(const JsonPlace& place) {
    if (place.has("auth")) {
        place.allow({"op", "auth", "set"});
        const auto reference = place.at("auth").number(noReference - 1);
        return std::make_unique<UpdateAuth>(static_cast<std::uint16_t>(reference),
                                            needed(place, "set"));
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
