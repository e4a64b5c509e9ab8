#include "Platform/Spawn_linux.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace zelk::spawn {

namespace {

constexpr int firstFreeDescriptor = 3;

void check(int error, const char *what) {
    if (error != 0)
        throw std::system_error(error, std::system_category(), what);
}

/// What the child finds as its first descriptors.
class Actions {
public:
    explicit Actions(const Descriptors &descriptors) {
        replace(descriptors.input, STDIN_FILENO);
        replace(descriptors.output, STDOUT_FILENO);
        replace(descriptors.error, STDERR_FILENO);
    }
    const posix_spawn_file_actions_t *get() const { return &_handle.actions; }

private:
    /// Released even when what is made of it fails.
    struct Handle {
        Handle() { check(::posix_spawn_file_actions_init(&actions), "posix_spawn"); }
        ~Handle() { ::posix_spawn_file_actions_destroy(&actions); }
        Q_DISABLE_COPY_MOVE(Handle)
        posix_spawn_file_actions_t actions{};
    };

    void replace(int from, int to) {
        check(::posix_spawn_file_actions_adddup2(&_handle.actions, from, to), "posix_spawn");
    }

    Handle _handle;
};

/// Which signals it finds blocked, and which at their default.
class Attributes {
public:
    Attributes() {
        sigset_t none;
        ::sigemptyset(&none);
        check(::posix_spawnattr_setsigmask(&_handle.attributes, &none), "posix_spawn");
        sigset_t defaults;
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        check(::posix_spawnattr_setsigdefault(&_handle.attributes, &defaults), "posix_spawn");
        check(::posix_spawnattr_setflags(&_handle.attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF),
              "posix_spawn");
    }
    const posix_spawnattr_t *get() const { return &_handle.attributes; }

private:
    struct Handle {
        Handle() { check(::posix_spawnattr_init(&attributes), "posix_spawn"); }
        ~Handle() { ::posix_spawnattr_destroy(&attributes); }
        Q_DISABLE_COPY_MOVE(Handle)
        posix_spawnattr_t attributes{};
    };

    Handle _handle;
};

} // namespace

UniqueFd lifted(int fd) {
    if (fd >= firstFreeDescriptor)
        return UniqueFd(fd);
    const UniqueFd low(fd);
    return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, firstFreeDescriptor));
}

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::system_category(), "pipe");
    Pipe pipe{.readEnd = lifted(ends[0]), .writeEnd = lifted(ends[1])};
    if (!pipe.readEnd || !pipe.writeEnd)
        throw std::system_error(errno, std::system_category(), "pipe");
    return pipe;
}

void makeNonBlocking(const UniqueFd &fd) {
    ::fcntl(fd.get(), F_SETFL, ::fcntl(fd.get(), F_GETFL) | O_NONBLOCK);
}

std::mutex &environmentMutex() {
    static std::mutex mutex;
    return mutex;
}

pid_t start(const QString &program, const QStringList &arguments, const Descriptors &descriptors) {
    const Actions actions(descriptors);
    const Attributes attributes;
    std::vector<QByteArray> words{QFile::encodeName(program)};
    for (const auto &argument : arguments)
        words.push_back(argument.toUtf8());
    std::vector<char *> argv;
    for (auto &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    const std::scoped_lock lock(environmentMutex());
    check(::posix_spawn(&pid, words.front().constData(), actions.get(), attributes.get(), argv.data(), environ),
          words.front().constData());
    return pid;
}

} // namespace zelk::spawn
