// Loaded into pcscd in front of the C library: its socket and files, which have one fixed place on
// a machine, go into the folder $TOVI_PCSC_FOLDER, and its virtual reader, which listens
// everywhere, listens on the loopback only.
#include <dlfcn.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr char place[] = "/run/pcscd";

std::string redirected(const char* path) {
    const char* folder = std::getenv("TOVI_PCSC_FOLDER");
    constexpr std::size_t size = sizeof place - 1;
    if (folder == nullptr || std::strncmp(path, place, size) != 0) return path;
    return std::string(folder) + (path + size);
}

/// The C library's own function of that name.
template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

int bindTo(int descriptor, const void* address, socklen_t size) {
    static const auto next = original<int(int, const sockaddr*, socklen_t)>("bind");
    return next(descriptor, static_cast<const sockaddr*>(address), size);
}

}  // namespace

extern "C" {

int bind(int descriptor, const sockaddr* address, socklen_t size) noexcept {
    if (address->sa_family == AF_INET) {
        sockaddr_in local = {};
        std::memcpy(&local, address, sizeof local);
        local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return bindTo(descriptor, &local, sizeof local);
    }
    if (address->sa_family != AF_UNIX) return bindTo(descriptor, address, size);
    sockaddr_un local = {};
    std::memcpy(&local, address, size < sizeof local ? size : sizeof local);
    const std::string path = redirected(local.sun_path);
    std::snprintf(local.sun_path, sizeof local.sun_path, "%s", path.c_str());
    return bindTo(descriptor, &local, sizeof local);
}

int mkdir(const char* path, mode_t mode) noexcept {
    static const auto next = original<int(const char*, mode_t)>("mkdir");
    return next(redirected(path).c_str(), mode);
}

int chmod(const char* path, mode_t mode) noexcept {
    static const auto next = original<int(const char*, mode_t)>("chmod");
    return next(redirected(path).c_str(), mode);
}

int remove(const char* path) noexcept {
    static const auto next = original<int(const char*)>("remove");
    return next(redirected(path).c_str());
}

int stat(const char* path, struct stat* status) noexcept {
    static const auto next = original<int(const char*, struct stat*)>("stat");
    return next(redirected(path).c_str(), status);
}

int lstat(const char* path, struct stat* status) noexcept {
    static const auto next = original<int(const char*, struct stat*)>("lstat");
    return next(redirected(path).c_str(), status);
}

int open(const char* path, int flags, ...) {
    static const auto next = original<int(const char*, int, ...)>("open");
    if ((flags & O_CREAT) == 0) return next(redirected(path).c_str(), flags);
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return next(redirected(path).c_str(), flags, mode);
}

std::FILE* fopen(const char* path, const char* mode) {
    static const auto next = original<std::FILE*(const char*, const char*)>("fopen");
    return next(redirected(path).c_str(), mode);
}

}  // extern "C"
