#include "Platform/EmbeddedCover.h"
#include "Platform/MusicLibraryExport.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <attachedpictureframe.h>
#include <flacfile.h>
#include <flacpicture.h>
#include <id3v2tag.h>
#include <mp4coverart.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <opusfile.h>
#include <xiphcomment.h>

#include <functional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray doctype = "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

QByteArray plist(const QByteArray &content, const QByteArray &head = doctype) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + head + "<plist version=\"1.0\">" + content + "</plist>\n";
}

QByteArray entry(const QByteArray &key, const QByteArray &text) {
    return "<key>" + key + "</key><string>" + text + "</string>";
}

QByteArray track(const QByteArray &id, const QByteArray &location) {
    return "<key>7</key><dict><key>Track ID</key><integer>7</integer>" + entry("Name", "A &amp; B") +
           entry("Persistent ID", id) + "<key>Purchased</key><true/>" + entry("Location", location) + "</dict>\n";
}

QByteArray library(const QByteArray &tracks) {
    return plist("<dict><key>Major Version</key><integer>1</integer><key>Tracks</key><dict>" + tracks +
                 "</dict><key>Playlists</key><array><dict>" + entry("Name", "Library") + "</dict></array></dict>");
}

std::vector<MusicLibrary::MediaItem> itemsOf(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readMusicLibraryExport(buffer);
}

QString failureOf(const std::function<void()> &read) {
    try {
        read();
    } catch (const MusicLibraryError &failure) {
        return QString::fromUtf8(failure.what());
    }
    return {};
}

TagLib::ByteVector bytes(const char *text) {
    return TagLib::ByteVector(text);
}

QString copyOf(const QTemporaryDir &folder, const QString &name) {
    const QString file = folder.filePath(name);
    QFile::copy(QStringLiteral(ZELK_SOURCE_DIR "/tests/fixtures/audio/") + name, file);
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    return file;
}

void addPicture(TagLib::ID3v2::Tag *tag, TagLib::ID3v2::AttachedPictureFrame::Type type, const char *data) {
    auto *picture = new TagLib::ID3v2::AttachedPictureFrame; // the tag owns it
    picture->setType(type);
    picture->setMimeType("image/png");
    picture->setPicture(bytes(data));
    tag->addFrame(picture);
}

TagLib::FLAC::Picture *picture(TagLib::FLAC::Picture::Type type, const char *data) {
    auto *made = new TagLib::FLAC::Picture;
    made->setType(type);
    made->setMimeType("image/png");
    made->setData(bytes(data));
    return made;
}

} // namespace

class MusicLibraryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itemsComeInTheFilesOrderWithHexadecimalIDs() {
        const auto items = itemsOf(
            library(track("00FF", "file:///m/a.mp3") + track("FFFFFFFFFFFFFFFF", "") + track("ff", "file:///m/b.mp3")));
        QCOMPARE(items.size(), 3U);
        QCOMPARE(items[0].persistentID, 255U);
        QCOMPARE(items[0].file, u"/m/a.mp3"_s);
        QCOMPARE(items[1].persistentID, ~quint64{0});
        QCOMPARE(items[1].file, QString());
        QCOMPARE(items[2].persistentID, 255U);
        QCOMPARE(items[2].file, u"/m/b.mp3"_s);
    }

    void onlyFilesOfThisMachineHaveAPath_data() {
        QTest::addColumn<QByteArray>("location");
        QTest::addColumn<QString>("file");
        QTest::newRow("percent") << "file:///M%C3%BAsica/a%20b%23.m4a"_ba << u"/Música/a b#.m4a"_s;
        QTest::newRow("localhost") << "file://localhost/m/a.mp3"_ba << u"/m/a.mp3"_s;
        QTest::newRow("elsewhere") << "file://nas/m/a.mp3"_ba << QString();
        QTest::newRow("stream") << "http://radio.example/x.mp3"_ba << QString();
        QTest::newRow("empty") << ""_ba << QString();
        QTest::newRow("escaped") << "file:///m/a%20&amp;%20b.mp3"_ba << u"/m/a & b.mp3"_s;
    }
    void onlyFilesOfThisMachineHaveAPath() {
        QFETCH(QByteArray, location);
        QFETCH(QString, file);
        QCOMPARE(itemsOf(library(track("1", location))).at(0).file, file);
    }

    void aTrackWithoutAnIDIsLeftOut() {
        const auto items = itemsOf(library("<key>1</key><dict>" + entry("Location", "file:///a") + "</dict>" +
                                           track("xyz", "file:///b") + track("2", "file:///c")));
        QCOMPARE(items.size(), 1U);
        QCOMPARE(items[0].file, u"/c"_s);
    }

    void aLibraryWithoutTracksIsEmpty() {
        QVERIFY(itemsOf(plist("<dict/>")).empty());
        QVERIFY(itemsOf(library({})).empty());
    }

    void whatIsNoLibraryIsRefused_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray whole = library(track("1", "file:///a"));
        QTest::newRow("empty") << ""_ba;
        QTest::newRow("text") << "hello"_ba;
        QTest::newRow("page") << "<html><body/></html>"_ba;
        QTest::newRow("array") << plist("<array/>");
        QTest::newRow("list of tracks") << plist("<dict><key>Tracks</key><array/></dict>");
        QTest::newRow("no key") << plist("<dict><string>x</string></dict>");
        QTest::newRow("no value") << plist("<dict><key>Tracks</key></dict>");
        QTest::newRow("a track's half") << whole.left(whole.indexOf("Location"));
        QTest::newRow("cut off behind the tracks") << whole.left(whole.indexOf("Playlists"));
    }
    void whatIsNoLibraryIsRefused() {
        QFETCH(QByteArray, bytes);
        QVERIFY(!failureOf([bytes] { itemsOf(bytes); }).isEmpty());
    }

    void declaredEntitiesAreRefusedUnread() {
        const QByteArray head = "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>\n";
        const QString failure = failureOf([&head] { itemsOf(plist("<dict><key>Tracks</key><dict/></dict>", head)); });
        QVERIFY2(failure.endsWith(u"declares entities"_s), qPrintable(failure));
    }

    void aHundredThousandTracksAreRead() {
        QByteArray tracks;
        for (int i = 0; i < 100'000; ++i) {
            tracks += "<key>1</key><dict><key>Persistent ID</key><string>";
            tracks += QByteArray::number(i, 16);
            tracks += "</string></dict>\n";
        }
        const auto items = itemsOf(library(tracks));
        QCOMPARE(items.size(), 100'000U);
        QCOMPARE(items.back().persistentID, 99'999U);
    }

    void theExportIsExpectedInTheMusicFolder() {
        QCOMPARE(MusicLibrary::defaultFile(), QDir::homePath() + u"/Music/Library.xml"_s);
    }

    void aFileThatCannotBeOpenedIsNoLibrary() {
        const QTemporaryDir folder;
        QVERIFY(!failureOf([&folder] { MusicLibrary::open(folder.filePath(u"Library.xml"_s)); }).isEmpty());
        QVERIFY(failureOf([&folder] { MusicLibrary::open(folder.path()); }).endsWith(u"not a file"_s));
    }

    void theExportedFileLeadsToTheCovers() {
        const QTemporaryDir folder;
        const QString song = copyOf(folder, u"tone.mp3"_s);
        {
            TagLib::MPEG::File file(QFile::encodeName(song).constData());
            addPicture(file.ID3v2Tag(true), TagLib::ID3v2::AttachedPictureFrame::FrontCover, "front");
            QVERIFY(file.save());
        }
        QFile exported(folder.filePath(u"Library.xml"_s));
        QVERIFY(exported.open(QIODevice::WriteOnly));
        exported.write(library(track("1A2B", "file://" + QFile::encodeName(song)) + track("2", "file:///nowhere.mp3")));
        exported.close();
        const auto opened = MusicLibrary::open(exported.fileName());
        QCOMPARE(opened->allMediaItems().size(), 2U);
        QCOMPARE(opened->artworkData(opened->allMediaItems()[0]), "front"_ba);
        QCOMPARE(opened->artworkData(opened->allMediaItems()[1]), QByteArray());
    }

    void theFrontCoverIsPreferredInEveryFormat() {
        using Frame = TagLib::ID3v2::AttachedPictureFrame;
        using Picture = TagLib::FLAC::Picture;
        const QTemporaryDir folder;
        const QString mp3 = copyOf(folder, u"tone.mp3"_s);
        {
            TagLib::MPEG::File file(QFile::encodeName(mp3).constData());
            addPicture(file.ID3v2Tag(true), Frame::BackCover, "back");
            addPicture(file.ID3v2Tag(true), Frame::FrontCover, "front");
            addPicture(file.ID3v2Tag(true), Frame::FrontCover, "second front");
            QVERIFY(file.save());
        }
        QCOMPARE(embeddedCover(mp3), "front"_ba);
        const QString flac = copyOf(folder, u"tone.flac"_s);
        {
            TagLib::FLAC::File file(QFile::encodeName(flac).constData());
            file.addPicture(picture(Picture::BackCover, "back"));
            file.addPicture(picture(Picture::FrontCover, "front"));
            QVERIFY(file.save());
        }
        QCOMPARE(embeddedCover(flac), "front"_ba);
        const QString opus = copyOf(folder, u"tone.opus"_s);
        {
            TagLib::Ogg::Opus::File file(QFile::encodeName(opus).constData());
            file.tag()->addPicture(picture(Picture::BackCover, "back"));
            QVERIFY(file.save());
        }
        QCOMPARE(embeddedCover(opus), "back"_ba);
        const QString m4a = copyOf(folder, u"tone.m4a"_s);
        {
            TagLib::MP4::File file(QFile::encodeName(m4a).constData());
            TagLib::MP4::CoverArtList covers;
            covers.append(TagLib::MP4::CoverArt(TagLib::MP4::CoverArt::PNG, bytes("first")));
            covers.append(TagLib::MP4::CoverArt(TagLib::MP4::CoverArt::PNG, bytes("second")));
            file.tag()->setItem("covr", covers);
            QVERIFY(file.save());
        }
        QCOMPARE(embeddedCover(m4a), "first"_ba);
    }

    void whatHasNoCoverHasNone() {
        const QTemporaryDir folder;
        for (const QString &name : {u"tone.mp3"_s, u"tone.flac"_s, u"tone.opus"_s, u"tone.m4a"_s})
            QCOMPARE(embeddedCover(copyOf(folder, name)), QByteArray());
        QFile forged(folder.filePath(u"forged.mp3"_s));
        QVERIFY(forged.open(QIODevice::WriteOnly));
        forged.write("ID3\x04\x00\x00\x7f\x7f\x7f\x7f"
                     "APIC\x7f\x7f\x7f\x7f",
                     18);
        forged.close();
        QCOMPARE(embeddedCover(forged.fileName()), QByteArray());
        QCOMPARE(embeddedCover(folder.path()), QByteArray());
        QCOMPARE(embeddedCover(QString()), QByteArray());
    }
};

QTEST_GUILESS_MAIN(MusicLibraryTest)
#include "tst_musiclibrary.moc"
