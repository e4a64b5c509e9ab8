#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace zelk {

class InputPipe;

/// A child with three pipes that outlives us if we go: neither the release of this object nor the end of the program
/// stops it; all it hears is the end of its input. Started and used on one executor's thread, where its callbacks run.
class ChildProcess {
public:
    enum class ExitReason { Exited, Signalled, Unknown };
    struct Exit {
        ExitReason reason = ExitReason::Unknown;
        int status = 0; ///< the exit status, or the number of the signal
    };

    struct Callbacks {
        /// A chunk of its standard output as it was read, never empty.
        std::function<void(const QByteArray &)> output;
        /// Its standard output has ended; called at most once, and not at all if the child's end comes first.
        std::function<void()> outputEnded;
        /// A chunk of its standard error, never empty.
        std::function<void(const QByteArray &)> error;
        /// It has ended; called once, last, after all that its pipes still held. This object may be released in it.
        std::function<void(Exit)> ended;
    };

    virtual ~ChildProcess() = default;

    /// Starts `program` with `arguments`, in our environment and working directory. Throws std::system_error with what
    /// the platform says.
    static std::unique_ptr<ChildProcess> launch(const QString &program, const QStringList &arguments,
                                                Callbacks callbacks);
    /// How a child is started: `launch`, or what a test has in its place.
    using Launcher =
        std::function<std::unique_ptr<ChildProcess>(const QString &program, const QStringList &, Callbacks)>;

    virtual qint64 processId() const = 0;
    virtual std::shared_ptr<InputPipe> input() const = 0;
    /// Asks it politely to end.
    virtual void terminate() = 0;
    /// Ends it, which it can't refuse.
    virtual void kill() = 0;
};

} // namespace zelk
