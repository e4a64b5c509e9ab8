#include "Transport/NDJSONFramer.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

using namespace zelk;

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

    // The work must grow with the bytes and not with their square. The margin is so wide that only a square exceeds it:
    // a buffer that is searched or moved anew at each of these chunks handles 500 GB.
    void aHugeLineInSmallChunksCostsWhatItsBytesCost() {
        const QByteArray line(10'000'000, 'x');
        QElapsedTimer timer;
        timer.start();
        NDJSONFramer framer;
        Chunks lines;
        for (qsizetype at = 0; at < line.size(); at += 100)
            lines += framer.feed(QByteArrayView(line).sliced(at, 100));
        lines += framer.feed("\n");
        QCOMPARE(lines, Chunks{line});
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    }

    void manyLinesInOneChunkCostWhatTheirBytesCost() {
        QByteArray chunk;
        for (int i = 0; i < 500'000; ++i)
            chunk += "{\"a\":1}\n";
        QElapsedTimer timer;
        timer.start();
        NDJSONFramer framer;
        int lines = 0;
        framer.feed(chunk, [&](QByteArrayView) { ++lines; });
        QCOMPARE(lines, 500'000);
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    }
};

QTEST_APPLESS_MAIN(TestFramer)
#include "tst_framer.moc"
