#include "Support/ScriptedClient.h"
#include "Views/CommandsLogic.h"
#include "WindowBench.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class CommandsLogicTest : public QObject {
    Q_OBJECT

    std::shared_ptr<ScriptedClient> client;
    std::shared_ptr<SeenFiles> files;
    QList<QUrl> opened;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<CommandsLogic> logic;

    void configure(const std::optional<QString> &outputDir) {
        SafeConfig config = SampleData::sampleConfig();
        config.outputDir = outputDir;
        client->reply(Method::getConfig, "{\"config\":" + writeJSON(config) + "}");
        SettingsStore *settings = model->settings();
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
        QTRY_VERIFY(settings->config());
    }

private Q_SLOTS:
    void init() {
        client = std::make_shared<ScriptedClient>();
        files = std::make_shared<SeenFiles>();
        opened.clear();
        model = std::make_unique<AppModel>(client, surroundings());
        logic = std::make_unique<CommandsLogic>(
            *model, CommandsLogic::Outside{files, [this](const QUrl &url) { opened.append(url); }, {}});
    }
    void cleanup() {
        logic.reset();
        model.reset();
        client.reset();
        settleDown();
    }

    void syncAndCancelFollowThePhase_data() {
        QTest::addColumn<SyncPhase>("phase");
        QTest::addColumn<bool>("running");
        QTest::newRow("idle") << SyncPhase::idle << false;
        QTest::newRow("preparing") << SyncPhase::preparing << true;
        QTest::newRow("running") << SyncPhase::running << true;
        QTest::newRow("done") << SyncPhase::done << false;
        QTest::newRow("cancelled") << SyncPhase::cancelled << false;
        QTest::newRow("interrupted") << SyncPhase::interrupted << false;
    }
    void syncAndCancelFollowThePhase() {
        QFETCH(SyncPhase, phase);
        SyncStore *sync = model->sync();
        if (phase != SyncPhase::idle)
            sync->markPreparing();
        if (phase != SyncPhase::idle && phase != SyncPhase::preparing)
            sync->route(HelperEvent::server(ServerEvent::SyncStarted{u"r"_s, u"r"_s, 1}));
        if (phase == SyncPhase::done)
            sync->route(HelperEvent::server(ServerEvent::SyncDone{u"r"_s, u"r"_s, {}}));
        if (phase == SyncPhase::cancelled)
            sync->markCancelled();
        if (phase == SyncPhase::interrupted)
            sync->route(HelperEvent::helperCrashed());
        QCOMPARE(sync->phase(), phase);
        QTEST(logic->running(), "running");
        QCOMPARE(logic->canSync(), !logic->running());
    }

    void theOutputFolderIsShownWithTheTildePutOut_data() {
        QTest::addColumn<QString>("outputDir");
        QTest::addColumn<QString>("shown");
        QTest::newRow("in the home") << u"~/Music/zelk"_s << QDir::homePath() + u"/Music/zelk"_s;
        QTest::newRow("absolute") << u"/srv/music"_s << u"/srv/music"_s;
    }
    void theOutputFolderIsShownWithTheTildePutOut() {
        QFETCH(QString, outputDir);
        QFETCH(QString, shown);
        configure(outputDir);
        logic->revealOutput();
        QCOMPARE(files->revealed, QStringList{shown});
    }

    void withoutAnOutputFolderNothingIsShown() {
        logic->revealOutput(); // there is no configuration yet
        configure(std::nullopt);
        logic->revealOutput();
        QVERIFY(files->revealed.isEmpty());
        AppModel bare([]() -> AppModel::Engine { throw HelperError::helperMissing(); }, surroundings());
        CommandsLogic(bare, {files, {}, {}}).revealOutput(); // nor a store to have one
        QVERIFY(files->revealed.isEmpty());
    }

    void helpIsTheWebsite() {
        logic->openHelp();
        QCOMPARE(opened, QList{QUrl(QStringLiteral(ZELK_WEBSITE))});
        QCOMPARE(opened.value(0).scheme(), u"https"_s);
        QVERIFY(opened.value(0).path().isEmpty());
    }

    void withoutSettingsThereAreNoneToOpen() {
        QVERIFY(!logic->canOpenSettings());
        int times = 0;
        CommandsLogic with(*model, {files, {}, {}, {}, [&times] { ++times; }});
        QVERIFY(with.canOpenSettings());
        with.openSettings();
        QCOMPARE(times, 1);
    }

    void withoutALibraryARefreshIsNoMatter() {
        AppModel bare([]() -> AppModel::Engine { throw HelperError::helperMissing(); }, surroundings());
        CommandsLogic(bare, {files, {}, {}}).refreshLibrary();
        settleDown();
        QVERIFY(client->sent().empty());
    }
};

QTEST_GUILESS_MAIN(CommandsLogicTest)
#include "tst_commandslogic.moc"
