// The client and the supervisor against an engine that does everything that an engine must not do, in thousands of
// random histories on a clock that stands still until it is moved. Each is told by its seed: ZELK_CHAOS_SEED=N plays
// that one alone, or with ZELK_CHAOS_HISTORIES=COUNT as many from there on.
#include "ChaosHistory.h"

#include "Platform/ProcessSignals.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QTest>
#include <QTextStream>

using namespace zelk;
using namespace Qt::StringLiterals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int usualCount = 1000;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int usualCount = 1000;
#else
constexpr int usualCount = 10'000;
#endif
#else
constexpr int usualCount = 10'000;
#endif

/// On a crowded machine as many as there is time for, but never less than prove something.
constexpr std::chrono::seconds enough{60};
constexpr int fewest = 1000;

/// What must have happened in that many histories.
const QStringList mustHappen{
    u"start"_s,
    u"will refuse to start"_s,
    u"will die as soon as it is started"_s,
    u"call tracks"_s,
    u"call empty"_s,
    u"call either shape"_s,
    u"call notice"_s,
    u"cancel"_s,
    u"time"_s,
    u"a reply"_s,
    u"the same reply again"_s,
    u"a spoilt reply"_s,
    u"a reply to nobody"_s,
    u"a reply and a cancellation at once"_s,
    u"a reply and its time-out at once"_s,
    u"an event"_s,
    u"junk"_s,
    u"a blank line"_s,
    u"half of the last line"_s,
    u"complains"_s,
    u"stops reading"_s,
    u"reads again"_s,
    u"closes its input"_s,
    u"closes its output"_s,
    u"a crash"_s,
    u"a clean exit"_s,
    u"calls and the end at once"_s,
    u"it is given up on"_s,
    u"the client is released"_s,
    u"the client is released under replies"_s,
    u"the client is released under the engine's end"_s,
    u"ended as value"_s,
    u"ended as done"_s,
    u"ended as misfit"_s,
    u"ended as engine"_s,
    u"ended as no"_s,
    u"ended as crashed"_s,
    u"ended as unavailable"_s,
    u"ended as timed"_s,
    u"ended as cancelled"_s,
};

qsizetype entries(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

class TestChaos : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareProcessSignals(); }

    void whateverTheEngineDoesEveryCallEndsOnceAndNoEventIsLost() {
        bool hasSeed = false;
        const auto seed = qEnvironmentVariable("ZELK_CHAOS_SEED").toULongLong(&hasSeed);
        bool hasCount = false;
        int count = qEnvironmentVariable("ZELK_CHAOS_HISTORIES").toInt(&hasCount);
        if (!hasCount)
            count = hasSeed ? 1 : usualCount;

        const auto elsewhere = SerialExecutor::make(u"elsewhere"_s);
        chaos::Tally tally;
        const auto threads = entries(u"/proc/self/task"_s);
        qsizetype descriptors = 0;
        int played = 0;
        const auto deadline = hasCount ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(enough);
        for (; played < count && (played < fewest || !deadline.hasExpired()); ++played) {
            chaos::History history((hasSeed ? seed : 1) + static_cast<quint64>(played), elsewhere, tally);
            const QString failure = history.play();
            if (!failure.isEmpty())
                QTextStream(stderr) << failure << Qt::endl; // the test's own log cuts it off
            QVERIFY2(failure.isEmpty(), qPrintable(failure.section(u'\n', 0, 0)));
            if (played == 0)
                descriptors = entries(u"/proc/self/fd"_s);
        }
        // Threads that were let go end on their own.
        QTRY_COMPARE(entries(u"/proc/self/task"_s), threads);
        QTRY_VERIFY(entries(u"/proc/self/fd"_s) <= descriptors);
        qInfo("%d histories", played);
        if (hasSeed || played < fewest)
            return;
        for (const QString &what : mustHappen)
            QVERIFY2(tally[what] > 0, qPrintable(u"never happened: "_s + what));
    }
};

QTEST_GUILESS_MAIN(TestChaos)
#include "tst_chaos.moc"
