#include "Services/UpdateVersion.h"

#include <QTest>

using namespace zelk;

class TestUpdateVersion : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void versionsAreOrderedAsPeopleMeanThem_data() {
        QTest::addColumn<QString>("lower");
        QTest::addColumn<QString>("higher");
        const auto row = [](const char *lower, const char *higher) {
            QTest::addRow("%s < %s", lower, higher) << QString::fromLatin1(lower) << QString::fromLatin1(higher);
        };
        row("1.0", "1.1");
        row("1.9", "1.10");
        row("1.2", "1.2.1");
        row("1.99", "2");
        row("2.0-beta.1", "2.0-beta.2");
        row("2.0-beta.9", "2.0-beta.10");
        row("2.0-beta", "2.0-RC");
        row("2.0-rc.1", "2.0");
        row("2.0b1", "2.0");
        row("2.0-beta", "2.0.1");
        row("1.9", "2.0-beta");
        row("0.0.0", "0.0.1");
        row("99999999999999999998", "99999999999999999999");
        row("2", "99999999999999999999");
        row("1512", "1602");
        row("", "1");
    }
    void versionsAreOrderedAsPeopleMeanThem() {
        QFETCH(const QString, lower);
        QFETCH(const QString, higher);
        QVERIFY(std::is_lt(compareVersions(lower, higher)));
        QVERIFY(std::is_gt(compareVersions(higher, lower)));
        QVERIFY(std::is_eq(compareVersions(lower, lower)));
    }

    void whatDiffersOnlyInFormIsEqual_data() {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        const auto row = [](const char *one, const char *other) {
            QTest::addRow("%s = %s", one, other) << QString::fromLatin1(one) << QString::fromLatin1(other);
        };
        row("1.2", "1.2.0");
        row("1.02", "1.2");
        row("1.2", "1_2");
        row("1.2+build.7", "1.2");
        row("1.2+7", "1.2+8");
        row("2.0-Beta1", "2.0beta.1");
    }
    void whatDiffersOnlyInFormIsEqual() {
        QFETCH(const QString, one);
        QFETCH(const QString, other);
        QVERIFY(std::is_eq(compareVersions(one, other)));
        QVERIFY(std::is_eq(compareVersions(other, one)));
    }

    void aVersionBeginsWithADigit() {
        QVERIFY(isVersion(u"0"));
        QVERIFY(isVersion(u"2.0-beta"));
        QVERIFY(!isVersion(u""));
        QVERIFY(!isVersion(u"v2"));
        QVERIFY(!isVersion(u"\u0662"));
    }
};

QTEST_GUILESS_MAIN(TestUpdateVersion)
#include "tst_updateversion.moc"
