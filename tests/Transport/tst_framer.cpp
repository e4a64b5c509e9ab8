#include "Transport/NDJSONFramer.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Chunks = QList<QByteArray>;

class TestFramer : public QObject {
    Q_OBJECT

    static Chunks feedAll(NDJSONFramer &framer, const Chunks &chunks) {
        Chunks lines;
        for (const QByteArray &chunk : chunks)
            lines += framer.feed(chunk);
        return lines;
    }

private Q_SLOTS:
    void chunksBecomeLines_data() {
        QTest::addColumn<Chunks>("chunks");
        QTest::addColumn<Chunks>("lines");
        QTest::addColumn<QByteArray>("rest");
        QTest::newRow("nothing") << Chunks{""} << Chunks{} << QByteArray();
        QTest::newRow("nothing behind a partial line") << Chunks{"abc", ""} << Chunks{} << QByteArray("abc");
        QTest::newRow("one line in two chunks") << Chunks{"abc", "def\n"} << Chunks{"abcdef"} << QByteArray();
        QTest::newRow("two lines and a half") << Chunks{"a\nb\nc"} << Chunks{"a", "b"} << QByteArray("c");
        QTest::newRow("carriage return") << Chunks{"a\r\n"} << Chunks{"a"} << QByteArray();
        QTest::newRow("only one carriage return is taken") << Chunks{"a\r\r\n"} << Chunks{"a\r"} << QByteArray();
        QTest::newRow("a carriage return elsewhere stays") << Chunks{"a\rb\n"} << Chunks{"a\rb"} << QByteArray();
        QTest::newRow("line feed in the next chunk") << Chunks{"a\r", "\n"} << Chunks{"a"} << QByteArray();
        QTest::newRow("carriage return in the next chunk") << Chunks{"a", "\r\n"} << Chunks{"a"} << QByteArray();
        QTest::newRow("empty lines vanish") << Chunks{"\n\n"} << Chunks{} << QByteArray();
        QTest::newRow("an empty line with carriage return vanishes") << Chunks{"\r\n"} << Chunks{} << QByteArray();
        QTest::newRow("empty lines between lines") << Chunks{"\na\n\n\r\nb\n"} << Chunks{"a", "b"} << QByteArray();
        QTest::newRow("two carriage returns alone are a line") << Chunks{"\r\r\n"} << Chunks{"\r"} << QByteArray();
        QTest::newRow("bytes of any kind")
            << Chunks{QByteArray("\0\xff\x80", 3) + "\n"} << Chunks{QByteArray("\0\xff\x80", 3)} << QByteArray();
        QTest::newRow("a character cut in two") << Chunks{"caf\xc3", "\xa9\n"} << Chunks{"caf\xc3\xa9"} << QByteArray();
    }
    void chunksBecomeLines() {
        QFETCH(Chunks, chunks);
        QFETCH(Chunks, lines);
        QFETCH(QByteArray, rest);
        NDJSONFramer framer;
        QCOMPARE(feedAll(framer, chunks), lines);
        QCOMPARE(framer.buffer().toByteArray(), rest);
    }

    void theSinkSeesTheSameLinesAsTheList_data() { chunksBecomeLines_data(); }
    void theSinkSeesTheSameLinesAsTheList() {
        QFETCH(Chunks, chunks);
        QFETCH(Chunks, lines);
        NDJSONFramer framer;
        Chunks seen;
        for (const QByteArray &chunk : chunks)
            framer.feed(chunk, [&](QByteArrayView line) { seen.append(line.toByteArray()); });
        QCOMPARE(seen, lines);
    }

    void flushGivesUpTheRest_data() {
        QTest::addColumn<QByteArray>("fed");
        QTest::addColumn<QByteArray>("flushed"); // null for no value
        QTest::newRow("nothing") << QByteArray("") << QByteArray();
        QTest::newRow("a line") << QByteArray("abc") << QByteArray("abc");
        QTest::newRow("carriage return") << QByteArray("abc\r") << QByteArray("abc");
        QTest::newRow("two carriage returns") << QByteArray("abc\r\r") << QByteArray("abc\r");
        QTest::newRow("lone carriage return") << QByteArray("\r") << QByteArray();
        QTest::newRow("what follows a whole line") << QByteArray("abc\nde") << QByteArray("de");
        QTest::newRow("whole lines only") << QByteArray("abc\n") << QByteArray();
    }
    void flushGivesUpTheRest() {
        QFETCH(QByteArray, fed);
        QFETCH(QByteArray, flushed);
        NDJSONFramer framer;
        framer.feed(fed);
        const std::optional<QByteArray> last = framer.flush();
        QCOMPARE(last.has_value(), !flushed.isNull());
        if (last)
            QCOMPARE(*last, flushed);
        QVERIFY(framer.buffer().isEmpty());
        QCOMPARE(framer.flush(), std::nullopt);
        QCOMPARE(framer.feed("x\n"), Chunks{"x"});
    }

    void aCopyGoesItsOwnWay() {
        NDJSONFramer framer;
        framer.feed("abc");
        NDJSONFramer copy = framer;
        QCOMPARE(copy.feed("d\n"), Chunks{"abcd"});
        QCOMPARE(framer.feed("e\n"), Chunks{"abce"});
    }

    void anyCutGivesTheSameLines() {
        QRandomGenerator random(7);
        QByteArray stream;
        Chunks lines;
        for (int i = 0; i < 400; ++i) {
            QByteArray line(random.bounded(i % 50 == 0 ? 5000 : 80), char('a' + i % 26));
            if (!line.isEmpty())
                lines.append(line);
            stream += line + (i % 3 ? "\n" : "\r\n");
        }
        for (int round = 0; round < 50; ++round) {
            NDJSONFramer framer;
            Chunks seen;
            for (qsizetype at = 0; at < stream.size();) {
                const qsizetype size = random.bounded(1, round % 2 ? 40 : 9000);
                seen += framer.feed(stream.mid(at, size));
                QVERIFY(!framer.buffer().contains('\n'));
                at += size;
            }
            QCOMPARE(seen, lines);
        }
    }

    void thereIsPaddingBehindEachLineOfTheSink() {
        // Under the address sanitizer a read beyond the buffer fails; without it this sees that nothing is disturbed.
        NDJSONFramer framer;
        int lines = 0;
        int sum = 0;
        for (const qsizetype size : {1, 63, 64, 65, 4096, 100'000}) {
            framer.feed(QByteArray(size, 'x') + "\n", [&](QByteArrayView line) {
                ++lines;
                QCOMPARE(line.size(), size);
                for (qsizetype i = 0; i < NDJSONFramer::padding; ++i)
                    sum += static_cast<volatile const char *>(line.data())[line.size() + i];
            });
        }
        QCOMPARE(lines, 6);
    }

    // The work must grow with the bytes and not with their square: no byte is moved more than a few times.
    void aHugeLineInSmallChunksIsHardlyMoved_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("alone") << QByteArray();
        QTest::newRow("behind another line") << QByteArray(1000, 'a') + "\n";
        QTest::newRow("behind one as large") << QByteArray(3'000'000, 'a') + "\n";
    }
    void aHugeLineInSmallChunksIsHardlyMoved() {
        QFETCH(QByteArray, before);
        const QByteArray line(5'000'000, 'x');
        NDJSONFramer framer;
        Chunks lines = framer.feed(before + line.first(100));
        qsizetype moved = 0;
        for (qsizetype at = 100; at < line.size(); at += 100) {
            const QByteArrayView waiting = framer.buffer();
            lines += framer.feed(QByteArrayView(line).sliced(at, 100));
            if (framer.buffer().data() != waiting.data())
                moved += waiting.size();
        }
        lines += framer.feed("\n");
        QCOMPARE(lines.last(), line);
        QVERIFY2(moved <= 2 * line.size(), qPrintable(QString::number(moved)));
    }

    // Nor is it searched anew for its end: a chunk costs what it costs behind a short line. Each time is the best of
    // many, which no other program's work makes longer, and a search of what waits would take thousands of times as
    // long.
    void aHugeLineIsSearchedOnce() {
        const QByteArray chunk(100, 'x');
        const auto time = [&](NDJSONFramer &framer) {
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < 100; ++i)
                framer.feed(chunk, [](QByteArrayView) {});
            return timer.nsecsElapsed();
        };
        NDJSONFramer huge;
        huge.feed(QByteArray(20'000'000, 'x'));
        qint64 behindMuch = std::numeric_limits<qint64>::max();
        qint64 behindLittle = behindMuch;
        for (int round = 0; round < 200; ++round) {
            NDJSONFramer small;
            behindLittle = std::min(behindLittle, time(small));
            behindMuch = std::min(behindMuch, time(huge));
        }
        QVERIFY2(behindMuch < 50 * behindLittle, qPrintable(u"%1 ns, %2 ns"_s.arg(behindMuch).arg(behindLittle)));
    }

    void manyLinesInOneChunkStayWhereTheyLie() {
        QByteArray chunk;
        for (int i = 0; i < 500'000; ++i)
            chunk += "{\"a\":1}\n";
        NDJSONFramer framer;
        int lines = 0;
        int moved = 0;
        const char *expected = nullptr;
        framer.feed(chunk, [&](QByteArrayView line) {
            moved += expected && line.data() != expected ? 1 : 0;
            expected = line.data() + line.size() + 1;
            ++lines;
        });
        QCOMPARE(lines, 500'000);
        QCOMPARE(moved, 0);
    }
};

QTEST_APPLESS_MAIN(TestFramer)
#include "tst_framer.moc"
