#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tovi/interfaces/ProfileDFHandler.h"

namespace tovi::test {

/// What the directory files of a test do. An executable with ScriptedHandler.cpp has a
/// ProfileDFHandler that is no more than this: the library asks for one, and takes whatever is
/// linked.
struct HandlerScript {
    /// What WriteSequence and UpdateSequence return.
    bool answer = true;
    /// What WriteSequence sets its index to; nothing leaves it as it came.
    std::optional<unsigned long> position = {};
    /// Called first by both.
    std::function<void()> before = {};
    /// The records of the file at a path, for ReadFile.
    std::map<Blob, std::vector<Blob>> files = {};

    /// One call of WriteSequence, which has no index, or UpdateSequence.
    struct Call {
        ISCardOS* os;
        std::optional<unsigned long> index;
        Blob record;
        friend bool operator==(const Call&, const Call&) = default;
    };
    std::vector<Call> calls = {};
};

/// The script of all handlers of this executable.
HandlerScript& handlerScript();

}  // namespace tovi::test
