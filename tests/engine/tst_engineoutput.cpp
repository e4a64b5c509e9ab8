#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/FileNames.h"
#include "Output/OutputFolder.h"
#include "Output/TrackWriter.h"
#include "engine/EngineHome.h"

#include <QDir>
#include <QTest>

#include <cerrno>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

/// A disk that takes so many bytes, and a system whose other calls can be made to fail.
class FailingOps : public FileOps {
public:
    qint64 room = 1'000'000'000;
    int syncError = 0;
    int renameError = 0;

    ssize_t write(int descriptor, const char *bytes, size_t count) override {
        if (room < static_cast<qint64>(count)) {
            errno = ENOSPC;
            return -1;
        }
        room -= static_cast<qint64>(count);
        return FileOps::write(descriptor, bytes, count);
    }
    int sync(int descriptor) override { return failed(syncError) ? -1 : FileOps::sync(descriptor); }
    int rename(const QByteArray &from, const QByteArray &to) override {
        return failed(renameError) ? -1 : FileOps::rename(from, to);
    }
    int renameToNew(const QByteArray &from, const QByteArray &to) override {
        return failed(renameError) ? -1 : FileOps::renameToNew(from, to);
    }

private:
    static bool failed(int code) {
        errno = code;
        return code != 0;
    }
};

struct Told {
    int commits = 0;
    int rollbacks = 0;
    QList<Phase> steps;

    WriteHooks hooks() {
        WriteHooks hooks;
        hooks.progress = [](qint64, qint64) {};
        hooks.step = [this](Phase phase) { steps += phase; };
        hooks.commit = [this](const WrittenFile &) { ++commits; };
        hooks.rollback = [this](const WrittenFile &) { ++rollbacks; };
        return hooks;
    }
};

} // namespace

class EngineOutput : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesAreSafe_data() {
        QTest::addColumn<QString>("artist");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("stem");
        QTest::newRow("plain") << u"Ann"_s << u"One"_s << u"Ann - One"_s;
        QTest::newRow("slashes") << u"A/B"_s << u"C\\D"_s << u"A-B - C-D"_s;
        QTest::newRow("signs") << u"A:B|C"_s << u"<What?> \"No*\""_s << u"A-B-C - (What) 'No'"_s;
        QTest::newRow("control") << u"A\nB"_s << u"C\tD\x01"_s << u"A B - C D"_s;
        QTest::newRow("dots") << u"..Ann"_s << u"One..."_s << u"Ann - One"_s;
        QTest::newRow("no artist") << QString() << u"One"_s << u"One"_s;
        QTest::newRow("nothing") << QString() << u"???"_s << u"Untitled"_s;
        QTest::newRow("composed") << u"A\u030A"_s << u"x"_s << u"\u00C5 - x"_s;
        QTest::newRow("a device") << QString() << u"NUL"_s << u"_NUL"_s;
        QTest::newRow("a device with an extension") << QString() << u"com1.flac"_s << u"_com1.flac"_s;
        QTest::newRow("like a device") << QString() << u"Console"_s << u"Console"_s;
        QTest::newRow("zero bytes") << u"A"_s + QChar(u'\0') + u'n' << QString(QChar(u'\0')) + u"One"_s
                                    << u"An - One"_s;
        QTest::newRow("half a character")
            << u"A"_s + QChar(0xD800) + u'n' << u"Tw"_s + QChar(0xDC00) + u"o 🎵"_s << u"An - Two 🎵"_s;
        QTest::newRow("climbing") << u".."_s << u"../../etc"_s << u"- ..-..-etc"_s;
    }

    void namesAreSafe() {
        QFETCH(QString, artist);
        QFETCH(QString, title);
        QTEST(stemFor(artist, title), "stem");
    }

    void longNamesAreCutBetweenCharactersAndKeepTheTitle() {
        const QString stem = stemFor(u"é"_s.repeated(400), u"Title"_s);
        QVERIFY(stem.toUtf8().size() <= longestFileName - 16);
        QVERIFY(stem.endsWith(u" - Title"_s));
        const QString emoji = stemFor(u"Ann"_s, u"👨‍👩‍👧"_s.repeated(100));
        QVERIFY(emoji.toUtf8().size() <= longestFileName - 16);
        QVERIFY(emoji.endsWith(u"👨‍👩‍👧"_s));
    }

    void namesAreUniqueWithoutRegardToCase() {
        NameRegistry names;
        names.take(u"\u00C5sa - One"_s);
        QCOMPARE(names.claim(u"A\u030ASA - one"_s), u"A\u030ASA - one (2)"_s);
        QCOMPARE(names.claim(u"New"_s), u"New"_s);
        QCOMPARE(names.claim(u"NEW"_s), u"NEW (2)"_s);
        QCOMPARE(names.claim(u"new"_s), u"new (3)"_s);
    }

    void aFullDiskLeavesNothingAndTouchesNothing() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.write(home.output(u"/Ann - One.flac"_s), "old");
        FailingOps ops;
        ops.room = 1'000;
        const OutputFolder folder(home.output(), ops);
        WriteOrder order;
        order.source = readAudio(home.collection(u"a.flac"_s));
        order.target = order.replaces = home.output(u"/Ann - One.flac"_s);
        Told told;
        try {
            writeTrack(order, folder, told.hooks(), {}, ops);
            QFAIL("the disk was full");
        } catch (const FileProblem &problem) {
            QVERIFY(problem.isFull());
            QVERIFY(problem.path().startsWith(home.output()));
        }
        QCOMPARE(told.commits, 0);
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
        QCOMPARE(home.read(order.target), QByteArray("old"));
    }

    void whatFailsAtTheLastStepIsTakenBack_data() {
        QTest::addColumn<int>("syncError");
        QTest::addColumn<int>("renameError");
        QTest::newRow("flush") << EIO << 0;
        QTest::newRow("rename") << 0 << EROFS;
    }

    void whatFailsAtTheLastStepIsTakenBack() {
        QFETCH(int, syncError);
        QFETCH(int, renameError);
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        FailingOps ops;
        OutputFolder folder(home.output(), ops);
        folder.prepare(false);
        ops.syncError = syncError;
        ops.renameError = renameError;
        WriteOrder order;
        order.source = readAudio(home.collection(u"a.mp3"_s));
        order.target = home.output(u"/Ann - One.mp3"_s);
        Told told;
        QVERIFY_THROWS_EXCEPTION(FileProblem, writeTrack(order, folder, told.hooks(), {}, ops));
        QCOMPARE(told.commits, 1);
        QCOMPARE(told.rollbacks, 1);
        QVERIFY(home.outputFiles().isEmpty());
    }

    void aFileThatAppearsMeanwhileIsNotReplaced() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        const OutputFolder folder(home.output());
        WriteOrder order;
        order.source = readAudio(home.collection(u"a.mp3"_s));
        order.target = home.output(u"/Ann - One.mp3"_s);
        home.write(order.target, "mine");
        Told told;
        QVERIFY_THROWS_EXCEPTION(FileProblem, writeTrack(order, folder, told.hooks(), {}));
        QCOMPARE(home.read(order.target), QByteArray("mine"));
        QCOMPARE(home.outputFiles().size(), 1);
    }

    void aStopLeavesNoPartialFile() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        OutputFolder folder(home.output());
        folder.prepare(false);
        WriteOrder order;
        order.source = readAudio(home.collection(u"a.mp3"_s));
        order.target = home.output(u"/Ann - One.mp3"_s);
        std::stop_source stop;
        Told told;
        WriteHooks hooks = told.hooks();
        hooks.step = [&](Phase phase) {
            if (phase == Phase::verifying) {
                stop.request_stop();
            }
        };
        QVERIFY_THROWS_EXCEPTION(Stopped, writeTrack(order, folder, hooks, stop.get_token()));
        QVERIFY(home.outputFiles().isEmpty());
    }

    void aFileThatHasAppearedIsNeitherTouchedNorEnteredAnew() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.write(home.output(u"/Ann - One.flac"_s), "another's");
        WriteOrder order;
        order.source = readAudio(home.collection(u"a.flac"_s));
        order.target = home.output(u"/Ann - One.flac"_s);
        Told told;
        try {
            writeTrack(order, OutputFolder(home.output()), told.hooks(), {});
            QFAIL("it was written");
        } catch (const FileProblem &problem) {
            QCOMPARE(problem.code(), EEXIST);
        }
        QCOMPARE(told.commits, 0);
        QCOMPARE(told.rollbacks, 0);
        QCOMPARE(home.read(order.target), QByteArray("another's"));
        QCOMPARE(home.outputFiles().size(), 1);
    }

    void leftoversOfTheDeadGoAndThoseOfTheLivingStay() {
        const EngineHome home;
        const QList<QByteArray> first = home.read(u"/proc/1/stat"_s).split(')').last().trimmed().split(' ');
        const QString living = u"/.zelk-partial-1-%1-1.mp3"_s.arg(QString::fromLatin1(first.value(19)));
        home.write(home.output(u"/.zelk-partial-999999999-1-1.mp3"_s), "x");
        home.write(home.output(u"/.zelk-partial-1-99999999999-1.mp3"_s), "x"); // of one that had this number before
        home.write(home.output(living), "x");                                  // process 1 always lives
        home.write(home.output(u"/mine.mp3"_s), "x");
        const OutputFolder folder(home.output());
        const QString own = folder.partialPath(u"mp3"_s); // as a late decision has when a run begins
        home.write(own, "x");
        OutputFolder(home.output()).removeLeftovers();
        QStringList kept{own.section(u'/', -1), living.mid(1), u"mine.mp3"_s};
        kept.sort();
        QCOMPARE(home.outputFiles(), kept);
    }

    void aCoverBesideTheFileIsEmbeddedOnce() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.write(home.collection(u"Cover.jpg"_s), QByteArray("\xFF\xD8\xFF", 3) + QByteArray(3'000, 'c'));
        const auto cover = coverBeside(home.collection(u"a.flac"_s));
        QVERIFY(cover);
        const QString file = home.collection(u"a.flac"_s);
        writeTags(file, {u"One"_s, u"Ann"_s, u"LP"_s}, cover);
        QVERIFY(home.read(file).contains(QByteArray(3'000, 'c')));
        const qint64 size = QFileInfo(file).size();
        writeTags(file, {u"One"_s, u"Ann"_s, u"LP"_s}, cover);
        QCOMPARE(QFileInfo(file).size(), size);
        QCOMPARE(readAudio(file).album, u"LP"_s);
    }

    void aFileThatWasOnlyTaggedAnewStandsAndAShortOneDoesNot() {
        const EngineHome home;
        home.addAudio(u"a.mp3"_s, u"Ann"_s, u"One"_s);
        const QString path = home.collection(u"a.mp3"_s);
        const AudioFile read = readAudio(path);
        WrittenFile file;
        file.path = path;
        file.size = read.size;
        file.modifiedMs = read.modifiedMs;
        file.durationSec = read.durationSec;
        file.bitrateKbps = read.bitrateKbps;
        QVERIFY(standsWhole(file, 5));
        writeTags(path, {u"A much longer title than before"_s, u"Ann"_s, u"A cue point"_s}, std::nullopt);
        QVERIFY(standsWhole(file, 5));
        home.write(path, home.read(path).left(3'000));
        QVERIFY(!standsWhole(file, 5));
        QVERIFY(QFile::remove(path));
        QVERIFY(!standsWhole(file, 5));
    }
};

QTEST_GUILESS_MAIN(EngineOutput)
#include "tst_engineoutput.moc"
