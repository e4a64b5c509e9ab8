// Preloaded into a program, kills it with SIGKILL just before its KILL_AT-th change of a file below KILL_BELOW.
#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

std::atomic<long> left = LONG_MAX;
std::string &below() {
    static std::string path;
    return path;
}

// The programs that this one starts go their own way.
__attribute__((constructor)) void begin() {
    if (const char *path = std::getenv("KILL_BELOW")) {
        below() = path;
    }
    if (const char *number = std::getenv("KILL_AT")) {
        left = std::atol(number);
    }
    ::unsetenv("LD_PRELOAD");
    ::unsetenv("KILL_AT");
}

void note(const char *path) {
    const std::string &prefix = below();
    if (!prefix.empty() && std::strncmp(path, prefix.c_str(), prefix.size()) == 0 && --left == 0) {
        ::kill(::getpid(), SIGKILL);
        ::pause();
    }
}

void noteDescriptor(int descriptor) {
    std::array<char, PATH_MAX> path{};
    std::array<char, 64> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    if (::readlink(link.data(), path.data(), path.size() - 1) > 0) {
        note(path.data());
    }
}

template<class Function>
Function *next(const char *name) {
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

mode_t modeOf(int flags, va_list list) {
    return (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;
}

} // namespace

// NOLINTBEGIN: the names and forms are the C library's
extern "C" {

int open(const char *path, int flags, ...) {
    va_list list;
    va_start(list, flags);
    const mode_t mode = modeOf(flags, list);
    va_end(list);
    if ((flags & O_CREAT) != 0) {
        note(path);
    }
    return next<int(const char *, int, mode_t)>("open")(path, flags, mode);
}

int open64(const char *path, int flags, ...) {
    va_list list;
    va_start(list, flags);
    const mode_t mode = modeOf(flags, list);
    va_end(list);
    if ((flags & O_CREAT) != 0) {
        note(path);
    }
    return next<int(const char *, int, mode_t)>("open64")(path, flags, mode);
}

ssize_t write(int descriptor, const void *bytes, size_t count) {
    noteDescriptor(descriptor);
    return next<ssize_t(int, const void *, size_t)>("write")(descriptor, bytes, count);
}

ssize_t pwrite64(int descriptor, const void *bytes, size_t count, off64_t offset) {
    noteDescriptor(descriptor);
    return next<ssize_t(int, const void *, size_t, off64_t)>("pwrite64")(descriptor, bytes, count, offset);
}

size_t fwrite(const void *bytes, size_t size, size_t count, FILE *file) {
    noteDescriptor(::fileno(file));
    return next<size_t(const void *, size_t, size_t, FILE *)>("fwrite")(bytes, size, count, file);
}

int fsync(int descriptor) {
    noteDescriptor(descriptor);
    return next<int(int)>("fsync")(descriptor);
}

int fdatasync(int descriptor) {
    noteDescriptor(descriptor);
    return next<int(int)>("fdatasync")(descriptor);
}

int ftruncate64(int descriptor, off64_t size) noexcept {
    noteDescriptor(descriptor);
    return next<int(int, off64_t)>("ftruncate64")(descriptor, size);
}

int rename(const char *from, const char *to) noexcept {
    note(to);
    return next<int(const char *, const char *)>("rename")(from, to);
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags) noexcept {
    note(to);
    return next<int(int, const char *, int, const char *, unsigned int)>("renameat2")(fromFolder, from, toFolder, to,
                                                                                      flags);
}

int unlink(const char *path) noexcept {
    note(path);
    return next<int(const char *)>("unlink")(path);
}

int mkdir(const char *path, mode_t mode) noexcept {
    note(path);
    return next<int(const char *, mode_t)>("mkdir")(path, mode);
}

} // extern "C"
// NOLINTEND
