#pragma once

#include <string_view>

#include "tools/Command.h"
#include "tools/JsonInfos.h"

namespace tovi {

/// Writes the one JSON document of a call, an object, member by member and long lists element by
/// element, so that it is never in memory as a whole. The text is that of Invocation::printJson.
///
/// Everything that can fail comes before the first member: half a document is none.
class JsonWriter {
public:
    /// `call` must outlive this object. Throws Interrupted when the user asked to stop.
    explicit JsonWriter(Invocation& call);

    void add(std::string_view name, const Json& value);
    void beginList(std::string_view name);
    void addElement(const Json& value);
    void endList();
    /// Ends the document. Failure when it did not go out.
    void finish();

private:
    void addName(std::string_view name);

    Invocation& call_;
    bool isFirstMember_ = true;
    bool isFirstElement_ = true;
};

}  // namespace tovi
