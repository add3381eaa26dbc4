#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/TokenInfo.h"

namespace tovi {

namespace {

constexpr std::uint8_t defaultLabel[] = {'P', 'K', 'C', 'S', '#', '1', '5',
                                         ' ', 'T', 'o', 'k', 'e', 'n'};

enum TokenFlag : unsigned { readonlyBit, loginRequiredBit, prnGenerationBit, eidCompliantBit };

/// Each arc of the identifier as one octet: arcs above 255 keep their low 8 bits.
Blob arcOctets(const ASN1::OBJECT_IDENTIFIER& identifier) {
    Blob octets;
    for (const auto arc : identifier.arcs()) octets.push_back(static_cast<std::uint8_t>(arc));
    return octets;
}

void fillAlgorithm(PKCS15AlgorithmInfo& row, const PKCS15::AlgorithmInfo& entry) {
    row.algorithm = entry.algorithm.toUInt64();
    if (entry.algId) row.algId = arcOctets(*entry.algId);
    for (unsigned bit = 0; bit < row.supportedOperations.size(); ++bit)
        row.supportedOperations[bit] = entry.supportedOperations.test(bit);
}

}  // namespace

void PKCS15Container::initTokenInfo() {
    constexpr const char* operation = "PKCS15Container::initTokenInfo";
    if (rawTokenInfos.empty() || !rawTokenInfos.front().value)
        throw SmartcardException("invalid TokenInfo", operation);
    if (newFATRecord(tokenInfoObject, false) != 0)
        throw SmartcardException("TokenInfo must be record[0]", operation);

    const PKCS15::TokenInfo& value = *rawTokenInfos.front().value;
    if (value.label)
        tokenInfo.info.label = *value.label;
    else
        tokenInfo.info.label.assign(ASN1::View(defaultLabel));
    tokenInfo.info.serialNumber = value.serialNumber;
    tokenInfo.info.tokenAux1 = 0xFF;
    tokenInfo.info.tokenAux2 = 0;
    tokenInfo.version = value.version.toUInt64();
    if (value.manufacturerID) tokenInfo.manufacturerID = *value.manufacturerID;
    // A bit beyond the end is false, which overrides the default of loginRequired.
    tokenInfo.readonly = value.tokenflags.test(readonlyBit);
    tokenInfo.loginRequired = value.tokenflags.test(loginRequiredBit);
    tokenInfo.prnGeneration = value.tokenflags.test(prnGenerationBit);
    tokenInfo.eidCompliant = value.tokenflags.test(eidCompliantBit);

    if (!value.supportedAlgorithms) return;
    tokenInfo.supportedAlgorithms.resize(value.supportedAlgorithms->size());
    for (std::size_t i = 0; i < tokenInfo.supportedAlgorithms.size(); ++i)
        fillAlgorithm(tokenInfo.supportedAlgorithms[i], (*value.supportedAlgorithms)[i]);
}

}  // namespace tovi
