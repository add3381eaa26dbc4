#include "tools/Operation.h"

#include <fmt/format.h>

#include <iterator>

namespace tovi {
namespace {

/// `clearAndRead`: what the card holds replaces the model.
class ReadOperation final : public Operation {
public:
    Json head() const override { return {{"op", "clearAndRead"}}; }
    std::string object() const override { return ""; }
    void foretell(Forecast& forecast) const override { forecast.readAgain(); }
    void perform(PKCS15Container& model, ISCardOS& os, Json&) const override {
        model.clear();
        model.readFromCard(&os);
    }
};

struct Maker {
    const char* op;
    OperationPointer (*make)(const JsonPlace& place);
};
constexpr Maker makers[] = {{"write", makeWriteOperation},
                            {"update", makeUpdateOperation},
                            {"delete", makeDeleteOperation},
                            {"updateTokenInfo", makeTokenInfoOperation},
                            {"clearAndRead", makeReadOperation}};

OperationPointer operationFromJson(const JsonPlace& place) {
    if (!place.json().is_object()) place.fail("an object");
    const JsonPlace op = needed(place, "op");
    for (const Maker& maker : makers) {
        if (op.text() == maker.op) return maker.make(place);
    }
    op.fail("write, update, delete, updateTokenInfo or clearAndRead");
}

}  // namespace

JsonPlace needed(const JsonPlace& place, const char* name) {
    if (!place.has(name)) place.fail(fmt::format("'{}'", name));
    return place.at(name);
}

OperationPointer makeReadOperation(const JsonPlace& place) {
    place.allow({"op"});
    return std::make_unique<ReadOperation>();
}

std::vector<OperationPointer> operationsFromJson(const Json& list) {
    const JsonPlace place(list, "operations");
    place.expectArray();
    std::vector<OperationPointer> operations;
    for (std::size_t i = 0; i < place.count(); ++i) {
        operations.push_back(operationFromJson(place.at(i)));
    }
    return operations;
}

}  // namespace tovi
