#include "Platform/ChildProcess.h"

#include "Platform/InputPipe.h"
#include "Platform/Spawn_linux.h"
#include "Platform/UniqueFd.h"
#include "Support/SerialExecutor.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <optional>

#include <fcntl.h>
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/wait.h>
#include <unistd.h>

namespace zelk {

namespace {

constexpr int wantedPipeSize = 1 << 20;
constexpr qsizetype readSize = 256 * 1024;
/// How much one turn of the loop reads, so that a child that never stops talking leaves room for the rest.
constexpr qsizetype readPerTurn = 4 * readSize;

ChildProcess::Exit exitOf(const siginfo_t &info) {
    switch (info.si_code) {
    case CLD_EXITED:
        return {.reason = ChildProcess::ExitReason::Exited, .status = info.si_status};
    case CLD_KILLED:
    case CLD_DUMPED:
        return {.reason = ChildProcess::ExitReason::Signalled, .status = info.si_status};
    default:
        return {.reason = ChildProcess::ExitReason::Unknown, .status = info.si_status};
    }
}

/// One of the child's output pipes, read on the thread that made it.
class OutputPipe {
public:
    OutputPipe(UniqueFd readEnd, std::function<void(const QByteArray &)> chunk, std::function<void()> ended)
        : _readEnd(std::move(readEnd)), _notifier(_readEnd.get(), QSocketNotifier::Read), _chunk(std::move(chunk)),
          _ended(std::move(ended)) {
        spawn::makeNonBlocking(_readEnd);
        QObject::connect(&_notifier, &QSocketNotifier::activated, [this] {
            if (read(readPerTurn) == Read::AtEnd) {
                _notifier.setEnabled(false);
                if (_ended)
                    _ended();
            }
        });
    }

    /// Hands on what the pipe holds now. Its end isn't waited for: a grandchild may hold it, and may go on writing.
    void drain() {
        _notifier.setEnabled(false);
        read(std::max(::fcntl(_readEnd.get(), F_GETPIPE_SZ), 0));
    }

private:
    enum class Read { Empty, AtEnd };

    Read read(qsizetype most) {
        thread_local QByteArray buffer(readSize, Qt::Uninitialized);
        while (most > 0) {
            const auto count = ::read(_readEnd.get(), buffer.data(), static_cast<size_t>(readSize));
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return errno == EAGAIN ? Read::Empty : Read::AtEnd;
            if (count == 0)
                return Read::AtEnd;
            _chunk(QByteArray(buffer.constData(), count));
            most -= count;
        }
        return Read::Empty;
    }

    UniqueFd _readEnd;
    QSocketNotifier _notifier;
    std::function<void(const QByteArray &)> _chunk;
    std::function<void()> _ended;
};

class LinuxChildProcess final : public ChildProcess {
public:
    LinuxChildProcess(const QString &program, const QStringList &arguments, Callbacks callbacks)
        : _ended(std::move(callbacks.ended)) {
        auto input = spawn::makePipe();
        auto output = spawn::makePipe();
        auto error = spawn::makePipe();
        // A full pipe costs the child a switch to us for every 64 KiB; where the platform refuses, nothing is lost.
        ::fcntl(output.readEnd.get(), F_SETPIPE_SZ, wantedPipeSize);
        spawn::makeNonBlocking(input.writeEnd);
        _input = std::make_shared<InputPipe>(std::move(input.writeEnd));
        _output.emplace(std::move(output.readEnd), std::move(callbacks.output), std::move(callbacks.outputEnded));
        _error.emplace(std::move(error.readEnd), std::move(callbacks.error), nullptr);
        _pid = spawn::start(
            program, arguments,
            {.input = input.readEnd.get(), .output = output.writeEnd.get(), .error = error.writeEnd.get()});
        watch();
    }

    ~LinuxChildProcess() override {
        if (_watch)
            _watch->child = nullptr;
    }

    qint64 processId() const override { return _pid; }
    std::shared_ptr<InputPipe> input() const override { return _input; }
    void terminate() override { signal(SIGTERM); }
    void kill() override { signal(SIGKILL); }

private:
    /// What a waiter on another thread may still hold when the child object has gone; touched on the child's thread
    /// only.
    struct Watch {
        LinuxChildProcess *child;
    };

    void signal(int number) const {
        if (_pid >= 1)
            ::kill(_pid, number);
    }

    void watch() {
        _pidFd = UniqueFd(::pidfd_open(_pid, 0));
        if (!_pidFd) {
            watchFromThread();
            return;
        }
        _notifier.emplace(_pidFd.get(), QSocketNotifier::Read);
        QObject::connect(&*_notifier, &QSocketNotifier::activated, [this] {
            _notifier->setEnabled(false);
            siginfo_t info{};
            while (::waitid(P_PIDFD, static_cast<id_t>(_pidFd.get()), &info, WEXITED) != 0 && errno == EINTR) {
            }
            end(exitOf(info));
        });
    }

    /// For a kernel or a sandbox that refuses descriptors of processes: one thread waits.
    void watchFromThread() {
        _watch = std::make_shared<Watch>(Watch{this});
        _waiter = SerialExecutor::make(QStringLiteral("orrim.zelk.helper.wait"));
        _waiter->post([watch = _watch, pid = _pid, home = SerialExecutor::current()] {
            siginfo_t info{};
            while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
            }
            home->post([watch, pid] {
                siginfo_t reaped{};
                ::waitid(P_PID, static_cast<id_t>(pid), &reaped, WEXITED);
                if (watch->child)
                    watch->child->end(exitOf(reaped));
            });
        });
    }

    void end(Exit exit) {
        _pid = 0;
        _output->drain();
        _error->drain();
        _input->close();
        // The callback may release this object, and with it the callback.
        const auto ended = std::move(_ended);
        ended(exit);
    }

    std::function<void(Exit)> _ended;
    std::shared_ptr<InputPipe> _input;
    std::optional<OutputPipe> _output;
    std::optional<OutputPipe> _error;
    pid_t _pid = 0;
    UniqueFd _pidFd;
    std::optional<QSocketNotifier> _notifier;
    std::shared_ptr<Watch> _watch;
    SerialExecutor::Ref _waiter;
};

} // namespace

std::unique_ptr<ChildProcess> ChildProcess::launch(const QString &program, const QStringList &arguments,
                                                   Callbacks callbacks) {
    return std::make_unique<LinuxChildProcess>(program, arguments, std::move(callbacks));
}

} // namespace zelk
