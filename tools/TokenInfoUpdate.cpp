#include "tools/TokenInfoUpdate.h"

#include "tools/InfoFromJson.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

constexpr const char* algorithms = "supportedAlgorithms";

/// EF(TokenInfo) as the card has it; null when it was not read.
const PKCS15::TokenInfo* recordOf(const PKCS15Container& model) {
    const auto& records = model.getRawTokenInfos();
    return records.empty() ? nullptr : records.front().value;
}

bool hasAlgorithms(const PKCS15::TokenInfo* record) {
    return record != nullptr && record->supportedAlgorithms &&
           !record->supportedAlgorithms->empty();
}

}  // namespace

void checkTokenInfoFields(const JsonPlace& set) {
    PKCS15TokenInfo scratch;
    setFields(scratch, set);
}

void updateTokenInfo(PKCS15Container& model, ISCardOS& os, const JsonPlace& set) {
    const PKCS15::TokenInfo* record = recordOf(model);
    PKCS15TokenInfo info = model.getTokenInfo();
    // The model has a label also for a card without one, and no algorithms leave the card's alone.
    if (record != nullptr && !record->label) info.info.label.clear();
    info.supportedAlgorithms.clear();
    setFields(info, set);
    if (set.has(algorithms) && info.supportedAlgorithms.empty() && hasAlgorithms(record)) {
        set.at(algorithms).refuse("the card's list can be replaced, but not removed");
    }
    model.updateTokenInfo(&os, info);
}

}  // namespace tovi
