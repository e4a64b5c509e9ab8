#include "engine/CrashScene.h"

#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

/// What an event tells, without of what: "step tagging".
QString kindOf(const QJsonObject &event) {
    const QJsonObject data = dataOf(event);
    QString kind = event.value("event"_L1).toString();
    for (const auto detail : {"phase"_L1, "status"_L1, "kind"_L1, "result"_L1}) {
        kind += u' ' + data.value(detail).toString();
    }
    return kind.simplified();
}

constexpr int stride = sanitized ? 9 : 1;

} // namespace

/// The engine killed at each of its own steps, so that none depends on luck.
class EngineCrashSteps : public QObject {
    Q_OBJECT

    std::unique_ptr<CrashScene> _scene;

private Q_SLOTS:
    void initTestCase() {
        _scene = std::make_unique<CrashScene>(CrashScene::Extent::OneOfEach);
        QCOMPARE(_scene->expected().size(), 4);
    }

    void itIsKilledAsSoonAsItTells_data() {
        QTest::addColumn<int>("position");
        QStringList kinds;
        for (qsizetype i = 0; i < _scene->undisturbed().size(); ++i) {
            if (const QString kind = kindOf(_scene->undisturbed()[i]); !kinds.contains(kind)) {
                kinds += kind;
                QTest::newRow(qPrintable(kind)) << static_cast<int>(i);
            }
        }
        for (const auto kind : {"syncStarted", "diskCheck missing", "step searching", "downloadProgress",
                                "step converting", "step tagging", "step verifying", "needsReview",
                                "trackFinished ok downloaded", "trackFinished failed", "syncDone"}) {
            QVERIFY2(kinds.contains(QLatin1StringView(kind)), kind);
        }
    }

    void itIsKilledAsSoonAsItTells() {
        QFETCH(int, position);
        const QString kind = kindOf(_scene->undisturbed()[position]);
        _scene->reset();
        const auto life = _scene->live(
            {}, [&](const CrashScene::Life &so) { return !so.events.isEmpty() && kindOf(so.events.last()) == kind; });
        const QString wrong = _scene->recover(life);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    }

    void itIsKilledBeforeEachChangeOfAFile_data() {
        QTest::addColumn<QString>("below");
        QTest::addColumn<int>("least");
        QTest::newRow("output folder") << _scene->home().output() << 20;
        QTest::newRow("memory") << _scene->home().path(u".local/share/zelk"_s) << 40;
    }

    void itIsKilledBeforeEachChangeOfAFile() {
        QFETCH(QString, below);
        QFETCH(int, least);
        QProcessEnvironment environment;
        environment.insert(u"LD_PRELOAD"_s, QStringLiteral(KILLAT_LIBRARY));
        environment.insert(u"KILL_BELOW"_s, below);
        int change = 1;
        for (bool killed = true; killed; change += stride) {
            environment.insert(u"KILL_AT"_s, QString::number(change));
            _scene->reset();
            const auto life = _scene->live(environment, [](const CrashScene::Life &) { return false; });
            killed = !life.done;
            const QString wrong = _scene->recover(life);
            QVERIFY2(wrong.isEmpty(), qPrintable(u"before change %1: %2"_s.arg(change).arg(wrong)));
        }
        QVERIFY2(change > least, qPrintable(u"only %1 changes were seen"_s.arg(change)));
    }
};

QTEST_GUILESS_MAIN(EngineCrashSteps)
#include "tst_enginecrashsteps.moc"
