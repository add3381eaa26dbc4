#include "tools/ObjectText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>

#include "tools/FieldNames.h"
#include "tools/Text.h"
#include "tovi/interfaces/PKCS11.h"

namespace tovi {
namespace {

using Cells = std::vector<std::string>;

std::string numberText(std::uint64_t number, std::uint64_t none) {
    return number == none ? "" : std::to_string(number);
}

/// "always-authenticate" for CKA_ALWAYS_AUTHENTICATE.
std::string shortName(unsigned long attribute) {
    std::string name = attributeName(attribute).substr(4);
    for (char& letter : name) {
        letter = letter == '_' ? '-' : static_cast<char>(std::tolower(letter));
    }
    return name;
}

/// What the attributes allow the key to do.
std::string usageText(const PKCS11Attrs& attributes) {
    Cells names;
    for (const PKCS11Attrs::Param& param : attributes.Params()) {
        const bool isCommon = param.attribute == CKA_PRIVATE || param.attribute == CKA_MODIFIABLE;
        if (!isCommon && attributes.GetParam(param.attribute) == 1) {
            names.push_back(shortName(param.attribute));
        }
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

std::string flagsText(const PKCS15Object& object, bool isDecoded) {
    if (!isDecoded) return "not decoded";
    Cells flags;
    if (object.isPrivate) flags.push_back("private");
    if (object.isModifiable) flags.push_back("modifiable");
    if (object.userConsent != noUserConsent) {
        flags.push_back(fmt::format("consent {}", object.userConsent));
    }
    if (object.sharesFile) flags.push_back("shared file");
    return fmt::format("{}", fmt::join(flags, ", "));
}

/// "RSA 2048", "EC".
std::string keyText(const PKCS15Object& object, std::uint64_t keyType) {
    const auto name = keyTypeName(keyType);
    if (!name) return "";
    return object.modulusLength == noModulusLength
               ? std::string(*name)
               : fmt::format("{} {}", *name, object.modulusLength);
}

// The cells of a kind between the label and what all objects have.
template <class Info>
Cells cellsOf(const PKCS15ObjectInfo<Info>& info) {
    if constexpr (requires { info.keyType; }) {
        return {keyText(info, info.keyType), toHex(info.id), usageText(info)};
    } else if constexpr (requires { info.algorithmName; }) {
        return {toUtf8(info.algorithmName), numberText(info.keyLength, 0), toHex(info.id),
                usageText(info)};
    } else if constexpr (requires { info.trustedUsage; }) {
        const bool logon =
            info.trustedUsage != noTrustedUsage && (info.trustedUsage & trustedUsageLogon) != 0;
        return {toHex(info.id), toHex(info.serialNumber), logon ? "logon" : ""};
    } else if constexpr (requires { info.applicationName; }) {
        return {toUtf8(info.applicationName)};
    }
}

template <class Info>
Cells headingsOf(const PKCS15ObjectInfo<Info>& info) {
    if constexpr (requires { info.keyType; }) {
        return {"key", "id", "usage"};
    } else if constexpr (requires { info.algorithmName; }) {
        return {"algorithm", "octets", "id", "usage"};
    } else if constexpr (requires { info.trustedUsage; }) {
        return {"id", "serial number", "use"};
    } else if constexpr (requires { info.applicationName; }) {
        return {"application"};
    }
}

Cells headingsOf(const PKCS15ObjectInfo<AuthInfo>&) { return {"type", "own id", "details"}; }

std::string detailsOf(const AuthInfo& info) {
    if (info.type == AuthType::pin) {
        return fmt::format("{}", fmt::join(pinFlagNames(info.pinFlags), ", "));
    }
    if (info.type == AuthType::biometric) {
        return std::string(biometricTypeName(info.bioType).value_or(""));
    }
    return info.type == AuthType::authKey ? "key " + toHex(info.authKeyId) : toHex(info.cha);
}

Cells cellsOf(const PKCS15ObjectInfo<AuthInfo>& info) {
    const Json type = toJson(info, {})["type"];
    if (type.is_null()) return {"", "", ""};
    return {type.get<std::string>(), toHex(info.authObjectId), detailsOf(info)};
}

void append(Cells& cells, const Cells& more) {
    cells.insert(cells.end(), more.begin(), more.end());
}

template <class Info>
Cells rowOf(const PKCS15ObjectInfo<Info>& info, bool isDecoded) {
    Cells cells{numberText(info.recordNumber, noRecord), toUtf8(info.label)};
    append(cells, cellsOf(info));
    append(cells, {numberText(info.reference, noReference), pathText(info.path), toHex(info.authId),
                   flagsText(info, isDecoded)});
    return cells;
}

template <class Info, class Raw>
ObjectTable tableOf(const ListKind& kind, const PKCS15Container::InfoList<Info>& infos,
                    const Raw& raws) {
    ObjectTable table{&kind, {"record", "label"}, {}};
    if (infos.empty()) return table;
    append(table.headings, headingsOf(infos.front()));
    append(table.headings, {"reference", "file", "auth id", "flags"});
    for (std::size_t i = 0; i < infos.size(); ++i) {
        table.rows.push_back(rowOf(infos[i], raws[i].isDecoded));
    }
    return table;
}

ObjectTable containerTable(const PKCS15Container& model) {
    ObjectTable table{&keyContainers,
                      {"record", "label", "exchange key", "exchange certificate", "signature key",
                       "signature certificate", "use"},
                      {}};
    for (const auto& info : model.getContainerInfos()) {
        table.rows.push_back(
            {numberText(info.recordNumber, noRecord), toUtf8(info.label),
             numberText(info.exchangeKeyRecord, 0), numberText(info.exchangeCertificateRecord, 0),
             numberText(info.signatureKeyRecord, 0), numberText(info.signatureCertificateRecord, 0),
             info.logonCertificate ? "logon" : ""});
    }
    return table;
}

std::string tableText(const ObjectTable& objects, const Style& style) {
    if (objects.rows.empty()) return "";
    TextTable table(objects.headings);
    for (const Cells& row : objects.rows) table.add(row);
    const std::string title = fmt::format("{} ({})", objects.kind->title, objects.rows.size());
    return fmt::format("\n{}\n{}", style.heading(title), table.text(style));
}

bool isExact(const Json& label, const Json& labelHex) {
    const auto& text = label.get_ref<const std::string&>();
    return toHex(Blob(text.begin(), text.end())) == labelHex;
}

/// An element of a list or member of an object in a text of several of them.
std::string memberText(const std::string& name, const Json& value) {
    if (value.is_boolean()) return value.get<bool>() ? name : "";
    const std::string text = jsonText(value);
    return text.empty() ? "" : name + " " + text;
}

}  // namespace

std::string jsonText(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (value.is_null()) return "";
    Cells parts;
    if (value.is_array()) {
        for (const Json& element : value) {
            const std::string text = jsonText(element);
            parts.push_back(element.is_object() ? "(" + text + ")" : text);
        }
    } else if (value.is_object()) {
        for (const auto& [name, member] : value.items()) parts.push_back(memberText(name, member));
    } else {
        return value.dump();
    }
    parts.erase(std::remove(parts.begin(), parts.end(), ""), parts.end());
    return fmt::format("{}", fmt::join(parts, ", "));
}

std::string pathText(const PKCS15Path& path) {
    if (path.path.empty()) return "";
    const std::string file = toHex(path.path);
    if (path.index == 0 && path.length == 0) return file;
    return fmt::format("{}[{}+{}]", file, path.index, path.length);
}

std::string tokenInfoText(const PKCS15TokenInfo& info, const Style& style) {
    return fieldsText(toJson(info), style);
}

std::string fieldsText(const Json& object, const Style& style) {
    FieldList fields;
    for (const auto& [name, value] : object.items()) {
        // The label in hex says more only where the label is not all UTF-8.
        if (name == "labelHex" && isExact(object["label"], value)) continue;
        fields.add(name, jsonText(value));
    }
    return fields.text(style);
}

std::vector<ObjectTable> objectTables(const PKCS15Container& model) {
    std::vector<ObjectTable> tables;
    forEachList(model, [&](const ListKind& kind, const auto& infos, const auto& raws) {
        if (&kind == &authObjects) tables.push_back(containerTable(model));
        tables.push_back(tableOf(kind, infos, raws));
    });
    return tables;
}

std::string modelText(const PKCS15Container& model, const Style& style) {
    std::string text = style.heading("PKCS#15 application " + toHex(model.getRootPath())) + "\n" +
                       tokenInfoText(model.getTokenInfo(), style);
    for (const ObjectTable& table : objectTables(model)) text += tableText(table, style);
    return text;
}

}  // namespace tovi
