#pragma once

#include <optional>
#include <vector>

#include "tools/CardAccess.h"
#include "tools/Findings.h"
#include "tools/Model.h"

namespace tovi {

/// The application looked at from both sides: its files octet for octet, and the model of it.
struct Inspection {
    std::vector<ApplicationFile> files;
    ContainerPointer model;                 ///< null when the application cannot be read
    std::optional<ErrorReport> modelError;  ///< why it cannot
    Findings findings;                      ///< all rules, those about files first
};

/// Reads all of it and applies every rule. Throws "Failed to select PKCS15 AID" for a card without
/// the application; that the model cannot be read is a finding.
Inspection inspect(CardAccess& card);

}  // namespace tovi
