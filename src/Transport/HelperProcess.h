#pragma once

#include "Platform/ChildProcess.h"
#include "Support/AsyncStream.h"
#include "Support/Clock.h"
#include "Support/SerialExecutor.h"

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace zelk {

/// Supervises the engine's process: starts it as a child with three pipes, hands its output on in chunks, writes to its
/// input in order, tells a crash from a clean exit, and keeps the record from which the crash-loop policy is decided.
///
/// All state lives on an executor of its own; each call may come from any executor's thread and resumes there. Neither
/// the release of this object nor the end of the program stops the child: its input ends, and that is all it hears.
class HelperProcess {
public:
    struct Termination {
        enum class Kind { Crash, Clean };

        static Termination crash(int status, QString reason) { return {Kind::Crash, status, std::move(reason)}; }
        static Termination clean() { return {Kind::Clean, 0, {}}; }
        /// How the log names it.
        QString description() const;

        Kind kind;
        int status;     ///< exit status or signal number of a crash
        QString reason; ///< "exit <status>", "signal <number>" or "unknown"
        bool operator==(const Termination &) const = default;
    };

    using Chunks = AsyncStream<QByteArray>::Reader;
    using OnTermination = std::function<void(const Termination &)>;

    /// What `arguments` start with is `executablePath`, not a shell. Nothing runs yet.
    HelperProcess(QString executablePath, QStringList arguments, std::shared_ptr<Clock> clock,
                  ChildProcess::Launcher launcher = ChildProcess::launch);
    /// The engine that the main bundle and the environment give; throws `HelperError::helperMissing`.
    HelperProcess(QStringList arguments, std::shared_ptr<Clock> clock);
    ~HelperProcess();
    Q_DISABLE_COPY_MOVE(HelperProcess)

    /// Launches the child. `onTermination` is called once for it, on this object's own thread, when all that it said is
    /// on the stream. To start while a child runs is a programming error and ends the program. Throws
    /// `HelperError::helperUnavailable` if the platform refuses.
    QCoro::Task<Chunks> start(OnTermination onTermination);

    /// Writes `data` whole to the child's input, after everything that was given before; ends when it is written.
    /// Throws `HelperError::helperUnavailable` if no child runs, `helperCrashed` if the write fails.
    QCoro::Task<> write(QByteArray data);

    /// Asks the child to end, if there is one.
    QCoro::Task<> terminate();
    /// Ends the child, if there is one.
    QCoro::Task<> kill();

    /// To be called once for each crash: notes it, and says whether the engine may be started again.
    QCoro::Task<bool> registerCrashAndShouldRestart();
    /// The delay before the next start. Each use doubles it, up to 4 seconds.
    QCoro::Task<Clock::Duration> nextBackoffDelay();

private:
    class Core;

    SerialExecutor::Ref _executor;
    std::shared_ptr<Core> _core;
};

} // namespace zelk
