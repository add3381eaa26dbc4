#pragma once

#include "tovi/Export.h"
#include "tovi/asn1/AbstractData.h"
#include "tovi/asn1/Error.h"
#include "tovi/asn1/Module.h"
#include "tovi/asn1/Octets.h"

namespace ASN1 {

/// Decodes and encodes values, and remembers why the last one failed. Made empty; a module has to
/// be configured before anything is coded.
class TOVI_API CoderEnv {
public:
    /// `module` must outlive the environment.
    void configure(const Module* module) { module_ = module; }
    /// The module configured; nullptr before.
    const Module* module() const { return module_; }

    /// Decodes the BER value in [begin, end) into `value`. Octets behind the value are a failure
    /// unless `acceptRest`. False leaves `value` as it was and says why in lastError().
    bool decode(const char* begin, const char* end, AbstractData value, bool acceptRest);
    /// Writes the DER encoding of `value` into `out`. False, and `out` as it was, when a CHOICE
    /// inside has nothing selected.
    bool encode(AbstractData value, Octets& out);

    /// Of the last decode(); its kind is none when that succeeded.
    const Error& lastError() const { return lastError_; }

private:
    bool isConfigured();

    const Module* module_ = nullptr;
    Error lastError_;
};

}  // namespace ASN1
