#include "tools/TokenInfoUpdate.h"

#include <iterator>
#include <utility>

#include "tools/InfoFromJson.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

constexpr char labelOfNone[] = "PKCS#15 Token";  // as the model calls a token without label

/// EF(TokenInfo) as the card has it; null when it was not read.
const PKCS15::TokenInfo* recordOf(const PKCS15Container& model) {
    const auto& records = model.getRawTokenInfos();
    return records.empty() ? nullptr : records.front().value;
}

PKCS15TokenInfo asNextRead(PKCS15TokenInfo written, const PKCS15TokenInfo& before) {
    if (written.info.label.empty()) {
        written.info.label = Blob(std::begin(labelOfNone), std::end(labelOfNone) - 1);
    }
    if (written.supportedAlgorithms.empty()) {
        written.supportedAlgorithms = before.supportedAlgorithms;
    }
    return written;
}

}  // namespace

void checkTokenInfoFields(const JsonPlace& set) {
    PKCS15TokenInfo scratch;
    setFields(scratch, set);
}

PKCS15TokenInfo updateTokenInfo(PKCS15Container& model, ISCardOS& os, const JsonPlace& set) {
    const PKCS15::TokenInfo* record = recordOf(model);
    const PKCS15TokenInfo before = model.getTokenInfo();
    PKCS15TokenInfo info = before;
    // The model has a label also for a card without one, and no algorithms leave the card's alone.
    if (record != nullptr && !record->label) info.info.label.clear();
    info.supportedAlgorithms.clear();
    setFields(info, set);
    model.updateTokenInfo(&os, info);
    return asNextRead(std::move(info), before);
}

}  // namespace tovi
