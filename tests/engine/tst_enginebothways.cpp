// The same library synced twice, through the application's own client and from a terminal, gives the same folder to the
// byte.
#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Platform/BootClock.h"
#include "Support/Await.h"
#include "Support/Settle.h"
#include "Transport/HelperClient.h"
#include "Transport/HelperProcess.h"
#include "engine/TerminalChild.h"

#include <QDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine::testing;

namespace {

constexpr int audioFiles = 200;

QString titleOf(int i) {
    return u"Song %1"_s.arg(i, 3, 10, QChar(u'0'));
}
QString artistOf(int i) {
    return u"Artist %1"_s.arg(i % 17);
}

/// Two hundred files in five formats, of which one is doubtful, two share a name, and one is asked for in vain; and
/// lists of three kinds over them that overlap.
void fill(const EngineHome &home) {
    const QStringList formats{u"flac"_s, u"mp3"_s, u"m4a"_s, u"wav"_s};
    QList<QStringList> rows(6);
    for (int i = 0; i < audioFiles - 3; ++i) {
        const QString format = i % 25 == 24 ? u"opus"_s : formats[i % 4];
        if (format == "wav"_L1) {
            home.addWav(u"Crate %1/%2 - %3.wav"_s.arg(i % 7).arg(artistOf(i), titleOf(i)), 2);
        } else {
            home.addAudio(u"Crate %1/%2.%3"_s.arg(i % 7).arg(i).arg(format), artistOf(i), titleOf(i));
        }
        const QString row = titleOf(i) + u'|' + artistOf(i) + u"|2"_s;
        rows[i % 6] += row;
        if (i % 5 == 0) {
            rows[(i + 1) % 6] += row;
        }
    }
    home.addAudio(u"live.mp3"_s, u"Ines"_s, u"Slow Burn (Live)"_s);
    home.addWav(u"A/Ann - Twin.wav"_s, 5);
    home.addWav(u"B/Ann - Twin.wav"_s, 60);
    rows[0] += {u"Slow Burn|Ines|2"_s, u"Twin|Ann|60"_s};
    rows[3] += {u"Twin|Ann|5"_s, u"Not to be had|Nobody|2"_s};
    for (int i = 0; i < 4; ++i) {
        home.addList(u"%1List %2.csv"_s.arg(i % 2 == 0 ? u""_s : u"Sets/"_s).arg(i), rows[i]);
    }
    QByteArray m3u = "#EXTM3U\n#PLAYLIST:Played\n";
    for (const QString &row : rows[4]) {
        const QStringList parts = row.split(u'|');
        m3u += u"#EXTINF:%1,%2 - %3\nelsewhere.mp3\n"_s.arg(parts[2], parts[1], parts[0]).toUtf8();
    }
    home.write(home.playlists(u"Played.m3u8"_s), m3u);
    QByteArray xspf = "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\"><title>Shared</title><trackList>\n";
    for (const QString &row : rows[5]) {
        const QStringList parts = row.split(u'|');
        xspf += u"<track><title>%1</title><creator>%2</creator><duration>%3</duration></track>\n"_s
                    .arg(parts[0], parts[1], parts[2] + "000"_L1)
                    .toUtf8();
    }
    home.write(home.playlists(u"Sets/Shared.xspf"_s), xspf + "</trackList></playlist>\n");
}

QMap<QString, QByteArray> contentsOf(const QString &folder) {
    QMap<QString, QByteArray> contents;
    for (const QString &name :
         QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        QFile file(folder + u'/' + name);
        contents.insert(name, file.open(QFile::ReadOnly) ? file.readAll() : "unreadable");
    }
    return contents;
}

AppModel::Launcher realEngine(const std::shared_ptr<Clock> &clock) {
    return [clock] {
        const auto process =
            std::make_shared<HelperProcess>(QStringLiteral(ENGINE_PROGRAM), QStringList{u"serve"_s}, clock);
        const auto client = std::make_shared<HelperClient>(process, clock);
        return AppModel::Engine{.client = client, .start = [client] { return client->start(); }};
    };
}

} // namespace

class EngineBothWays : public QObject {
    Q_OBJECT

    /// What a user does in the window.
    void syncInTheApplication() {
        const auto clock = std::make_shared<BootClock>();
        AppModel model(realEngine(clock), surroundings(clock));
        QVERIFY(outcomeOf(model.start()).succeeded());
        QVERIFY(!model.startupError());
        QTRY_VERIFY_WITH_TIMEOUT(model.library()->loadState() == LoadState::loaded(), 30'000);
        QSet<QString> all;
        for (const PlaylistDTO &playlist : model.library()->playlists()) {
            if (!playlist.isFolder) {
                all.insert(playlist.id);
            }
        }
        QCOMPARE(all.size(), 6);
        model.library()->setSelection(all);
        model.selectionChanged();
        model.startSync();
        QTRY_VERIFY_WITH_TIMEOUT(model.sync()->phase() == SyncPhase::done, 120'000);
        _summary = *model.sync()->summary();
        QCOMPARE(model.sync()->reviewCount(), 1);
        const TrackModel *doubtful = model.sync()->reviewQueue().first();
        model.submitReview(doubtful->dto().id, ReviewDecision::accept());
        QTRY_COMPARE_WITH_TIMEOUT(doubtful->statusRole(), StatusRole::done, 30'000);
        model.shutdown();
    }

    SyncSummary _summary;

private Q_SLOTS:
    void cleanup() { settle(); } // what the model had begun ends behind it

    void theApplicationAndATerminalWriteTheSameFolder() {
        const EngineHome home;
        fill(home);
        qputenv("HOME", home.path().toUtf8());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            qunsetenv(variable);
        }
        syncInTheApplication();
        if (QTest::currentTestFailed()) {
            return;
        }
        const QMap<QString, QByteArray> fromApplication = contentsOf(home.output());
        QCOMPARE(fromApplication.size(), audioFiles);
        QVERIFY(fromApplication.contains(u"Ann - Twin.wav"_s) && fromApplication.contains(u"Ann - Twin (2).wav"_s));

        // A memory and a folder of its own, or it would find everything done.
        const QString folder = home.path(u"Music/FromTerminal"_s);
        const Variables apart{{u"XDG_CONFIG_HOME"_s, home.path(u"apart/config"_s)},
                              {u"XDG_DATA_HOME"_s, home.path(u"apart/data"_s)}};
        home.write(home.path(u"apart/config/zelk/engine.json"_s), u"{\"outputDir\":\"%1\"}"_s.arg(folder).toUtf8());
        const Ended synced = runZelk(home, {u"sync"_s}, {}, apart);
        QCOMPARE(synced.status, 1); // one isn't to be had
        QVERIFY2(
            synced.out.contains(u"Summary: %1 done, %2 on disk, %3 flagged, %4 failed, %5 skipped\n"_s.arg(_summary.ok)
                                    .arg(_summary.present)
                                    .arg(_summary.flagged)
                                    .arg(_summary.failed)
                                    .arg(_summary.skipped)),
            qPrintable(synced.out.right(300)));
        const Ended reviewed = runZelk(home, {u"review"_s}, "a\n", apart);
        QCOMPARE(reviewed.status, 0);

        const QMap<QString, QByteArray> fromTerminal = contentsOf(folder);
        QCOMPARE(fromTerminal.keys(), fromApplication.keys());
        for (auto file = fromApplication.cbegin(); file != fromApplication.cend(); ++file) {
            QVERIFY2(fromTerminal.value(file.key()) == file.value(), qPrintable(file.key()));
        }

        // On the application's own memory there is nothing left to do.
        const Ended again = runZelk(home, {u"sync"_s});
        QVERIFY2(again.out.contains("Summary: 0 done, "_L1) &&
                     again.out.contains(" 0 flagged, 1 failed, 0 skipped\n"_L1),
                 qPrintable(again.out.right(300)));
        QCOMPARE(contentsOf(home.output()), fromApplication);
    }
};

QTEST_GUILESS_MAIN(EngineBothWays)
#include "tst_enginebothways.moc"
