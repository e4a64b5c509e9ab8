#include "Views/Appearance.h"
#include "Views/DialogHost.h"
#include "WindowBench.h"

#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using ColorScheme = DesktopSettings::ColorScheme;

class AppearanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void thePreferenceMakesSurfacesOpaque() {
        const auto defaults = freshDefaults();
        Appearance appearance(std::make_shared<GivenDesktop>(), defaults);
        QCOMPARE(appearance.glass(), GlassResolver::fallback());
        QSignalSpy changed(&appearance, &Appearance::changed);
        appearance.setReduceGlassEffects(true);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(appearance.glass(), GlassResolver{.prefersOpaque = true});
        QVERIFY(defaults->boolValue(u"reduceGlassEffects"_s));
        appearance.setReduceGlassEffects(true);
        QCOMPARE(changed.count(), 1);
        QVERIFY(Appearance(std::make_shared<GivenDesktop>(), defaults).reduceGlassEffects());
    }

    void theDesktopsWishesShowAtOnce() {
        const auto desktop = std::make_shared<GivenDesktop>();
        Appearance appearance(desktop, freshDefaults());
        TokensSingleton tokens;
        const bool before = tokens.color()->dark();
        appearance.dress(tokens);
        QCOMPARE(tokens.color()->dark(), before); // no preference: as the application is
        desktop->setColorScheme(ColorScheme::dark);
        QVERIFY(tokens.color()->dark());
        desktop->setColorScheme(ColorScheme::light);
        QVERIFY(!tokens.color()->dark());
        desktop->setColorScheme(ColorScheme::noPreference);
        QCOMPARE(tokens.color()->dark(), before);
        desktop->setIncreasedContrast(true);
        QCOMPARE(tokens.glass()->resolver(), GlassResolver{.increaseContrast = true});
        desktop->setReducedMotion(true);
        QVERIFY(tokens.motion()->reduced());
        QCOMPARE(tokens.motion()->banner(), 0);
        QVERIFY(tokens.glass()->resolver().reduceMotion);
        desktop->setReducedMotion(false);
        QVERIFY(!tokens.motion()->reduced());
    }

    void textIsAsLargeAsTheDesktopsUserWantsIt() {
        const auto desktop = std::make_shared<GivenDesktop>();
        Appearance appearance(desktop, freshDefaults());
        TokensSingleton tokens;
        appearance.dress(tokens);
        QSignalSpy changed(&tokens, &TokensSingleton::textScaleChanged);
        QCOMPARE(tokens.font()->body.pixelSize(), 13);
        QCOMPARE(tokens.size()->trackRow, 34);
        desktop->setTextScale(1.25);
        QCOMPARE(tokens.font()->body.pixelSize(), 16);
        QCOMPARE(tokens.size()->trackRow, 43);
        QCOMPARE(tokens.size()->hairline, 1);
        desktop->setTextScale(2);
        QCOMPARE(tokens.textScale(), 1.5); // the most that the views have room for
        QCOMPARE(tokens.size()->button, 42);
        QCOMPARE(changed.count(), 2);
        desktop->setTextScale(3);
        QCOMPARE(changed.count(), 2);
        desktop->setTextScale(0.5);
        QCOMPARE(tokens.textScale(), 1.0);
        QCOMPARE(tokens.font()->body.pixelSize(), 13);
    }

    void theWindowGrowsWithItsTextAtOnce() {
        WindowBench bench;
        bench.loadLibrary();
        bench.beginRun(4, 30);
        QTRY_VERIFY(bench.item("trackRow"));
        bench.drawFrame();
        QQuickItem *table = bench.item("trackTable");
        QCOMPARE(bench.item("trackRow")->height(), 34.0);
        QCOMPARE(bench.item("playlistRow")->height(), 42.0);
        const double before = table->property("contentHeight").toDouble();
        const double rows = 4 * (80 + 28 + 30 * 34);
        const int inset = table->property("topInset").toInt();
        table->setProperty("contentY", inset + 80 + 28 + 10 * 34); // the eleventh row is the first in view
        bench.desktop->setTextScale(1.5);
        bench.drawFrame();
        QCOMPARE(bench.item("trackRow")->height(), 51.0);
        QCOMPARE(bench.item("playlistRow")->height(), 63.0);
        QCOMPARE(table->property("contentHeight").toDouble(), before + rows / 2);
        QCOMPARE(table->property("contentY").toDouble(), inset + 1.5 * (80 + 28 + 10 * 34)); // and still is
        bench.desktop->setTextScale(1);
        bench.drawFrame();
        QCOMPARE(bench.item("trackRow")->height(), 34.0);
        QCOMPARE(table->property("contentHeight").toDouble(), before);
    }

    void aLineIsWholePixelsOfItsDevice() {
        const TokensSingleton tokens;
        QCOMPARE(tokens.hairline(1), 1.0);
        QCOMPARE(tokens.hairline(1.25) * 1.25, 1.0);
        QCOMPARE(tokens.hairline(1.5) * 1.5, 2.0);
        QCOMPARE(tokens.hairline(2) * 2, 2.0);
    }

    void tokensThatHaveGoneAreNotFollowedBy() {
        const auto desktop = std::make_shared<GivenDesktop>();
        Appearance appearance(desktop, freshDefaults());
        auto tokens = std::make_unique<TokensSingleton>();
        appearance.dress(*tokens);
        tokens.reset();
        desktop->setColorScheme(ColorScheme::dark);
        QCOMPARE(appearance.glass(), GlassResolver::fallback());
    }

    void theWindowIsAsItsUserWantsItFromTheStart() {
        WindowBench bench;
        bench.desktop->setColorScheme(ColorScheme::dark);
        QCOMPARE(bench.window.window()->color(), bench.window.tokens().color()->window);
        QVERIFY(bench.window.tokens().color()->dark());
        bench.desktop->setReducedMotion(true);
        bench.model.sync()->setBanner(SyncBanner::info(u"Hello"_s));
        QVERIFY(bench.item("banner"));
        QCOMPARE(bench.item("banner")->opacity(), 1.0); // at its place at once
    }

    void dialogsFollowAsTheWindowDoes() {
        const auto desktop = std::make_shared<GivenDesktop>();
        desktop->setColorScheme(ColorScheme::dark);
        DialogHost host(std::make_shared<Appearance>(desktop, freshDefaults()));
        QVERIFY(host.tokens().color()->dark());
        desktop->setColorScheme(ColorScheme::light);
        QVERIFY(!host.tokens().color()->dark());
    }

    void theBannerCastsAShadowOnlyWhileSurfacesAreTranslucent() {
        WindowBench bench;
        bench.model.sync()->setBanner(SyncBanner::info(u"Hello"_s));
        QTRY_VERIFY(bench.item("banner"));
        QVERIFY(bench.item("banner")->property("castsShadow").toBool());
        bench.desktop->setIncreasedContrast(true);
        QVERIFY(!bench.item("banner")->property("castsShadow").toBool());
    }
};

QTEST_MAIN(AppearanceTest)
#include "tst_appearance.moc"
