#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/ApplicationFiles.h"
#include "tools/AsnJson.h"
#include "tools/Command.h"
#include "tools/JsonInfos.h"
#include "tools/Login.h"
#include "tools/Paths.h"
#include "tools/Text.h"
#include "tools/ValueText.h"

namespace tovi {
namespace {

/// `tovi dump [FILE]`: the elementary files of the application, octet for octet.
class DumpCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    std::vector<FileLocation> chosen(Invocation& call, CardAccess& card) const;

    std::string file_;
};

// ---- which files ----

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return lower;
}

/// The file that `text` names by path: "4401", "50154401" or "3F00/5015/4401".
std::optional<Blob> pathNamed(std::string text, const Blob& rootPath) {
    text.erase(std::remove(text.begin(), text.end(), '/'), text.end());
    const auto path = fromHex(text);
    if (!path || path->empty() || path->size() % 2 != 0) return std::nullopt;
    return absolutePath(rootPath, *path);
}

std::vector<FileLocation> withName(const std::vector<FileLocation>& files,
                                   const std::string& name) {
    std::vector<FileLocation> found;
    for (const FileLocation& file : files) {
        if (lowerCase(file.kind->name) == lowerCase(name)) found.push_back(file);
    }
    return found;
}

std::vector<FileLocation> withPath(const std::vector<FileLocation>& files, const Blob& path) {
    for (const FileLocation& file : files) {
        if (file.path == path) return {file};
    }
    return {{&otherFile, path}};
}

bool isKindOfFile(const std::string& name) {
    for (std::size_t choice = 0; choice <= 8; ++choice) {
        if (lowerCase(directoryFileKind(choice).name) == lowerCase(name)) return true;
    }
    return false;
}

std::vector<FileLocation> DumpCommand::chosen(Invocation& call, CardAccess& card) const {
    const ApplicationPlace place = card.place();
    std::vector<FileLocation> files = locateApplicationFiles(card.files(), place);
    for (const FileLocation& other : optionalFiles(place)) files.push_back(other);
    if (file_.empty()) return files;
    const auto found = withName(files, file_);
    if (!found.empty()) return found;
    if (const auto path = pathNamed(file_, card.rootPath())) return withPath(files, *path);
    if (isKindOfFile(file_)) throw Failure("EF(ODF) names no " + file_, call.operation());
    throw UsageError("'" + file_ + "' is neither a file such as PrKDF nor a path such as 4401");
}

// ---- as JSON ----

Json numberOrNull(std::size_t number) { return number == 0 ? Json(nullptr) : Json(number); }

Json segmentJson(const Segment& segment) {
    Json json;
    json["kind"] = segmentName(segment.kind);
    json["record"] = numberOrNull(segment.slot);
    json["offset"] = segment.offset;
    json["length"] = segment.octets.size();
    json["hex"] = toHex(segment.octets);
    json["value"] = nullptr;
    json["notation"] = nullptr;
    json["isValid"] = nullptr;
    json["error"] = segment.error.empty() ? Json(nullptr) : Json(segment.error);
    if (!segment.value) return json;
    const ASN1::AbstractData value(segment.value->type(), segment.value->get());
    json["value"] = asnToJson(value);
    json["notation"] = valueText(value);
    json["isValid"] = value.isValid();
    return json;
}

Json errorJson(const std::optional<ErrorReport>& error) {
    if (!error) return nullptr;
    return {{"message", error->message}, {"operation", error->operation}, {"code", error->code}};
}

Json fileJson(const ApplicationFile& file) {
    const bool isRead = !file.error && !file.isRepeated;
    const bool isTransparent = isRead && !file.file.isLinear();
    Json json;
    json["name"] = file.kind->name.empty() ? Json(nullptr) : Json(file.kind->name);
    json["path"] = toHex(file.file.path);
    json["structure"] = isRead ? Json(structureName(file.file.info.structure)) : Json(nullptr);
    json["size"] = isTransparent ? Json(file.file.octets.size()) : Json(nullptr);
    json["isRepeated"] = file.isRepeated;
    json["error"] = errorJson(file.error);
    json["segments"] = Json::array();
    for (const Segment& segment : file.segments) json["segments"].push_back(segmentJson(segment));
    return json;
}

// ---- for people ----

constexpr std::size_t octetsOfLine = 32;

std::string hexLines(ASN1::View octets) {
    std::string lines;
    for (std::size_t at = 0; at < octets.size(); at += octetsOfLine) {
        lines += toHex(octets.subspan(at, std::min(octetsOfLine, octets.size() - at))) + '\n';
    }
    return lines;
}

std::string segmentText(const Segment& segment, const Style& style) {
    const bool isGood = segment.kind == Segment::Kind::record ||
                        segment.kind == Segment::Kind::gap ||
                        segment.kind == Segment::Kind::wrapper;
    const std::string title = segmentTitle(segment);
    std::string text = "  " + (isGood ? title : style.warning(title)) + '\n';
    const bool isPlainGap = segment.kind == Segment::Kind::gap && isUniform(segment);
    if (!isPlainGap) text += indented(style.dim(hexLines(segment.octets)), 4);
    if (!segment.error.empty()) text += indented(forTerminal(segment.error), 4);
    if (!segment.value) return text;
    const ASN1::AbstractData value(segment.value->type(), segment.value->get());
    text += indented(valueText(value), 4);
    if (!value.isValid())
        text += "    " + style.warning("breaks a size or range of its type") + '\n';
    return text;
}

std::string fileText(const ApplicationFile& file, const Style& style) {
    std::string title = style.heading(file.name());
    if (file.isRepeated) return title + "  named again\n";
    if (file.error) return title + "\n  " + style.error(file.error->line()) + '\n';
    title += fmt::format("  {}", structureName(file.file.info.structure));
    if (!file.file.isLinear()) title += fmt::format(", {} octets", file.file.octets.size());
    std::string text = title + '\n';
    for (const Segment& segment : file.segments) text += segmentText(segment, style);
    return text;
}

CLI::App* DumpCommand::declare(CLI::App& app) {
    CLI::App* dump = app.add_subcommand("dump", "prints elementary files record by record");
    dump->add_option("file", file_, "a file such as PrKDF, 4401 or 3F00/5015/4401")
        ->type_name("FILE");
    return dump;
}

ExitCode DumpCommand::run(Invocation& call) {
    CardAccess card(call, CardFolder::Mode::readOnly);
    logIn(call, card);
    Json files = Json::array();
    std::string text;
    for (const FileLocation& location : chosen(call, card)) {
        const ApplicationFile file = readApplicationFile(card.files(), location);
        if (file_.empty() && isAbsent(file)) continue;
        if (file.error && !file_.empty()) {
            throw Failure(file.name() + ": " + file.error->message, file.error->operation,
                          file.error->code);
        }
        if (call.options().json) {
            files.push_back(fileJson(file));
        } else {
            text += (text.empty() ? "" : "\n") + fileText(file, call.style());
        }
    }
    if (call.options().json) {
        call.printJson({{"rootPath", toHex(card.rootPath())}, {"files", std::move(files)}});
    } else {
        call.printText(text);
    }
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeDumpCommand() { return std::make_unique<DumpCommand>(); }

}  // namespace tovi
