#pragma once

#include "ChaosEngine.h"
#include "ChaosModel.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/SerialExecutor.h"
#include "Transport/HelperClient.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <map>
#include <memory>

namespace zelk::chaos {

/// How often what has happened, over many histories.
using Tally = std::map<QString, int>;

/// One random life of a client, from its making to its release, beside the model of what must come of it.
class History : public QObject {
public:
    /// `elsewhere` is a second thread that calls too.
    History(std::uint64_t seed, SerialExecutor::Ref elsewhere, Tally &tally);
    ~History() override;

    /// Plays it to its end. Empty if all came as it must; else what did not, and all steps up to there.
    QString play();

private:
    /// How a call has really ended.
    struct Ending {
        std::atomic_int times = 0;
        QString word; // to be read once there was an end
    };
    enum class Mood { Even, Crashing, Deaf, Talkative, Sleepy };

    void step();
    void stepWhileRunning();
    void stepWhileWaiting();

    void start();
    void call(int count, bool isFromElsewhere);
    static void follow(QObject *owner, const std::shared_ptr<Ending> &ending, QCoro::Task<QString> task);
    std::shared_ptr<Ending> follow(QCoro::Task<> task);
    void makeCall(const CallRef &call, Clock::Duration timeout, bool isFromElsewhere, std::stop_token stop);
    void speak();
    void raceAReply();
    void endEngine(Deeds lastDeeds);
    void crash();
    void crashUnderCalls();
    void advance(Clock::Duration by);
    void cancelOne();
    void release();
    void releaseUnderReplies();
    void releaseUnderTheEnd();
    void finish();

    Line randomLine();
    Line replyTo(std::uint64_t id, const QString &tag);
    ChildProcess::Exit randomExit();
    Launch planLaunch();
    /// How `lines` are said, behind what was left half said: in chunks cut anywhere, and perhaps with the last line
    /// half said again.
    Deeds sayings(const QList<Line> &lines, bool mayHalt);

    /// Waits for all that must come, and for nothing else.
    void settle();
    bool until(const std::function<bool()> &isSo);
    void readInput();
    void check(bool isSo, const QString &claim);
    void checkEndings();
    void checkEvents();
    void checkLog();
    const Ending &endingOf(const CallRef &call) const { return *_endings.at(call.get()); }
    void did(const QString &what, const QString &details = {});

    const std::uint64_t _seed;
    Chance _chance;
    Tally &_tally;
    const Mood _mood;
    const LogCapture _capture;
    const SerialExecutor::Ref _elsewhere;
    const std::shared_ptr<ManualClock> _clock = std::make_shared<ManualClock>();
    Engine _engine;
    Model _model;
    std::shared_ptr<HelperProcess> _process;
    std::shared_ptr<HelperClient> _client;

    QStringList _events;
    bool _streamIsOver = false;
    std::map<const Call *, std::shared_ptr<Ending>> _endings;
    std::map<const Call *, std::stop_source> _stops;
    std::optional<Line> _half; // what was begun and not yet said to its end
    QByteArray _restOfHalf;
    int _made = 0;
    bool _logIsComplete = false;
    QStringList _steps;
    QString _failure;
};

} // namespace zelk::chaos
