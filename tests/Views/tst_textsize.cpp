#include "DialogBench.h"
#include "State/Records.h"
#include "Support/ScriptedClient.h"
#include "TextFit.h"
#include "Views/QuestionDialog.h"
#include "Views/UpdateDialog.h"
#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Event = ServerEvent;

namespace {

CandidateDTO candidate(const char *id, const QString &title, double confidence) {
    CandidateDTO each = candidateOf(QString::fromLatin1(id));
    each.title = title;
    each.confidence = confidence;
    return each;
}

// The smallest window over an engine with a tunnel, at a scale of text.
class Bench : public WindowBench {
public:
    explicit Bench(double textScale) : Bench(std::make_shared<ScriptedClient>()) {
        desktop->setTextScale(textScale);
        window.window()->resize(window.window()->minimumSize());
        SafeConfig config = SampleData::sampleConfig();
        config.proxy.configured = config.proxy.enabled = true;
        engine->reply(Method::getConfig, "{\"config\":" + writeJSON(config) + "}");
        SettingsStore *settings = model.settings();
        startTask(settings, [settings](const std::stop_token &) { return settings->refresh(); });
        QTRY_VERIFY(settings->config() == config);
        loadLibrary();
    }

    // One row in each state, all that may stand beside the rows, and the review.
    void showEverything() {
        model.library()->setSelection({u"gigs"_s}); // opens it
        model.sync()->route(syncStarted(u"run"_s));
        QStringList ids;
        for (int i = 0; i < 9; ++i)
            ids += u"t%1"_s.arg(i);
        model.sync()->route(playlistStarted(u"peak"_s, ids));
        const PlaylistGroup *group = model.sync()->groups()->at(0);
        group->track(0)->setState(TrackState::checkingDisk());
        group->track(1)->setState(TrackState::working(Phase::searching));
        group->track(2)->setState(TrackState::working(Phase::downloading));
        group->track(2)->setDownloadFraction(0.41);
        model.sync()->route(downloadProgress(u"t2"_s, 41, u"3.4 / 8.2 MB"_s, u"1.2 MB/s"_s));
        group->track(4)->setState(TrackState::present(TrackMeta{u"flac"_s, {}, u"soundcloud"_s}));
        group->track(5)->setState(TrackState::done(Finish::lowConfidence));
        group->track(6)->setState(TrackState::failed(u"No match found"_s));
        group->track(7)->setState(TrackState::done(Finish::skipped));
        for (const QString &id : {u"t3"_s, u"t8"_s})
            model.sync()->route(needsReview(id, {candidate("c1", u"Undertow (Original Mix)"_s, 0.68),
                                                 candidate("c2", u"Undertow (Live)"_s, 0.31)}));
        model.orphans()->accumulate({u"/music/Gone 1.aiff"_s, u"/music/Gone 2.aiff"_s});
        model.sync()->setBanner(SyncBanner::info(u"The engine was restarted and the run was ended."_s));
        QTRY_VERIFY(item("orphansBanner"));
        QTRY_VERIFY(item("banner"));
        settle();
    }
    // Moves what moves to its place.
    void settle() {
        desktop->setReducedMotion(true);
        drawFrame();
        settleDown();
        drawFrame();
    }

    std::shared_ptr<ScriptedClient> engine;

private:
    explicit Bench(const std::shared_ptr<ScriptedClient> &client) : WindowBench(client), engine(client) {
        engine->reply(Method::listPlaylists, "{\"playlists\":" + writeJSON(library()) + "}");
        engine->reply(Method::proxyInfo, R"({"ok":false,"nodeCount":0})");
    }
};

// Names that are the user's, the engine's words on a row, and paths.
bool mayElide(QQuickItem *text) {
    return TextFit::isIn(
        text, {u"trackRow"_s, u"playlistRow"_s, u"folderRow"_s, u"candidate"_s, u"orphansFile"_s, u"groupName"_s});
}

QString faultsOf(const QQuickWindow *window) {
    const QStringList faults = TextFit::faults(window->contentItem(), mayElide);
    for (const QString &each : faults)
        qWarning("%s", qPrintable(each));
    return faults.join(u'\n');
}

// Large text leaves little room in a small window.
void scrollTo(QQuickItem *item) {
    QQuickItem *around = item;
    while (around && !around->inherits("QQuickFlickable"))
        around = around->parentItem();
    QVERIFY(around);
    const double lacking = item->mapRectToItem(around, item->boundingRect()).bottom() - around->height();
    if (lacking > 0)
        around->setProperty("contentY", around->property("contentY").toDouble() + lacking);
}

} // namespace

class TextSizeTest : public QObject {
    Q_OBJECT

    static void scales() {
        QTest::addColumn<double>("scale");
        for (const double scale : {1.0, 1.1, 1.25, 1.4, 1.5})
            QTest::addRow("%g", scale) << scale;
    }

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s)); }
    void cleanup() { settleDown(); }

    void everyTextOfTheWindowShowsWhole_data() { scales(); }
    void everyTextOfTheWindowShowsWhole() {
        QFETCH(double, scale);
        Bench bench(scale);
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
        bench.showEverything();
        QVERIFY(bench.item("toolbarVPN") && bench.item("toolbarReview") && bench.item("trackRow"));
        QCOMPARE(faultsOf(bench.window.window()), QString());
        bench.click(bench.item("orphansToggle"));
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
    }

    void everyTextOfTheReviewShowsWhole_data() { scales(); }
    void everyTextOfTheReviewShowsWhole() {
        QFETCH(double, scale);
        Bench bench(scale);
        bench.showEverything();
        bench.model.openReview();
        QTRY_VERIFY(bench.item("reviewInspector"));
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
        QTRY_VERIFY(bench.item("candidate"));
        scrollTo(bench.item("candidate"));
        bench.click(bench.item("candidate"));
        QTRY_VERIFY(bench.item("reviewUseSelected"));
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
    }

    void everyTextOfAMenuShowsWhole_data() { scales(); }
    void everyTextOfAMenuShowsWhole() {
        QFETCH(double, scale);
        Bench bench(scale);
        bench.settle();
        bench.click(bench.item("toolbarVPN"));
        QTRY_VERIFY(bench.item("menuVPNTest"));
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(!bench.item("menuVPNTest"));
        bench.showEverything();
        bench.click(bench.item("trackRow", 0), {}, Qt::RightButton);
        QTRY_VERIFY(bench.item("menuCopyTitle"));
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
    }

    void everyTextOfADialogShowsWhole_data() { scales(); }
    void everyTextOfADialogShowsWhole() {
        QFETCH(double, scale);
        DialogBench bench;
        bench.host.tokens().setTextScale(scale);
        QuestionDialog question(bench.host);
        const auto answer = question.ask({u"May zelk look at your exported library and its covers?"_s,
                                          u"It reads the file and changes nothing in it. "_s.repeated(4), u"Allow"_s,
                                          u"Don't Allow"_s});
        UpdateDialog update(bench.host);
        update.show(UpdateScene::Any(UpdateScene::Found{.version = u"2.0"_s,
                                                        .current = u"1.0"_s,
                                                        .notes = u"Faster.\n"_s.repeated(40),
                                                        .delivery = UpdateDelivery::download}));
        for (const char *name : {"questionDialog", "updateDialog"}) {
            QQuickWindow *dialog = DialogBench::shown(name);
            QVERIFY(dialog);
            QVERIFY(QTest::qWaitForWindowExposed(dialog));
            QCOMPARE(faultsOf(dialog), QString());
            QVERIFY(DialogBench::item(dialog, "dialogPrimary"));
            dialog->close();
        }
    }

    void theWindowFollowsWhileItShows() {
        Bench bench(1);
        bench.showEverything();
        bench.desktop->setTextScale(1.5);
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
        bench.desktop->setTextScale(1);
        bench.settle();
        QCOMPARE(faultsOf(bench.window.window()), QString());
    }
};

QTEST_MAIN(TextSizeTest)
#include "tst_textsize.moc"
