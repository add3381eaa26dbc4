#pragma once

#include "tovi/Export.h"
#include "tovi/asn1/Module.h"

namespace PKCS15 {

/// The module PKCS-15: all types of PKCS#15 v1.1, Annex A. Lives as long as the program.
TOVI_API ASN1::Module& getModule();

}  // namespace PKCS15
