#include "Support/TildePath.h"

#include <QDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestTildePath : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyALeadingTildeIsTheHome_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expanded");
        const QString home = QDir::homePath();
        QTest::newRow("a folder in it") << u"~/Music/zelk"_s << home + u"/Music/zelk"_s;
        QTest::newRow("itself") << u"~"_s << home;
        QTest::newRow("itself with a slash") << u"~/"_s << home + u'/';
        QTest::newRow("another user's") << u"~somebody/Music"_s << u"~somebody/Music"_s;
        QTest::newRow("inside") << u"/music/~/x"_s << u"/music/~/x"_s;
        QTest::newRow("absolute") << u"/music"_s << u"/music"_s;
        QTest::newRow("empty") << QString() << QString();
    }
    void onlyALeadingTildeIsTheHome() {
        QFETCH(QString, path);
        QTEST(expandedTilde(path), "expanded");
    }
};

QTEST_GUILESS_MAIN(TestTildePath)
#include "tst_tildepath.moc"
