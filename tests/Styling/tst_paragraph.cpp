#include "FormBench.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int narrow = 150;
constexpr int wide = 4000;

const QByteArray several = "Choose a playlist in the sidebar to see its tracks, then press Sync to download.";

QByteArray paragraph(const QByteArray &text) {
    return R"(
        Item {
            width: 400
            height: 300
            Paragraph {
                objectName: "text"
                width: )" +
           QByteArray::number(narrow) + R"(
                text: ")" +
           text + R"("
            }
        })";
}

void settle() {
    for (int turn = 0; turn < 20; ++turn)
        QCoreApplication::processEvents();
}

} // namespace

class ParagraphTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    // What is laid out again at every turn of the loop keeps a processor busy for as long as the window is open.
    void aParagraphIsLaidOutAndThenRests_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("several lines") << several;
        QTest::newRow("one line") << QByteArray("Sync");
        QTest::newRow("nothing") << QByteArray();
    }
    void aParagraphIsLaidOutAndThenRests() {
        QFETCH(const QByteArray, text);
        const FormBench bench(paragraph(text));
        settle();
        const QSignalSpy counted(bench.item("text"), SIGNAL(lineCountChanged()));
        settle();
        QCOMPARE(counted.count(), 0);
    }

    void theLinesOfAParagraphStandFurtherApartThanOneLineIsHigh() {
        const FormBench bench(paragraph(several));
        settle();
        QQuickItem *text = bench.item("text");
        const auto lines = text->property("lineCount").toInt();
        const qreal height = text->height();
        QVERIFY(lines > 1);

        text->setWidth(wide);
        QTRY_COMPARE(text->property("lineCount").toInt(), 1);
        QTRY_COMPARE(text->property("lineHeight").toReal(), 1.0);
        QTRY_VERIFY(height > lines * text->height());

        text->setWidth(narrow);
        QTRY_COMPARE(text->height(), height);
    }
};

QTEST_MAIN(ParagraphTest)
#include "tst_paragraph.moc"
