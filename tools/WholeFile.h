#pragma once

#include <string>
#include <string_view>

namespace tovi {

/// Writes a file wholly or not at all: its contents go into a new file beside it, which then takes
/// its place. A symbolic link is followed, to where no file is yet too. Throws Failure, in the name of `operation`, when it
/// cannot be written or when something stands there that is no regular file.
void writeWholeFile(const std::string& file, std::string_view contents,
                    const std::string& operation);

}  // namespace tovi
