#include "Platform/UserDefaults.h"

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestUserDefaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatWasNeverSetIsInvalidAndFalse() {
        const QTemporaryDir folder;
        const UserDefaults defaults(folder.filePath(u"a.conf"_s));
        QVERIFY(!defaults.value(u"didOnboard"_s).isValid());
        QVERIFY(!defaults.boolValue(u"didOnboard"_s));
    }

    void whatIsSetSurvivesARestart() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"below/a.conf"_s);
        {
            UserDefaults defaults(file);
            defaults.set(u"didOnboard"_s, true);
            defaults.set(u"appAppearance"_s, u"dark"_s);
            defaults.set(u"gone"_s, 1);
            defaults.remove(u"gone"_s);
        }
        const UserDefaults again(file);
        QVERIFY(again.boolValue(u"didOnboard"_s));
        QCOMPARE(again.value(u"appAppearance"_s).toString(), u"dark"_s);
        QVERIFY(!again.value(u"gone"_s).isValid());
    }

    void aFileThatIsNoneOfOursReadsAsEmpty() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"a.conf"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("\x01\xff]]not a settings file[[\n\0\0", 28);
        file.close();
        const UserDefaults defaults(path);
        QVERIFY(!defaults.boolValue(u"didOnboard"_s));
    }

    void aValueThatCanNotBeWrittenIsKeptForNow() {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"plain"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        UserDefaults defaults(folder.filePath(u"plain/a.conf"_s));
        defaults.set(u"didOnboard"_s, true);
        QVERIFY(defaults.boolValue(u"didOnboard"_s));
    }

    void thoseOfThisUserLieInTheFolderForConfiguration() {
        UserDefaults::standard()->set(u"didOnboard"_s, true);
        QVERIFY(QFile::exists(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                              u"/orrim/zelk.conf"_s));
        QVERIFY(UserDefaults::standard()->boolValue(u"didOnboard"_s));
    }
};

QTEST_GUILESS_MAIN(TestUserDefaults)
#include "tst_userdefaults.moc"
