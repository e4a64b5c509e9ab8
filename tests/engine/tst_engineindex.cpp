#include "Library/AudioLibrary.h"
#include "Library/AudioReader.h"
#include "Library/FolderWalk.h"
#include "Matching/Matcher.h"
#include "engine/EngineHome.h"
#include "engine/TinyAudio.h"

#include <QDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

QByteArray song(const QByteArray &title, const QByteArray &artist = "Ono") {
    return tinyFlac(200, {{"TITLE", title}, {"ARTIST", artist}});
}

} // namespace

class EngineIndex : public QObject {
    Q_OBJECT

    QStringList _warnings;
    AudioLibrary::Warn _warn = [this](const QString &message) { _warnings += message; };

    /// What a fresh start of the engine knows of the collection, as "artist - title".
    QStringList titles(const EngineHome &home) {
        Database database(home.path(u"engine.db"_s), _warn);
        AudioLibrary library(database, _warn);
        return titlesOf(library, home);
    }

    QStringList titlesOf(AudioLibrary &library, const EngineHome &home) {
        const auto index = library.refresh({home.path(u"Music/zelk/Collection"_s)}, {});
        QStringList titles;
        for (int i = 0; i < index->size(); ++i) {
            titles += index->file(i).artist + u" - "_s + index->file(i).title;
        }
        return titles;
    }

private Q_SLOTS:
    void init() { _warnings.clear(); }

    void aFileIsReadAgainOnlyWhenItHasChangedAlsoAfterARestart() {
        const EngineHome home;
        const QString path = home.collection(u"a.flac"_s);
        home.write(path, song("One"));
        home.write(home.collection(u"b.flac"_s), song("Two"));
        QCOMPARE(titles(home), QStringList({u"Ono - One"_s, u"Ono - Two"_s}));

        // Other bytes behind the same size and time can only be noticed by reading.
        const QDateTime then = QFileInfo(path).lastModified();
        home.write(path, song("Six"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(then, QFileDevice::FileModificationTime));
        file.close();
        QCOMPARE(titles(home), QStringList({u"Ono - One"_s, u"Ono - Two"_s}));

        QVERIFY(file.open(QIODevice::ReadWrite) &&
                file.setFileTime(then.addSecs(1), QFileDevice::FileModificationTime));
        file.close();
        QCOMPARE(titles(home), QStringList({u"Ono - Six"_s, u"Ono - Two"_s}));
        QCOMPARE(_warnings, QStringList());
    }

    void aFileThatVanishedOrBrokeIsForgottenAndOneThatCameBackIsKnown() {
        const EngineHome home;
        const QString path = home.collection(u"a.flac"_s);
        home.write(path, song("One"));
        home.write(home.collection(u"b.flac"_s), song("Two"));
        Database database(home.path(u"engine.db"_s), _warn);
        AudioLibrary library(database, _warn);
        QCOMPARE(titlesOf(library, home).size(), 2);
        QVERIFY(QFile::remove(path));
        QCOMPARE(titlesOf(library, home), QStringList{u"Ono - Two"_s});
        QCOMPARE(database.audioFiles().size(), 1);
        home.write(path, "no longer audio");
        QCOMPARE(titlesOf(library, home), QStringList{u"Ono - Two"_s});
        QCOMPARE(titlesOf(library, home), QStringList{u"Ono - Two"_s});
        QCOMPARE(_warnings.size(), 1); // told once
        QVERIFY(_warnings.first().contains(path));
        home.write(path, song("Three"));
        QCOMPARE(titlesOf(library, home), QStringList({u"Ono - Three"_s, u"Ono - Two"_s}));
    }

    void anUnchangedCollectionKeepsItsIndex() {
        const EngineHome home;
        home.write(home.collection(u"a.flac"_s), song("One"));
        Database database(home.path(u"engine.db"_s), _warn);
        AudioLibrary library(database, _warn);
        const QStringList folders{home.path(u"Music/zelk/Collection"_s)};
        const auto first = library.refresh(folders, {});
        QCOMPARE(library.refresh(folders, {}), first);
        home.write(home.collection(u"b.flac"_s), song("Two"));
        QVERIFY(library.refresh(folders, {}) != first);
    }

    void filesMayChangeAndVanishWhileTheFolderIsWalked() {
        const EngineHome home;
        for (const char *name : {"a", "b", "c"}) {
            home.write(home.collection(QLatin1String(name) + u"/x.flac"_s), song(name));
        }
        home.write(home.collection(u"d.flac"_s), song("d"));
        home.write(home.collection(u"e.flac"_s), song("e"));
        QStringList met;
        FolderVisitor visitor;
        visitor.file = [&](const QString &path) {
            met += path.mid(home.collection({}).size());
            QFile::remove(home.collection(u"e.flac"_s)); // listed, and gone before its turn
            QDir(home.collection(u"b"_s)).removeRecursively();
        };
        visitor.problem = [&](const QString &path, const QString &) { _warnings += path; };
        walkFolder(home.path(u"Music/zelk/Collection"_s), visitor);
        met.sort();
        QCOMPARE(met, QStringList({u"a/x.flac"_s, u"c/x.flac"_s, u"d.flac"_s}));
        QCOMPARE(_warnings, QStringList());
    }

    void linksInALoopAreEnteredOnceAndADanglingOneIsTold() {
        const EngineHome home;
        home.write(home.collection(u"album/a.flac"_s), song("One"));
        QVERIFY(QFile::link(home.collection({}), home.collection(u"album/up"_s)));
        QVERIFY(QFile::link(home.collection(u"album"_s), home.collection(u"twin"_s)));
        QVERIFY(::symlink("itself.flac", QFile::encodeName(home.collection(u"itself.flac"_s)).constData()) == 0);
        QVERIFY(QFile::link(home.path(u"nowhere"_s), home.collection(u"dangling.flac"_s)));
        QCOMPARE(titles(home), QStringList{u"Ono - One"_s});
        QCOMPARE(_warnings.size(), 2);
    }

    void namesOf255BytesAndBothFormsOfUnicodeAreRead() {
        const EngineHome home;
        const QString composed = u"\u00E9"_s;
        home.write(home.collection(QString(250, u'n') + u".flac"_s), song("Long"));
        home.write(home.collection(composed + u".flac"_s), song("Composed"));
        home.write(home.collection(composed.normalized(QString::NormalizationForm_D) + u".flac"_s), song("Decomposed"));
        QStringList all = titles(home);
        all.sort();
        QCOMPARE(all, QStringList({u"Ono - Composed"_s, u"Ono - Decomposed"_s, u"Ono - Long"_s}));
        QCOMPARE(titles(home).size(), 3);
        QCOMPARE(_warnings, QStringList());
    }

    void anUnreadableFolderIsToldAndTheOthersAreRead() {
        const EngineHome home;
        home.write(home.collection(u"open/a.flac"_s), song("One"));
        home.write(home.collection(u"shut/b.flac"_s), song("Two"));
        const QByteArray shut = QFile::encodeName(home.collection(u"shut"_s));
        QVERIFY(::chmod(shut.constData(), 0) == 0);
        const bool anybody = ::access(shut.constData(), R_OK) != 0; // nothing is shut to root
        QCOMPARE(titles(home).size(), anybody ? 1 : 2);
        QCOMPARE(_warnings.size(), anybody ? 1 : 0);
        QVERIFY(::chmod(shut.constData(), 0700) == 0);
    }

    void whatIsNoRegularFileIsPassedOver() {
        const EngineHome home;
        QVERIFY(::mkfifo(QFile::encodeName(home.collection(u"pipe.flac"_s)).constData(), 0600) == 0);
        QVERIFY(QDir().mkpath(home.collection(u"folder.flac"_s)));
        QCOMPARE(titles(home), QStringList());
        QCOMPARE(_warnings, QStringList());
    }

    void aNameThatIsNoUtf8IsTold() {
        const EngineHome home;
        const QByteArray path = QFile::encodeName(home.collection({})) + "\xFF.flac";
        const int descriptor = ::creat(path.constData(), 0600);
        QVERIFY(descriptor >= 0);
        ::close(descriptor);
        QCOMPARE(titles(home), QStringList());
        QCOMPARE(_warnings.size(), 1);
    }

    void hostileTagsAreReadAsFarAsTheyMakeSense_data() {
        QTest::addColumn<QByteArray>("title");
        QTest::addColumn<QString>("read");
        QTest::newRow("outside of the first plane") << QByteArray("Moon \xF0\x9F\x8C\x99") << u"Moon 🌙"_s;
        QTest::newRow("NUL") << QByteArray("Moon\0Light", 10) << u"Moon"_s;
        QTest::newRow("control characters") << QByteArray("Moon\x01\x1B[2J\tLight") << u"Moon [2J Light"_s;
        QTest::newRow("huge") << QByteArray(3'000'000, 'm') << QString(1'000, u'm');
        QTest::newRow("a pair at the cut") << QByteArray(999, 'm') + "\xF0\x9F\x8C\x99 and more" << QString(999, u'm');
        QTest::newRow("nothing but spaces") << QByteArray(" \t ") << u"the name"_s;
    }

    void hostileTagsAreReadAsFarAsTheyMakeSense() {
        QFETCH(QByteArray, title);
        const EngineHome home;
        const QString path = home.collection(u"the name.flac"_s);
        home.write(path, song(title));
        QTEST(readAudio(path).title, "read");
    }

    void tagsOfInvalidBytesHarmNobody() {
        const EngineHome home;
        home.write(home.collection(u"a.flac"_s), song("\xC3\x28\xFF\xFE", "\xED\xA0\x80"));
        home.write(home.collection(u"b.flac"_s),
                   tinyFlac(200, {{"TITLE", "Fine"}, {"ARTIST", "Ono"}, {"\xFF\xFE", "x"}}));
        const QStringList first = titles(home);
        QCOMPARE(first.size(), 2);
        QCOMPARE(first.last(), u"Ono - Fine"_s);
        QCOMPARE(titles(home), first); // it went through the database unchanged
        QCOMPARE(_warnings, QStringList());
    }

    void hugeTextsAreMatchedInNoTime() {
        AudioFile file;
        file.path = u"/c/a"_s;
        file.title = QString(1'000'000, u'a');
        file.artist = u"b, "_s.repeated(300'000);
        const MatchIndex index(std::vector<AudioFile>(50, file));
        const Probe row = makeProbe(file.title + u'c', file.artist, {}, 0, {});
        QVERIFY(row.core.text.size() <= 400);
        QVERIFY(!findMatch(row, index, {}).candidates.empty());
    }
};

QTEST_GUILESS_MAIN(EngineIndex)
#include "tst_engineindex.moc"
