#pragma once

#include "ChaosEngine.h"
#include "ChaosLines.h"
#include "Support/Clock.h"

#include <QList>
#include <QStringList>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace zelk::chaos {

enum class CallKind { Tracks, Empty, EitherShape, Notice };

/// A call on the client and how it may end. A call of either shape is sent a second time when the first fails.
struct Call {
    CallKind kind{};
    QString tag;
    bool isRetry = false;
    std::uint64_t id = 0; ///< once the engine has read it
    Clock::Time deadline{};
    QStringList mayEnd; ///< in words, none while it must be open
    bool isSure = true; ///< false: it may still be open, although it may end
};
using CallRef = std::shared_ptr<Call>;

/// A line that the engine says, and what it means.
struct Line {
    enum class Kind { Reply, Event, Junk, Blank };
    Kind kind{};
    QByteArray bytes;
    std::uint64_t id = 0; ///< of the request that it answers
    Answer answer{};
    QString word;            ///< how the stream of events tells it
    QString unlessOtherwise; ///< of a reply in a race: how its call ends if it comes too late
};

/// A line of the client's log.
struct LogLine {
    QString text;
    CallRef racing;  ///< it is only there if this call
    QString endedAs; ///< has ended with this
};

/// What must come of what is done, told a second time and without a thread: the engine's life, the calls, the events,
/// the log, and the time of everything.
class Model {
public:
    enum class Phase { Idle, Running, Waiting, Over };

    Phase phase = Phase::Idle;
    Clock::Time now{};
    bool isReading = true;
    bool inputIsOpen = true;
    bool outputIsOpen = true;
    bool streamIsOver = false;
    bool gaveUp = false;
    int launches = 0;
    int refusals = 0;
    Clock::Time launchedAt{};
    Clock::Time restartAt{}; ///< while waiting
    std::vector<CallRef> calls;
    std::deque<QString> linesOnTheirWay; ///< tags of what the engine will read
    std::uint64_t lastId = 0;
    QStringList events;
    std::vector<LogLine> log;

    std::vector<CallRef> open() const;
    /// Those that the engine has read.
    std::vector<CallRef> answerable() const;
    std::optional<Clock::Time> nextDeadline() const;
    int alarms() const;
    /// When a crash would no longer be one too many.
    std::optional<Clock::Time> endOfDanger() const;

    void launch(const Launch &launch, const QList<Line> &lastWords);
    CallRef call(CallKind kind, const QString &tag, Clock::Duration timeout);
    /// The engine has read a line of that id and tag. False if it should not have.
    bool read(std::uint64_t id, const QString &tag);
    void hear(const Line &line);
    void advance(Clock::Time to);
    void cancel(const CallRef &call) { call->mayEnd = {QStringLiteral("cancelled")}; }
    void resumeReading();
    void closeInput();
    void end(ChildProcess::Exit exit);
    void release();
    /// With it goes the pipe that a write may wait for.
    void releaseSupervisor();

private:
    void fail(const CallRef &call, const QString &word);
    void send(const CallRef &call, Clock::Duration timeout);
    static QString outcome(const Call &call, const Line &line);
    void note(const QString &text, const CallRef &racing = {}, const QString &endedAs = {}) {
        log.push_back({text, racing, endedAs});
    }
    /// The delay before the next start, or none.
    std::optional<Clock::Duration> policyAfterCrash();

    std::vector<Clock::Time> _crashes;
    int _doublings = 0;
};

} // namespace zelk::chaos
