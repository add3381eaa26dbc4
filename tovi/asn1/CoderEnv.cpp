#include "tovi/asn1/CoderEnv.h"

#include "tovi/asn1/Coding.h"

namespace ASN1 {

bool CoderEnv::decode(const char* begin, const char* end, AbstractData value, bool acceptRest) {
    if (!isConfigured()) return false;
    const auto* octets = reinterpret_cast<const std::uint8_t*>(begin);
    return ASN1::decode(View(octets, static_cast<std::size_t>(end - begin)), value, lastError_,
                        acceptRest ? Rest::anything : Rest::nothing);
}

bool CoderEnv::encode(AbstractData value, Octets& out) {
    return isConfigured() && ASN1::encode(value, out);
}

bool CoderEnv::isConfigured() {
    if (!module_) lastError_.kind = Error::notConfigured;
    return module_ != nullptr;
}

}  // namespace ASN1
