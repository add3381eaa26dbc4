#include "tovi/card/CardDescription.h"

#include <variant>

#include "tovi/card/CardLine.h"

namespace tovi {
namespace {

using Kind = FileDescription::Kind;

constexpr const char* message = "invalid card description";
constexpr std::size_t maxAid = 16;
constexpr std::size_t maxPinValue = 255;
constexpr std::uint8_t maxSfi = 30;

bool isLinear(const FileDescription& file) {
    return file.kind == Kind::linearFixed || file.kind == Kind::linearVariable;
}

std::size_t contentSize(const FileDescription& file) {
    return isLinear(file) ? file.size * file.recordSize : file.size;
}

Blob parentOf(const Blob& path) { return Blob(ASN1::View(path).first(path.size() - 2)); }

/// Identifiers that stand for something else than a file below the master file (ISO/IEC
/// 7816-4).
bool isReserved(ASN1::View fid) {
    const int number = fid[0] << 8 | fid[1];
    return number == 0x3F00 || number == 0x3FFF || number == 0xFFFF;
}

std::string expected(std::string_view what) { return "expected " + std::string(what); }

std::string reasonAgainstPath(ASN1::View path) {
    if (path.empty() || path.size() % 2 != 0 || path[0] != 0x3F || path[1] != 0x00)
        return expected("a path that begins with 3F00");
    if (path.size() / 2 > CardDescription::maxSteps)
        return expected("a path of at most " + std::to_string(CardDescription::maxSteps) +
                        " steps");
    for (ASN1::View rest = path.subspan(2); !rest.empty(); rest = rest.subspan(2))
        if (isReserved(rest)) return expected("no 3F00, 3FFF or FFFF below the master file");
    return {};
}

std::string reasonAgainstSizes(const FileDescription& file) {
    if (file.kind == Kind::df)
        return file.size == 0 && file.recordSize == 0 ? "" : expected("no size for a df");
    if (isLinear(file)) {
        if (file.size > CardDescription::maxRecords)
            return expected("at most " + std::to_string(CardDescription::maxRecords) + " records");
        if (file.recordSize == 0 || file.recordSize > CardDescription::maxRecordSize)
            return expected("record= and 1 to " + std::to_string(CardDescription::maxRecordSize) +
                            " octets");
    } else if (file.recordSize != 0) {
        return expected("no record size for a transparent file");
    }
    if (contentSize(file) > CardDescription::maxFileSize)
        return expected("a file of at most " + std::to_string(CardDescription::maxFileSize) +
                        " octets");
    return {};
}

std::string reasonAgainstNames(const FileDescription& file) {
    if (file.kind != Kind::df && !file.aid.empty()) return expected("an AID for a df only");
    if (file.aid.size() > maxAid) return expected("an AID of at most 16 octets");
    if (!file.sfi) return {};
    if (file.kind == Kind::df) return expected("a short identifier for an elementary file only");
    if (*file.sfi == 0 || *file.sfi > maxSfi) return expected("a short identifier of 1 to 30");
    return {};
}

}  // namespace

std::string pathName(ASN1::View path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string name;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (i != 0 && i % 2 == 0) name += '/';
        name += digits[path[i] >> 4];
        name += digits[path[i] & 0x0F];
    }
    return name;
}

CardDescription CardDescription::parse(std::string_view text, std::string_view fileName) {
    CardDescription card;
    std::size_t number = 0;
    const auto refuseIf = [&](const std::string& reason) {
        if (reason.empty()) return;
        throw CardFolderError(message, "CardDescription::parse",
                              std::string(fileName) + ":" + std::to_string(number) + ": " + reason);
    };
    while (!text.empty()) {
        ++number;
        if (number == 1 && text.size() > maxTextSize)
            refuseIf(expected("a text of at most " + std::to_string(maxTextSize) + " octets"));
        const std::size_t end = text.find('\n');
        const std::string_view spelled = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        CardLine line;
        refuseIf(parseCardLine(spelled, line));
        if (const auto* file = std::get_if<FileDescription>(&line)) {
            refuseIf(card.reasonAgainst(*file));
            card.accept(*file, std::string(spelled));
        } else if (const auto* pin = std::get_if<PinDescription>(&line)) {
            refuseIf(card.reasonAgainst(*pin));
            card.accept(*pin, std::string(spelled));
        } else {
            card.lines_.emplace_back(spelled);
        }
    }
    return card;
}

std::string CardDescription::text() const {
    std::string text;
    for (const std::string& line : lines_) text.append(line).append("\n");
    return text;
}

void CardDescription::addComment(std::string_view comment) {
    std::string line = "# " + std::string(comment);
    for (char& c : line)
        if (c == '\n') c = ' ';
    lines_.push_back(std::move(line));
}

void CardDescription::add(const FileDescription& file) {
    const std::string reason = reasonAgainst(file);
    if (!reason.empty())
        throw CardFolderError(message, "CardDescription::add", pathName(file.path) + ": " + reason);
    accept(file, formatCardLine(file));
}

void CardDescription::add(const PinDescription& pin) {
    const std::string reason = reasonAgainst(pin);
    if (!reason.empty())
        throw CardFolderError(message, "CardDescription::add",
                              "pin " + std::to_string(pin.reference) + ": " + reason);
    accept(pin, formatCardLine(pin));
}

std::string CardDescription::reasonAgainst(const FileDescription& file) const {
    for (const std::string& reason :
         {reasonAgainstPath(file.path), reasonAgainstSizes(file), reasonAgainstNames(file)})
        if (!reason.empty()) return reason;
    if (files_.size() == maxFiles)
        return expected("at most " + std::to_string(maxFiles) + " files");
    if (contentSize(file) > maxCardSize - cardSize_)
        return expected("a card of at most " + std::to_string(maxCardSize) + " octets");
    return reasonAgainstPlace(file);
}

std::string CardDescription::reasonAgainstPlace(const FileDescription& file) const {
    if (!file.aid.empty() && aids_.contains(file.aid)) return expected("each AID once");
    if (file.path.size() == 2) {
        if (file.kind != Kind::df) return expected("df for the master file");
        return masterFileNamed_ ? expected("each path once") : "";
    }
    const Blob parent = parentOf(file.path);
    const auto folder = kinds_.find(parent);
    if (folder == kinds_.end()) return expected("a line for " + pathName(parent) + " above");
    if (folder->second != Kind::df) return expected(pathName(parent) + " to be a df");
    if (kinds_.contains(file.path)) return expected("each path once");
    if (file.sfi && sfis_.contains({parent, *file.sfi}))
        return expected("each short identifier once in a df");
    return {};
}

std::string CardDescription::reasonAgainst(const PinDescription& pin) const {
    if (pin.value.empty() || pin.value.size() > maxPinValue)
        return expected("a value of 1 to 255 octets");
    if (pin.tries == 0 || pin.tries > maxTries) return expected("1 to 15 tries");
    if (pin.left > pin.tries) return expected("no more tries left than there are");
    for (const PinDescription& other : pins_)
        if (other.reference == pin.reference) return expected("each PIN reference once");
    return {};
}

void CardDescription::accept(const FileDescription& file, std::string line) {
    lines_.push_back(std::move(line));
    files_.push_back(file);
    cardSize_ += contentSize(file);
    if (!file.aid.empty()) aids_.insert(file.aid);
    if (file.path.size() == 2) {
        masterFileNamed_ = true;
        return;
    }
    kinds_[file.path] = file.kind;
    if (file.sfi) sfis_.insert({parentOf(file.path), *file.sfi});
}

void CardDescription::accept(const PinDescription& pin, std::string line) {
    pinLines_.push_back(lines_.size());
    lines_.push_back(std::move(line));
    pins_.push_back(pin);
}

void CardDescription::setTriesLeft(std::uint8_t reference, unsigned left) {
    for (std::size_t i = 0; i < pins_.size(); ++i) {
        if (pins_[i].reference != reference) continue;
        pins_[i].left = left;
        std::string& line = lines_[pinLines_[i]];
        const bool returned = line.ends_with('\r');  // as the other lines of that text
        line = formatCardLine(pins_[i]) + (returned ? "\r" : "");
    }
}

}  // namespace tovi
