#include "Store/Database.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;

namespace {

std::atomic<int> flushes = 0; // any thread

} // namespace

// The database flushes through these; the ones of the program come before the system's.
extern "C" int fsync(int descriptor) {
    ++flushes;
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}
extern "C" int fdatasync(int descriptor) {
    ++flushes;
    return static_cast<int>(::syscall(SYS_fdatasync, descriptor));
}

/// What is on the disk itself, and not only on its way there, when the engine says that it is done.
class EnginePowerCut : public QObject {
    Q_OBJECT

    QTemporaryDir _folder;

    template<class Function>
    static int flushesIn(Function function) {
        const int before = flushes;
        function();
        return flushes - before;
    }

private Q_SLOTS:
    void aDecisionIsFlushedBeforeItCounts() {
        Database database(_folder.filePath(u"engine.db"_s), [](const QString &message) { qWarning() << message; });
        const auto rest = [&] { database.recordCoolOff(u"k"_s, {1, u"f"_s, u"not found"_s}); };
        const auto decide = [&] { database.recordDecision(u"k"_s, {StoredDecision::Kind::Skip, {}}); };
        PendingReview review;
        review.trackId = u"p#1"_s;
        review.rowKey = u"k"_s;
        const auto settle = [&] {
            database.recordOutcome({review}, {StoredDecision::Kind::Take, u"/c/a.mp3"_s}, nullptr);
        };
        rest();                       // the first write makes the file
        QCOMPARE(flushesIn(rest), 0); // there may be one for each of 100,000 rows
        QVERIFY(flushesIn(decide) > 0);
        QCOMPARE(flushesIn(rest), 0);
        QVERIFY(flushesIn(settle) > 0);
    }
};

QTEST_GUILESS_MAIN(EnginePowerCut)
#include "tst_enginepowercut.moc"
