#include "tools/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/Failure.h"
#include "tools/Text.h"

namespace tovi {
namespace {

/// The new file, which goes away unless it takes its place.
class NewFile {
public:
    explicit NewFile(std::string name)
        : name_(std::move(name)),
          descriptor_(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)),
          exists_(descriptor_ >= 0) {}
    ~NewFile() {
        close();
        if (exists_) ::unlink(name_.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    /// As far as the user may.
    void setMode(mode_t mode) { static_cast<void>(::fchmod(descriptor_, mode) == 0); }
    bool write(std::string_view contents);
    bool rename(const std::string& name);

private:
    bool close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

    std::string name_;
    int descriptor_;
    bool exists_;
};

bool NewFile::write(std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = ::write(descriptor_, contents.data(), contents.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        contents.remove_prefix(static_cast<std::size_t>(count));
    }
    return ::fsync(descriptor_) == 0 && close();
}

bool NewFile::rename(const std::string& name) {
    if (::rename(name_.c_str(), name.c_str()) != 0) return false;
    exists_ = false;
    return true;
}

/// Where the symbolic links at `file` lead, also when nothing is there yet.
std::filesystem::path endOfLinks(std::filesystem::path file, std::error_code& error) {
    constexpr int mostLinks = 40;
    for (int links = 0; is_symlink(symlink_status(file, error)) && links < mostLinks; ++links) {
        file = file.parent_path() / read_symlink(file, error);
    }
    if (is_symlink(symlink_status(file, error))) {
        error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
    } else {
        error.clear();  // of a file that is not there
    }
    return file;
}

}  // namespace

void writeWholeFile(const std::string& file, std::string_view contents,
                    const std::string& operation) {
    const auto fail = [&](const std::string& reason) {
        throw Failure(forTerminal(file) + ": " + reason, operation);
    };
    const auto failWith = [&](int error) { fail(std::generic_category().message(error)); };
    std::error_code error;
    const std::string place = endOfLinks(file, error).string();
    if (error) fail(error.message());
    struct stat status {};
    const bool exists = ::stat(place.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) fail("is no regular file");
    NewFile fresh(place + ".new-" + std::to_string(::getpid()));
    if (!fresh.isOpen()) failWith(errno);
    if (exists) fresh.setMode(status.st_mode & 0777);
    if (!fresh.write(contents) || !fresh.rename(place)) failWith(errno);
}

}  // namespace tovi
