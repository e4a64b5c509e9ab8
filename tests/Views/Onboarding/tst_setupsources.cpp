#include "SetupWindow.h"
#include "Views/Onboarding/SetupChoices.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Screen = SetupCoordinator::Screen;
using Sources = std::vector<SourceId>;
using enum SourceId;

namespace {

SafeConfig withSources(Sources sources) {
    SafeConfig config = SampleData::sampleConfig();
    config.sources = std::move(sources);
    config.outputDir.reset();
    return config;
}

bool isOn(const SetupWindow &bench, const char *row) {
    return bench.part(row, "sourceSwitch")->property("on").toBool();
}

/// Ends the setup; what it told the engine.
ConfigPatch patchOf(SetupWindow &bench) {
    bench.goTo(Screen::finish);
    bench.engine->reply(Method::setConfig, "null");
    bench.engine->reply(Method::getConfig, SetupWindow::wrapped(SampleData::sampleConfig()));
    bench.press("setupPrimary");
    settleDown();
    for (const auto &request : bench.engine->sent()) {
        if (const auto *sent = caseOf<Request::SetConfig>(request))
            return sent->patch;
    }
    return {};
}

} // namespace

class SetupSourcesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theSourcesSayTheirTextsInTheirOrder() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources, withSources({soulseek, soundcloud}));
        QCOMPARE(
            bench.texts(bench.item("setupBody")),
            (QStringList{u"Soulseek"_s, u"Peer-to-peer lossless sharing — best quality (FLAC). No setup needed."_s,
                         u"Bandcamp"_s, u"Real FLAC for lossless tracks, straight from artists."_s, u"SoundCloud"_s,
                         u"Remixes and DJ edits. Add a token to unlock higher-quality (256 kbps) streams."_s,
                         u"SoundCloud OAuth token (optional)"_s, u"YouTube"_s,
                         u"The widest catalog, as a lossy last resort."_s, u"Privacy"_s, u"Vantrix VPN"_s,
                         u"Vantrix VPN subscription URL (optional)"_s}));
        QStringList labels;
        for (QQuickItem *each : bench.items("sourceSwitch"))
            labels += spoken(each);
        QCOMPARE(labels, (QStringList{u"Enable Soulseek"_s, u"Enable Bandcamp"_s, u"Enable SoundCloud"_s,
                                      u"Enable YouTube"_s}));
        QVERIFY(isOn(bench, "source0") && !isOn(bench, "source1") && isOn(bench, "source2") && !isOn(bench, "source3"));
    }

    void onlyASourceThatTakesAKeyAndIsOnHasAField() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources);
        QCOMPARE(bench.items("sourceToken").size(), 1);
        QVERIFY(bench.part("source2", "sourceToken"));
        QCOMPARE(bench.item("sourceToken")->property("echoMode").toInt(), 2); // masked
        bench.click(bench.part("source2", "sourceSwitch"));
        QTRY_VERIFY(!bench.item("sourceToken"));
    }

    void touchingASwitchPutsTheSourcesIntoTheirOwnOrder() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources, withSources({youtube, soulseek}));
        QVERIFY(isOn(bench, "source0") && isOn(bench, "source3"));
        QVERIFY(!isOn(bench, "source1") && !isOn(bench, "source2"));
        QCOMPARE(bench.coordinator()->selectedSources(), (Sources{youtube, soulseek}));
        bench.click(bench.part("source1", "sourceSwitch"));
        QCOMPARE(bench.coordinator()->selectedSources(), (Sources{soulseek, bandcamp, youtube}));
        QVERIFY(isOn(bench, "source1"));
        bench.press(bench.part("source0", "sourceSwitch"));
        QCOMPARE(bench.coordinator()->selectedSources(), (Sources{bandcamp, youtube}));
    }

    void everySourceMayBeOff() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources, SampleData::sampleConfig());
        for (QQuickItem *each : bench.items("sourceSwitch")) {
            each->forceActiveFocus(Qt::TabFocusReason);
            bench.key(Qt::Key_Space);
        }
        QVERIFY(bench.coordinator()->selectedSources().empty());
        QVERIFY(bench.item("setupPrimary")->isEnabled());
        QCOMPARE(patchOf(bench).sources, std::optional(Sources()));
    }

    void aTokenOutlivesItsSwitchAndIsStoredAllTheSame() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources, SampleData::sampleConfig());
        bench.type("sourceToken", u" tok "_s);
        QCOMPARE(bench.coordinator()->soundcloudToken(), u" tok "_s); // as it was typed
        bench.press(bench.part("source2", "sourceSwitch"));
        QTRY_VERIFY(!bench.item("sourceToken"));
        bench.press(bench.part("source2", "sourceSwitch"));
        QTRY_VERIFY(bench.item("sourceToken"));
        QCOMPARE(bench.item("sourceToken")->property("text").toString(), u" tok "_s);
        bench.press(bench.part("source2", "sourceSwitch"));
        bench.engine->reply(Method::storeAccountToken, "null");
        QVERIFY(!patchOf(bench).sources->empty());
        const Request::StoreAccountToken *stored = nullptr;
        for (const auto &request : bench.engine->sent()) {
            if (const auto *sent = caseOf<Request::StoreAccountToken>(request))
                stored = sent;
        }
        QVERIFY(stored);
        QCOMPARE(stored->service, AccountService::soundcloud);
        QCOMPARE(stored->token, u"tok"_s);
    }

    void theSubscriptionIsKeptForTheEnd() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources);
        bench.type("proxySubscription", u"https://x/y"_s);
        QCOMPARE(bench.coordinator()->proxySubscription(), u"https://x/y"_s);
        QCOMPARE(bench.item("proxySubscription")->property("echoMode").toInt(), 2);
        QCOMPARE(bench.engine->sentCount(Method::storeAccountToken), 0);
    }

    void theTuningSaysItsTexts() {
        SetupWindow bench;
        bench.openAt(Screen::fineTuning, withSources({}));
        QCOMPARE(bench.texts(bench.item("setupBody")),
                 (QStringList{u"Download location"_s, u"~/Music/DjayImport"_s, u"Change…"_s,
                              u"Downloads are saved here and auto-imported into your djay library."_s,
                              u"Download quality"_s, u"Best"_s, u"Upgrade to lossless whenever it's available."_s,
                              u"Balanced"_s, u"Keep 256k+/lossless; replace anything worse or missing."_s, u"Fast"_s,
                              u"Accept the first decent match — fills your library quickly."_s}));
    }

    void aQualityIsChosenAnywhereOnItsRow() {
        SetupWindow bench;
        bench.openAt(Screen::fineTuning);
        const auto selected = [&bench] {
            QStringList marks;
            for (QQuickItem *each : bench.items("qualityMark"))
                marks += each->property("name").toString();
            return marks.indexOf(u"largecircle.fill.circle"_s);
        };
        const auto isSelected = [&bench](const char *option) {
            return QAccessible::queryAccessibleInterface(bench.item(option))->state().selected;
        };
        QCOMPARE(selected(), 0);
        QVERIFY(isSelected("quality0") && !isSelected("quality2"));
        // In the gap at the right end.
        bench.drawFrame();
        const QQuickItem *fast = bench.item("quality2");
        QTest::mouseClick(bench.window.window(), Qt::LeftButton, {},
                          fast->mapToScene(QPointF(fast->width() - 4, 4)).toPoint());
        QCOMPARE(bench.coordinator()->qualityProfile(), QualityProfile::fast);
        QCOMPARE(selected(), 2);
        QVERIFY(isSelected("quality2") && !isSelected("quality0"));
        bench.press("quality1");
        QCOMPARE(bench.coordinator()->qualityProfile(), QualityProfile::balanced);
        bench.item("quality0")->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Space);
        QCOMPARE(bench.coordinator()->qualityProfile(), QualityProfile::best);
        QCOMPARE(spoken(bench.item("quality1")), u"Balanced"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(bench.item("quality1"))->role(), QAccessible::RadioButton);
    }

    void theFolderThatIsChosenIsTakenAndACancelChangesNothing() {
        SetupWindow bench;
        bench.openAt(Screen::fineTuning, withSources({}));
        bench.press("folderChoose");
        settleDown();
        QCOMPARE(bench.coordinator()->outputDir(), u"~/Music/DjayImport"_s);
        bench.folders->next = u"/music/new folder"_s;
        bench.click(bench.item("folderChoose"));
        QTRY_COMPARE(bench.coordinator()->outputDir(), u"/music/new folder"_s);
        QVERIFY(bench.shows(u"/music/new folder"_s));
        bench.press("folderChoose");
        settleDown();
        QCOMPARE(bench.folders->starts,
                 (QStringList{u"~/Music/DjayImport"_s, u"~/Music/DjayImport"_s, u"/music/new folder"_s}));
        QCOMPARE(bench.folders->titles.first(), u"Download location"_s);
    }

    void aFolderIsForTheSetupThatAskedForIt() {
        SetupWindow bench;
        bench.openAt(Screen::fineTuning, withSources({}));
        bench.folders->holds = true;
        bench.folders->next = u"/music/late"_s;
        bench.press("folderChoose");
        QTRY_COMPARE(bench.folders->starts.size(), 1);
        bench.model.setOnboardingPresented(false);
        QTRY_VERIFY(!bench.item("setupSheet"));
        bench.openAt(Screen::fineTuning, withSources({}));
        bench.folders->release();
        settleDown();
        QCOMPARE(bench.coordinator()->outputDir(), u"~/Music/DjayImport"_s);
    }

    void anIconWithoutAGlyphShowsItsSymbolInTheSameFrame() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources);
        QQuickItem *glyph = bench.part("source0", "serviceGlyph");
        QQuickItem *icon = glyph->parentItem();
        QCOMPARE(glyph->property("name").toString(), u"ServiceSoulseek"_s);
        QCOMPARE(glyph->width(), 22.0);
        icon->setProperty("assetName", u"ServiceNone"_s);
        QCOMPARE(glyph->property("name").toString(), u"music.note"_s);
        QCOMPARE(glyph->width(), 18.0); // four fifths of the frame
        QCOMPARE(icon->size(), QSizeF(22, 22));
        QCOMPARE(spoken(icon), u"Soulseek"_s);
    }

    void anIconOnATileIsWhiteAndSmaller() {
        SetupWindow bench;
        bench.openAt(Screen::connectMusic);
        QQuickItem *glyph = bench.part("appleMusicLine", "serviceGlyph");
        QCOMPARE(glyph->parentItem()->size(), QSizeF(36, 36));
        QCOMPARE(glyph->width(), 21.0); // 0.58 of it
        QCOMPARE(glyph->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(glyph->parentItem()->property("brandChip").value<QColor>(), QColor(252, 60, 68));
    }

    void anIconIsPaleWhileItsSourceIsOff() {
        SetupWindow bench;
        bench.openAt(Screen::downloadSources);
        const auto color = [&bench] {
            return bench.part("source1", "serviceGlyph")->property("color").value<QColor>();
        };
        const Palette &palette = *bench.window.tokens().color();
        QCOMPARE(color(), palette.primary);
        bench.press(bench.part("source1", "sourceSwitch"));
        QCOMPARE(color(), palette.secondary);
    }
};

QTEST_MAIN(SetupSourcesTest)
#include "tst_setupsources.moc"
