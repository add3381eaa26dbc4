#pragma once

#include <string>
#include <string_view>

#include "tools/Command.h"
#include "tools/JsonInfos.h"

namespace tovi {

/// Makes the one JSON document of a call, an object, member by member and long lists element by
/// element, so that only its text is in memory as a whole. The text is that of
/// Invocation::printJson. It goes out when it is complete: half a document is none.
class JsonWriter {
public:
    /// `call` must outlive this object.
    explicit JsonWriter(Invocation& call) : call_(call) {}

    void add(std::string_view name, const Json& value);
    void beginList(std::string_view name);
    void addElement(const Json& value);
    void endList();
    /// Ends the document and writes it. Throws Interrupted when the user asked to stop before, and
    /// Failure when it did not go out.
    void finish();

private:
    void addName(std::string_view name);

    Invocation& call_;
    std::string text_ = "{";
    bool isFirstMember_ = true;
    bool isFirstElement_ = true;
};

}  // namespace tovi
