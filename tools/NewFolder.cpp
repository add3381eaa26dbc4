#include "tools/NewFolder.h"

#include <stdlib.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "tools/Failure.h"

namespace tovi {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& folder, int error, const std::string& operation) {
    throw Failure(folder.string() + ": " + std::generic_category().message(error), operation);
}

}  // namespace

NewFolder::NewFolder(const fs::path& folder, std::string operation)
    : folder_(folder.has_filename() ? folder : folder.parent_path()),
      operation_(std::move(operation)) {
    refuseTaken();
    std::string name =
        (folder_.parent_path() / ("." + folder_.filename().string() + ".XXXXXX")).string();
    if (::mkdtemp(name.data()) == nullptr) fail(folder_, errno, operation_);
    path_ = name;
}

NewFolder::~NewFolder() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
}

void NewFolder::refuseTaken() const {
    std::error_code error;
    if (fs::symlink_status(folder_, error).type() == fs::file_type::not_found) return;
    throw Failure(folder_.string() + ": " + (error ? error.message() : "exists already"),
                  operation_);
}

void NewFolder::complete() {
    refuseTaken();
    if (std::rename(path_.c_str(), folder_.c_str()) != 0) fail(folder_, errno, operation_);
    path_.clear();
}

}  // namespace tovi
