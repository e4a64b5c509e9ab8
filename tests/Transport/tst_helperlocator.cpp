#include "Transport/HelperError.h"
#include "Transport/HelperLocator.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;

/// A folder in which bundles and programs are made for each test.
class TestHelperLocator : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _root;

    QString path(const QString &relative) const { return _root->filePath(relative); }

    QString makeFile(const QString &relative, bool executable = true) const {
        const QString file = path(relative);
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        if (!out.open(QFile::WriteOnly))
            return {};
        out.write("#!/bin/sh\n");
        const auto permissions = QFile::ReadOwner | QFile::WriteOwner;
        out.setPermissions(executable ? permissions | QFile::ExeOwner : permissions);
        return file;
    }

    Bundle bundle() const {
        return Bundle(path(QStringLiteral("zelk.app")), path(QStringLiteral("zelk.app/Contents/Linux/zelk")));
    }

    static QProcessEnvironment environment(const QString &helperPath) {
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("ZELK_HELPER_PATH"), helperPath);
        return environment;
    }

    static bool isMissing(const Bundle &bundle, const QProcessEnvironment &environment = {}) {
        try {
            HelperLocator::locate(bundle, environment);
        } catch (const HelperError &error) {
            return error == HelperError::helperMissing();
        }
        return false;
    }

private Q_SLOTS:
    void init() { _root = std::make_unique<QTemporaryDir>(); }

    void theEnvironmentsEngineComesBeforeTheBundles() {
        makeFile(QStringLiteral("zelk.app/Contents/Helpers/zelk"));
        const auto given = makeFile(QStringLiteral("my engine/zelk"));
        QCOMPARE(HelperLocator::locate(bundle(), environment(given)), given);
    }

    void theEnvironmentsEngineMayBeNamedFromWhereWeAre() {
        const auto given = makeFile(QStringLiteral("engine/zelk"));
        QCOMPARE(HelperLocator::locate(bundle(), environment(QDir::current().relativeFilePath(given))), given);
    }

    void anEnvironmentsEngineThatIsNoneFallsThroughToTheBundles_data() {
        QTest::addColumn<QString>("given");
        QTest::newRow("empty") << QString();
        QTest::newRow("not there") << QStringLiteral("nowhere");
        QTest::newRow("not executable") << QStringLiteral("plain");
        QTest::newRow("a folder") << QStringLiteral("folder");
    }
    void anEnvironmentsEngineThatIsNoneFallsThroughToTheBundles() {
        QFETCH(QString, given);
        const auto bundled = makeFile(QStringLiteral("zelk.app/Contents/Helpers/zelk"));
        makeFile(QStringLiteral("plain"), false);
        QDir().mkpath(path(QStringLiteral("folder")));
        QCOMPARE(HelperLocator::locate(bundle(), environment(given.isEmpty() ? given : path(given))), bundled);
    }

    void theBundlesEngineComesBeforeTheAuxiliary() {
        const auto bundled = makeFile(QStringLiteral("zelk.app/Contents/Helpers/zelk"));
        makeFile(QStringLiteral("zelk.app/Contents/Linux/zelk"));
        const Bundle withOtherMain(path(QStringLiteral("zelk.app")),
                                   path(QStringLiteral("zelk.app/Contents/Linux/application")));
        QCOMPARE(HelperLocator::locate(withOtherMain, {}), bundled);
    }

    void theAuxiliaryIsTakenWhenItIsNotTheApplication() {
        const auto auxiliary = makeFile(QStringLiteral("zelk.app/Contents/Linux/zelk"));
        const Bundle withOtherMain(path(QStringLiteral("zelk.app")),
                                   path(QStringLiteral("zelk.app/Contents/Linux/application")));
        QCOMPARE(HelperLocator::locate(withOtherMain, {}), auxiliary);
    }

    void theAuxiliaryIsTakenInABundleWithoutAMainExecutable() {
        const auto auxiliary = makeFile(QStringLiteral("zelk.app/Contents/Linux/zelk"));
        QCOMPARE(HelperLocator::locate(Bundle(path(QStringLiteral("zelk.app")), {}), {}), auxiliary);
    }

    void theApplicationIsNeverTakenForTheEngine() {
        makeFile(QStringLiteral("zelk.app/Contents/Linux/zelk"));
        QVERIFY(isMissing(bundle()));
        const Bundle spelledOtherwise(path(QStringLiteral("zelk.app")),
                                      path(QStringLiteral("zelk.app/Contents/../Contents/Linux/zelk")));
        QVERIFY(isMissing(spelledOtherwise));
    }

    void theApplicationIsNeverTakenForTheEngineThroughALink() {
        makeFile(QStringLiteral("zelk.app/Contents/Linux/real"));
        QFile::link(path(QStringLiteral("zelk.app/Contents/Linux/real")),
                    path(QStringLiteral("zelk.app/Contents/Linux/zelk")));
        QVERIFY(
            isMissing(Bundle(path(QStringLiteral("zelk.app")), path(QStringLiteral("zelk.app/Contents/Linux/real")))));
    }

    void theApplicationIsNotTheEngineEvenWhereItIsNamedAsOne() {
        const auto application = makeFile(QStringLiteral("zelk.app/Contents/Linux/zelk"));
        QVERIFY(isMissing(bundle(), environment(application)));
        QDir().mkpath(path(QStringLiteral("zelk.app/Contents/Helpers")));
        QVERIFY(QFile::link(application, path(QStringLiteral("zelk.app/Contents/Helpers/zelk"))));
        QVERIFY(isMissing(bundle()));
    }

    void anAuxiliaryThatCannotBeExecutedIsNone() {
        makeFile(QStringLiteral("zelk.app/Contents/Linux/zelk"), false);
        QVERIFY(isMissing(
            Bundle(path(QStringLiteral("zelk.app")), path(QStringLiteral("zelk.app/Contents/Linux/application")))));
    }

    void anEmptyBundleHasNoEngine() { QVERIFY(isMissing(bundle())); }

    void theRunningProgramKnowsItsBundle() {
        const auto main = Bundle::main();
        QCOMPARE(main.executablePath(), QCoreApplication::applicationFilePath());
        QCOMPARE(main.path(), QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../..")));
    }
};

QTEST_GUILESS_MAIN(TestHelperLocator)
#include "tst_helperlocator.moc"
