#include "DialogBench.h"
#include "Views/AboutDialog.h"

#include <QTest>
#include <QUrl>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Bench : DialogBench {
    QList<QUrl> opened;
    AboutDialog dialog{host, [this](const QUrl &url) { opened.append(url); }};
};

QQuickWindow *window() {
    return DialogBench::shown("aboutDialog");
}

} // namespace

class TestAboutDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setApplicationVersion(u"1.2.3"_s); }
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s)); }
    void cleanup() { QCOMPARE(window(), nullptr); }

    void itSaysWhatThisIs() {
        Bench bench;
        QVERIFY(!window());
        bench.dialog.open();
        QVERIFY(window());
        QCOMPARE(window()->title(), u"About zelk"_s);
        QCOMPARE(DialogBench::text(window(), "dialogHeading"), u"zelk"_s);
        QCOMPARE(DialogBench::text(window(), "dialogText"), u"Turns playlists into a DJ-ready local music library."_s);
        QCOMPARE(DialogBench::text(window(), "aboutVersion"), u"Version 1.2.3"_s);
        QCOMPARE(DialogBench::text(window(), "aboutLicence"), u"Free software under the MIT License"_s);
    }

    void everyWayOutClosesItAndItComesBack_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("the button") << 0;
        QTest::newRow("Return") << 1;
        QTest::newRow("Escape") << 2;
        QTest::newRow("Ctrl+W") << 3;
        QTest::newRow("closed") << 4;
    }
    void everyWayOutClosesItAndItComesBack() {
        QFETCH(int, way);
        Bench bench;
        for (int i = 0; i < 2; ++i) {
            bench.dialog.open();
            QCOMPARE(DialogBench::count("aboutDialog"), 1);
            QVERIFY(QTest::qWaitForWindowActive(window()));
            switch (way) {
            case 0:
                DialogBench::click(window(), "dialogPrimary");
                break;
            case 1:
                QTest::keyClick(window(), Qt::Key_Return);
                break;
            case 2:
                QTest::keyClick(window(), Qt::Key_Escape);
                break;
            case 3:
                QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier);
                break;
            default:
                window()->close();
            }
            QCOMPARE(window(), nullptr);
        }
        QVERIFY(bench.opened.isEmpty());
    }

    void theWebsiteIsOneButtonAwayAndLeavesItOpen() {
        Bench bench;
        bench.dialog.open();
        QCOMPARE(DialogBench::text(window(), "dialogTertiary"), u"Visit Website"_s);
        DialogBench::click(window(), "dialogTertiary");
        QCOMPARE(bench.opened, QList{QUrl(QStringLiteral(ZELK_WEBSITE))});
        QVERIFY(window());
    }

    void openedTwiceItIsOne() {
        Bench bench;
        bench.dialog.open();
        bench.dialog.open();
        QCOMPARE(DialogBench::count("aboutDialog"), 1);
    }
};

QTEST_MAIN(TestAboutDialog)
#include "tst_aboutdialog.moc"
