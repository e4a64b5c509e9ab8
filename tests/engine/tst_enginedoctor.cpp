#include "engine/EngineHome.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk::engine::testing;

namespace {

QMap<QString, QJsonObject> checksOf(EngineChild &engine) {
    QMap<QString, QJsonObject> checks;
    const QJsonObject reply = engine.call(u"runDoctor"_s);
    for (const auto &check : reply.value("result"_L1).toObject().value("checks"_L1).toArray()) {
        checks.insert(check.toObject().value("id"_L1).toString(), check.toObject());
    }
    return checks;
}

QString statusOf(const QJsonObject &check) {
    return check.value("status"_L1).toString();
}

bool isFixable(const QJsonObject &check) {
    return check.value("fixable"_L1).toBool();
}

QProcessEnvironment variable(const QString &name, const QString &value) {
    QProcessEnvironment environment;
    environment.insert(name, value);
    return environment;
}

void setOutput(EngineChild &engine, const QString &folder) {
    const QJsonObject patch{{u"outputDir"_s, folder}};
    QVERIFY(engine.call(u"setConfig"_s, QJsonObject{{u"patch"_s, patch}}).value("ok"_L1).toBool());
}

} // namespace

/// What the engine says of its surroundings, and what of it it mends.
class EngineDoctor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itChecksTheProgramTheFoldersAndTheRoomInThisOrder() {
        const EngineHome home;
        EngineChild engine(home);
        QStringList ids;
        const QJsonObject reply = engine.call(u"runDoctor"_s);
        for (const auto &check : reply.value("result"_L1).toObject().value("checks"_L1).toArray()) {
            ids += check.toObject().value("id"_L1).toString();
        }
        QCOMPARE(ids, QStringList({u"ffmpeg"_s, u"output-folder"_s, u"playlists"_s, u"collection"_s, u"disk-space"_s}));
    }

    void aFolderThatIsMissingIsMade_data() {
        QTest::addColumn<QString>("variable"); // empty: the setting of the output folder
        QTest::addColumn<QString>("check");
        QTest::newRow("output") << QString() << u"output-folder"_s;
        QTest::newRow("playlists") << u"ZELK_PLAYLIST_DIRS"_s << u"playlists"_s;
        QTest::newRow("collection") << u"ZELK_COLLECTION_DIRS"_s << u"collection"_s;
    }

    void aFolderThatIsMissingIsMade() {
        QFETCH(QString, variable);
        QFETCH(QString, check);
        const EngineHome home;
        const QString folder = home.path(u"not/there/yet"_s);
        EngineChild engine(home, variable.isEmpty() ? QProcessEnvironment() : ::variable(variable, folder));
        if (variable.isEmpty()) {
            setOutput(engine, folder);
        }
        const QJsonObject before = checksOf(engine).value(check);
        QVERIFY(statusOf(before) != "ok"_L1);
        QVERIFY(isFixable(before));
        QVERIFY(before.value("detail"_L1).toString().contains(folder));
        QVERIFY(engine.call(u"doctorFix"_s, QJsonObject{{u"checkId"_s, check}}).value("ok"_L1).toBool());
        QVERIFY(QFileInfo(folder).isDir());
        QVERIFY(!isFixable(checksOf(engine).value(check)));
        // A second press comes too late to be wrong.
        if (check != "playlists"_L1) {
            QVERIFY(engine.call(u"doctorFix"_s, QJsonObject{{u"checkId"_s, check}}).value("ok"_L1).toBool());
        }
    }

    void anOutputFolderThatHeldFilesAndIsGoneIsAFailure() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        EngineChild engine(home);
        engine.syncAll();
        QVERIFY(QDir(home.output()).removeRecursively());
        const QJsonObject check = checksOf(engine).value(u"output-folder"_s);
        QCOMPARE(statusOf(check), u"fail"_s);
        QVERIFY(check.value("detail"_L1).toString().contains("Connect the disk"_L1));
        QVERIFY(isFixable(check));
        QVERIFY(engine.call(u"doctorFix"_s, QJsonObject{{u"checkId"_s, u"output-folder"_s}}).value("ok"_L1).toBool());
        QCOMPARE(endings(engine.syncAll()).values(), QStringList{u"ok downloaded"_s});
    }

    void aPlaylistFileThatCannotBeReadIsNamedWithItsReason_data() {
        QTest::addColumn<bool>("besideGood");
        QTest::newRow("alone") << false;
        QTest::newRow("beside a good one") << true;
    }

    void aPlaylistFileThatCannotBeReadIsNamedWithItsReason() {
        QFETCH(bool, besideGood);
        const EngineHome home;
        home.write(home.playlists(u"broken.csv"_s), "no,such,columns\n1,2,3\n");
        if (besideGood) {
            home.addList(u"Good.csv"_s, {u"One|Ann|2"_s});
        }
        EngineChild engine(home);
        for (int again = 0; again < 2; ++again) { // the second time it is known from the first
            const QJsonObject check = checksOf(engine).value(u"playlists"_s);
            QCOMPARE(statusOf(check), besideGood ? u"warn"_s : u"fail"_s);
            QVERIFY(!isFixable(check));
            const QString detail = check.value("detail"_L1).toString();
            const QString expected =
                u"1 file can't be read: %1: no column tells the tracks' names"_s.arg(home.playlists(u"broken.csv"_s));
            QVERIFY2(detail.contains(expected), qPrintable(detail));
            QVERIFY(detail.startsWith(besideGood ? u"1 found in"_s : u"None found. "_s));
        }
        home.addList(u"broken.csv"_s, {u"Two|Ann|2"_s});
        QCOMPARE(statusOf(checksOf(engine).value(u"playlists"_s)), u"ok"_s);
    }

    void manyPlaylistFilesThatCannotBeReadAreCounted() {
        const EngineHome home;
        for (int i = 1; i <= 5; ++i) {
            home.write(home.playlists(u"broken%1.csv"_s.arg(i)), {});
        }
        EngineChild engine(home);
        const QString detail = checksOf(engine).value(u"playlists"_s).value("detail"_L1).toString();
        QVERIFY2(detail.contains("5 files can't be read: "_L1) && detail.endsWith("; and 2 more."_L1),
                 qPrintable(detail));
        QCOMPARE(detail.count("holds nothing"_L1), 3);
    }

    void aFolderThatCannotBeMadeIsNotOfferedToBeMade_data() {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("check");
        QTest::addColumn<QString>("below");
        QTest::newRow("output, below a file") << QString() << u"output-folder"_s << u"file/out"_s;
        QTest::newRow("output, a link that leads nowhere") << QString() << u"output-folder"_s << u"link"_s;
        QTest::newRow("playlists, below a file") << u"ZELK_PLAYLIST_DIRS"_s << u"playlists"_s << u"file/lists"_s;
        QTest::newRow("collection, below a file") << u"ZELK_COLLECTION_DIRS"_s << u"collection"_s << u"file/audio"_s;
    }

    void aFolderThatCannotBeMadeIsNotOfferedToBeMade() {
        QFETCH(QString, variable);
        QFETCH(QString, check);
        QFETCH(QString, below);
        const EngineHome home;
        home.write(home.path(u"file"_s), "not a folder");
        QVERIFY(QFile::link(home.path(u"nowhere"_s), home.path(u"link"_s)));
        const QString folder = home.path(below);
        EngineChild engine(home, variable.isEmpty() ? QProcessEnvironment() : ::variable(variable, folder));
        if (variable.isEmpty()) {
            setOutput(engine, folder);
        }
        const QJsonObject found = checksOf(engine).value(check);
        QCOMPARE(statusOf(found), u"fail"_s);
        QVERIFY(!isFixable(found));
        const QJsonObject error =
            engine.call(u"doctorFix"_s, QJsonObject{{u"checkId"_s, check}}).value("error"_L1).toObject();
        QCOMPARE(error.value("code"_L1).toString(), u"invalid_params"_s);
        QVERIFY(error.value("message"_L1).toString().contains(folder));
    }
};

QTEST_GUILESS_MAIN(EngineDoctor)
#include "tst_enginedoctor.moc"
