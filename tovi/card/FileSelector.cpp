#include "tovi/card/FileSelector.h"

#include <algorithm>
#include <iterator>

#include "tovi/card/StatusWord.h"

namespace tovi {
namespace {

constexpr std::uint8_t masterFile[] = {0x3F, 0x00};
constexpr std::uint8_t currentFolder[] = {0x3F, 0xFF};

constexpr std::uint8_t byIdentifier = 0x00;
constexpr std::uint8_t fileBelowCurrent = 0x02;
constexpr std::uint8_t byName = 0x04;
constexpr std::uint8_t pathFromMasterFile = 0x08;
constexpr std::uint8_t pathFromCurrent = 0x09;

constexpr std::uint8_t fileControlInformation = 0x00;
constexpr std::uint8_t fileControlParameters = 0x04;
constexpr std::uint8_t noResponseData = 0x0C;

bool startsWith(ASN1::View path, ASN1::View step) {
    return path.size() >= step.size() && std::equal(step.begin(), step.end(), path.begin());
}

/// True for status words that complain about the form of the command rather than about the file.
bool refusesForm(std::uint16_t status) {
    switch (status) {
        case StatusWord::wrongLength:
        case StatusWord::wrongData:
        case StatusWord::functionNotSupported:
        case StatusWord::wrongParameters:
        case StatusWord::lengthAgainstParameters:
        case StatusWord::wrongOffset:
        case StatusWord::unknownInstruction:
            return true;
        default:
            return false;
    }
}

}  // namespace

const FileSelector::Form FileSelector::forms_[] = {
    {true, fileControlParameters},   {true, fileControlInformation}, {false, fileControlParameters},
    {false, fileControlInformation}, {true, noResponseData},         {false, noResponseData},
};

ResponseApdu FileSelector::selectApplication(const Blob& aid, std::uint8_t p2,
                                             const char* operation) {
    belowApplication_ = freshlySelected_ = false;
    ResponseApdu response = send(byName, p2, aid, operation);
    if (response.status == StatusWord::success) {
        aid_ = aid;
        belowApplication_ = freshlySelected_ = true;
    }
    return response;
}

ResponseApdu FileSelector::selectFile(ASN1::View path, const char* operation) {
    if (startsWith(path, masterFile)) {
        belowApplication_ = freshlySelected_ = false;
        return selectInAnyForm(path.subspan(2), true, operation);
    }
    if (startsWith(path, currentFolder) && path.size() > 2) path = path.subspan(2);
    return selectBelowApplication(path, operation);
}

ResponseApdu FileSelector::selectBelowApplication(ASN1::View steps, const char* operation) {
    const Blob aid = aid_;
    if (!belowApplication_ && !aid.empty()) selectApplication(aid, noResponseData, operation);
    const bool certain = freshlySelected_ || aid.empty();
    const auto attempt = [&] {
        // A path through another DF leaves that one current.
        freshlySelected_ = belowApplication_ = false;
        ResponseApdu response = selectInAnyForm(steps, false, operation);
        belowApplication_ = steps.size() == 2;
        return response;
    };
    ResponseApdu response = attempt();
    if (response.status != StatusWord::fileNotFound || certain) return response;
    // Somebody else who uses the card may have moved the current DF.
    selectApplication(aid, noResponseData, operation);
    return attempt();
}

ResponseApdu FileSelector::selectInAnyForm(ASN1::View steps, bool absolute, const char* operation) {
    ResponseApdu response;
    for (std::size_t form = form_; form < std::size(forms_); ++form) {
        const auto [wholePath, p2] = forms_[form];
        response = wholePath ? selectWhole(steps, absolute, p2, operation)
                             : selectStepwise(steps, absolute, p2, operation);
        if (response.status == StatusWord::success) form_ = form;
        if (!refusesForm(response.status)) break;
    }
    return response;
}

ResponseApdu FileSelector::selectWhole(ASN1::View steps, bool absolute, std::uint8_t p2,
                                       const char* operation) {
    if (absolute && steps.empty()) return send(byIdentifier, p2, masterFile, operation);
    if (absolute) return send(pathFromMasterFile, p2, steps, operation);
    return send(steps.size() == 2 ? fileBelowCurrent : pathFromCurrent, p2, steps, operation);
}

ResponseApdu FileSelector::selectStepwise(ASN1::View steps, bool absolute, std::uint8_t p2,
                                          const char* operation) {
    ResponseApdu response;
    response.status = StatusWord::success;
    if (absolute) response = send(byIdentifier, p2, masterFile, operation);
    for (; !steps.empty() && response.status == StatusWord::success; steps = steps.subspan(2))
        response = send(byIdentifier, p2, steps.first(2), operation);
    return response;
}

ResponseApdu FileSelector::send(std::uint8_t p1, std::uint8_t p2, ASN1::View data,
                                const char* operation) {
    CommandApdu command;
    command.ins = Instruction::select;
    command.p1 = p1;
    command.p2 = p2;
    command.data = Blob(data);
    command.expected = (p2 & noResponseData) == noResponseData ? 0 : CommandApdu::shortExpected;
    return exchange_.send(command, operation);
}

}  // namespace tovi
