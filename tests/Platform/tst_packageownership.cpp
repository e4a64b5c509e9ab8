#include "Platform/PackageOwnership.h"
#include "Support/Await.h"
#include "Support/Cancelled.h"
#include "Support/ManualClock.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class TestPackageOwnership : public QObject {
    Q_OBJECT

private:
    QTemporaryDir _home;
    std::shared_ptr<ManualClock> _clock = std::make_shared<ManualClock>();

    /// A package manager that does what `script` says.
    QString manager(const QByteArray &script) {
        const QString path = _home.filePath(u"query"_s);
        QFile::remove(path);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write("#!/bin/sh\n" + script + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther |
                            QFile::ExeOther);
        return path;
    }
    Outcome<bool> ask(const QString &path, const QString &program) const {
        return outcomeOf(isOwnedByPackageManager(path, _clock, {}, program));
    }

private Q_SLOTS:
    void theAnswerIsTheExitStatus_data() {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<bool>("owned");
        QTest::newRow("of a package") << QByteArray("exit 0") << true;
        QTest::newRow("of none") << QByteArray("exit 1") << false;
        QTest::newRow("no answer") << QByteArray("exit 2") << true;
        QTest::newRow("a crash") << QByteArray("kill -9 $$") << true;
        QTest::newRow("a flood of words")
            << QByteArray("yes | head -c 3000000; yes | head -c 3000000 >&2; exit 1") << false;
    }
    void theAnswerIsTheExitStatus() {
        QFETCH(const QByteArray, script);
        const auto outcome = ask(u"/opt/zelk.app/Contents/Linux/zelk"_s, manager(script));
        QVERIFY(outcome.succeeded());
        QTEST(*outcome.value, "owned");
    }

    void aMachineWithoutThatProgramOwnsNothing() {
        QCOMPARE(ask(u"/opt/zelk"_s, _home.filePath(u"missing"_s)).value, false);
    }

    void aProgramThatIsThereAndDoesNotStartCountsAsYes_data() {
        QTest::addColumn<QString>("program");
        const QString plain = _home.filePath(u"plain"_s);
        QVERIFY(QFile(plain).open(QIODevice::WriteOnly));
        QTest::newRow("not executable") << plain;
        QTest::newRow("a folder") << _home.path();
        const QString orphan = _home.filePath(u"orphan"_s);
        QVERIFY(QFile::rename(manager("exit 1"), orphan));
        QFile file(orphan);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/nowhere/sh\nexit 1\n");
        QTest::newRow("its interpreter is missing") << orphan;
    }
    void aProgramThatIsThereAndDoesNotStartCountsAsYes() {
        QFETCH(const QString, program);
        QCOMPARE(ask(u"/opt/zelk"_s, program).value, true);
    }

    void aNameThatIsNowhereInThePathOwnsNothing() {
        QCOMPARE(ask(u"/opt/zelk"_s, u"zelk-no-such-program"_s).value, false);
    }

    void thePathIsAskedForCharacterByCharacter() {
        const QString program =
            manager("[ \"$1\" = -S ] && [ \"$2\" = -- ] && [ \"$3\" = '/opt/a\\*b\\?\\[c\\\\d e' ]");
        QCOMPARE(ask(u"/opt/a*b?[c\\d e"_s, program).value, true);
    }

    void aProgramThatHangsCountsAsYesAfterTenSeconds() {
        const QString program = manager("echo $$ >\"$0.pid\"; exec sleep 1000");
        QObject owner;
        const auto outcome = observe(&owner, isOwnedByPackageManager(u"/opt/zelk"_s, _clock, {}, program));
        QTRY_VERIFY(QFile::exists(program + u".pid"_s));
        _clock->advance(10s - 1ms);
        QTest::qWait(0);
        QVERIFY(!outcome->isOver());
        _clock->advance(1ms);
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->value, true);
        QFile file(program + u".pid"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTRY_VERIFY(!QFile::exists(u"/proc/%1/cwd"_s.arg(QString::fromLatin1(file.readAll().trimmed()))));
    }

    void itEndsWhenItIsAskedToStop() {
        std::stop_source stop;
        QObject owner;
        const auto outcome = observe(
            &owner, isOwnedByPackageManager(u"/opt/zelk"_s, _clock, stop.get_token(), manager("exec sleep 1000")));
        stop.request_stop();
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->failureText(), QString::fromUtf8(Cancelled().what()));
        QCOMPARE(_clock->pendingAlarms(), 0);
    }

    void thisSystemOwnsItsShellAndNotWhatIsTemporary() {
        if (!QFile::exists(u"/usr/bin/dpkg-query"_s))
            QSKIP("There is no dpkg here.");
        QCOMPARE(outcomeOf(isOwnedByPackageManager(u"/usr/bin/dpkg-query"_s, _clock)).value, true);
        QCOMPARE(outcomeOf(isOwnedByPackageManager(_home.path(), _clock)).value, false);
    }
};

QTEST_GUILESS_MAIN(TestPackageOwnership)
#include "tst_packageownership.moc"
