#include "tools/Command.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "tools/Text.h"

namespace tovi {

void Invocation::printText(std::string_view text) {
    checkInterrupt();
    console_.out << text << std::flush;
    if (!console_.out) throw Failure("the output cannot be written", operation_);
}

void Invocation::printJson(const nlohmann::ordered_json& document) {
    using Json = nlohmann::ordered_json;
    printText(jsonForTerminal(document.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n');
}

ErrorReport Invocation::explained(ErrorReport report) const {
    if (cardFailure_.empty()) return report;
    // The library's operations keep or replace the message of the card.
    const bool isSaid = cardFailure_.compare(0, report.message.size(), report.message) == 0;
    report.message = isSaid ? cardFailure_ : report.message + ": " + cardFailure_;
    return report;
}

void Invocation::checkInterrupt() const {
    if (ignoresInterrupt_) return;
    if (console_.interrupted != nullptr && *console_.interrupted) throw Interrupted{};
}

}  // namespace tovi
