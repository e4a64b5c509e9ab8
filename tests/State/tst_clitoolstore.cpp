#include "State/CLIToolStore.h"

#include <QFile>
#include <QMetaEnum>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using State = CLIToolStore::State;

/// On a root and a home of its own.
class TestCLIToolStore : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> _folder;
    CLIToolPlaces _places;
    std::optional<QString> _engine;
    std::unique_ptr<CLIToolStore> _store;

    QString makeFile(const QString &path, bool executable = false) const {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return {};
        if (executable)
            file.setPermissions(file.permissions() | QFile::ExeOwner);
        return path;
    }
    static void link(const QString &path, const QString &target) {
        QDir().mkpath(QFileInfo(path).path());
        QVERIFY(QFile::link(target, path));
    }
    State detected() const {
        _store->detect();
        return _store->state();
    }

private Q_SLOTS:
    void init() {
        _folder = std::make_unique<QTemporaryDir>();
        _places = {.home = _folder->filePath(u"a home's \"own\""_s), .root = _folder->filePath(u"root"_s)};
        _engine = makeFile(_folder->filePath(u"zelk.app/Contents/Helpers/zelk"_s));
        _store = std::make_unique<CLIToolStore>(_places, [this] { return _engine; });
    }
    void cleanup() { _store.reset(); }

    void thePlacesAreTheMachinesAndThenTheUsers() {
        const CLIToolPlaces real{.home = u"/home/ada"_s, .root = {}};
        QCOMPARE(real.links()[0], u"/usr/local/bin/zelk"_s);
        QCOMPARE(real.links()[1], u"/home/ada/.local/bin/zelk"_s);
        const CLIToolPlaces homeless{.home = u"/"_s, .root = {}};
        QCOMPARE(homeless.userLink(), u"/.local/bin/zelk"_s);
        QCOMPARE(CLIToolPlaces::ofThisUser().home, QDir::homePath());
        QCOMPARE(CLIToolPlaces::ofThisUser().root, QString());
    }

    void beforeTheFirstLookNothingIsKnown() {
        QCOMPARE(_store->state(), State::unknown());
        QVERIFY(!_store->detectedVersion());
        QCOMPARE(_store->property("kind").value<CLIToolKind>(), CLIToolKind::unknown);
    }

    void nothingAtEitherPlaceIsNotInstalled() { QCOMPARE(detected(), State::notInstalled()); }

    void aLinkToThisEngineIsInstalled() {
        link(_places.systemLink(), *_engine);
        QCOMPARE(detected(), State::installedSymlink(*_engine));
        QCOMPARE(_store->property("target").toString(), *_engine);
    }

    void aLinkOfTheUsersOwnIsInstalledLikewise() {
        link(_places.userLink(), *_engine);
        QCOMPARE(detected(), State::installedSymlink(*_engine));
    }

    void theMachinesPlaceComesFirst() {
        makeFile(_places.systemLink());
        link(_places.userLink(), *_engine);
        QCOMPARE(detected(), State::foreignCopy(_places.systemLink()));
    }

    void aRegularFileIsAForeignCopy_data() {
        QTest::addColumn<bool>("isUsers");
        QTest::newRow("the machine's") << false;
        QTest::newRow("the user's") << true;
    }
    void aRegularFileIsAForeignCopy() {
        QFETCH(bool, isUsers);
        const QString place = isUsers ? _places.userLink() : _places.systemLink();
        makeFile(place, true);
        QCOMPARE(detected(), State::foreignCopy(place, {}));
        QCOMPARE(_store->property("path").toString(), place);
        QCOMPARE(_store->property("version").toString(), QString());
        QVERIFY(!_store->detectedVersion());
    }

    void aLinkToAnotherEngineThatExistsIsStale() {
        link(_places.systemLink(), makeFile(_folder->filePath(u"old.app/zelk"_s)));
        QCOMPARE(detected(), State::installedSymlinkStale());
    }

    void aLinkToAMovedApplicationIsNotThereAtAll() {
        link(_places.systemLink(), _folder->filePath(u"gone.app/zelk"_s));
        QCOMPARE(detected(), State::notInstalled());
        link(_places.userLink(), *_engine);
        QCOMPARE(detected(), State::installedSymlink(*_engine));
    }

    void aTargetThatGoesDuringTheLookLeavesTheLinkDangling() {
        const QString old = makeFile(_folder->filePath(u"old.app/zelk"_s));
        link(_places.systemLink(), old);
        CLIToolStore store(_places, [&]() -> std::optional<QString> {
            QFile::remove(old);
            return std::nullopt;
        });
        store.detect();
        QCOMPARE(store.state(), State::dangling());
    }

    void onlyTheSamePathIsThisEngine() {
        link(_folder->filePath(u"other"_s), _folder->filePath(u"zelk.app"_s));
        link(_places.systemLink(), _folder->filePath(u"other/Contents/Helpers/zelk"_s));
        QCOMPARE(detected(), State::installedSymlinkStale());
    }

    void aRelativeLinkIsReadFromItsOwnFolder() {
        makeFile(_places.systemFolder() + u"/old"_s);
        link(_places.systemLink(), u"old"_s);
        QCOMPARE(detected(), State::installedSymlinkStale());
    }

    void withoutAnEngineALinkIsStale() {
        link(_places.systemLink(), *_engine);
        _engine.reset();
        QCOMPARE(detected(), State::installedSymlinkStale());
    }

    void theEngineIsLookedForEachTime() {
        link(_places.systemLink(), *_engine);
        const auto found = std::exchange(_engine, std::nullopt);
        QCOMPARE(detected(), State::installedSymlinkStale());
        _engine = found;
        QCOMPARE(_store->preferredTarget(), found);
        QCOMPARE(detected(), State::installedSymlink(*found));
    }

    void aLookTellsOnlyOfWhatChanged() {
        QSignalSpy told(_store.get(), &CLIToolStore::stateChanged);
        _store->detect();
        QCOMPARE(told.count(), 1);
        _store->detect();
        QCOMPARE(told.count(), 1);
        link(_places.systemLink(), *_engine);
        _store->detect();
        QCOMPARE(told.count(), 2);
        _store->detect();
        QCOMPARE(told.count(), 2);
    }

    void aVersionThatWasAskedForIsKept() {
        QSignalSpy told(_store.get(), &CLIToolStore::detectedVersionChanged);
        _store->setDetectedVersion(u"zelk 1.2"_s);
        _store->setDetectedVersion(u"zelk 1.2"_s);
        QCOMPARE(told.count(), 1);
        QCOMPARE(_store->property("detectedVersion").toString(), u"zelk 1.2"_s);
        _store->detect();
        QCOMPARE(_store->detectedVersion(), std::optional(u"zelk 1.2"_s));
        _store->setDetectedVersion({});
        QCOMPARE(_store->property("detectedVersion").toString(), QString());
    }

    void theEngineOfABundleIsFoundAndItsAbsenceIsNoFailure() {
        const Bundle bundle(_folder->filePath(u"zelk.app"_s), {});
        QVERIFY(!CLIToolStore::engineOf(bundle, {}));
        makeFile(_folder->filePath(u"zelk.app/Contents/Helpers/zelk"_s), true);
        QCOMPARE(CLIToolStore::engineOf(bundle, {}), std::optional(bundle.path() + u"/Contents/Helpers/zelk"_s));
    }

    void eachStateHasItsKindAndItsTexts_data() {
        QTest::addColumn<State>("state");
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<QStringList>("texts"); // target, path, version
        QTest::newRow("unknown") << State::unknown() << QByteArray("unknown") << QStringList{{}, {}, {}};
        QTest::newRow("not installed") << State::notInstalled() << QByteArray("notInstalled")
                                       << QStringList{{}, {}, {}};
        QTest::newRow("installed") << State::installedSymlink(u"/t"_s) << QByteArray("installedSymlink")
                                   << QStringList{u"/t"_s, {}, {}};
        QTest::newRow("stale") << State::installedSymlinkStale() << QByteArray("installedSymlinkStale")
                               << QStringList{{}, {}, {}};
        QTest::newRow("copy") << State::foreignCopy(u"/p"_s) << QByteArray("foreignCopy")
                              << QStringList{{}, u"/p"_s, {}};
        QTest::newRow("copy with a version")
            << State::foreignCopy(u"/p"_s, u"1"_s) << QByteArray("foreignCopy") << QStringList{{}, u"/p"_s, u"1"_s};
        QTest::newRow("fallback") << State::fallbackInstalled(u"/f"_s) << QByteArray("fallbackInstalled")
                                  << QStringList{{}, u"/f"_s, {}};
        QTest::newRow("dangling") << State::dangling() << QByteArray("dangling") << QStringList{{}, {}, {}};
    }
    void eachStateHasItsKindAndItsTexts() {
        QFETCH(State, state);
        QFETCH(QByteArray, kind);
        QFETCH(QStringList, texts);
        QCOMPARE(QMetaEnum::fromType<CLIToolKind>().valueToKey(static_cast<int>(state.kind())), kind);
        QCOMPARE((QStringList{state.target(), state.path(), state.version()}), texts);
    }
};

QTEST_GUILESS_MAIN(TestCLIToolStore)
#include "tst_clitoolstore.moc"
