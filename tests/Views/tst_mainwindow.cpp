#include "WindowBench.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWindowHasItsSizes() {
        WindowBench bench;
        QQuickWindow *window = bench.window.window();
        QVERIFY(window);
        QCOMPARE(window->title(), u"zelk"_s);
        QCOMPARE(window->size(), QSize(1040, 720));
        QCOMPARE(window->minimumSize(), QSize(880, 600));
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
