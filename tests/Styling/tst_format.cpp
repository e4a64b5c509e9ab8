#include "Styling/Format.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Text = std::optional<QString>;

class FormatTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void durations_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << u"—"_s;
        QTest::newRow("negative") << -5.0 << u"—"_s;
        QTest::newRow("not a number") << std::nan("") << u"—"_s;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << u"—"_s;
        QTest::newRow("minus infinity") << -std::numeric_limits<double>::infinity() << u"—"_s;
        QTest::newRow("less than half") << 0.4 << u"0:00"_s;
        QTest::newRow("half goes up") << 0.5 << u"0:01"_s;
        QTest::newRow("up to the minute") << 59.5 << u"1:00"_s;
        QTest::newRow("padded") << 187.0 << u"3:07"_s;
        QTest::newRow("over an hour") << 3661.0 << u"61:01"_s;
    }
    void durations() {
        QFETCH(double, seconds);
        QTEST(Format::duration(seconds), "text");
    }

    void deltas_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << 0.0 << u"±0s"_s;
        QTest::newRow("rounds to none") << 0.4 << u"±0s"_s;
        QTest::newRow("rounds to none from below") << -0.4 << u"±0s"_s;
        QTest::newRow("a true minus") << -2.6 << u"\u22123s"_s;
        QTest::newRow("half away from zero") << 2.5 << u"+3s"_s;
        QTest::newRow("half away from zero, below") << -2.5 << u"\u22123s"_s;
    }
    void deltas() {
        QFETCH(double, seconds);
        QTEST(Format::deltaSeconds(seconds), "text");
    }

    void quality_data() {
        QTest::addColumn<std::optional<TrackMeta>>("meta");
        QTest::addColumn<Text>("brief");
        QTest::addColumn<Text>("line");
        QTest::addColumn<QStringList>("badges");
        const auto meta = [](Text format, Text bitrate) {
            return std::optional(TrackMeta{std::move(format), std::move(bitrate), {}});
        };
        const auto row = [](const char *name, const std::optional<TrackMeta> &given, const Text &brief,
                            const Text &line,
                            const QStringList &badges) { QTest::newRow(name) << given << brief << line << badges; };
        row("nothing known", std::nullopt, {}, {}, {});
        row("empty record", meta({}, {}), {}, {}, {});
        row("mp3", meta(u"mp3"_s, u"320"_s), u"320 MP3"_s, u"MP3 · 320 kbps"_s, {u"MP3"_s, u"320 kbps"_s});
        row("mp3 without bitrate", meta(u"mp3"_s, {}), u"MP3"_s, u"MP3"_s, {u"MP3"_s});
        row("mp3 with empty bitrate", meta(u"MP3"_s, u""_s), u"MP3"_s, u"MP3"_s, {u"MP3"_s});
        row("flac drops its bitrate", meta(u"flac"_s, u"1024"_s), u"FLAC"_s, u"FLAC"_s, {u"FLAC"_s});
        row("alac drops it in the line only", meta(u"ALAC"_s, u"900"_s), u"ALAC"_s, u"ALAC"_s,
            {u"ALAC"_s, u"900 kbps"_s});
        row("opus", meta(u"Opus"_s, u"160"_s), u"OPUS"_s, u"OPUS · 160 kbps"_s, {u"OPUS"_s, u"160 kbps"_s});
        row("bitrate alone", meta({}, u"256"_s), u"256"_s, u"256 kbps"_s, {u"256 kbps"_s});
        row("empty format", meta(u""_s, u"256"_s), u""_s, u"256 kbps"_s, {u"256 kbps"_s});
        row("unit is in it", meta(u"aac"_s, u"256 KB/s"_s), u"AAC"_s, u"AAC · 256 KB/s"_s, {u"AAC"_s, u"256 KB/s"_s});
        row("other unit", meta(u"aac"_s, u"~256KBPS"_s), u"AAC"_s, u"AAC · ~256KBPS"_s, {u"AAC"_s, u"~256KBPS"_s});
    }
    void quality() {
        QFETCH(std::optional<TrackMeta>, meta);
        QTEST(Format::quality(meta), "brief");
        QTEST(Format::qualityLine(meta), "line");
        QTEST(Format::qualityBadges(meta), "badges");
    }

    void percentIsRoundedHalvesUp() {
        QCOMPARE(Format::percent(0), 0);
        QCOMPARE(Format::percent(0.424), 42);
        QCOMPARE(Format::percent(0.425), 43);
        QCOMPARE(Format::percent(1), 100);
    }
};

QTEST_APPLESS_MAIN(FormatTest)
#include "tst_format.moc"
