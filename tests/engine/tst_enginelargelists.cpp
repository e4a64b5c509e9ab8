#include "Playlists/CsvPlaylist.h"
#include "Playlists/GuardedXml.h"
#include "Playlists/LibraryPlaylists.h"

#include <QTest>

#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZELK_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZELK_SANITIZED
#endif
#endif

namespace {

/// A file of a head, one piece over and over up to a size, and a tail, that lies nowhere.
class EndlessFile : public QIODevice {
public:
    EndlessFile(const QByteArray &head, const QByteArray &piece, const QByteArray &tail, qint64 size)
        : _head(head), _body(piece.repeated(std::max<qsizetype>(1, 1'000'000 / piece.size()))), _tail(tail),
          _bodyEnd(head.size() + (size / piece.size()) * piece.size()) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 size() const override { return _bodyEnd + _tail.size(); }

protected:
    qint64 readData(char *data, qint64 most) override {
        const qint64 at = pos();
        if (at < _head.size()) {
            return copy(_head, at, most, data);
        }
        if (at < _bodyEnd) {
            return copy(_body, (at - _head.size()) % _body.size(), std::min(most, _bodyEnd - at), data);
        }
        return at < size() ? copy(_tail, at - _bodyEnd, most, data) : -1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    static qint64 copy(const QByteArray &from, qint64 at, qint64 most, char *to) {
        const qint64 count = std::min<qint64>(most, from.size() - at);
        std::copy_n(from.constData() + at, count, to);
        return count;
    }

    const QByteArray _head;
    const QByteArray _body;
    const QByteArray _tail;
    const qint64 _bodyEnd;
};

/// The most memory that this process has ever had, in bytes.
qint64 mostMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * qint64(1024);
}

constexpr qint64 large = 60'000'000;
[[maybe_unused]] constexpr qint64 little = 30'000'000;

} // namespace

/// Files larger than the memory that they may take. A program of its own, since it measures itself.
class EngineLargeLists : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsReadOfALargeFileDoesNotGrowWithIt_data() {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<QByteArray>("tail");
        QTest::addColumn<bool>("isTable");
        QTest::addColumn<qint64>("line"); // of the first warning
        const QByteArray columns = "Track Name,Artist\n";
        QTest::newRow("rows without names")
            << columns << QByteArray(",Ann\n") << QByteArray("One,Ann\n") << true << 2LL;
        QTest::newRow("one row without end") << columns << QByteArray("x") << QByteArray("\nOne,Ann\n") << true << 2LL;
        QTest::newRow("a quote without end")
            << columns + "\"" << QByteArray("x") << QByteArray("\nOne,Ann\n") << true << 2LL;
        QTest::newRow("old encoding") << columns << QByteArray(",\xE9\n") << QByteArray("One,Ann\n") << true << 2LL;
        QTest::newRow("no table") << QByteArray() << QByteArray("x") << QByteArray() << true << 1LL;
        const QByteArray plist = "<plist><dict>";
        QTest::newRow("deep library") << QByteArray("<plist>") << QByteArray("<dict><key>a</key>") << QByteArray()
                                      << false << 1LL;
        QTest::newRow("one text") << plist + "<key>" << QByteArray("x") << QByteArray() << false << 1LL;
        QTest::newRow("one remark") << plist + "<!-- " << QByteArray("< ") << QByteArray() << false << 1LL;
        QTest::newRow("one tag") << plist + "<" << QByteArray("x") << QByteArray() << false << 1LL;
        QTest::newRow("one tag's attributes") << plist + "<a " << QByteArray("x='y' ") << QByteArray() << false << 1LL;
        QTest::newRow("one head") << QByteArray("<!DOCTYPE plist [") << QByteArray("<!ELEMENT a (b)>\n")
                                  << QByteArray("]><plist/>") << false << -1LL;
        QTest::newRow("unknown keys") << plist << QByteArray("<key>a</key><string>b</string>\n")
                                      << QByteArray("</dict></plist>") << false << -1LL;
        QTest::newRow("text in pieces") << plist + "<key>" << QByteArray("x<!-- -->") << QByteArray() << false << 1LL;
    }

    void whatIsReadOfALargeFileDoesNotGrowWithIt() {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, piece);
        QFETCH(QByteArray, tail);
        QFETCH(bool, isTable);
        QFETCH(qint64, line);
        EndlessFile file(head, piece, tail, large);
        [[maybe_unused]] const qint64 before = mostMemory();
        const ReadFile read = isTable ? readCsvPlaylist(file) : readLibrary(file);
#ifndef ZELK_SANITIZED
        QVERIFY2(mostMemory() - before < little, qPrintable(QString::number(mostMemory() - before)));
#endif
        QVERIFY(!read.warnings.empty());
        QVERIFY2(line < 0 || read.warnings[0].line == line, qPrintable(QString::number(read.warnings[0].line)));
        if (isTable && !tail.isEmpty()) {
            QCOMPARE(read.lists.at(0).tracks.size(), 1u);
        } else {
            QVERIFY(read.lists.empty());
        }
    }

    /// The limits hold half a gigabyte at most; this is what a table gives that reaches them.
    void aTableOfHalfAGigabyteIsCutAtTheLimit() {
        EndlessFile file("Track Name,Artist\n", "A name of some length,An artist of some length\n", {}, 500'000'000);
        ReadLimits limits;
        limits.tracks = 50'000;
        const ReadFile read = readCsvPlaylist(file, limits);
        QCOMPARE(read.lists.at(0).tracks.size(), 50'000u);
        QCOMPARE(read.warnings.size(), 1u);
        QCOMPARE(read.warnings[0].line, 50'002);
        QCOMPARE(read.warnings[0].message,
                 u"holds more than 50000 tracks, or as much text; those from here on are left out"_s);
        QVERIFY(!read.whole);
    }
};

QTEST_GUILESS_MAIN(EngineLargeLists)
#include "tst_enginelargelists.moc"
