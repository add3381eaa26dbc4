#include "tools/Failure.h"

#include <fmt/format.h>

#include "tools/Text.h"
#include "tovi/card/DetailedError.h"

namespace tovi {
namespace {

std::string text(const char* constant) { return constant == nullptr ? "" : constant; }

/// Codes with a status word in them are read in hexadecimal.
std::string codeText(std::int64_t code) {
    return code >= statusWordCode ? fmt::format("0x{:X}", code) : fmt::format("{}", code);
}

}  // namespace

ErrorReport ErrorReport::of(const Exception& exception) {
    ErrorReport report{text(exception.GetMessage()), text(exception.GetOperation()),
                       exception.GetCode()};
    // The constant message says what failed; where and why is told apart from it.
    if (const auto* detailed = dynamic_cast<const DetailedError*>(&exception)) {
        report.message += ": " + detailed->text();
    }
    return report;
}

ErrorReport ErrorReport::of(const std::exception& exception, const std::string& operation) {
    if (const auto* failure = dynamic_cast<const Failure*>(&exception)) {
        return {failure->what(), failure->operation(), failure->code()};
    }
    return {exception.what(), operation, 0};
}

std::string ErrorReport::line() const {
    return forTerminal(fmt::format("{} ({}, code {})", message, operation, codeText(code)));
}

}  // namespace tovi
