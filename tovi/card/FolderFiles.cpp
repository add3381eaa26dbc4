#include "tovi/card/FolderFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

namespace tovi {
namespace {

constexpr mode_t fileMode = 0666;
constexpr mode_t folderMode = 0777;

/// An open file or folder, closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (isOpen()) ::close(number_);
    }
    int get() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

private:
    int number_;
};

std::string failure(const std::string& name, int error) {
    return name + ": " + std::generic_category().message(error);
}

/// The failure that errno says, or the symbolic link that is the reason for it.
std::string failureAt(int folder, const std::string& step, const std::string& name) {
    const int error = errno;
    struct stat status {};
    if (::fstatat(folder, step.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISLNK(status.st_mode))
        return name + ": is a symbolic link";
    return failure(name, error);
}

int openFolderAt(int folder, const std::string& step) {
    return ::openat(folder, step.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// Opens the folder that holds `name`, and leaves the last step in `last`.
std::string openParent(int root, const std::string& name, bool make, Descriptor& folder,
                       std::string& last) {
    folder = Descriptor(::fcntl(root, F_DUPFD_CLOEXEC, 0));
    if (!folder.isOpen()) return failure(name, errno);
    std::size_t begin = 0;
    for (std::size_t end; (end = name.find('/', begin)) != std::string::npos; begin = end + 1) {
        const std::string step = name.substr(begin, end - begin);
        Descriptor next(openFolderAt(folder.get(), step));
        if (!next.isOpen() && errno == ENOENT && make) {
            if (::mkdirat(folder.get(), step.c_str(), folderMode) != 0 && errno != EEXIST)
                return failureAt(folder.get(), step, name.substr(0, end));
            ::fsync(folder.get());
            next = Descriptor(openFolderAt(folder.get(), step));
        }
        if (!next.isOpen()) return failureAt(folder.get(), step, name.substr(0, end));
        folder = std::move(next);
    }
    last = name.substr(begin);
    return {};
}

/// Fills `room` from the file; the number of octets, or -1.
ssize_t readAll(int file, std::uint8_t* room, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = ::read(file, room + done, size - done);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return -1;
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

bool writeAll(int file, ASN1::View contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(file, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        contents = contents.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

/// Makes the file `fresh` with the permissions that `old` has, when there is one.
int createBeside(int folder, const std::string& fresh, const std::string& old) {
    // What a process that was killed left behind is nobody's.
    ::unlinkat(folder, fresh.c_str(), 0);
    const int file =
        ::openat(folder, fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, fileMode);
    struct stat status {};
    if (file >= 0 && ::fstatat(folder, old.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(status.st_mode))
        ::fchmod(file, status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO));
    return file;
}

}  // namespace

FolderFiles::~FolderFiles() {
    if (folder_ >= 0) ::close(folder_);
}

std::string FolderFiles::open(const std::filesystem::path& folder) {
    Descriptor old(std::exchange(folder_, -1));
    folder_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    return folder_ >= 0 ? "" : failure(folder.string(), errno);
}

bool FolderFiles::lock(bool shared, std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds pause{10};
    const auto end = std::chrono::steady_clock::now() + patience;
    while (::flock(folder_, (shared ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK) return true;
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

std::string FolderFiles::read(const std::string& name, std::size_t limit, Blob& contents) const {
    Descriptor folder(-1);
    std::string last;
    if (std::string reason = openParent(folder_, name, false, folder, last); !reason.empty())
        return reason;
    // Without O_NONBLOCK a pipe would make this wait for a writer.
    const Descriptor file(
        ::openat(folder.get(), last.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) return failureAt(folder.get(), last, name);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) return failure(name, errno);
    if (!S_ISREG(status.st_mode)) return name + ": is no regular file";
    const auto size = static_cast<std::uintmax_t>(status.st_size);
    if (size > limit)
        return name + ": found " + std::to_string(size) + " octets, expected at most " +
               std::to_string(limit);
    contents.assign(static_cast<std::size_t>(size), 0);
    const ssize_t got = readAll(file.get(), contents.data(), contents.size());
    if (got < 0) return failure(name, errno);
    contents.resize(static_cast<std::size_t>(got));
    return {};
}

std::string FolderFiles::replace(const std::string& name, ASN1::View contents) const {
    Descriptor folder(-1);
    std::string last;
    if (std::string reason = openParent(folder_, name, true, folder, last); !reason.empty())
        return reason;
    const std::string fresh = last + ".new";
    {
        const Descriptor file(createBeside(folder.get(), fresh, last));
        if (!file.isOpen()) return failure(name + ".new", errno);
        if (!writeAll(file.get(), contents) || (sync_ && ::fsync(file.get()) != 0)) {
            const int error = errno;
            ::unlinkat(folder.get(), fresh.c_str(), 0);
            return failure(name, error);
        }
    }
    if (::renameat(folder.get(), fresh.c_str(), folder.get(), last.c_str()) != 0) {
        const int error = errno;
        ::unlinkat(folder.get(), fresh.c_str(), 0);
        return failure(name, error);
    }
    // The new file is in its place; where a folder cannot be flushed there is nothing better to do.
    if (sync_) ::fsync(folder.get());
    return {};
}

bool FolderFiles::exists(const std::string& name) const {
    struct stat status {};
    return ::fstatat(folder_, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

}  // namespace tovi
