#pragma once

#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// The path that EF(DIR), 3F00 2F00, gives for the application whose identifier begins with `aid`;
/// empty when there is no such file or entry, or it names no path.
Blob applicationInDirectory(ISCardOS& os, const Blob& aid);

}  // namespace tovi
