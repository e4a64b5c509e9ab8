#include "engine/TerminalChild.h"

#include <QElapsedTimer>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine::testing {

namespace {

constexpr int notInTime = -1000;

int statusOf(int wait) {
    return WIFEXITED(wait) ? WEXITSTATUS(wait) : -WTERMSIG(wait);
}

} // namespace

QProcessEnvironment environmentIn(const EngineHome &home, const Variables &variables) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s, u"ZELK_PLAYLIST_DIRS"_s,
                                u"ZELK_COLLECTION_DIRS"_s, u"NO_COLOR"_s, u"COLUMNS"_s}) {
        environment.remove(name);
    }
    environment.insert(u"HOME"_s, home.path());
    environment.insert(u"TERM"_s, u"xterm-256color"_s);
    for (auto variable = variables.cbegin(); variable != variables.cend(); ++variable) {
        if (variable->isNull()) {
            environment.remove(variable.key());
        } else {
            environment.insert(variable.key(), *variable);
        }
    }
    return environment;
}

Ended runZelk(const EngineHome &home, const QStringList &arguments, const QByteArray &input,
              const Variables &variables) {
    QProcess process;
    process.setProcessEnvironment(environmentIn(home, variables));
    process.start(QStringLiteral(ENGINE_PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    Ended ended;
    if (!process.waitForFinished(60'000)) {
        process.kill();
        process.waitForFinished();
        ended.status = notInTime;
    } else {
        ended.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -process.exitCode();
    }
    ended.out = QString::fromUtf8(process.readAllStandardOutput());
    ended.error = QString::fromUtf8(process.readAllStandardError());
    return ended;
}

TerminalChild::TerminalChild(const EngineHome &home, const QStringList &arguments, TerminalSize size,
                             const Variables &variables) {
    int inside = -1;
    char name[64];
    if (::openpty(&_terminal, &inside, name, nullptr, nullptr) != 0) {
        qFatal("there is no terminal to be had");
    }
    ::fcntl(_terminal, F_SETFD, FD_CLOEXEC);
    ::fcntl(inside, F_SETFD, FD_CLOEXEC);
    resize(size);
    QList<QByteArray> texts{QByteArrayLiteral(ENGINE_PROGRAM)};
    for (const QString &argument : arguments) {
        texts += argument.toUtf8();
    }
    QList<QByteArray> settings;
    for (const QString &setting : environmentIn(home, variables).toStringList()) {
        settings += setting.toUtf8();
    }
    const auto pointers = [](QList<QByteArray> &list) {
        std::vector<char *> result;
        for (QByteArray &text : list) {
            result.push_back(text.data());
        }
        result.push_back(nullptr);
        return result;
    };
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    // The leader of a new session that opens a terminal has it as its own, and so takes its Ctrl+C.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_addopen(&actions, 0, name, O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, 0, 1);
    posix_spawn_file_actions_adddup2(&actions, 0, 2);
    if (::posix_spawn(&_process, ENGINE_PROGRAM, &actions, &attributes, pointers(texts).data(),
                      pointers(settings).data()) != 0) {
        qFatal("the engine doesn't start");
    }
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    _inside = inside; // without anybody inside, the terminal would be at its end before the child has opened it
}

TerminalChild::~TerminalChild() {
    ::close(_inside);
    if (!_status) {
        ::kill(_process, SIGKILL);
        ::waitpid(_process, nullptr, 0);
    }
    hangUp();
}

void TerminalChild::type(const QByteArray &bytes) const {
    if (::write(_terminal, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size()) {
        qFatal("the terminal doesn't take what is typed");
    }
}

void TerminalChild::resize(TerminalSize size) const {
    winsize window{};
    window.ws_col = static_cast<unsigned short>(size.columns);
    window.ws_row = static_cast<unsigned short>(size.rows);
    ::ioctl(_terminal, TIOCSWINSZ, &window);
}

void TerminalChild::signal(int number) const {
    ::kill(_process, number);
}

void TerminalChild::hangUp() {
    if (_terminal >= 0) {
        ::close(_terminal);
        _terminal = -1;
    }
}

bool TerminalChild::read(int patienceMs) {
    pollfd waits{_terminal, POLLIN, 0};
    if (_terminal < 0 || ::poll(&waits, 1, patienceMs) <= 0) {
        return false;
    }
    char bytes[4096];
    const ssize_t count = ::read(_terminal, bytes, sizeof bytes);
    if (count <= 0) { // EIO: nobody is inside any more
        return false;
    }
    _written.append(bytes, count);
    return true;
}

bool TerminalChild::shows(const QByteArray &text, int patienceMs) {
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (const qsizetype found = _written.indexOf(text, _seen); found >= 0) {
            _seen = found + text.size();
            return true;
        }
        const auto left = patienceMs - timer.elapsed();
        if (left <= 0 || !read(static_cast<int>(left))) {
            return false;
        }
    }
}

int TerminalChild::end(int patienceMs) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < patienceMs) {
        while (read(0)) {
        }
        int wait = 0;
        if (::waitpid(_process, &wait, WNOHANG) == _process) {
            while (read(0)) {
            }
            _status = statusOf(wait);
            return *_status;
        }
        read(20);
    }
    return notInTime;
}

QStringList screenOf(const QByteArray &written) {
    QString shown = QString::fromUtf8(written).replace("\r\n"_L1, "\n"_L1);
    for (const auto &colour : {"\x1b[0m"_L1, "\x1b[2m"_L1, "\x1b[31m"_L1, "\x1b[32m"_L1, "\x1b[33m"_L1}) {
        shown.remove(colour);
    }
    QStringList lines;
    for (const QString &line : shown.split(u'\n')) {
        lines += line.section("\r\x1b[K"_L1, -1);
    }
    return lines;
}

} // namespace zelk::engine::testing
