#include "Support/ScriptedClient.h"
#include "Views/OrphansLogic.h"
#include "WindowBench.h"

#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class OrphansLogicTest : public QObject {
    Q_OBJECT

    QTranslator m_english;
    std::shared_ptr<ScriptedClient> client;
    std::shared_ptr<SeenFiles> files;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<OrphansLogic> logic;

    static QStringList paths(int count) {
        QStringList result;
        for (int i = 1; i <= count; ++i)
            result += u"/music/Gone %1.aiff"_s.arg(i);
        return result;
    }
    void find(int count) { model->orphans()->accumulate(paths(count)); }

private Q_SLOTS:
    void initTestCase() {
        Q_INIT_RESOURCE(translations);
        QVERIFY(m_english.load(u":/zelk/i18n/zelk_en.qm"_s));
        QCoreApplication::installTranslator(&m_english);
    }
    void init() {
        client = std::make_shared<ScriptedClient>();
        files = std::make_shared<SeenFiles>();
        model = std::make_unique<AppModel>(client, surroundings());
        logic = std::make_unique<OrphansLogic>(*model, files);
    }
    void cleanup() {
        logic.reset();
        model.reset();
        client.reset();
        settleDown();
    }

    void withoutOrphansItIsHidden() {
        QVERIFY(!logic->shown());
        find(1);
        QVERIFY(logic->shown());
        model->orphans()->reset();
        QVERIFY(!logic->shown());
    }

    void itFindsTheOrphansWhenTheStoreComes() {
        AppModel late(
            [] {
                return AppModel::Engine{.client = std::make_shared<MockHelperClient>(),
                                        .start = []() -> QCoro::Task<> { co_return; }};
            },
            surroundings());
        const OrphansLogic lateLogic(late, files);
        QVERIFY(!lateLogic.shown());
        startTask(&late, [&late](const std::stop_token &) { return late.start(); });
        QTRY_VERIFY(late.orphans());
        late.orphans()->accumulate(paths(2));
        QVERIFY(lateLogic.shown());
    }

    void itCountsTheFilesInTheirNumber_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("listed");
        QTest::addColumn<QString>("more");
        QTest::newRow("one") << 1 << u"1 leftover file no longer in your playlists"_s << 1 << QString();
        QTest::newRow("two") << 2 << u"2 leftover files no longer in your playlists"_s << 2 << QString();
        QTest::newRow("ten") << 10 << u"10 leftover files no longer in your playlists"_s << 10 << QString();
        QTest::newRow("eleven") << 11 << u"11 leftover files no longer in your playlists"_s << 10
                                << u"and 1 more file…"_s;
        QTest::newRow("twelve") << 12 << u"12 leftover files no longer in your playlists"_s << 10
                                << u"and 2 more files…"_s;
    }
    void itCountsTheFilesInTheirNumber() {
        QFETCH(int, count);
        QFETCH(int, listed);
        find(count);
        QTEST(logic->message(), "message");
        QTEST(logic->more(), "more");
        QCOMPARE(logic->names().size(), listed);
    }

    void itListsNamesAloneInTheStoresOrder() {
        model->orphans()->accumulate({u"/music/B & C/Zebra.aiff"_s, u"/music/Aa.mp3"_s, u"/music/Bundle.app/"_s});
        QCOMPARE(logic->names(), (QStringList{u"Zebra.aiff"_s, u"Aa.mp3"_s, u"Bundle.app"_s}));
    }

    void itIsFoldedWheneverItComes() {
        find(1);
        QVERIFY(!logic->expanded());
        logic->toggle();
        QVERIFY(logic->expanded());
        model->orphans()->accumulate({u"/music/Another.aiff"_s});
        QVERIFY(logic->expanded());
        logic->keep();
        model->orphans()->reset();
        find(1);
        QVERIFY(!logic->expanded());
        logic->toggle();
        logic->toggle();
        QVERIFY(!logic->expanded());
    }

    void keepingHidesItAndLeavesTheFiles() {
        find(3);
        logic->keep();
        QVERIFY(!logic->shown());
        QVERIFY(model->orphans()->dismissed());
        QCOMPARE(model->orphans()->paths(), paths(3));
        QVERIFY(client->sent().empty());
    }

    void onceKeptItStaysHiddenWithNewFiles() {
        find(1);
        logic->keep();
        QSignalSpy changed(logic.get(), &OrphansLogic::changed);
        find(5);
        QVERIFY(!logic->shown());
        QCOMPARE(changed.count(), 0);
    }

    void theTrashTakesAllOfThem() {
        find(14);
        logic->moveToTrash();
        settleDown();
        QCOMPARE(client->sent(), std::vector{Request::trashOrphans(paths(14))});
    }

    void itChangesOnlyWhenTheFilesHaveGone() {
        find(12);
        logic->toggle();
        QSignalSpy changed(logic.get(), &OrphansLogic::changed);
        logic->moveToTrash();
        settleDown();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(logic->names().size(), 10);
        logic->moveToTrash(); // the buttons stay live
        settleDown();
        QCOMPARE(client->held(), 2);
        client->releaseFailing(HelperError::engineError(u"io"_s, u"no"_s));
        settleDown();
        QVERIFY(logic->shown());
        QCOMPARE(changed.count(), 0);
        client->release("null");
        settleDown();
        QVERIFY(!logic->shown());
        QVERIFY(model->orphans()->paths().isEmpty());
    }

    void whatItLeavesWithIsWhatItSaid() {
        find(2);
        client->reply(Method::trashOrphans, "null");
        logic->moveToTrash();
        settleDown();
        QVERIFY(!logic->shown());
        QCOMPARE(logic->message(), u"2 leftover files no longer in your playlists"_s);
        QCOMPARE(logic->names().size(), 2);
    }

    void aFileIsShownInTheFileBrowser() {
        find(3);
        logic->reveal(1);
        logic->reveal(3);
        logic->reveal(-1);
        QCOMPARE(files->revealed, QStringList{u"/music/Gone 2.aiff"_s});
    }
};

QTEST_GUILESS_MAIN(OrphansLogicTest)
#include "tst_orphanslogic.moc"
