#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "tools/Command.h"
#include "tools/Login.h"
#include "tools/Model.h"
#include "tools/ObjectName.h"
#include "tools/OptionChecks.h"
#include "tools/Paths.h"
#include "tools/StoredValue.h"
#include "tools/Text.h"
#include "tools/ValueFile.h"
#include "tools/WholeFile.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/pkcs15/PKCS15.h"
#include "tovi/platform/TlvHeader.h"

namespace tovi {
namespace {

/// `tovi export RECORD`: the value of an object, such as the octets of a certificate.
class ExportCommand final : public Command {
public:
    CLI::App* declare(CLI::App& app) override;
    ExitCode run(Invocation& call) override;

private:
    void checkDestination(Invocation& call) const;
    void print(Invocation& call, std::uint64_t record, const StoredValue& place,
               const Blob& value) const;

    std::string object_, file_;
    bool der_ = false;
};

/// The object of the command line, as far as exporting needs it.
struct Exported {
    std::string name;  ///< "certificate 7"
    Blob authId;
    StoredValue value;
};

template <class Info, class Raw>
Exported exported(const ListKind& kind, const Info& info, const Raw& raw) {
    Exported object{nameOf(kind, info), info.authId, {.kind = StoredValue::Kind::unknown}};
    if (raw.value != nullptr) object.value = storedValueOf(*raw.value);
    return object;
}

Exported findExported(const PKCS15Container& model, std::uint64_t record) {
    std::optional<Exported> found;
    forEachList(model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        for (std::size_t i = 0; i < infos.size() && !found; ++i) {
            if (infos[i].recordNumber == record) found = exported(kind, infos[i], raws[i]);
        }
    });
    if (found) return *found;
    const auto& rows = model.getFATRecords();
    // TokenInfo and key containers have rows too.
    const bool isFree = record >= rows.size() || rows[record].objectType == freeRow;
    if (isFree) model.getPrivateKeyInfo(static_cast<unsigned long>(record));  // says why
    return {fmt::format("record {}", record), {}, {}};
}

/// "PIN auth:1 'Card PIN'", or why nobody knows who guards the object.
std::string guardOf(const PKCS15Container& model, const Blob& authId) {
    if (authId.empty()) return "its record names no PIN";
    const auto& infos = model.getAuthInfos();
    for (const auto& info : infos) {
        if (info.authObjectId != authId) continue;
        const std::string kind = info.type == AuthType::pin ? "PIN" : authObjects.noun;
        const std::string reference =
            info.reference == noReference ? "" : fmt::format(" auth:{}", info.reference);
        return fmt::format("{}{} '{}' (authId {}) guards it", kind, reference, toUtf8(info.label),
                           toHex(authId));
    }
    return fmt::format("its authId {} names no authentication object", toHex(authId));
}

bool wantsAuthentication(std::int64_t code) {
    // Security status not satisfied, method blocked, conditions of use not satisfied.
    return code == statusWordCode + 0x6982 || code == statusWordCode + 0x6983 ||
           code == statusWordCode + 0x6985;
}

Blob readFromFile(CardAccess& card, const PKCS15Container& model, const Exported& object,
                  const std::string& operation) {
    const StoredValue& place = object.value;
    const std::string where = fmt::format("{}: value file {}", object.name, toHex(place.path));
    if (place.path.empty() || place.path.size() % 2 != 0) {
        throw Failure(where + ": that path names no file", operation);
    }
    try {
        return readValueFile(card.files(), absolutePath(card.rootPath(), place.path),
                             {place.index, place.length});
    } catch (const ValueError& error) {
        throw Failure(where + ": " + error.what(), operation);
    } catch (const SmartcardException& exception) {
        const ErrorReport report = ErrorReport::of(exception);
        const std::string guard =
            wantsAuthentication(report.code) ? "; " + guardOf(model, object.authId) : std::string();
        throw Failure(where + ": " + report.message + guard, report.operation, report.code);
    }
}

Blob valueOf(CardAccess& card, const PKCS15Container& model, const Exported& object,
             const std::string& operation) {
    const auto refuse = [&](const char* reason) {
        throw Failure(object.name + ": " + reason, operation);
    };
    switch (object.value.kind) {
        case StoredValue::Kind::file:
            return readFromFile(card, model, object, operation);
        case StoredValue::Kind::inRecord:
            return object.value.octets;
        case StoredValue::Kind::none:
            refuse("has no value");
            break;
        case StoredValue::Kind::url:
            refuse("its value lies at a URL, not on the card");
            break;
        case StoredValue::Kind::enveloped:
            refuse("its value is enciphered");
            break;
        case StoredValue::Kind::unknown:
            refuse("its record does not tell where the value lies");
            break;
    }
    return {};
}

/// The first data object of the value, without what stands behind it.
Blob firstElement(const Blob& value, const std::string& name, const std::string& operation) {
    const TlvHeader header = readTlvHeader(value);
    const bool begins = !value.empty() && !isPadding(value[0]);
    if (!begins || header.state != TlvHeader::State::complete || header.total() > value.size()) {
        throw Failure(name + ": the value does not begin with a whole DER element", operation);
    }
    return Blob(ASN1::View(value).first(static_cast<std::size_t>(header.total())));
}

std::string_view asText(const Blob& octets) {
    return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

CLI::App* ExportCommand::declare(CLI::App& app) {
    CLI::App* command = app.add_subcommand("export", "writes the value of an object, as it is");
    command->add_option("object", object_, "a record number")->required()->type_name("RECORD");
    command->add_option("-o,--output", file_, "the file to write, instead of standard output")
        ->type_name("FILE")
        ->check(checkedNotEmpty);
    command->add_flag("--der", der_, "only the first DER element, without padding behind it");
    return command;
}

void ExportCommand::checkDestination(Invocation& call) const {
    const bool isBinary = file_.empty() && !call.options().json;
    if (isBinary && call.console().outIsTerminal) {
        throw UsageError("the value is binary: name a file with -o, or send the output elsewhere");
    }
}

void ExportCommand::print(Invocation& call, std::uint64_t record, const StoredValue& place,
                          const Blob& value) const {
    const bool isInFile = place.kind == StoredValue::Kind::file;
    if (call.options().json) {
        Json json;
        json["recordNumber"] = record;
        json["path"] = isInFile ? Json(toHex(place.path)) : Json(nullptr);
        json["index"] = isInFile ? Json(place.index.value_or(0)) : Json(nullptr);
        json["length"] = value.size();
        json["value"] = toHex(value);
        call.printJson(json);
    } else if (file_.empty()) {
        call.printText(asText(value));
    } else if (!call.options().quiet) {
        call.printText(fmt::format("wrote {} octets to {}\n", value.size(), forTerminal(file_)));
    }
}

ExitCode ExportCommand::run(Invocation& call) {
    const ObjectName name = parseObjectName(object_);
    if (name.auth) throw UsageError("an authentication object has no value");
    checkDestination(call);
    CardAccess card(call, CardFolder::Mode::readOnly);
    const ContainerPointer model = readModel(call, card, name.record);
    const Exported object = findExported(*model, name.record);
    Blob value = valueOf(card, *model, object, call.operation());
    if (der_) value = firstElement(value, object.name, call.operation());
    call.checkInterrupt();
    if (!file_.empty()) writeWholeFile(file_, asText(value), call.operation());
    print(call, name.record, object.value, value);
    return ExitCode::done;
}

}  // namespace

std::unique_ptr<Command> makeExportCommand() { return std::make_unique<ExportCommand>(); }

}  // namespace tovi
