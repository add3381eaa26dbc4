#include "tovi/card/CardFolder.h"

#include <system_error>
#include <utility>

#include "tovi/card/FileImage.h"

namespace tovi {
namespace {

using Kind = FileDescription::Kind;

constexpr const char* cardName = "CARD";
constexpr const char* notReadable = "card folder not readable";
constexpr const char* notWritable = "card folder not writable";
constexpr const char* inUse = "card folder in use";
constexpr const char* createOperation = "CardFolder::create";

void refuseIf(const std::string& reason, const char* message, const char* operation,
              const std::filesystem::path& folder) {
    if (!reason.empty()) throw CardFolderError(message, operation, folder.string() + "/" + reason);
}

ASN1::View octetsOf(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// What the folder keeps of a new file; throws where `contents` do not fit.
Blob imageOf(const FileDescription& file, const FileContents& contents, const std::string& where) {
    const bool transparent = file.kind == Kind::transparent;
    Blob image = transparent ? contents.octets : encodeRecords(contents.records);
    std::vector<Blob> decoded;
    std::string reason;
    if (transparent ? !contents.records.empty() : !contents.octets.empty())
        reason = transparent ? "found records, expected octets" : "found octets, expected records";
    else if (transparent && image.size() > file.size)
        reason = "found " + std::to_string(image.size()) + " octets, expected at most " +
                 std::to_string(file.size);
    else if (!transparent)
        reason = decodeRecords(image, file, decoded);
    if (!reason.empty())
        throw CardFolderError("invalid card description", createOperation, where + ": " + reason);
    return image;
}

/// The contents of every elementary file, by name.
std::map<std::string, Blob> imagesOf(const CardDescription& description,
                                     const std::map<std::string, FileContents>& contents) {
    std::map<std::string, Blob> images;
    for (const FileDescription& file : description.files()) {
        if (file.kind == Kind::df) continue;
        const std::string name = pathName(file.path);
        const auto given = contents.find(name);
        images[name] = given == contents.end() ? Blob() : imageOf(file, given->second, name);
    }
    for (const auto& [name, unused] : contents)
        if (!images.contains(name))
            throw CardFolderError("invalid card description", createOperation,
                                  name + ": expected an elementary file of that path");
    return images;
}

}  // namespace

CardFolder::CardFolder(const std::filesystem::path& folder, const Options& options)
    : mode_(options.mode) {
    constexpr const char* operation = "CardFolder::CardFolder";
    if (const std::string reason = files_.open(folder); !reason.empty())
        throw CardFolderError(notReadable, operation, reason);
    files_.setSync(options.sync);
    if (!files_.lock(mode_ == Mode::readOnly, options.patience))
        throw CardFolderError(inUse, operation, folder.string() + ": in use by somebody else");
    load(folder.string());
    card_.setStorage(this);
}

void CardFolder::load(const std::string& name) {
    constexpr const char* operation = "CardFolder::load";
    Blob octets;
    refuseIf(files_.read(cardName, CardDescription::maxTextSize, octets), notReadable, operation,
             name);
    const std::string_view text(reinterpret_cast<const char*>(octets.data()), octets.size());
    description_ = CardDescription::parse(text, name + "/" + cardName);
    for (const PinDescription& pin : description_.pins()) card_.add(pin);
    for (const FileDescription& description : description_.files()) {
        VirtualFile& file = card_.add(description);
        if (file.isFolder()) continue;
        const std::string fileName = pathName(description.path);
        Blob image;
        refuseIf(files_.read(fileName, largestImage(description), image), notReadable, operation,
                 name);
        if (file.isLinear()) {
            const std::string reason = decodeRecords(image, description, file.records);
            refuseIf(reason.empty() ? "" : fileName + ": " + reason, notReadable, operation, name);
        } else {
            image.resize(description.size);
            file.contents = std::move(image);
        }
    }
}

void CardFolder::create(const std::filesystem::path& folder, const CardDescription& description,
                        const std::map<std::string, FileContents>& contents) {
    const std::map<std::string, Blob> images = imagesOf(description, contents);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw CardFolderError(notWritable, createOperation,
                              folder.string() + ": " + error.message());
    FolderFiles files;
    if (const std::string reason = files.open(folder); !reason.empty())
        throw CardFolderError(notWritable, createOperation, reason);
    if (!files.lock(false, std::chrono::milliseconds(0)))
        throw CardFolderError(inUse, createOperation,
                              folder.string() + ": in use by somebody else");
    if (files.exists(cardName))
        throw CardFolderError("card folder exists", createOperation,
                              folder.string() + ": has a card already");
    for (const auto& [name, image] : images)
        refuseIf(files.replace(name, image), notWritable, createOperation, folder);
    refuseIf(files.replace(cardName, octetsOf(description.text())), notWritable, createOperation,
             folder);
}

void CardFolder::store(const std::string& name, ASN1::View contents) {
    std::string reason = mode_ == Mode::readOnly ? name + ": card folder opened for reading only"
                                                 : files_.replace(name, contents);
    if (reason.empty()) return;
    lastFailure_ = std::move(reason);
    throw CardFolderError(notWritable, "CardFolder::store", lastFailure_);
}

void CardFolder::storeContents(const VirtualFile& file, const Blob& contents) {
    store(pathName(file.description.path), contents);
}

void CardFolder::storeRecords(const VirtualFile& file, const std::vector<Blob>& records) {
    store(pathName(file.description.path), encodeRecords(records));
}

void CardFolder::storeTriesLeft(std::uint8_t reference, unsigned left) {
    if (mode_ == Mode::readOnly) return;
    CardDescription changed = description_;
    changed.setTriesLeft(reference, left);
    store(cardName, octetsOf(changed.text()));
    description_ = std::move(changed);
}

}  // namespace tovi
