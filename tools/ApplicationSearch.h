#pragma once

#include <optional>

#include "tools/EfDir.h"
#include "tovi/card/CardDescription.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// The application that the user asks for; what is empty was not said.
struct WantedApplication {
    Blob aid = {};
    Blob path = {};  ///< from 3F00 on
};

/// An application of the card, and how to get at it.
struct FoundApplication {
    Blob aid;               ///< the identifier it goes by; empty: none is known
    Blob path;              ///< of its DF, from 3F00 on
    DirectoryEntry entry;   ///< what EF(DIR) says of it; empty members: nothing
    bool knowsAid = false;  ///< the card selects it by `aid`; else by `path`
};

/// Finds the application that is asked for, or else that of PKCS#15: by its identifier, and where
/// the card does not know that, through EF(DIR), which may also name one of ISO/IEC 7816-15. An
/// application that is nowhere counts as that of the identifier at its usual place, 3F00 5015.
///
/// `description` is that of a card that has one, null for others: then the card is asked. Takes two
/// SELECTs at most besides the reading of EF(DIR).
FoundApplication findApplication(ISCardOS& os, const CardDescription* description,
                                 const WantedApplication& wanted);

/// The path of the DF that the description has for an identifier that begins with `aid`. A card may
/// select an application by the beginning of its identifier (ISO/IEC 7816-4:2005, 8.2.1.2), so the
/// first such DF is the one that will be selected.
std::optional<Blob> describedApplication(const CardDescription& description, const Blob& aid);

}  // namespace tovi
