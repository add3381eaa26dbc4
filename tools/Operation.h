#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tools/Forecast.h"
#include "tools/JsonInfos.h"
#include "tools/JsonPlace.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// One operation of a list that `apply` performs. All of it that can be judged without the card has
/// been, when there is such an object.
class Operation {
public:
    virtual ~Operation() = default;

    /// What the operation is about: {"op", and "recordNumber" or "auth" where it names an object}.
    virtual Json head() const = 0;
    /// What people are told that it is about: "privateKey", "record 4", "auth:1" or nothing.
    virtual std::string object() const = 0;

    /// Judges the fields that it names by the kinds of objects that there will be. Throws
    /// UsageError that names the place.
    virtual void judge(const Forecast&) const {}
    /// Adds what objects there will be behind it.
    virtual void foretell(Forecast&) const {}
    /// Performs it on a model that has been read. `result` is head(), and gets what came of it,
    /// also of an operation that failed half-way. Throws tovi::Exception when it failed, UsageError
    /// for fields that the object does not have.
    virtual void perform(PKCS15Container& model, ISCardOS& os, Json& result) const = 0;
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

/// The highest number that may stand for a record; whether there is one, the container says.
inline constexpr std::size_t lastRecordNumber = 0xFFFFFFFE;

}  // namespace tovi
