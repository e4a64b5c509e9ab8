#include "SettingsBench.h"
#include "Views/Settings/RunSettings.h"
#include "Views/Settings/SourceOrder.h"

#include <QAbstractItemModelTester>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using enum SourceId;
using Sources = std::vector<SourceId>;
using Run = SafeConfig::Run;

namespace {

SafeConfig configWith(const Sources &sources) {
    SafeConfig config = SampleData::sampleConfig();
    config.sources = sources;
    return config;
}

SafeConfig configWithRun(const Run &run) {
    SafeConfig config = SampleData::sampleConfig();
    config.run = run;
    return config;
}

constexpr Run usual{
    .searchCount = 5, .concurrency = 3, .toleranceSec = 7.5, .searchTimeoutSec = 30, .cooloffHours = 24};

// The tab, in view.
struct Bench : SettingsBench {
    explicit Bench(const std::optional<SafeConfig> &config) : SettingsBench(config) { show(2); }

    QStringList order() const {
        QStringList names;
        for (QQuickItem *each : items("sourceRow"))
            names += spoken(each);
        return names;
    }
    QList<bool> switches() const {
        QList<bool> on;
        for (QQuickItem *each : items("sourceSwitch"))
            on += isOn(each);
        return on;
    }
    void drag(int row, int by) const {
        const QQuickItem *item = items("sourceRow").at(row);
        const QPoint from = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
        QTest::mousePress(window(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(window(), from + QPoint(0, by * step / 10));
        QTest::mouseRelease(window(), Qt::LeftButton, {}, from + QPoint(0, by));
    }
    static Request sources(const Sources &sources) { return change(&ConfigPatch::sources, sources); }
    static Request run(const Run &run) { return change(&ConfigPatch::run, run); }
};

using Requests = std::vector<Request>;

} // namespace

class SourcesSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void itReadsAsItIsWritten() {
        const Bench bench(configWithRun(usual));
        const QStringList tree = bench.spokenTree();
        for (
            const QString &each :
            {u"heading: Download Sources"_s, u"list: Download Sources"_s, u"row: Soulseek"_s,
             u"switch: Enable Soulseek"_s, u"switch: Enable Bandcamp"_s, u"switch: Enable SoundCloud"_s,
             u"switch: Enable YouTube"_s, u"text: The widest catalog, as a lossy last resort."_s,
             u"text: Enable the services zelk searches for audio, and drag to set priority — higher is tried first."_s,
             u"heading: SoundCloud"_s, u"field: SoundCloud OAuth token"_s,
             u"text: Optional — unlocks higher-quality (256 kbps) SoundCloud streams. Stored securely in your Keychain."_s,
             u"heading: Advanced"_s, u"stepper: Results per source: 5"_s, u"stepper: Parallel downloads: 3"_s,
             u"stepper: Search timeout: 30s"_s, u"stepper: Cool-off after a failure: 24h"_s,
             u"text: Search and download tuning. The defaults suit most libraries."_s})
            QVERIFY2(tree.contains(each), qPrintable(each + u" is not in\n"_s + tree.join(u'\n')));
    }

    void aSourceThatIsOffKeepsAPlaceAtTheBottom() {
        const Bench bench(configWith({youtube}));
        QCOMPARE(bench.order(), (QStringList{u"YouTube"_s, u"Soulseek"_s, u"Bandcamp"_s, u"SoundCloud"_s}));
        QCOMPARE(bench.switches(), (QList<bool>{true, false, false, false}));
    }

    void withoutAConfigurationTheSourcesStandAsDeclaredAndNothingElseIsOffered() {
        const Bench bench(std::nullopt);
        QCOMPARE(bench.order(), (QStringList{u"Soulseek"_s, u"Bandcamp"_s, u"SoundCloud"_s, u"YouTube"_s}));
        QCOMPARE(bench.switches(), (QList<bool>{false, false, false, false}));
        QVERIFY(!bench.shows(u"Advanced"_s));
        QVERIFY(bench.shows(u"SoundCloud"_s));
    }

    void theListIsAtLeastAsHighAsItShouldBe() {
        const Bench bench(configWith({youtube}));
        QVERIFY(bench.item("sources")->height() >= 200);
    }

    void aDraggedSourceIsTriedInItsNewPlace() {
        Bench bench(configWith({soulseek, bandcamp, youtube}));
        bench.takeChange(configWith({youtube, soulseek, bandcamp}));
        bench.drag(2, -110);
        QCOMPARE(bench.changes(), (Requests{Bench::sources({youtube, soulseek, bandcamp})}));
        QCOMPARE(bench.order(), (QStringList{u"YouTube"_s, u"Soulseek"_s, u"Bandcamp"_s, u"SoundCloud"_s}));
    }

    void aDragOntoItsOwnPlaceStillGoesOut() {
        const Bench bench(configWith({soulseek, youtube}));
        bench.drag(1, 15);
        QCOMPARE(bench.changes(), (Requests{Bench::sources({soulseek, youtube})}));
    }

    void aSourceThatIsOffIsMovedForTheEyeAlone() {
        const Bench bench(configWith({soulseek, bandcamp, soundcloud}));
        bench.drag(3, -160);
        QCOMPARE(bench.order(), (QStringList{u"YouTube"_s, u"Soulseek"_s, u"Bandcamp"_s, u"SoundCloud"_s}));
        QCOMPARE(bench.changes(), (Requests{Bench::sources({soulseek, bandcamp, soundcloud})}));
    }

    void theKeyboardReorders() {
        const Bench bench(configWith({soulseek, bandcamp}));
        bench.items("sourceRow").at(1)->forceActiveFocus(Qt::TabFocusReason);
        bench.key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(bench.changes(), (Requests{Bench::sources({bandcamp, soulseek})}));
        QCOMPARE(bench.order().constFirst(), u"Bandcamp"_s);
    }

    void aSwitchAddsASourceInThePlaceWhereItStands() {
        Bench bench(configWith({bandcamp, youtube}));
        bench.items("sourceRow").at(2)->forceActiveFocus(Qt::TabFocusReason); // Soulseek
        bench.takeChange(configWith({bandcamp, youtube}));
        bench.key(Qt::Key_Up, Qt::AltModifier);
        settle();
        bench.takeChange(configWith({bandcamp, soulseek, youtube}));
        bench.click(bench.items("sourceSwitch").at(1));
        QCOMPARE(bench.changes().back(), Bench::sources({bandcamp, soulseek, youtube}));
        QCOMPARE(bench.switches(), (QList<bool>{true, true, true, false}));
    }

    void allSourcesOffIsAnEmptyList() {
        Bench bench(configWith({youtube}));
        bench.takeChange(configWith({}));
        bench.click(bench.items("sourceSwitch").at(0));
        QCOMPARE(bench.changes(), (Requests{Bench::sources({})}));
        QVERIFY(bench.changes().back().encodedLine(u"1"_s).contains(R"("sources":[])"));
        QCOMPARE(bench.switches(), (QList<bool>{false, false, false, false}));
    }

    void aChangeThatFailsShowsTheOldValueAndNothingIsSaid() {
        Bench bench(configWith({youtube}));
        const QStringList before = bench.texts();
        bench.client->fail(Method::setConfig, HelperError::engineError(u"busy"_s, u"Not now."_s));
        bench.click(bench.items("sourceSwitch").at(1));
        QCOMPARE(bench.changes().size(), 1U);
        QCOMPARE(bench.switches(), (QList<bool>{true, false, false, false}));
        QCOMPARE(bench.texts(), before);
        QCOMPARE(bench.model.settings()->lastError(), u"Not now."_s);
    }

    void theOrderIsTheUsersOnceTheTabHasShown() {
        Bench bench(configWith({soulseek, youtube}));
        bench.takeChange(configWith({youtube, soulseek}));
        auto applying = bench.model.settings()->apply({});
        settle();
        QCOMPARE(bench.order().constFirst(), u"Soulseek"_s);
        bench.key(Qt::Key_Escape);
        bench.open();
        QCOMPARE(bench.order().constFirst(), u"YouTube"_s);
    }

    void theTokenIsHandedInAsItStands_data() {
        QTest::addColumn<QString>("token");
        QTest::newRow("untrimmed") << u" a token "_s;
        QTest::newRow("empty") << u""_s;
    }
    void theTokenIsHandedInAsItStands() {
        QFETCH(QString, token);
        const Bench bench(configWith({soundcloud}));
        bench.item("soundcloudToken")->setProperty("text", token);
        bench.focus("soundcloudToken");
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.sent(Method::storeAccountToken),
                 (Requests{Request::storeAccountToken(AccountService::soundcloud, token)}));
        QCOMPARE(bench.item("soundcloudToken")->property("text").toString(), token);
    }

    void aTokenThatIsNotTakenLeavesNoTrace() {
        const Bench bench(configWith({soundcloud}));
        const QStringList before = bench.texts();
        bench.client->fail(Method::storeAccountToken, HelperError::engineError(u"busy"_s, u"Not now."_s));
        bench.focus("soundcloudToken");
        bench.key(Qt::Key_Return);
        settle();
        QCOMPARE(bench.texts(), before);
        QVERIFY(!bench.model.settings()->lastError());
    }

    void aStepIsSentWithTheWholeRecord_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("more");
        QTest::newRow("results") << 0 << u"Results per source: 5"_s << 6.0;
        QTest::newRow("downloads") << 1 << u"Parallel downloads: 3"_s << 4.0;
        QTest::newRow("timeout") << 2 << u"Search timeout: 30s"_s << 35.0;
        QTest::newRow("cool-off") << 3 << u"Cool-off after a failure: 24h"_s << 25.0;
    }
    void aStepIsSentWithTheWholeRecord() {
        QFETCH(int, index);
        QFETCH(double, more);
        Bench bench(configWithRun(usual));
        QQuickItem *stepper = bench.item(qPrintable(u"runSetting%1"_s.arg(index)));
        QTEST(spoken(stepper), "text");
        const Run after = RunSettings::changed(usual, index, more);
        bench.takeChange(configWithRun(after));
        bench.focus(qPrintable(u"runSetting%1"_s.arg(index)));
        bench.key(Qt::Key_Up);
        QCOMPARE(bench.changes(), (Requests{Bench::run(after)}));
        QCOMPARE(after.toleranceSec, usual.toleranceSec);
        QCOMPARE(spoken(stepper), RunSettings::text(after, index));
    }

    void rangesAndTexts_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("maximum");
        QTest::addColumn<double>("step");
        QTest::addColumn<QString>("least"); // the text at the minimum
        QTest::newRow("results") << 0 << 1.0 << 20.0 << 1.0 << u"Results per source: 1"_s;
        QTest::newRow("downloads") << 1 << 1.0 << 8.0 << 1.0 << u"Parallel downloads: 1"_s;
        QTest::newRow("timeout") << 2 << 5.0 << 120.0 << 5.0 << u"Search timeout: 5s"_s;
        QTest::newRow("cool-off: none") << 3 << 0.0 << 168.0 << 1.0 << u"Cool-off after a failure: 0h"_s;
    }
    void rangesAndTexts() {
        QFETCH(int, index);
        QFETCH(double, minimum);
        QFETCH(double, maximum);
        QFETCH(double, step);
        QCOMPARE(RunSettings::rangeOf(index), (RunSettings::Range{minimum, maximum, step}));
        QTEST(RunSettings::text(RunSettings::changed(usual, index, -1000), index), "least");
        QCOMPARE(RunSettings::valueOf(RunSettings::changed(usual, index, 1000), index), maximum);
    }

    void aValueIsCutToAWholeNumber() {
        Run run = usual;
        run.searchTimeoutSec = 29.9;
        run.cooloffHours = 0.5;
        QCOMPARE(RunSettings::text(run, 2), u"Search timeout: 29s"_s);
        QCOMPARE(RunSettings::text(run, 3), u"Cool-off after a failure: 0h"_s);
    }

    void aTimeoutBeyondTheRangeIsShownAndSteppedBackToItsEnd() {
        Run run = usual;
        run.searchTimeoutSec = 200;
        const Bench bench(configWithRun(run));
        QCOMPARE(spoken(bench.item("runSetting2")), u"Search timeout: 200s"_s);
        bench.focus("runSetting2");
        bench.key(Qt::Key_Down);
        run.searchTimeoutSec = 120;
        QCOMPARE(bench.changes(), (Requests{Bench::run(run)}));
    }

    void twoQuickStepsAreTwoChangesEachOfWhatThenHeld() {
        const Bench bench(configWithRun(usual));
        bench.focus("runSetting0");
        bench.key(Qt::Key_Up);
        bench.key(Qt::Key_Up);
        Run after = usual;
        after.searchCount = 6;
        QCOMPARE(bench.changes(), (Requests{Bench::run(after), Bench::run(after)}));
    }

    void theOrderSaysExactlyWhatChanged() {
        SourceOrder order;
        const QAbstractItemModelTester tester(&order, QAbstractItemModelTester::FailureReportingMode::QtTest);
        order.fill({youtube});
        order.setEnabled({youtube});
        order.move(0, 3);
        order.move(2, 2);
        order.move(3, 1);
        order.move(9, 0);
        QCOMPARE(order.only({youtube, soulseek, soundcloud}), (Sources{soulseek, youtube, soundcloud}));
        QCOMPARE(order.data(order.index(1), SourceOrder::Enabled), QVariant(true));
        QCOMPARE(order.data(order.index(0), SourceOrder::Name), QVariant(u"Soulseek"_s));
    }
};

QTEST_MAIN(SourcesSettingsTest)
#include "tst_sourcessettings.moc"
