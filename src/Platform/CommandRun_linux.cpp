#include "Platform/CommandRun.h"

#include "Platform/BootClock.h"
#include "Platform/Spawn_linux.h"
#include "Support/Cancelled.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelk {

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr qsizetype mostKept = 1 << 20;
/// How long a program that was asked to end is waited for.
constexpr milliseconds lastGrace = 200ms;
/// How often to look where the kernel gives no descriptor of a process.
constexpr milliseconds lookEvery = 50ms;

/// One of the program's output pipes. What is more than is kept is read all the same, or the program would stand still.
class Listening {
public:
    explicit Listening(UniqueFd readEnd) : _readEnd(std::move(readEnd)) { spawn::makeNonBlocking(_readEnd); }

    int descriptor() const { return _readEnd.get(); }
    const QByteArray &heard() const { return _heard; }

    void listen(qsizetype most) {
        std::array<char, 16384> buffer{};
        while (most > 0 && _readEnd) {
            const auto count = ::read(_readEnd.get(), buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 && errno == EAGAIN)
                return;
            if (count <= 0) {
                _readEnd.reset();
                return;
            }
            _heard.append(buffer.data(), std::min<qsizetype>(count, mostKept - _heard.size()));
            most -= count;
        }
    }

private:
    UniqueFd _readEnd;
    QByteArray _heard;
};

/// Becomes readable when the stop is asked for.
class StopSignal {
public:
    explicit StopSignal(const std::stop_token &stop)
        : _stop(stop), _wake(makeWake()), _callback(stop, Wake{_wake.get()}) {}

    int descriptor() const { return _wake.get(); }
    bool isAskedFor() const { return _stop.stop_requested(); }

private:
    struct Wake {
        int descriptor;
        void operator()() const {
            const std::uint64_t one = 1;
            [[maybe_unused]] const auto written = ::write(descriptor, &one, sizeof one);
        }
    };
    static UniqueFd makeWake() {
        UniqueFd wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        if (!wake)
            throw std::system_error(errno, std::system_category(), "eventfd");
        return wake;
    }

    std::stop_token _stop;
    UniqueFd _wake;
    std::stop_callback<Wake> _callback;
};

class Run {
public:
    Run(const QString &program, const QStringList &arguments, CommandErrors errors)
        : Run(program, arguments, errors, spawn::makePipe(), spawn::makePipe()) {}

    /// False when nothing has ended within `most`.
    bool waitForEnd(std::optional<milliseconds> most, const StopSignal *stop) {
        const BootClock clock;
        const auto begin = clock.now();
        while (!hasEnded()) {
            auto left = most ? *most - std::chrono::ceil<milliseconds>(clock.now() - begin) : milliseconds::max();
            if (left <= 0ms || (stop && stop->isAskedFor()))
                return false;
            if (!_ending)
                left = std::min(left, lookEvery);
            std::array<pollfd, 4> fds{{{.fd = _output.descriptor(), .events = POLLIN, .revents = 0},
                                       {.fd = _error.descriptor(), .events = POLLIN, .revents = 0},
                                       {.fd = _ending.get(), .events = POLLIN, .revents = 0},
                                       {.fd = stop ? stop->descriptor() : -1, .events = POLLIN, .revents = 0}}};
            ::poll(fds.data(), fds.size(), left == milliseconds::max() ? -1 : static_cast<int>(left.count()));
            listen(mostKept);
        }
        // A child of its own may still hold the pipes, and may go on writing: what they hold now is all.
        listen(mostKept);
        return true;
    }

    void ask() const { ::kill(_pid, SIGTERM); }

    void kill() {
        ::kill(_pid, SIGKILL);
        while (::waitid(P_PID, static_cast<id_t>(_pid), &_info, WEXITED) != 0 && errno == EINTR) {
        }
    }

    CommandEnd end() const {
        return {.exitStatus = _info.si_code == CLD_EXITED ? _info.si_status : -1,
                .output = _output.heard(),
                .error = _error.heard()};
    }

private:
    Run(const QString &program, const QStringList &arguments, CommandErrors errors, spawn::Pipe output,
        spawn::Pipe error)
        : _output(std::move(output.readEnd)), _error(std::move(error.readEnd)) {
        const UniqueFd nothing = spawn::lifted(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        const UniqueFd &errorEnd = errors == CommandErrors::apart ? error.writeEnd : output.writeEnd;
        _pid = spawn::start(program, arguments,
                            {.input = nothing.get(), .output = output.writeEnd.get(), .error = errorEnd.get()});
        _ending = UniqueFd(::pidfd_open(_pid, 0));
    }

    bool hasEnded() {
        if (::waitid(P_PID, static_cast<id_t>(_pid), &_info, WEXITED | WNOHANG) == 0)
            return _info.si_pid == _pid;
        if (errno == EINTR)
            return false;
        // Somebody else has taken its end, and how it was with it.
        _info = {};
        return true;
    }

    void listen(qsizetype most) {
        _output.listen(most);
        _error.listen(most);
    }

    Listening _output;
    Listening _error;
    pid_t _pid = 0;
    UniqueFd _ending;
    siginfo_t _info{};
};

} // namespace

CommandEnd runCommand(const QString &program, const QStringList &arguments, CommandErrors errors,
                      const CommandPatience &patience) {
    const StopSignal stop(patience.stop);
    if (stop.isAskedFor())
        throw Cancelled();
    Run run(program, arguments, errors);
    if (run.waitForEnd(patience.most, &stop))
        return run.end();
    if (stop.isAskedFor()) {
        run.ask();
        run.waitForEnd(lastGrace, nullptr);
        throw Cancelled();
    }
    run.kill();
    throw std::system_error(std::make_error_code(std::errc::timed_out), program.toStdString());
}

std::optional<QString> trimmedText(const QByteArray &bytes) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(bytes);
    if (decode.hasError())
        return std::nullopt;
    return text.trimmed();
}

} // namespace zelk
