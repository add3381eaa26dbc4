#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/AuthName.h"
#include "tools/Forecast.h"
#include "tools/JsonInfos.h"
#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// The objects that an operation names.
struct NamedObjects {
    std::vector<std::uint64_t> records = {};
    std::optional<AuthName> auth = {};
};

/// One operation of a list that `apply` performs. All of it that can be judged without the card has
/// been, when there is such an object.
class Operation {
public:
    virtual ~Operation() = default;

    /// What the operation is about: {"op", and "recordNumber" or "auth" where it names an object}.
    virtual Json head() const = 0;
    /// What people are told that it is about: "privateKey", "record 4", "auth:1" or nothing.
    virtual std::string object() const = 0;
    virtual NamedObjects names() const { return {}; }

    /// Judges the operation by the objects that there will be, and notes the fields that it
    /// changes. Throws UsageError that names the place.
    virtual void judge(Forecast&) const {}
    /// Adds what objects there will be behind it; `position` is its own in the list.
    virtual void foretell(Forecast&, std::size_t /*position*/) const {}
    /// Performs it on a model that has been read. `result` is head(), and gets what came of it,
    /// also of an operation that failed half-way. Throws tovi::Exception when it failed, UsageError
    /// for fields that the object does not have.
    virtual void perform(PKCS15Container& model, ISCardOS& os, Json& result) const = 0;
    /// Throws what the container throws when nothing has the name that the operation uses; no more
    /// than that for an operation that names nothing.
    virtual void failAsMissing(PKCS15Container&, ISCardOS&) const {}
};
using OperationPointer = std::unique_ptr<Operation>;

/// The operations of a list, which must outlive them. Throws UsageError that names the position and
/// the field of what is no operation.
std::vector<OperationPointer> operationsFromJson(const Json& list);

// Those of one kind, from their place in the list.
OperationPointer makeWriteOperation(const JsonPlace& place);
OperationPointer makeUpdateOperation(const JsonPlace& place);
OperationPointer makeDeleteOperation(const JsonPlace& place);
OperationPointer makeTokenInfoOperation(const JsonPlace& place);
OperationPointer makeReadOperation(const JsonPlace& place);

/// The value of a member that has to be there.
JsonPlace needed(const JsonPlace& place, const char* name);

/// The highest record number: rows are known by 16 bits.
inline constexpr std::size_t lastRecordNumber = 0xFFFF;

}  // namespace tovi
