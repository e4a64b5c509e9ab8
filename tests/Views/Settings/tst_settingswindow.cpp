#include "SettingsBench.h"

#include <QScreen>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class SettingsWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void theTabsStandInTheirOrder() {
        const SettingsBench bench;
        QStringList labels;
        for (QQuickItem *each : bench.items("settingsTab"))
            labels += spoken(each);
        QCOMPARE(labels, (QStringList{u"General"_s, u"Accounts"_s, u"Sources"_s, u"Quality"_s, u"Output"_s,
                                      u"Vantrix VPN"_s, u"Command Line"_s, u"Diagnostics"_s}));
    }

    void itHasItsSizeAndItsName() {
        const SettingsBench bench;
        QCOMPARE(bench.window()->size(), QSize(720, 640));
        QCOMPARE(bench.window()->title(), u"Settings"_s);
    }

    void inLargeTextItIsNoHigherThanTheScreen() {
        SettingsBench bench;
        bench.desktop->setTextScale(1.5);
        settle();
        QCOMPARE(bench.window()->height(), qMin(960, bench.window()->screen()->availableVirtualSize().height()));
        QVERIFY(bench.window()->height() < 960); // or this screen shows nothing of it
    }

    void showingItReadsTheConfigurationOnce() {
        SettingsBench bench;
        QCOMPARE(bench.client->sentCount(Method::getConfig), 1);
        bench.settings->open();
        settle();
        QCOMPARE(bench.client->sentCount(Method::getConfig), 1);
    }

    void thereIsOneWindowHoweverOftenItIsOpened() {
        SettingsBench bench;
        QQuickWindow *first = bench.window();
        bench.settings->open();
        QCOMPARE(bench.window(), first);
    }

    void theKeysThatCloseItDo_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("Escape") << Qt::Key_Escape << Qt::KeyboardModifiers();
        QTest::newRow("Ctrl+W") << Qt::Key_W << Qt::KeyboardModifiers(Qt::ControlModifier);
    }
    void theKeysThatCloseItDo() {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        const SettingsBench bench;
        bench.key(key, modifiers);
        QVERIFY(!bench.window());
    }

    void itComesBackWithTheTabAndThePlaceThatItWasLeftWith() {
        SettingsBench bench;
        bench.show(3);
        bench.window()->setPosition(33, 44);
        bench.key(Qt::Key_Escape);
        QVERIFY(!bench.window());
        bench.open();
        QVERIFY(bench.shows(u"Minimum quality floor"_s));
        QCOMPARE(bench.window()->position(), QPoint(33, 44));
    }

    void anOpeningBeginsAnewButForThat() {
        SettingsBench bench;
        bench.show(2);
        bench.item("soundcloudToken")->setProperty("text", u"secret"_s);
        bench.key(Qt::Key_Escape);
        bench.open();
        QCOMPARE(bench.item("soundcloudToken")->property("text").toString(), QString());
        QCOMPARE(bench.client->sentCount(Method::getConfig), 2);
    }

    void escapeTakesAwayAnOpenMenuFirst() {
        const SettingsBench bench;
        bench.click("theme");
        QTRY_COMPARE(bench.entries().size(), 3);
        bench.key(Qt::Key_Escape);
        QTRY_VERIFY(bench.entries().isEmpty());
        QVERIFY(bench.window());
    }

    void whatWasTypedStaysWhileAnotherTabIsInView() {
        SettingsBench bench;
        bench.show(2);
        bench.item("soundcloudToken")->setProperty("text", u"secret"_s);
        bench.show(0);
        bench.show(2);
        QCOMPARE(bench.item("soundcloudToken")->property("text").toString(), u"secret"_s);
    }

    void theKeyboardGoesFromTabToTab() {
        SettingsBench bench;
        const auto current = [&bench] {
            int at = -1;
            for (int i = 0; i < bench.items("settingsTab").size(); ++i) {
                if (bench.items("settingsTab").at(i)->property("current").toBool())
                    at = i;
            }
            return at;
        };
        QCOMPARE(current(), 0);
        bench.key(Qt::Key_Right);
        QCOMPARE(current(), 1);
        bench.key(Qt::Key_End);
        QCOMPARE(current(), 7);
        bench.key(Qt::Key_Right); // the last one is the last one
        QCOMPARE(current(), 7);
        bench.key(Qt::Key_Left);
        QCOMPARE(current(), 6);
        bench.key(Qt::Key_Home);
        QCOMPARE(current(), 0);
        bench.key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(current(), 7);
        bench.key(Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(current(), 0);
    }

    void theWordsOfATabKeepAwayFromItsEdges() {
        SettingsBench bench;
        QList<double> widths;
        for (const QQuickItem *tab : bench.items("settingsTab"))
            widths += tab->width();
        for (int i = 0; i < widths.size(); ++i) {
            bench.show(i);
            const QQuickItem *const tab = bench.items("settingsTab").at(i);
            QCOMPARE(tab->width(), widths.at(i)); // nothing moves
            const auto words = SettingsBench::itemsOf(bench.items("settingsTab").at(i),
                                                      [](QQuickItem *each) { return each->inherits("QQuickText"); });
            QVERIFY2(words.value(0)->implicitWidth() + 2 * 8 <= tab->width() + 0.5, qPrintable(QString::number(i)));
        }
    }

    void theRingOfATabIsForTheKeyboardAlone() {
        SettingsBench bench;
        const auto ringed = [&bench](int index) {
            return !SettingsBench::itemsOf(bench.items("settingsTab").at(index), [](QQuickItem *each) {
                        return each->property("controlRadius").isValid();
                    }).isEmpty();
        };
        QVERIFY(!ringed(0));
        bench.key(Qt::Key_Right);
        QVERIFY(ringed(1));
        bench.show(4);
        QVERIFY(bench.items("settingsTab").at(4)->hasActiveFocus());
        QVERIFY(!ringed(4));
        // Nor does it come when the window does.
        QWindow other;
        other.show();
        other.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        bench.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(bench.window()));
        QVERIFY(!ringed(4));
        bench.key(Qt::Key_Left);
        QVERIFY(ringed(3));
        bench.show(3);
        QVERIFY(!ringed(3));
    }

    void aScreenReaderPicksATab() {
        SettingsBench bench;
        QQuickItem *tab = bench.items("settingsTab").at(7);
        auto *interface = QAccessible::queryAccessibleInterface(tab);
        QCOMPARE(interface->role(), QAccessible::PageTab);
        QVERIFY(!interface->state().selected);
        QVERIFY(press(tab));
        QVERIFY(interface->state().selected);
        QTRY_VERIFY(bench.item("runAll"));
    }

    void everyTabIsThereInLightAndInDark() {
        SettingsBench bench;
        for (const auto scheme : {DesktopSettings::ColorScheme::light, DesktopSettings::ColorScheme::dark}) {
            bench.desktop->setColorScheme(scheme);
            for (int tab = 0; tab < 8; ++tab) {
                bench.show(tab);
                QVERIFY(!bench.texts().isEmpty());
            }
            QCOMPARE(bench.window()->color(), bench.settings->tokens().color()->window);
        }
    }

    void theSurfacesGoByTheWishForOpaqueOnes() {
        SettingsBench bench;
        QVERIFY(bench.settings->tokens().glass()->usesTranslucency());
        bench.appearance->setReduceGlassEffects(true);
        QVERIFY(!bench.settings->tokens().glass()->usesTranslucency());
    }

    void theKeyboardBringsWhatItComesToIntoView() {
        SettingsBench bench;
        bench.show(2);
        const auto y = [&bench] { return bench.item("runSetting3")->mapToScene(QPointF()).y(); };
        QVERIFY(y() > bench.window()->height());
        bench.focus("runSetting3");
        QTRY_VERIFY(y() + 26 < bench.window()->height());
    }
};

QTEST_MAIN(SettingsWindowTest)
#include "tst_settingswindow.moc"
