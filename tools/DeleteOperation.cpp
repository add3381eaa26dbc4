#include <fmt/format.h>

#include "tools/Operation.h"

namespace tovi {
namespace {

/// The object with a record number.
class DeleteObject final : public Operation {
public:
    explicit DeleteObject(std::uint64_t record) : record_(record) {}

    Json head() const override { return {{"op", "delete"}, {"recordNumber", record_}}; }
    std::string object() const override { return fmt::format("record {}", record_); }
    void foresee(Forecast& forecast) const override { forecast.erase(record_); }
    Json perform(PKCS15Container& model, ISCardOS& os) const override {
        model.deleteObjectInfo(&os, record_);
        return head();
    }

private:
    std::uint64_t record_;
};

/// The first authentication object with a reference.
class DeleteAuth final : public Operation {
public:
    explicit DeleteAuth(std::uint8_t reference) : reference_(reference) {}

    Json head() const override { return {{"op", "delete"}, {"auth", reference_}}; }
    std::string object() const override { return fmt::format("auth:{}", reference_); }
    void foresee(Forecast& forecast) const override { forecast.eraseAuth(reference_); }
    Json perform(PKCS15Container& model, ISCardOS& os) const override {
        model.deleteAuthInfo(&os, reference_);
        return head();
    }

private:
    std::uint8_t reference_;
};

}  // namespace

OperationPointer makeDeleteOperation(const JsonPlace& place) {
    if (place.has("auth")) {
        place.allow({"op", "auth"});
        const auto reference = static_cast<std::uint8_t>(place.at("auth").number(0xFF));
        return std::make_unique<DeleteAuth>(reference);
    }
    place.allow({"op", "recordNumber"});
    return std::make_unique<DeleteObject>(needed(place, "recordNumber").number(lastRecordNumber));
}

}  // namespace tovi
