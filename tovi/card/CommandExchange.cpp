#include "tovi/card/CommandExchange.h"

#include <algorithm>

#include "tovi/card/StatusWord.h"
#include "tovi/interfaces/Exception.h"

namespace tovi {
namespace {

std::size_t limited(std::size_t carried, std::size_t wanted) {
    return wanted == 0 ? carried : std::min(carried, wanted);
}

/// The number in the low octet of 61XX and 6CXX, where nought stands for 256.
std::size_t lowOctet(std::uint16_t status) {
    const std::size_t low = status & 0xFF;
    return low == 0 ? 256 : low;
}

}  // namespace

CommandExchange::CommandExchange(ICardChannel& channel, const CardCapabilities& capabilities)
    : channel_(channel),
      extended_(capabilities.extendedLength),
      chaining_(capabilities.commandChaining),
      maxRead_(limited(extended_ ? CommandApdu::extendedExpected : CommandApdu::shortExpected,
                       capabilities.maxRead)),
      maxWrite_(limited(extended_ || chaining_ ? CommandApdu::extendedData : CommandApdu::shortData,
                        capabilities.maxWrite)) {}

ResponseApdu CommandExchange::send(const CommandApdu& command, const char* operation) {
    const bool followsBrokenChain = chainIsOpen_;
    ResponseApdu response = sendWhole(command, operation);
    // The card waited for the rest of a chain, has now given it up, and performed nothing.
    if (followsBrokenChain && response.status == StatusWord::lastOfChainExpected)
        response = sendWhole(command, operation);
    return response;
}

ResponseApdu CommandExchange::sendWhole(const CommandApdu& command, const char* operation) {
    const bool isChain = command.data.size() > CommandApdu::shortData && !extended_;
    chainIsOpen_ = isChain;
    ResponseApdu response = isChain ? sendChain(command, operation) : sendOne(command, operation);
    chainIsOpen_ = false;
    return response;
}

ResponseApdu CommandExchange::sendChain(const CommandApdu& command, const char* operation) {
    CommandApdu part = command;
    ASN1::View rest = command.data;
    while (rest.size() > CommandApdu::shortData) {
        part.cla = command.cla | chainingBit;
        part.data = Blob(rest.first(CommandApdu::shortData));
        part.expected = 0;
        ResponseApdu response = transmit(part, operation);
        if (response.status != StatusWord::success) return response;
        rest = rest.subspan(CommandApdu::shortData);
    }
    part.cla = command.cla;
    part.data = Blob(rest);
    part.expected = command.expected;
    return sendOne(std::move(part), operation);
}

ResponseApdu CommandExchange::sendOne(CommandApdu command, const char* operation) {
    if (!extended_) command.expected = std::min(command.expected, CommandApdu::shortExpected);
    ResponseApdu whole = transmit(command, operation);
    if (StatusWord::kind(whole.status) == StatusWord::wrongExpectedLength) {
        command.expected = lowOctet(whole.status);
        whole = transmit(command, operation);
    }
    while (StatusWord::kind(whole.status) == StatusWord::moreData) {
        CommandApdu getResponse;
        getResponse.cla = command.cla;
        getResponse.ins = Instruction::getResponse;
        getResponse.expected = lowOctet(whole.status);
        ResponseApdu part = transmit(getResponse, operation);
        if (StatusWord::kind(part.status) == StatusWord::wrongExpectedLength) {
            getResponse.expected = lowOctet(part.status);
            part = transmit(getResponse, operation);
        }
        if (part.data.empty() && StatusWord::kind(part.status) == StatusWord::moreData)
            throw SmartcardException("malformed card response", operation);
        whole.data.append(part.data);
        whole.status = part.status;
        if (whole.data.size() > CommandApdu::extendedExpected)
            throw SmartcardException("card response too long", operation);
    }
    return whole;
}

ResponseApdu CommandExchange::transmit(const CommandApdu& command, const char* operation) {
    const Blob octets = channel_.transmit(command.encode());
    ResponseApdu response;
    if (!ResponseApdu::parse(octets, response))
        throw SmartcardException("incomplete card response", operation);
    if (response.data.size() > CommandApdu::extendedExpected)
        throw SmartcardException("card response too long", operation);
    return response;
}

}  // namespace tovi
