#include "Platform/Bundle.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestBundle : public QObject {
    Q_OBJECT

private:
    QTemporaryDir _home;
    int _bundles = 0;

    Bundle bundleWith(const QByteArray &info) {
        const QString path = _home.filePath(u"%1.app"_s.arg(++_bundles));
        QDir().mkpath(path + u"/Contents"_s);
        QFile file(path + u"/Contents/Info.json"_s);
        if (file.open(QIODevice::WriteOnly))
            file.write(info);
        return Bundle(path, {});
    }

private Q_SLOTS:
    void itSaysWhatItsInformationSays() {
        const Bundle bundle = bundleWith("{\"CFBundleVersion\": \"1.2\", \"flag\": true}");
        QCOMPARE(bundle.info(u"CFBundleVersion"_s), QJsonValue(u"1.2"_s));
        QCOMPARE(bundle.info(u"flag"_s), QJsonValue(true));
        QVERIFY(bundle.info(u"nothing"_s).isUndefined());
    }

    void informationThatCanNotBeReadSaysNothing_data() {
        QTest::addColumn<QByteArray>("info");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << QByteArray("{\"CFBundleVersion\": \"1.2\"");
        QTest::newRow("an array") << QByteArray("[\"CFBundleVersion\"]");
        QTest::newRow("no text") << QByteArray("\xff\0\xfe", 3);
        QTest::newRow("endless") << "{\"a\": \"" + QByteArray(200'000, 'x') + "\", \"CFBundleVersion\": \"1.2\"}";
    }
    void informationThatCanNotBeReadSaysNothing() {
        QFETCH(const QByteArray, info);
        QVERIFY(bundleWith(info).info(u"CFBundleVersion"_s).isUndefined());
    }

    void aBundleWithoutInformationSaysNothing() {
        QVERIFY(Bundle(_home.filePath(u"gone.app"_s), {}).info(u"CFBundleVersion"_s).isUndefined());
        const QString path = _home.filePath(u"folder.app"_s);
        QVERIFY(QDir().mkpath(path + u"/Contents/Info.json"_s));
        QVERIFY(Bundle(path, {}).info(u"CFBundleVersion"_s).isUndefined());
    }

    void theBuildWritesWhatTheApplicationIs() {
        const Bundle bundle(QStringLiteral(BUILT_BUNDLE), {});
        QCOMPARE(bundle.info(u"CFBundleShortVersionString"_s).toString(), QStringLiteral(ZELK_VERSION));
        QCOMPARE(bundle.info(u"CFBundleVersion"_s).toString(), QStringLiteral(ZELK_VERSION));
        QVERIFY(bundle.info(u"SUFeedURL"_s).isString());
        QVERIFY(bundle.info(u"SUPublicEDKey"_s).isString());
        QVERIFY(bundle.info(u"SUEnableAutomaticChecks"_s).isBool());
    }
};

QTEST_GUILESS_MAIN(TestBundle)
#include "tst_bundle.moc"
