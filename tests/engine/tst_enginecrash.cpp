#include "engine/CrashScene.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

constexpr int usualRounds = sanitized ? 20 : 200;

/// A number of the environment, so that a failure can be looked at again and the rounds be more or fewer.
quint32 numberOf(const char *variable, quint32 otherwise) {
    bool ok = false;
    const uint told = qEnvironmentVariable(variable).toUInt(&ok);
    return ok ? told : otherwise;
}

} // namespace

/// The engine killed at any moment, and started again.
class EngineCrash : public QObject {
    Q_OBJECT

    std::unique_ptr<CrashScene> _scene;

private Q_SLOTS:
    void initTestCase() {
        _scene = std::make_unique<CrashScene>(CrashScene::Extent::Many);
        QCOMPARE(_scene->expected().size(), 9);
    }

    void nothingIsLostOrDoneTwiceWhenItIsKilledAtAnyMoment() {
        const quint32 seed = numberOf("ZELK_CRASH_SEED", QRandomGenerator::global()->generate());
        const int rounds = static_cast<int>(numberOf("ZELK_CRASH_ROUNDS", usualRounds));
        qInfo("ZELK_CRASH_SEED=%u ZELK_CRASH_ROUNDS=%d, a run takes %lld ms", seed, rounds, _scene->undisturbedMs());
        QRandomGenerator random(seed);
        int killed = 0;
        double length = static_cast<double>(_scene->undisturbedMs());
        for (int round = 0; round < rounds; ++round) {
            // One moment from each stretch of the run, so that they are spread over its length.
            const double share = (round + random.generateDouble()) / rounds;
            const auto moment = static_cast<qint64>(share * 1e6 * length);
            _scene->reset();
            QElapsedTimer timer;
            timer.start();
            const auto life = _scene->live({}, [&](const CrashScene::Life &) { return timer.nsecsElapsed() > moment; });
            killed += life.done ? 0 : 1;
            if (life.done) { // the machine does more in the time than it did
                length = static_cast<double>(timer.nsecsElapsed()) / 1e6;
            }
            const QString wrong = _scene->recover(life);
            const QString place = u"round %1, killed after %2 of %3 ms: %4"_s.arg(round)
                                      .arg(static_cast<double>(moment) / 1e6)
                                      .arg(length)
                                      .arg(wrong);
            QVERIFY2(wrong.isEmpty(), qPrintable(place));
        }
        QVERIFY2(killed > rounds / 2, "most runs were over before their moment came");
    }
};

QTEST_GUILESS_MAIN(EngineCrash)
#include "tst_enginecrash.moc"
