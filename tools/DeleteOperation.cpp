#include <fmt/format.h>

#include "tools/AuthName.h"
#include "tools/Operation.h"

namespace tovi {
namespace {

/// The object with a record number.
class DeleteObject final : public Operation {
public:
    explicit DeleteObject(std::uint64_t record) : record_(record) {}

    Json head() const override { return {{"op", "delete"}, {"recordNumber", record_}}; }
    std::string object() const override { return fmt::format("record {}", record_); }
    void foretell(Forecast& forecast) const override { forecast.erase(record_); }
    void perform(PKCS15Container& model, ISCardOS& os, Json&) const override {
        model.deleteObjectInfo(&os, record_);
    }

private:
    std::uint64_t record_;
};

/// The first authentication object of a name.
class DeleteAuth final : public Operation {
public:
    explicit DeleteAuth(AuthName name) : name_(std::move(name)) {}

    Json head() const override { return {{"op", "delete"}, {"auth", name_.json()}}; }
    std::string object() const override { return "auth:" + name_.text(); }
    void foretell(Forecast& forecast) const override { forecast.eraseAuth(name_); }
    void perform(PKCS15Container& model, ISCardOS& os, Json&) const override {
        deleteAuth(model, os, name_);
    }

private:
    AuthName name_;
};

}  // namespace

OperationPointer makeDeleteOperation(const JsonPlace& place) {
    if (place.has("auth")) {
        place.allow({"op", "auth"});
        return std::make_unique<DeleteAuth>(authNameField(place.at("auth")));
    }
    place.allow({"op", "recordNumber"});
    return std::make_unique<DeleteObject>(needed(place, "recordNumber").number(lastRecordNumber));
}

}  // namespace tovi
