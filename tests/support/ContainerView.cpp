#include "tests/support/ContainerView.h"

#include "tests/support/Objects.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {

namespace {

template <class Info>
ObjectView viewOf(const Info& info) {
    ObjectView view{info.recordNumber, info.label, {}, info.isPrivate, fid16(info)};
    if constexpr (requires { info.id; }) view.name = info.id;
    if constexpr (requires { info.applicationName; }) view.name = info.applicationName;
    if constexpr (requires { info.authObjectId; }) view.name = info.authObjectId;
    return view;
}

template <class Raw>
Blob encodingOf(const Raw& raw) {
    return raw.value ? ASN1::encode(*raw.value) : Blob();
}

Directory directory(unsigned kind) { return static_cast<Directory>(kind); }

std::string nameOf(unsigned kind) { return "directory " + std::to_string(kind); }

/// Whether `lookup` refuses, as it does for what is not there.
template <class Lookup>
bool refuses(Lookup lookup) {
    try {
        lookup();
    } catch (const SmartcardException&) {
        return true;
    }
    return false;
}

/// Looks at the objects of a container and counts the rows that name one.
class Examination {
public:
    explicit Examination(const PKCS15Container& container) : container_(container) {
        for (unsigned kind = 0; kind < directoryCount; ++kind) examineDirectory(kind);
        for (const auto& info : container.getContainerInfos())
            examine(info, containerObject, "key container");
        examineRest();
    }

    const std::string& contradiction() const { return contradiction_; }

private:
    void note(const std::string& what) {
        if (contradiction_.empty()) contradiction_ = what;
    }

    void examineDirectory(unsigned kind) {
        lookAt(container_, directory(kind), [&](const auto& infos, const auto& raws) {
            if (infos.size() != raws.size()) note(nameOf(kind) + ": lists are out of step");
            for (const auto& info : infos)
                examine(info, objectTypeOf(directory(kind)), nameOf(kind));
        });
    }

    void examine(const PKCS15ObjectInfo<AuthInfo>& info, std::uint8_t, const std::string& where) {
        if (info.recordNumber != noRecord) note(where + ": an authentication object has a row");
        if (info.reference > 0xFF) return;
        const auto reference = static_cast<unsigned char>(info.reference);
        if (refuses([&] {
                if (ObjectKind<AuthInfo>::get(container_, reference).reference != info.reference)
                    note(where + ": another reference was looked up");
            }))
            note(where + ": a lookup does not answer");
    }

    template <class InfoType>
    void examine(const PKCS15ObjectInfo<InfoType>& info, std::uint8_t type,
                 const std::string& where) {
        const auto& rows = container_.getFATRecords();
        if (info.recordNumber >= rows.size()) return note(where + ": an object without row");
        ++named_;
        const auto number = static_cast<unsigned long>(info.recordNumber);
        const FATInfo& row = rows[number];
        const bool isRecognised = row.objectType != unrecognisedObjectType;
        const auto low = static_cast<std::uint16_t>(number);
        const bool isOwn = (!isRecognised || row.objectType == type) && row.isPrivate <= 1 &&
                           row.indexA == low && row.indexB == low;
        if (!isOwn) note(where + ": a row of another object");
        if (refuses([&] {
                if (&ObjectKind<InfoType>::get(container_, number) != &info)
                    note(where + ": another object was looked up");
            }) == isRecognised)
            note(where + ": a lookup does not answer");
    }

    void examineRest() {
        const auto& rows = container_.getFATRecords();
        std::size_t used = 0;
        for (const FATInfo& row : rows)
            if (row.objectType == freeRow)
                used += row == FATInfo() ? 0u : 1u;
            else if (row.objectType != tokenInfoObject)
                ++used;
        if (used != named_) note("the table has a row that names nothing");
        const auto beyond = static_cast<unsigned long>(rows.size());
        if (!refuses([&] { container_.getDataInfo(beyond); })) note("a lookup behind the table");
    }

    const PKCS15Container& container_;
    std::string contradiction_;
    std::size_t named_ = 0;
};

std::string text(const ObjectView& view) {
    return std::to_string(view.recordNumber) + " \"" +
           std::string(view.label.begin(), view.label.end()) + "\" \"" +
           std::string(view.name.begin(), view.name.end()) + "\"" +
           (view.isPrivate ? " private" : "") + " " + std::to_string(view.fid);
}

std::string text(const Blob& octets) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string hex;
    for (const std::uint8_t octet : octets) {
        hex += digits[octet >> 4];
        hex += digits[octet & 15];
    }
    return hex.empty() ? "nothing" : hex;
}

std::string text(const FATInfo& row) {
    return std::to_string(row.objectType) + "/" + std::to_string(row.isPrivate) + "/" +
           std::to_string(row.indexA) + "/" + std::to_string(row.indexB);
}

template <class Value>
std::string difference(const std::string& where, const std::vector<Value>& found,
                       const std::vector<Value>& expected) {
    for (std::size_t i = 0; i < found.size() && i < expected.size(); ++i)
        if (!(found[i] == expected[i]))
            return where + "[" + std::to_string(i) + "]: found " + text(found[i]) + ", expected " +
                   text(expected[i]);
    if (found.size() == expected.size()) return {};
    return where + ": found " + std::to_string(found.size()) + ", expected " +
           std::to_string(expected.size());
}

std::string difference(const std::string& where, const Blob& found, const Blob& expected) {
    if (found == expected) return {};
    return where + ": found " + text(found) + ", expected " + text(expected);
}

}  // namespace

ContainerView viewOf(const PKCS15Container& container) {
    ContainerView view;
    for (unsigned kind = 0; kind < directoryCount; ++kind)
        lookAt(container, directory(kind), [&](const auto& infos, const auto& raws) {
            for (const auto& info : infos) view.directories[kind].objects.push_back(viewOf(info));
            for (const auto& raw : raws) view.directories[kind].records.push_back(encodingOf(raw));
        });
    for (const auto& info : container.getContainerInfos())
        view.containers.push_back({info.recordNumber, info.label, {}, info.isPrivate});
    view.rows = container.getFATRecords();
    if (!container.getRawTokenInfos().empty())
        view.tokenInfo = encodingOf(container.getRawTokenInfos().front());
    view.tokenLabel = container.getTokenInfo().info.label;
    return view;
}

std::string difference(const ContainerView& found, const ContainerView& expected) {
    if (found == expected) return {};
    std::string text = recordDifference(found, expected);
    for (unsigned kind = 0; kind < directoryCount && text.empty(); ++kind)
        text = difference(nameOf(kind) + ": info", found.directories[kind].objects,
                          expected.directories[kind].objects);
    if (text.empty()) text = difference("key container", found.containers, expected.containers);
    if (text.empty()) text = difference("row", found.rows, expected.rows);
    if (text.empty()) text = difference("token label", found.tokenLabel, expected.tokenLabel);
    return text;
}

std::string recordDifference(const ContainerView& found, const ContainerView& expected) {
    std::string text = difference("TokenInfo", found.tokenInfo, expected.tokenInfo);
    for (unsigned kind = 0; kind < directoryCount && text.empty(); ++kind)
        text = difference(nameOf(kind) + ": record", found.directories[kind].records,
                          expected.directories[kind].records);
    return text;
}

std::string contradiction(const PKCS15Container& container) {
    return Examination(container).contradiction();
}

}  // namespace tovi::test
