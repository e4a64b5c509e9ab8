#include "SettingsBench.h"
#include "Views/Settings/QualityLogic.h"

#include <QDir>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Quality = SafeConfig::Quality;
using Identity = SafeConfig::Identity;
using Requests = std::vector<Request>;

namespace {

constexpr Quality usual{QualityFloor::mp3_320, false, true, false};

SafeConfig configWith(const Quality &quality, const Identity &identity = {.enabled = true, .strict = true}) {
    SafeConfig config = SampleData::sampleConfig();
    config.quality = quality;
    config.identity = identity;
    return config;
}

SafeConfig configWithFolder(const std::optional<QString> &folder) {
    SafeConfig config = SampleData::sampleConfig();
    config.outputDir = folder;
    return config;
}

struct QualityBench : SettingsBench {
    explicit QualityBench(const std::optional<SafeConfig> &config) : SettingsBench(config) { show(3); }
};

struct OutputBench : SettingsBench {
    explicit OutputBench(const std::optional<QString> &folder) : SettingsBench(configWithFolder(folder)) { show(4); }
    QString path() const { return itemsText("folderPath"); }
    QString itemsText(const char *name) const { return item(name)->property("text").toString(); }
};

} // namespace

class QualitySettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void itReadsAsItIsWritten() {
        const QualityBench bench(configWith(usual));
        QCOMPARE(
            bench.spokenTree(),
            (QStringList{
                u"section: Quality"_s, u"heading: Quality"_s, u"pop-up: Minimum quality floor"_s,
                u"text: 320 kbps MP3"_s, u"switch: Lossless only"_s, u"switch: Prefer best available quality"_s,
                u"switch: Upgrade existing files when better found"_s,
                u"text: zelk will accept 320 kbps MP3 or better, always preferring the highest available."_s,
                u"section: Matching"_s, u"heading: Matching"_s, u"switch: Verify matches with MusicBrainz + AcoustID"_s,
                u"switch: Strict — reject mismatched recordings"_s, u"field: AcoustID API key"_s,
                u"text: Confirm each download is the right recording with MusicBrainz + AcoustID. More accurate, a little slower."_s}));
    }

    void theSummary_data() {
        QTest::addColumn<QualityFloor>("floor");
        QTest::addColumn<bool>("losslessOnly");
        QTest::addColumn<bool>("best");
        QTest::addColumn<bool>("upgrade");
        QTest::addColumn<QString>("text");
        QTest::newRow("any") << QualityFloor::any << false << false << false << u"zelk will accept any quality."_s;
        QTest::newRow("lossless has no part")
            << QualityFloor::any << true << false << false << u"zelk will accept any quality."_s;
        QTest::newRow("flac, both") << QualityFloor::flac << false << true << true
                                    << u"zelk will accept only lossless FLAC, always preferring the highest available, "
                                       "and re-download when a better copy appears."_s;
        QTest::newRow("mp3, best") << QualityFloor::mp3_320 << false << true << false
                                   << u"zelk will accept 320 kbps MP3 or better, always preferring the highest "
                                      "available."_s;
        QTest::newRow("mp3, upgrade") << QualityFloor::mp3_320 << false << false << true
                                      << u"zelk will accept 320 kbps MP3 or better, and re-download when a better copy "
                                         "appears."_s;
    }
    void theSummary() {
        QFETCH(QualityFloor, floor);
        QFETCH(bool, losslessOnly);
        QFETCH(bool, best);
        QFETCH(bool, upgrade);
        QTEST(summary({floor, losslessOnly, best, upgrade}), "text");
    }

    void withoutAConfigurationNothingIsOffered() {
        const QualityBench bench(std::nullopt);
        QVERIFY(!bench.item("floor"));
        QVERIFY(bench.spokenTree().isEmpty());
    }

    void theFloorIsPickedAlone_data() {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QualityFloor>("floor");
        QTest::addColumn<QString>("text");
        QTest::newRow("flac") << 0 << QualityFloor::flac << u"FLAC (lossless)"_s;
        QTest::newRow("mp3") << 1 << QualityFloor::mp3_320 << u"320 kbps MP3"_s;
        QTest::newRow("any") << 2 << QualityFloor::any << u"Any"_s;
    }
    void theFloorIsPickedAlone() {
        QFETCH(int, entry);
        QFETCH(QualityFloor, floor);
        QualityBench bench(configWith({QualityFloor::flac, true, true, true}));
        Quality after{floor, true, true, true};
        bench.takeChange(configWith(after));
        bench.click("floor");
        QTRY_COMPARE(bench.entries().size(), 3);
        QTEST(spoken(bench.entries().at(entry)), "text");
        QVERIFY(press(bench.entries().at(entry)));
        QCOMPARE(bench.changes(), (Requests{SettingsBench::change(&ConfigPatch::quality, after)}));
        QTEST(bench.item("floor")->property("currentText").toString(), "text");
    }

    void eachSwitchChangesItsOwnFieldAlone_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("field");
        QTest::newRow("lossless") << QByteArray("losslessOnly") << 0;
        QTest::newRow("best") << QByteArray("bestQuality") << 1;
        QTest::newRow("upgrade") << QByteArray("upgradeEnabled") << 2;
    }
    void eachSwitchChangesItsOwnFieldAlone() {
        QFETCH(QByteArray, name);
        QFETCH(int, field);
        constexpr std::array fields{&Quality::losslessOnly, &Quality::bestQuality, &Quality::upgradeEnabled};
        QualityBench bench(configWith({QualityFloor::any, false, false, false}));
        Quality after{QualityFloor::any, false, false, false};
        after.*fields.at(static_cast<std::size_t>(field)) = true;
        bench.takeChange(configWith(after));
        bench.click(name.constData());
        QCOMPARE(bench.changes(), (Requests{SettingsBench::change(&ConfigPatch::quality, after)}));
        QVERIFY(SettingsBench::isOn(bench.item(name.constData())));
    }

    void aChangeThatFailsShowsTheOldValueAndNothingIsSaid() {
        QualityBench bench(configWith(usual));
        const QStringList before = bench.texts();
        bench.client->fail(Method::setConfig, HelperError::engineError(u"busy"_s, u"Not now."_s));
        bench.click("bestQuality");
        QCOMPARE(bench.changes().size(), 1U);
        QVERIFY(SettingsBench::isOn(bench.item("bestQuality")));
        QCOMPARE(bench.texts(), before);
        QCOMPARE(bench.model.settings()->lastError(), u"Not now."_s);
    }

    void turningVerificationOffKeepsStrictAndHidesIt() {
        QualityBench bench(configWith(usual));
        const Identity after{.enabled = false, .strict = true};
        bench.takeChange(configWith(usual, after));
        bench.focus("verifies");
        bench.key(Qt::Key_Space);
        QCOMPARE(bench.changes(), (Requests{SettingsBench::change(&ConfigPatch::identity, after)}));
        QVERIFY(!bench.item("strict"));
        QVERIFY(!bench.item("acoustidKey"));
        QVERIFY(bench.item("verifies"));
    }

    void strictIsWrittenWithTheRest() {
        QualityBench bench(configWith(usual));
        const Identity after{.enabled = true, .strict = false};
        bench.takeChange(configWith(usual, after));
        QVERIFY(press(bench.item("strict"), QAccessibleActionInterface::toggleAction()));
        QCOMPARE(bench.changes(), (Requests{SettingsBench::change(&ConfigPatch::identity, after)}));
        QVERIFY(!SettingsBench::isOn(bench.item("strict")));
    }

    void theKeyIsHandedInAsItStandsAndAFailureLeavesNoTrace() {
        const QualityBench bench(configWith(usual));
        const QStringList before = bench.texts();
        bench.client->fail(Method::storeAccountToken, HelperError::engineError(u"busy"_s, u"Not now."_s));
        bench.item("acoustidKey")->setProperty("text", u" key "_s);
        bench.focus("acoustidKey");
        bench.key(Qt::Key_Return);
        QCOMPARE(bench.sent(Method::storeAccountToken),
                 (Requests{Request::storeAccountToken(AccountService::acoustid, u" key "_s)}));
        QCOMPARE(bench.item("acoustidKey")->property("text").toString(), u" key "_s);
        QVERIFY(!bench.model.settings()->lastError());
        QVERIFY(!bench.shows(u"Not now."_s));
    }

    void theOutputFolderIsReadAsItIsWritten() {
        const OutputBench bench(u"/nowhere/at/all"_s);
        QCOMPARE(bench.spokenTree(),
                 (QStringList{u"section: Download Folder"_s, u"heading: Download Folder"_s, u"text: /nowhere/at/all"_s,
                              u"button: Change…"_s, u"text: Folder is not writable."_s}));
    }

    void withoutAFolderItSaysSoAndNothingOfWriting() {
        const OutputBench bench(std::nullopt);
        QCOMPARE(bench.path(), u"Not set"_s);
        QVERIFY(!bench.item("writable"));
    }

    void whetherTheFolderCanBeWrittenTo_data() {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("there") << true << u"Folder is writable."_s << u"checkmark.circle"_s;
        QTest::newRow("not there") << false << u"Folder is not writable."_s << u"exclamationmark.triangle"_s;
    }
    void whetherTheFolderCanBeWrittenTo() {
        QFETCH(bool, exists);
        const QTemporaryDir folder;
        const OutputBench bench(exists ? folder.path() : folder.filePath(u"missing"_s));
        QTEST(bench.itemsText("writable"), "text");
        QTEST(bench.item("writable")->property("symbol").toString(), "symbol");
    }

    void aTildeIsTestedAsTheHomeAndShownAsItIs() {
        QVERIFY(QDir::home().mkpath(u"Music/DjayImport"_s));
        const OutputBench bench(u"~/Music/DjayImport"_s);
        QCOMPARE(bench.path(), u"~/Music/DjayImport"_s);
        QCOMPARE(bench.itemsText("writable"), u"Folder is writable."_s);
    }

    void theFolderIsLookedAtAgainWhenTheTabShowsAgain() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"later"_s);
        OutputBench bench(path);
        QCOMPARE(bench.itemsText("writable"), u"Folder is not writable."_s);
        bench.show(0);
        QVERIFY(QDir().mkpath(path));
        bench.show(4);
        QCOMPARE(bench.itemsText("writable"), u"Folder is writable."_s);
    }

    void theChosenFolderIsSent() {
        OutputBench bench(u"~/old"_s);
        bench.folders->next = u"/music/new"_s;
        bench.takeChange(configWithFolder(u"/music/new"_s));
        bench.click("folderChoose");
        QCOMPARE(bench.changes(), (Requests{SettingsBench::change(&ConfigPatch::outputDir, u"/music/new"_s)}));
        QCOMPARE(bench.folders->starts, QStringList{u"~/old"_s});
        QCOMPARE(bench.path(), u"/music/new"_s);
    }

    void aChoiceThatIsLeftChangesNothing() {
        OutputBench bench(u"~/old"_s);
        QVERIFY(press(bench.item("folderChoose")));
        QVERIFY(bench.changes().empty());
        QCOMPARE(bench.folders->starts.size(), 1);
        QCOMPARE(bench.path(), u"~/old"_s);
    }
};

QTEST_MAIN(QualitySettingsTest)
#include "tst_qualitysettings.moc"
