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

class Settings {
public:
    explicit Settings(const Descriptors &descriptors) {
        check(::posix_spawn_file_actions_init(&actions), "posix_spawn");
        check(::posix_spawn_file_actions_adddup2(&actions, descriptors.input, STDIN_FILENO), "posix_spawn");
        check(::posix_spawn_file_actions_adddup2(&actions, descriptors.output, STDOUT_FILENO), "posix_spawn");
        check(::posix_spawn_file_actions_adddup2(&actions, descriptors.error, STDERR_FILENO), "posix_spawn");
        check(::posix_spawnattr_init(&attributes), "posix_spawn");
        sigset_t none;
        ::sigemptyset(&none);
        check(::posix_spawnattr_setsigmask(&attributes, &none), "posix_spawn");
        sigset_t defaults;
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        check(::posix_spawnattr_setsigdefault(&attributes, &defaults), "posix_spawn");
        check(::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF), "posix_spawn");
    }
    ~Settings() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    Q_DISABLE_COPY_MOVE(Settings)

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
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

pid_t start(const QString &program, const QStringList &arguments, const Descriptors &descriptors) {
    const Settings settings(descriptors);
    std::vector<QByteArray> words{QFile::encodeName(program)};
    for (const auto &argument : arguments)
        words.push_back(argument.toUtf8());
    std::vector<char *> argv;
    for (auto &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    check(::posix_spawn(&pid, words.front().constData(), &settings.actions, &settings.attributes, argv.data(), environ),
          words.front().constData());
    return pid;
}

} // namespace zelk::spawn
