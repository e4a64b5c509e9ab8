#include "SettingsBench.h"
#include "Views/Settings/CLIToolLogic.h"

#include <QSignalSpy>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using State = CLIToolState;

namespace {

// The tab over a machine on which the tool isn't there.
struct Bench : SettingsBench {
    Bench() { show(6); }
    QString text(const char *name) const { return item(name)->property("text").toString(); }
    QString state() const { return item("cliState")->property("value").toString(); }
    QList<bool> enabled() const {
        return {item("cliInstall")->isEnabled(), item("cliUninstall")->isEnabled(), item("cliRepair")->isEnabled()};
    }
    void put() const { InstallerBench::makeLink(machine.places().userLink(), machine.engine); }
};

const QString note = u"Installs a zelk symlink that tracks app updates automatically."_s;

} // namespace

Q_DECLARE_METATYPE(CLIToolState)

class CLIToolSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void itReadsAsItIsWritten() {
        Bench bench;
        bench.model.cliTool()->setDetectedVersion(u"1.2.3"_s);
        QCOMPARE(bench.spokenTree(),
                 (QStringList{u"section: Status"_s, u"heading: Status"_s, u"text: State"_s, u"text: Not installed"_s,
                              u"text: Version"_s, u"text: 1.2.3"_s, u"button: Install"_s, u"button: Uninstall"_s,
                              u"button: Repair"_s, u"text: "_s + note}));
    }

    void theStates_data() {
        QTest::addColumn<CLIToolState>("state");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("installed");
        QTest::newRow("ours") << State::installedSymlink(u"/x"_s) << u"Installed"_s << true;
        QTest::newRow("stale") << State::installedSymlinkStale() << u"Installed (update available)"_s << true;
        QTest::newRow("fallback") << State::fallbackInstalled(u"/home/a/.local/bin/zelk"_s)
                                  << u"Installed at /home/a/.local/bin/zelk"_s << true;
        QTest::newRow("foreign") << State::foreignCopy(u"/usr/local/bin/zelk"_s, u"1"_s)
                                 << u"Other copy at /usr/local/bin/zelk"_s << true;
        QTest::newRow("none") << State::notInstalled() << u"Not installed"_s << false;
        QTest::newRow("dangling") << State::dangling() << u"Broken link"_s << true;
        QTest::newRow("unknown") << State::unknown() << u"Checking…"_s << false;
    }
    void theStates() {
        QFETCH(CLIToolState, state);
        QTEST(stateText(state), "text");
        QTEST(isInstalled(state), "installed");
    }

    void showingTheTabLooksOnce() {
        SettingsBench bench;
        InstallerBench::makeLink(bench.machine.places().userLink(), bench.machine.engine);
        QCOMPARE(bench.model.cliTool()->state(), State::notInstalled());
        bench.show(6);
        QCOMPARE(bench.model.cliTool()->state(), State::installedSymlink(bench.machine.engine));
    }

    void theVersionShowsOnceItIsKnown() {
        Bench bench;
        QVERIFY(!bench.item("cliToolVersion"));
        bench.model.cliTool()->setDetectedVersion(u"1.2.3"_s);
        QVERIFY(bench.shows(u"1.2.3"_s));
    }

    void withoutTheToolThereIsNothingToTakeAway() {
        const Bench bench;
        QCOMPARE(bench.text("cliInstall"), u"Install"_s);
        QCOMPARE(bench.enabled(), (QList<bool>{true, false, true}));
    }

    void theToolIsInstalledAndRemoved() {
        Bench bench;
        bench.machine.makeSystemFolder();
        bench.click("cliInstall");
        QTRY_COMPARE(bench.state(), u"Installed"_s);
        QTRY_COMPARE(bench.enabled(), (QList<bool>{true, true, true}));
        QCOMPARE(bench.text("cliInstall"), u"Reinstall"_s);
        QCOMPARE(InstallerBench::targetOf(bench.machine.places().systemLink()), bench.machine.engine);
        QVERIFY(press(bench.item("cliUninstall")));
        QTRY_COMPARE(bench.state(), u"Not installed"_s);
        QTRY_COMPARE(bench.text("cliInstall"), u"Install"_s);
    }

    void repairInstalls() {
        Bench bench;
        bench.machine.makeSystemFolder();
        bench.focus("cliRepair");
        bench.key(Qt::Key_Return);
        QTRY_COMPARE(bench.state(), u"Installed"_s);
    }

    void whileItIsBusyNothingElseIsBegun() {
        Bench bench;
        bench.put();
        bench.model.cliTool()->detect();
        QCOMPARE(bench.enabled(), (QList<bool>{true, true, true}));
        // It may be over before one looks: what counts is that each of them was off meanwhile.
        const QSignalSpy install(bench.item("cliInstall"), &QQuickItem::enabledChanged);
        const QSignalSpy uninstall(bench.item("cliUninstall"), &QQuickItem::enabledChanged);
        const QSignalSpy repair(bench.item("cliRepair"), &QQuickItem::enabledChanged);
        bench.click("cliInstall");
        for (const QSignalSpy *each : {&install, &uninstall, &repair})
            QTRY_COMPARE(each->size(), 2);
        QCOMPARE(bench.enabled(), (QList<bool>{true, true, true}));
    }

    void aFailureStandsUnderTheButtonsUntilTheNextAction() {
        Bench bench;
        QCOMPARE(spoken(bench.item("cliNote")), note);
        QVERIFY(QFile::remove(bench.machine.engine));
        bench.click("cliInstall");
        const QString text = u"The bundled zelk helper could not be located."_s;
        QTRY_VERIFY(bench.shows(text));
        QVERIFY(!bench.item("cliNote"));
        bench.machine.makeProgram(bench.machine.engine, "echo zelk 1.0");
        bench.machine.makeSystemFolder();
        QTRY_VERIFY(bench.item("cliInstall")->isEnabled());
        bench.click("cliInstall");
        QVERIFY(!bench.shows(text));
        QTRY_COMPARE(bench.state(), u"Installed"_s);
        QVERIFY(bench.item("cliNote"));
    }
};

QTEST_MAIN(CLIToolSettingsTest)
#include "tst_clitoolsettings.moc"
