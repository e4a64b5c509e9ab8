#include "Platform/PrivateBus.h"
#include "Platform/SingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

using namespace zelk;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

using Claim = SingleInstance::Claim;

/// Has the place on the connection "leaver", which ends without an answer once it was called as often as it waits for.
class Leaver : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit Leaver(int awaited) : _awaited(awaited) {}
    bool hasLeft() const { return _awaited == 0; }

public Q_SLOTS:
    void Activate(const QVariantMap &) {
        setDelayedReply(true);
        if (--_awaited > 0)
            return;
        QTimer::singleShot(0, this, [] { QDBusConnection::disconnectFromBus(u"leaver"_s); });
    }

private:
    int _awaited;
};

/// Over a bus of its own, on which each instance has a connection of its own, as each process has.
class TestSingleInstance : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    QStringList _connections;

    QDBusConnection connection(const QString &name) {
        _connections.append(name);
        return _bus.connection(name);
    }
    std::unique_ptr<SingleInstance> instance(const QString &name, const QString &folder,
                                             std::chrono::milliseconds patience = 20s) {
        return SingleInstance::on(connection(name), folder, patience);
    }
    /// What each comes to that claims elsewhere, all at once, while this thread answers what it is called for.
    static QList<Claim> claimAside(const QList<SingleInstance *> &instances, const QString &token) {
        QList<std::optional<Claim>> claimed(instances.size());
        std::vector<std::unique_ptr<QThread>> asides;
        for (qsizetype i = 0; i < instances.size(); ++i) {
            asides.emplace_back(QThread::create(
                [&slot = claimed[i], instance = instances[i], token] { slot = instance->claim(token); }));
            asides.back()->start();
        }
        QList<Claim> all;
        for (qsizetype i = 0; i < instances.size(); ++i) {
            QThread &aside = *asides[std::size_t(i)];
            if (!QTest::qWaitFor([&] { return aside.isFinished(); }, 60000))
                qFatal("a claim never ends");
            aside.wait();
            all.append(claimed[i].value());
        }
        return all;
    }
    static Claim claimAside(SingleInstance &instance, const QString &token) {
        return claimAside(QList{&instance}, token).first();
    }
    /// Lets `leaver` have the place of "/etc".
    void give(Leaver &leaver) {
        auto claimer = instance(u"claimer"_s, u"/etc"_s);
        QCOMPARE(claimer->claim({}), Claim::first);
        const QString name = names().value(0);
        claimer.reset();
        auto bus = connection(u"leaver"_s);
        QVERIFY(bus.registerObject(u"/org/orrim/zelk"_s, &leaver, QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(name));
    }
    QStringList names() const {
        return _bus.connection(u"watcher"_s).interface()->registeredServiceNames().value().filter(u"Instance_"_s);
    }

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() {
        QDBusConnection::disconnectFromBus(u"watcher"_s);
        _bus.stop();
    }
    void cleanup() {
        for (const auto &name : std::exchange(_connections, {}))
            QDBusConnection::disconnectFromBus(name);
        QTRY_COMPARE(names(), QStringList());
    }

    void theFirstHasThePlaceUntilItGoes() {
        auto first = instance(u"first"_s, u"/etc"_s);
        QCOMPARE(first->claim({}), Claim::first);
        QCOMPARE(names().size(), 1);
        first.reset();
        QCOMPARE(names(), QStringList());
        QCOMPARE(instance(u"second"_s, u"/etc"_s)->claim({}), Claim::first);
    }

    void theNameOnTheBusTellsNothingOfTheFolder() {
        const auto first = instance(u"first"_s, u"/etc"_s);
        QCOMPARE(first->claim({}), Claim::first);
        const QRegularExpression form(u"^org\\.orrim\\.zelk\\.Instance_[0-9a-f]{16}$"_s);
        QVERIFY2(form.match(names().value(0)).hasMatch(), qPrintable(names().join(u' ')));
    }

    void anotherStartCallsTheFirstToTheFrontWithItsToken() {
        const auto first = instance(u"first"_s, u"/etc"_s);
        QCOMPARE(first->claim({}), Claim::first);
        const QSignalSpy called(first.get(), &SingleInstance::calledToFront);
        const auto second = instance(u"second"_s, u"/etc"_s);
        QCOMPARE(claimAside(*second, u"token-1"_s), Claim::answered);
        QCOMPARE(claimAside(*second, {}), Claim::answered);
        QCOMPARE(called.size(), 2);
        QCOMPARE(called.at(0), QVariantList{u"token-1"_s});
        QCOMPARE(called.at(1), QVariantList{QString()});
    }

    void oneThatOnlyCalledLeavesThePlaceAlone() {
        const auto first = instance(u"first"_s, u"/etc"_s);
        QCOMPARE(first->claim({}), Claim::first);
        auto second = instance(u"second"_s, u"/etc"_s);
        QCOMPARE(claimAside(*second, {}), Claim::answered);
        second.reset();
        QCOMPARE(names().size(), 1);
    }

    void eachFolderIsAPlaceOfItsOwn() {
        const auto one = instance(u"one"_s, u"/etc"_s);
        const auto other = instance(u"other"_s, u"/usr"_s);
        QCOMPARE(one->claim({}), Claim::first);
        QCOMPARE(other->claim({}), Claim::first);
        QCOMPARE(names().size(), 2);
    }

    void aFolderIsOneByAllItsNames_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("the same") << u"real"_s;
        QTest::newRow("with a slash") << u"real/"_s;
        QTest::newRow("by a way around") << u"real/../real/."_s;
        QTest::newRow("by a link") << u"link"_s;
    }
    void aFolderIsOneByAllItsNames() {
        QFETCH(QString, name);
        const QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkdir(u"real"_s));
        QVERIFY(QFile::link(home.filePath(u"real"_s), home.filePath(u"link"_s)));
        const auto first = instance(u"first"_s, home.filePath(u"real"_s));
        QCOMPARE(first->claim({}), Claim::first);
        QCOMPARE(instance(u"second"_s, home.filePath(name), 50ms)->claim({}), Claim::unanswered);
    }

    void aFolderIsTheSameBeforeItIsThere() {
        const QTemporaryDir home;
        const QString folder = home.filePath(u"a/Übung b"_s);
        const auto first = instance(u"first"_s, folder);
        QCOMPARE(first->claim({}), Claim::first);
        QVERIFY(QDir().mkpath(folder));
        QCOMPARE(instance(u"second"_s, folder, 50ms)->claim({}), Claim::unanswered);
    }

    void nobodyWaitsLongForOneThatDoesNotAnswer() {
        const auto first = instance(u"first"_s, u"/etc"_s);
        QCOMPARE(first->claim({}), Claim::first);
        // It lives on this thread, which does nothing else meanwhile.
        QCOMPARE(instance(u"second"_s, u"/etc"_s, 200ms)->claim({}), Claim::unanswered);
    }

    void whoeverGotNoAnswerHasThePlaceOnceItIsFree() {
        auto first = instance(u"first"_s, u"/etc"_s);
        QCOMPARE(first->claim({}), Claim::first);
        const auto second = instance(u"second"_s, u"/etc"_s, 50ms);
        QCOMPARE(second->claim({}), Claim::unanswered);
        first.reset();
        const QSignalSpy called(second.get(), &SingleInstance::calledToFront);
        QCOMPARE(claimAside(*instance(u"third"_s, u"/etc"_s), {}), Claim::answered);
        QCOMPARE(called.size(), 1);
    }

    void whoeverFindsTheOtherGoneTakesThePlace() {
        Leaver leaver(1);
        give(leaver);
        QCOMPARE(claimAside(*instance(u"later"_s, u"/etc"_s), {}), Claim::first);
        QVERIFY(leaver.hasLeft());
    }

    void ofTwoThatFindTheOtherGoneOneTakesThePlaceAndTheOtherCallsIt() {
        Leaver leaver(2);
        give(leaver);
        const auto one = instance(u"one"_s, u"/etc"_s);
        const auto other = instance(u"other"_s, u"/etc"_s);
        auto claims = claimAside(QList{one.get(), other.get()}, {});
        std::ranges::sort(claims);
        QCOMPARE(claims, (QList{Claim::first, Claim::answered}));
        QVERIFY(leaver.hasLeft());
    }

    void withoutABusThereIsNoPlace() {
        QCOMPARE(SingleInstance::on(QDBusConnection(u"no such bus"_s), u"/etc"_s, 20s)->claim({}), Claim::none);
        QCOMPARE(SingleInstance::ofSession(u"/etc"_s)->claim({}), Claim::none); // tests run without a session
    }
};

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
