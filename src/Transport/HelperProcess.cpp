#include "Transport/HelperProcess.h"

#include "Platform/InputPipe.h"
#include "Support/Logger.h"
#include "Support/OneShot.h"
#include "Transport/HelperError.h"
#include "Transport/HelperLocator.h"

#include <QCoroFuture>
#include <QProcessEnvironment>
#include <QStringDecoder>

#include <algorithm>
#include <optional>
#include <vector>

namespace zelk {

namespace {

using namespace std::chrono_literals;

constexpr Clock::Duration crashPeriod = 10s;
constexpr qsizetype crashesToGiveUp = 6;
constexpr Clock::Duration firstDelay = 250ms;
constexpr Clock::Duration largestDelay = 4s;
constexpr Clock::Duration healthyRun = 30s;

std::exception_ptr gone() {
    return std::make_exception_ptr(HelperError::helperUnavailable());
}

HelperProcess::Termination classify(ChildProcess::Exit exit) {
    switch (exit.reason) {
    case ChildProcess::ExitReason::Signalled:
        return HelperProcess::Termination::crash(exit.status, QStringLiteral("signal %1").arg(exit.status));
    case ChildProcess::ExitReason::Exited:
        if (exit.status == 0)
            return HelperProcess::Termination::clean();
        return HelperProcess::Termination::crash(exit.status, QStringLiteral("exit %1").arg(exit.status));
    case ChildProcess::ExitReason::Unknown:
        break;
    }
    return HelperProcess::Termination::crash(exit.status, QStringLiteral("unknown"));
}

void logStandardError(const Logger &logger, const QByteArray &data) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(data);
    if (decode.hasError())
        return;
    const auto pieces = text.split(u'\n', Qt::SkipEmptyParts);
    for (const auto &piece : pieces)
        logger.debug(QStringLiteral("helper stderr: %1").arg(piece));
}

} // namespace

QString HelperProcess::Termination::description() const {
    if (kind == Kind::Clean)
        return QStringLiteral("clean");
    return QStringLiteral("crash(status: %1, reason: \"%2\")").arg(status).arg(reason);
}

/// The state, touched on the executor's thread only.
class HelperProcess::Core : public std::enable_shared_from_this<Core> {
public:
    Core(QString executablePath, QStringList arguments, std::shared_ptr<Clock> clock, ChildProcess::Launcher launcher)
        : _executablePath(std::move(executablePath)), _arguments(std::move(arguments)), _clock(std::move(clock)),
          _launcher(std::move(launcher)), _stdinQueue(SerialExecutor::make(QStringLiteral("orrim.zelk.helper.stdin"))) {
    }

    ~Core() { closeInput(); }

    Chunks start(OnTermination onTermination) {
        if (_process)
            qFatal("the helper was started while it runs");
        _onTermination = std::move(onTermination);
        _stdout.emplace();
        const Chunks chunks = _stdout->reader();
        try {
            _process = _launcher(_executablePath, _arguments, callbacks());
        } catch (const std::exception &failure) {
            _stdout.reset();
            _logger.error(QStringLiteral("helper failed to launch: %1").arg(QString::fromUtf8(failure.what())));
            throw HelperError::helperUnavailable();
        }
        _stdin = _process->input();
        _lastHealthyStart = _clock->now();
        _logger.info(QStringLiteral("helper launched (pid %1)").arg(_process->processId()));
        return chunks;
    }

    void write(QByteArray data, OneShotRef<void> done) {
        if (!_stdin) {
            done->fail(gone());
            return;
        }
        _stdinQueue->post([pipe = _stdin, data = std::move(data), done = std::move(done)] {
            if (pipe->write(data))
                done->fulfil();
            else
                done->fail(std::make_exception_ptr(HelperError::helperCrashed()));
        });
    }

    void terminate() {
        if (_process)
            _process->terminate();
    }

    void kill() {
        if (_process)
            _process->kill();
    }

    bool registerCrashAndShouldRestart() {
        const auto now = _clock->now();
        _crashTimestamps.push_back(now);
        std::erase_if(_crashTimestamps, [now](auto stamp) { return now - stamp > crashPeriod; });
        if (std::ssize(_crashTimestamps) >= crashesToGiveUp) {
            _logger.fault(
                QStringLiteral("helper crashed %1 times in 10s; giving up").arg(std::ssize(_crashTimestamps)));
            return false;
        }
        if (_lastHealthyStart && now - *_lastHealthyStart >= healthyRun)
            _currentBackoff = firstDelay;
        return true;
    }

    Clock::Duration nextBackoffDelay() {
        return std::exchange(_currentBackoff, std::min(_currentBackoff * 2, largestDelay));
    }

private:
    ChildProcess::Callbacks callbacks() {
        // The child is a member, and its callbacks go with it.
        return {.output = [this](const QByteArray &chunk) { _stdout->push(chunk); },
                .outputEnded = [this] { _stdout->finish(); },
                .error = [logger = _logger](const QByteArray &chunk) { logStandardError(logger, chunk); },
                .ended = [this](ChildProcess::Exit exit) { handleTermination(classify(exit)); }};
    }

    void handleTermination(const Termination &termination) {
        const auto self = shared_from_this();
        _logger.info(QStringLiteral("helper terminated: %1").arg(termination.description()));
        _stdout.reset();
        closeInput();
        // We are in a callback of the child's, so it is released on the next turn.
        SerialExecutor::current()->post([ended = std::move(_process)] {});
        if (const auto onTermination = _onTermination)
            onTermination(termination);
    }

    void closeInput() {
        if (_stdin)
            _stdin->close();
        _stdin.reset();
    }

    const QString _executablePath;
    const QStringList _arguments;
    const std::shared_ptr<Clock> _clock;
    const ChildProcess::Launcher _launcher;
    const Logger _logger{"helper"};
    const SerialExecutor::Ref _stdinQueue;
    std::optional<AsyncStream<QByteArray>> _stdout;
    std::unique_ptr<ChildProcess> _process;
    std::shared_ptr<InputPipe> _stdin;
    std::vector<Clock::Time> _crashTimestamps;
    Clock::Duration _currentBackoff = firstDelay;
    std::optional<Clock::Time> _lastHealthyStart;
    OnTermination _onTermination;
};

HelperProcess::HelperProcess(QString executablePath, QStringList arguments, std::shared_ptr<Clock> clock,
                             ChildProcess::Launcher launcher)
    : _executor(SerialExecutor::make(QStringLiteral("orrim.zelk.helper"))),
      _core(std::make_shared<Core>(std::move(executablePath), std::move(arguments), std::move(clock),
                                   std::move(launcher))) {}

HelperProcess::HelperProcess(QStringList arguments, std::shared_ptr<Clock> clock)
    : HelperProcess(HelperLocator::locate(Bundle::main(), QProcessEnvironment::systemEnvironment()),
                    std::move(arguments), std::move(clock)) {}

HelperProcess::~HelperProcess() {
    // The state ends where it lives, behind the calls that are queued.
    _executor->post([core = std::move(_core)]() mutable { core.reset(); });
}

QCoro::Task<HelperProcess::Chunks> HelperProcess::start(OnTermination onTermination) {
    auto started = std::make_shared<OneShot<std::optional<Chunks>>>(gone());
    const auto future = started->future();
    _executor->post([core = _core, started = std::move(started), onTermination = std::move(onTermination)]() mutable {
        try {
            started->fulfil(core->start(std::move(onTermination)));
        } catch (...) {
            started->fail(std::current_exception());
        }
    });
    auto chunks = co_await future;
    co_return *chunks;
}

QCoro::Task<> HelperProcess::write(QByteArray data) {
    auto done = std::make_shared<OneShot<void>>(gone());
    const auto future = done->future();
    _executor->post([core = _core, done = std::move(done), data = std::move(data)]() mutable {
        core->write(std::move(data), std::move(done));
    });
    co_await future;
}

namespace {

/// Runs `ask` on the executor and brings its answer back.
template<typename Answer, typename Core, typename Ask>
QFuture<Answer> askCore(const SerialExecutor::Ref &executor, const std::shared_ptr<Core> &core, Ask ask) {
    const auto answer = std::make_shared<OneShot<Answer>>(gone());
    auto future = answer->future();
    executor->post([core, answer, ask] {
        if constexpr (std::is_void_v<Answer>) {
            ask(*core);
            answer->fulfil();
        } else {
            answer->fulfil(ask(*core));
        }
    });
    return future;
}

} // namespace

QCoro::Task<> HelperProcess::terminate() {
    const auto done = askCore<void>(_executor, _core, [](Core &core) { core.terminate(); });
    co_await done;
}

QCoro::Task<> HelperProcess::kill() {
    const auto done = askCore<void>(_executor, _core, [](Core &core) { core.kill(); });
    co_await done;
}

QCoro::Task<bool> HelperProcess::registerCrashAndShouldRestart() {
    const auto answer =
        askCore<bool>(_executor, _core, [](Core &core) { return core.registerCrashAndShouldRestart(); });
    const bool restart = co_await answer;
    co_return restart;
}

QCoro::Task<Clock::Duration> HelperProcess::nextBackoffDelay() {
    const auto answer = askCore<Clock::Duration>(_executor, _core, [](Core &core) { return core.nextBackoffDelay(); });
    const auto delay = co_await answer;
    co_return delay;
}

} // namespace zelk
