// The windows in German, for somebody who asks for it.
#include "FormStates.h"
#include "German.h"
#include "TextFit.h"
#include "Views/Settings/SettingsTabs.h"
#include "Views/SummaryTexts.h"
#include "WindowBench.h"

#include <QSet>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// The texts in view in a window that are still English.
QStringList leftInEnglish(const QQuickWindow *window) {
    static const auto texts = foreignTexts(QStringLiteral(ZELK_GERMAN));
    static const QSet<QString> foreign(texts.cbegin(), texts.cend());
    QStringList found;
    const auto items = WindowBench::itemsOf(
        window->contentItem(), [](QQuickItem *item) { return foreign.contains(item->property("text").toString()); });
    for (QQuickItem *each : items)
        found += each->property("text").toString();
    return found;
}

} // namespace

class GermanTest : public QObject {
    Q_OBJECT

public:
    // Before the application, which reads it.
    static void initMain() { qputenv("ZELK_LANGUAGE", "de"); }

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s)); }
    void cleanup() { settleDown(); }

    void everyTextIsFinished_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("German") << QStringLiteral(ZELK_GERMAN);
        QTest::newRow("the plurals of English") << QStringLiteral(ZELK_ENGLISH);
    }
    void everyTextIsFinished() {
        QFETCH(QString, path);
        const auto texts = translatedTexts(path);
        QVERIFY(texts.size() > 5);
        for (const auto &each : texts)
            QVERIFY2(each.state.isEmpty() && !each.translation.trimmed().isEmpty(), qUtf8Printable(each.source));
    }

    void theMainWindowIsInGerman() {
        WindowBench bench;
        bench.loadLibrary();
        QCOMPARE(bench.item("filterField")->property("placeholderText").toString(), u"Playlists filtern"_s);
        QTRY_VERIFY(bench.shows(u"Wähle eine Playlist"_s));
        const QString run = u"run"_s;
        bench.route(ServerEvent::SyncStarted{run, run, 1});
        bench.route(ServerEvent::PlaylistStarted{
            run, u"peak"_s, 0, u"Nachts"_s, {{u"t"_s, u"Glas"_s, u"Mira"_s, u"Ufer"_s, 200, {}}}});
        QTRY_VERIFY(bench.shows(u"Wartet"_s));
        QVERIFY(bench.shows(u"Interpret"_s) && bench.shows(u"Sync läuft"_s));
        bench.drawFrame();
        QCOMPARE(leftInEnglish(bench.window.window()).join(u'|'), QString());
    }

    void theBannerOfABrokenRunIsInGerman() {
        WindowBench bench;
        bench.loadLibrary();
        const QString run = u"run"_s;
        bench.route(ServerEvent::SyncStarted{run, run, 1});
        bench.model.sync()->route(HelperEvent::helperCrashed());
        QTRY_VERIFY(bench.shows(u"Der Sync wurde unterbrochen. Starte ihn noch einmal, um sicher fortzufahren."_s));
        bench.drawFrame();
        const auto faults = TextFit::faults(bench.item("banner"), [](QQuickItem *) { return false; });
        QCOMPARE(faults.join(u'|'), QString());
        QCOMPARE(leftInEnglish(bench.window.window()).join(u'|'), QString());
    }

    void theSettingsAreInGerman() {
        QStringList tabs;
        for (const auto &face : settingsTabFaces())
            tabs += face.label;
        QCOMPARE(tabs, (QStringList{u"Allgemein"_s, u"Konten"_s, u"Quellen"_s, u"Qualität"_s, u"Ausgabe"_s,
                                    u"Vantrix VPN"_s, u"Befehlszeile"_s, u"Diagnose"_s}));
        SettingsBench bench(FormStates::everything(false));
        QStringList left;
        FormStates::ofSettings(bench, [&](QQuickWindow *window, const char *) { left += leftInEnglish(window); });
        QCOMPARE(left, QStringList());
    }

    void theSetupIsInGerman() {
        SetupWindow bench;
        QStringList left;
        int seen = 0;
        FormStates::ofSetup(bench, [&](QQuickWindow *window, const char *) {
            left += leftInEnglish(window);
            ++seen;
        });
        QCOMPARE(left, QStringList());
        QCOMPARE(seen, 10);
    }

    void aNumberChoosesItsForm() {
        QCOMPARE(SummaryTexts::previewCounts(1, 1), u"1 Playlist · 1 Titel"_s);
        QCOMPARE(SummaryTexts::previewCounts(2, 3), u"2 Playlists · 3 Titel"_s);
        QCOMPARE(SummaryTexts::previewCounts(0, 0), u"0 Playlists · 0 Titel"_s);
    }

    void theToolkitSpeaksTheSameLanguage() {
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"Abbrechen"_s);
    }

    void keysStayTheSame() {
        const auto shortcut = [](const char *keys) {
            return QKeySequence(QCoreApplication::translate("ZELKCommands", keys), QKeySequence::PortableText);
        };
        QCOMPARE(shortcut("Ctrl+R"), QKeySequence(Qt::CTRL | Qt::Key_R));
        QCOMPARE(shortcut("Ctrl+,"), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    }
};

QTEST_MAIN(GermanTest)
#include "tst_translations_german.moc"
