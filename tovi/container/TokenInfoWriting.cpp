#include <memory>
#include <utility>

#include "tovi/container/WriteProtocol.h"
#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/pkcs15/TokenInfo.h"

namespace tovi {

namespace {

void fillFlags(PKCS15::TokenFlags& flags, const PKCS15TokenInfo& info) {
    ASN1_encodeBit(flags, PKCS15::TokenFlags::readonly, info.readonly);
    ASN1_encodeBit(flags, PKCS15::TokenFlags::loginRequired, info.loginRequired);
    ASN1_encodeBit(flags, PKCS15::TokenFlags::prnGeneration, info.prnGeneration);
    ASN1_encodeBit(flags, PKCS15::TokenFlags::eidCompliant, info.eidCompliant);
}

/// A number of more than 64 bits, or a negative one as that of the NULL algorithm, is read as what
/// fits; it stays what it was unless the caller changed that.
void fillNumber(ASN1::INTEGER& stored, std::uint64_t number) {
    if (stored.toUInt64() != number) stored.setValue(number);
}

/// reference and parameters of the entry stay.
void fillEntry(PKCS15::AlgorithmInfo& entry, const PKCS15AlgorithmInfo& row) {
    fillNumber(entry.algorithm, row.algorithm);
    entry.set_algId() = ASN1::OBJECT_IDENTIFIER(row.algId.begin(), row.algId.end());
    for (unsigned bit = 0; bit < row.supportedOperations.size(); ++bit)
        ASN1_encodeBit(entry.supportedOperations, bit, row.supportedOperations[bit]);
}

void fillAlgorithms(PKCS15::TokenInfo& value, const std::vector<PKCS15AlgorithmInfo>& rows) {
    if (rows.empty()) return;
    std::vector<PKCS15::AlgorithmInfo>& entries = value.set_supportedAlgorithms();
    entries.resize(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) fillEntry(entries[i], rows[i]);
}

void fill(PKCS15::TokenInfo& value, const PKCS15TokenInfo& info) {
    if (info.info.label.empty())
        value.label.reset();
    else
        value.set_label() = info.info.label;
    value.serialNumber = info.info.serialNumber;
    fillNumber(value.version, info.version);
    if (info.manufacturerID.empty())
        value.manufacturerID.reset();
    else
        value.set_manufacturerID() = info.manufacturerID;
    fillFlags(value.tokenflags, info);
    fillAlgorithms(value, info.supportedAlgorithms);
}

}  // namespace

void PKCS15Container::encodeTokenInfo(ISCardOS* os, const PKCS15TokenInfo& info) {
    constexpr const char* HERE = "PKCS15Container::encodeTokenInfo";
    if (rawTokenInfos.empty() || !rawTokenInfos.front().value)
        throw SmartcardException("invalid TokenInfo", HERE);
    ASN1Object<PKCS15::TokenInfo>& stored = rawTokenInfos.front();
    std::unique_ptr<PKCS15::TokenInfo> edited = stored.value->clone();
    fill(*edited, info);
    Blob record;
    const bool mayBeWritten = edited->isValid() || !stored.value->isValid();
    if (!mayBeWritten || !ASN1_encode(*edited, &coderEnv, record))
        throw SmartcardException("encoding error", HERE);
    const SmartcardException updateFailed("update file failed", HERE);
    if (!translateCardErrors(updateFailed,
                             [&] { return tokenInfoHandler.UpdateSequence(os, 0, record); }))
        throw updateFailed;
    delete std::exchange(stored.value, edited.release());
}

void PKCS15Container::updateTokenInfo(ISCardOS* os, const PKCS15TokenInfo& info) {
    if (!info.info.IsValid())
        throw SmartcardException("invalid TokenInfo", "PKCS15Container::updateTokenInfo");
    // Copied beforehand: memory must not run out between the card and the model.
    PKCS15TokenInfo adopted = info;
    encodeTokenInfo(os, info);
    tokenInfo = std::move(adopted);
}

}  // namespace tovi
