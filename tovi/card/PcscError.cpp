#include "tovi/card/PcscError.h"

#include <cstdio>

#include "tovi/card/IPcscService.h"

namespace tovi {
namespace {

const char* messageOf(std::uint32_t code) {
    switch (code) {
        case PcscCode::noService:
        case PcscCode::serviceStopped:
        case PcscCode::communication:
            return "PC/SC service not running";
        case PcscCode::noReaders:
            return "no PC/SC reader";
        case PcscCode::unknownReader:
        case PcscCode::readerUnavailable:
            return "reader not found";
        case PcscCode::noCard:
            return "no card in the reader";
        case PcscCode::sharingViolation:
            return "card used exclusively by another program";
        case PcscCode::unsupportedCard:
        case PcscCode::unresponsiveCard:
        case PcscCode::unpoweredCard:
            return "card does not answer";
        case PcscCode::protocolMismatch:
            return "card protocol not supported";
        case PcscCode::notTransacted:
        case PcscCode::removedCard:
            return "card removed";
        case PcscCode::resetCard:
            return "card reset by another program";
        default:
            return "PC/SC failure";
    }
}

}  // namespace

PcscError PcscError::of(std::uint32_t code, const char* operation, const std::string& subject) {
    char number[32];
    std::snprintf(number, sizeof number, "PC/SC code 0x%08lX", static_cast<unsigned long>(code));
    return PcscError(messageOf(code), operation,
                     subject.empty() ? number : subject + ", " + number);
}

}  // namespace tovi
