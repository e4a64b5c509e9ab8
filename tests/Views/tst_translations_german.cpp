// The windows in German, for somebody who asks for it.
#include "FormStates.h"
#include "Views/Settings/SettingsTabs.h"
#include "Views/SummaryTexts.h"
#include "WindowBench.h"

#include <QFile>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// The English texts that German has other words for.
QSet<QString> foreignTexts() {
    QFile file(QStringLiteral(ZELK_GERMAN));
    if (!file.open(QFile::ReadOnly))
        return {};
    QSet<QString> translated;
    QSet<QString> kept;
    QString source;
    QXmlStreamReader reader(&file);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"source")
            source = reader.readElementText();
        else if (reader.name() == u"translation")
            (reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed() == source ? kept : translated) +=
                source;
    }
    return translated - kept;
}

// The texts in view in a window that are still English.
QStringList leftInEnglish(const QQuickWindow *window) {
    static const QSet<QString> foreign = foreignTexts();
    QStringList found;
    const auto texts = WindowBench::itemsOf(
        window->contentItem(), [](QQuickItem *item) { return foreign.contains(item->property("text").toString()); });
    for (QQuickItem *each : texts)
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
