#include "Settings/SettingsBench.h"
#include "State/Records.h"
#include "WindowBench.h"

#include <QMetaProperty>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using ColorScheme = DesktopSettings::ColorScheme;

namespace {

using Colors = QSet<QRgb>;

Colors colorsOf(bool dark) {
    Palette palette;
    palette.setDark(dark);
    Colors found;
    const QMetaObject *const about = palette.metaObject();
    for (int i = 0; i < about->propertyCount(); ++i) {
        if (const QVariant value = about->property(i).read(&palette); value.typeId() == QMetaType::QColor)
            found.insert(value.value<QColor>().rgba());
    }
    return found;
}

// What is drawn in a window, by the palette that it is drawn with.
struct Drawn {
    int dark = 0;
    int light = 0;
    QStringList others; // what isn't drawn with the wanted one

    Drawn(QQuickItem *content, bool wantsDark) {
        const auto all = WindowBench::itemsOf(content, [](QQuickItem *) { return true; });
        for (QQuickItem *each : all) {
            if (!each->inherits("QQuickText") && !each->inherits("QQuickRectangle"))
                continue;
            const QRgb color = each->property("color").value<QColor>().rgba();
            static const Colors darks = colorsOf(true);
            static const Colors lights = colorsOf(false);
            const bool isDark = darks.contains(color) && !lights.contains(color);
            const bool isLight = lights.contains(color) && !darks.contains(color);
            dark += isDark ? 1 : 0;
            light += isLight ? 1 : 0;
            if (wantsDark ? isLight : isDark)
                others += each->objectName() + u' ' + each->property("text").toString();
        }
    }
};

// The main window, and the settings of the same desktop beside it.
struct Bench {
    void want(ColorScheme scheme) {
        main.desktop->setColorScheme(scheme);
        beside.desktop->setColorScheme(scheme);
    }
    // Everything of the main window that isn't there from the start.
    void makeParts() {
        main.desktop->setReducedMotion(true);
        main.loadLibrary();
        main.model.sync()->route(syncStarted(u"run-1"_s));
        main.model.sync()->route(playlistStarted(u"p"_s, {u"p#0"_s, u"p#1"_s, u"p#2"_s}));
        main.model.sync()->route(needsReview(u"p#0"_s, {candidateOf(u"c1"_s), candidateOf(u"c2"_s)}));
        main.model.openReview();
        QTRY_VERIFY(main.item("candidate"));
        QTRY_COMPARE(main.items("trackRow").size(), 3);
        QTRY_VERIFY(main.item("playlistRow"));
        main.click(main.item("candidate"));
        main.model.sync()->setBanner(SyncBanner::info(u"Hello"_s));
        QTRY_VERIFY(main.item("banner"));
        main.drawFrame();
    }
    QQuickItem *settings() const { return beside.window()->contentItem(); }

    WindowBench main;
    SettingsBench beside;
};

} // namespace

class WindowsBesideTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cleanup() { settleDown(); }

    void theMainWindowComesBeforeTheSettingsWhenItIsCalled() {
        const Bench bench;
        bench.beside.window()->requestActivate();
        QTRY_COMPARE(QGuiApplication::focusWindow(), bench.beside.window());
        bench.main.window.bringToFront();
        QTRY_COMPARE(QGuiApplication::focusWindow(), bench.main.window.window());
    }

    void aMinimisedMainWindowIsOpenWhenItIsCalled_data() {
        QTest::addColumn<Qt::WindowState>("before");
        QTest::newRow("as it was") << Qt::WindowNoState;
        QTest::newRow("maximised as it was") << Qt::WindowMaximized;
    }
    void aMinimisedMainWindowIsOpenWhenItIsCalled() {
        QFETCH(Qt::WindowState, before);
        const Bench bench;
        QQuickWindow *const window = bench.main.window.window();
        window->setWindowStates(before | Qt::WindowMinimized);
        bench.main.window.bringToFront();
        QCOMPARE(window->windowStates(), Qt::WindowStates(before));
        QTRY_COMPARE(QGuiApplication::focusWindow(), window);
    }

    void whatIsMadeBesideTheSettingsHasTheColoursOfTheDesktop_data() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("dark") << true;
        QTest::newRow("light") << false;
    }
    void whatIsMadeBesideTheSettingsHasTheColoursOfTheDesktop() {
        QFETCH(bool, dark);
        Bench bench;
        bench.want(dark ? ColorScheme::dark : ColorScheme::light);
        bench.makeParts();
        const Drawn drawn(bench.main.content(), dark);
        QCOMPARE(drawn.others, QStringList());
        QVERIFY((dark ? drawn.dark : drawn.light) > 50);
    }

    void aChangeReachesAllPartsOfBothWindows() {
        Bench bench;
        bench.makeParts();
        for (int tab = 0; tab < 8; ++tab)
            bench.beside.show(tab);
        for (const bool dark : {true, false, true}) {
            bench.want(dark ? ColorScheme::dark : ColorScheme::light);
            bench.main.drawFrame();
            QCOMPARE(Drawn(bench.main.content(), dark).others, QStringList());
            QCOMPARE(Drawn(bench.settings(), dark).others, QStringList());
        }
    }

    void theSetupThatIsMadeBesideTheSettingsHasTheColoursOfTheDesktop() {
        Bench bench;
        bench.want(ColorScheme::dark);
        bench.main.model.beginOnboarding();
        QTRY_VERIFY(bench.main.item("setupSheet"));
        bench.main.drawFrame();
        QCOMPARE(Drawn(bench.main.content(), true).others, QStringList());
    }

    void aTabThatIsMadeAfterOtherWindowsHasTheColoursOfTheDesktop() {
        Bench bench;
        bench.want(ColorScheme::dark);
        const WindowBench later;
        for (int tab = 0; tab < 8; ++tab) {
            bench.beside.show(tab);
            QCOMPARE(Drawn(bench.settings(), true).others, QStringList());
        }
    }
};

QTEST_MAIN(WindowsBesideTest)
#include "tst_windowsbeside.moc"
