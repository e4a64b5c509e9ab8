#include "Files/FileProblem.h"
#include "Store/ConfigStore.h"
#include "Store/Database.h"
#include "Store/SecretStore.h"
#include "engine/EngineHome.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;
using namespace zelk::engine::testing;

namespace {

EnginePaths pathsIn(const EngineHome &home) {
    EnginePaths paths;
    paths.home = home.path();
    paths.configFile = home.path(u"conf/engine.json"_s);
    paths.secretsFile = home.path(u"conf/secrets.json"_s);
    paths.databaseFile = home.path(u"data/engine.db"_s);
    return paths;
}

WrittenFile fileAt(const QString &path) {
    WrittenFile file;
    file.path = path;
    file.sourcePath = u"/c/x.flac"_s;
    file.size = 7;
    file.modifiedMs = 1'234'567'890'123;
    file.durationSec = 2.5;
    file.format = u"FLAC"_s;
    file.bitrateKbps = 900;
    file.lossless = true;
    file.origin = SourceId::bandcamp;
    return file;
}

/// Another program that has the database to itself.
class Holder {
public:
    explicit Holder(const QString &path) {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, _name);
        database.setDatabaseName(path);
        if (!database.open()) {
            qFatal("the database can't be held");
        }
        for (const QString &statement : {u"PRAGMA locking_mode = EXCLUSIVE"_s, u"BEGIN EXCLUSIVE"_s, u"COMMIT"_s}) {
            if (!QSqlQuery(database).exec(statement)) {
                qFatal("the database can't be held");
            }
        }
    }
    ~Holder() {
        QSqlDatabase::database(_name).close();
        QSqlDatabase::removeDatabase(_name);
    }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

private:
    const QString _name = u"holder"_s;
};

} // namespace

class EngineStore : public QObject {
    Q_OBJECT

    QStringList _warnings;
    std::function<void(const QString &)> _warn = [this](const QString &message) { _warnings += message; };

private Q_SLOTS:
    void init() { _warnings.clear(); }

    void aPatchChangesWhatItNamesAndKeepsWhatTheFileSaysBesides() {
        const EngineHome home;
        const EnginePaths paths = pathsIn(home);
        home.write(
            paths.configFile,
            R"({"ofANewerEngine":[1],"playlistDirs":["~/lists"],"run":{"searchCount":9,"concurrency":2,"toleranceSec":1,"searchTimeoutSec":3,"cooloffHours":0.5}})");
        {
            ConfigStore store(paths, _warn);
            QCOMPARE(store.current().playlistDirs, QStringList{home.path(u"lists"_s)});
            QCOMPARE(store.current().run.concurrency, 2);
            ConfigPatch patch;
            patch.sources = {SourceId::youtube};
            store.apply(patch);
        }
        const ConfigStore store(paths, _warn);
        QCOMPARE(store.current().sources, std::vector<SourceId>{SourceId::youtube});
        QCOMPARE(store.current().run.searchCount, 9);
        QVERIFY(home.read(paths.configFile).contains("ofANewerEngine"));
        QVERIFY(_warnings.isEmpty());
    }

    void aBrokenFileIsSetAsideUnchanged_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("cut off") << QByteArray("{\"outputDir\":\"/x");
        QTest::newRow("no object") << QByteArray("[]");
        QTest::newRow("wrong type") << QByteArray("{\"outputDir\":[]}");
        QTest::newRow("nonsense") << QByteArray(
            R"({"run":{"searchCount":5,"concurrency":0,"toleranceSec":5,"searchTimeoutSec":30,"cooloffHours":24}})");
        QTest::newRow("empty") << QByteArray();
    }

    void aBrokenFileIsSetAsideUnchanged() {
        QFETCH(QByteArray, bytes);
        const EngineHome home;
        const EnginePaths paths = pathsIn(home);
        home.write(paths.configFile, bytes);
        home.write(paths.configFile + u".broken-1"_s, "an older one");
        ConfigStore store(paths, _warn);
        QCOMPARE(store.current().outputDir, EnginePaths::defaultOutputDir());
        QCOMPARE(home.read(paths.configFile + u".broken-2"_s), bytes);
        QCOMPARE(home.read(paths.configFile + u".broken-1"_s), QByteArray("an older one"));
        QCOMPARE(_warnings.size(), 1);
        store.setConnected(PlaylistSourceId::apple, true);
        QCOMPARE(ConfigStore(paths, _warn).current().appleMusicConnected, true);
    }

    void whatIsWrittenIntoTheFileMeanwhileIsKept() {
        const EngineHome home;
        const EnginePaths paths = pathsIn(home);
        ConfigStore store(paths, _warn);
        store.setConnected(PlaylistSourceId::apple, true);
        home.write(paths.configFile, R"({"playlistDirs":["~/lists"],"sources":["youtube"],"mine":1})");
        ConfigPatch patch;
        patch.outputDir = u"/out"_s;
        store.apply(patch);
        QCOMPARE(store.current().playlistDirs, QStringList{home.path(u"lists"_s)});
        QCOMPARE(store.current().sources, std::vector<SourceId>{SourceId::youtube});
        QCOMPARE(store.current().outputDir, u"/out"_s);
        QCOMPARE(ConfigStore(paths, _warn).current(), store.current());
        QVERIFY(home.read(paths.configFile).contains("\"mine\""));
        QCOMPARE(_warnings, QStringList());
    }

    void aFileThatIsBrokenMeanwhileIsSetAsideAndTheSettingsHold() {
        const EngineHome home;
        const EnginePaths paths = pathsIn(home);
        ConfigStore store(paths, _warn);
        ConfigPatch patch;
        patch.outputDir = u"/out"_s;
        store.apply(patch);
        home.write(paths.configFile, "{ half of");
        store.setConnected(PlaylistSourceId::apple, true);
        QCOMPARE(home.read(paths.configFile + u".broken-1"_s), QByteArray("{ half of"));
        QCOMPARE(_warnings.size(), 1);
        QCOMPARE(ConfigStore(paths, _warn).current().outputDir, u"/out"_s);
    }

    void aLinkToTheSettingsStaysOne() {
        const EngineHome home;
        const EnginePaths paths = pathsIn(home);
        home.write(home.path(u"dotfiles/engine.json"_s), "{}");
        QVERIFY(QDir().mkpath(home.path(u"conf"_s)));
        QVERIFY(QFile::link(home.path(u"dotfiles/engine.json"_s), paths.configFile));
        ConfigStore store(paths, _warn);
        store.setConnected(PlaylistSourceId::apple, true);
        QVERIFY(QFileInfo(paths.configFile).isSymbolicLink());
        QVERIFY(home.read(home.path(u"dotfiles/engine.json"_s)).contains("appleMusicConnected"));
    }

    void aSettingsFileThatCannotBeReadIsNeverReplaced() {
        const EngineHome home;
        const EnginePaths paths = pathsIn(home);
        QDir().mkpath(paths.configFile); // a folder of that name
        ConfigStore store(paths, _warn);
        QCOMPARE(_warnings.size(), 1);
        QVERIFY_THROWS_EXCEPTION(FileProblem, store.apply({}));
        QVERIFY(QFileInfo(paths.configFile).isDir());
    }

    void aFailedWriteChangesNothing() {
        const EngineHome home;
        EnginePaths paths = pathsIn(home);
        home.write(home.path(u"file"_s), "x");
        paths.configFile = home.path(u"file/engine.json"_s);
        ConfigStore store(paths, _warn);
        const EngineConfig before = store.current();
        ConfigPatch patch;
        patch.outputDir = u"/elsewhere"_s;
        QVERIFY_THROWS_EXCEPTION(FileProblem, store.apply(patch));
        QVERIFY(store.current() == before);
    }

    void tokensAreKeptAndForgotten() {
        const EngineHome home;
        const QString path = pathsIn(home).secretsFile;
        {
            SecretStore store(path, _warn);
            QVERIFY(!store.has(AccountService::spotify));
            store.store(AccountService::spotify, u"hush"_s, u"client"_s);
            store.store(AccountService::acoustid, u"hush"_s, std::nullopt);
        }
        SecretStore store(path, _warn);
        QVERIFY(store.has(AccountService::spotify));
        QCOMPARE(store.clientId(AccountService::spotify), u"client"_s);
        store.forget(AccountService::spotify);
        QVERIFY(!SecretStore(path, _warn).has(AccountService::spotify));
        QVERIFY(SecretStore(path, _warn).has(AccountService::acoustid));
        QVERIFY(_warnings.isEmpty());
    }

    void whatAKilledEngineLeftOfAPrivateFileGoesWithTheNextWrite() {
        const EngineHome home;
        const QString path = pathsIn(home).secretsFile;
        const QString ofDead = path + u".new-999999999"_s; // beyond the largest number of a process
        const QString ofLiving = path + u".new-1"_s;
        for (const QString &name : {ofDead, ofLiving, path + u".new-mine"_s}) {
            home.write(name, "hush");
        }
        SecretStore(path, _warn).store(AccountService::spotify, u"hush"_s, std::nullopt);
        QVERIFY(!QFile::exists(ofDead));
        QVERIFY(QFile::exists(ofLiving));
        QVERIFY(QFile::exists(path + u".new-mine"_s));
    }

    void tokensThatAnotherEngineStoresMeanwhileAreKept() {
        const EngineHome home;
        const QString path = pathsIn(home).secretsFile;
        SecretStore one(path, _warn);
        SecretStore other(path, _warn);
        one.store(AccountService::spotify, u"hush"_s, std::nullopt);
        other.store(AccountService::acoustid, u"hush"_s, std::nullopt);
        one.forget(AccountService::soundcloud);
        const SecretStore later(path, _warn);
        QVERIFY(later.has(AccountService::spotify));
        QVERIFY(later.has(AccountService::acoustid));
    }

    void writtenFilesAndWhoWantsThemOutliveTheProcess() {
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        {
            Database database(path, _warn);
            const qint64 id = database.recordWritten(fileAt(u"/o/a.flac"_s), u"k1"_s, u"p1"_s);
            database.recordWants({{id, u"k2"_s, u"p1"_s}, {id, u"k2"_s, u"p1"_s}});
            QCOMPARE(database.recordWritten(fileAt(u"/o/a.flac"_s), u"k1"_s, u"p2"_s), id);
        }
        Database database(path, _warn);
        const auto found = database.writtenFor({u"k1"_s, u"k2"_s, u"k3"_s, u"k1"_s});
        QCOMPARE(found.size(), 2);
        WrittenFile expected = fileAt(u"/o/a.flac"_s);
        expected.id = found.value(u"k1"_s).id;
        QCOMPARE(found.value(u"k1"_s), expected);
        QCOMPARE(database.wants().size(), 3u);
        database.forgetFile(u"/o/a.flac"_s);
        QVERIFY(database.writtenFiles().empty());
        QVERIFY(database.wants().empty());
        QVERIFY(_warnings.isEmpty());
    }

    void takingAFileBackLeavesAnotherOneOfItsName() {
        const EngineHome home;
        Database database(home.path(u"engine.db"_s), _warn);
        const WrittenFile file = fileAt(u"/out/a.flac"_s);
        database.recordWritten(file, u"key"_s, u"list"_s);
        WrittenFile other = file;
        other.sourcePath = u"/c/y.flac"_s;
        database.takeBack(other);
        QCOMPARE(database.writtenFiles().size(), 1U);
        database.takeBack(file);
        QVERIFY(database.writtenFiles().empty());
    }

    void aDecisionAndWhatCameOfItAreOneStep() {
        const EngineHome home;
        const QString path = home.path(u"engine.db"_s);
        std::vector<PendingReview> rows(2);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            rows[i].trackId = u"list%1#0"_s.arg(i);
            rows[i].playlistId = u"list%1"_s.arg(i);
            rows[i].rowKey = u"key"_s;
        }
        const StoredDecision take{StoredDecision::Kind::Take, u"/c/x.flac"_s};
        const WrittenFile file = fileAt(u"/out/a.flac"_s);
        Database database(path, _warn);
        for (const PendingReview &row : rows) {
            database.recordReview(row);
        }
        database.recordCoolOff(u"key"_s, {1, u"print"_s, u"detail"_s});
        const auto alter = [&](const QString &statement) {
            {
                QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
                other.setDatabaseName(path);
                QVERIFY(other.open());
                QVERIFY(QSqlQuery(other).exec(statement));
            }
            QSqlDatabase::removeDatabase(u"other"_s);
        };
        alter(u"ALTER TABLE cooloffs RENAME TO elsewhere"_s); // so that it fails on the way
        QVERIFY_THROWS_EXCEPTION(DatabaseError, database.recordOutcome(rows, take, &file));
        QVERIFY(!database.decision(u"key"_s));
        QVERIFY(database.writtenFiles().empty());
        QCOMPARE(database.reviewsOf(u"key"_s), rows);
        alter(u"ALTER TABLE elsewhere RENAME TO cooloffs"_s);
        const qint64 id = database.recordOutcome(rows, take, &file);
        QCOMPARE(database.decision(u"key"_s), take);
        QVERIFY(database.reviews().empty());
        QVERIFY(!database.coolOff(u"key"_s));
        QCOMPARE(database.wants(), std::vector<Want>({{id, u"key"_s, u"list0"_s}, {id, u"key"_s, u"list1"_s}}));
    }

    void decisionsCoolOffsAndReviewsAreKept() {
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        PendingReview review;
        review.trackId = u"p#1"_s;
        review.rowKey = u"k"_s;
        review.candidates.emplace_back();
        review.candidates.back().title = u"„x“"_s;
        const CoolOff rest{99, u"f"_s, u"why"_s};
        {
            Database database(path, _warn);
            database.recordDecision(u"k"_s, {StoredDecision::Kind::Take, u"/c/x"_s});
            database.recordDecision(u"k"_s, {StoredDecision::Kind::Skip, {}});
            database.recordCoolOff(u"k"_s, rest);
            database.recordReview(review);
        }
        Database database(path, _warn);
        QCOMPARE(database.decision(u"k"_s), (StoredDecision{StoredDecision::Kind::Skip, u""_s}));
        QVERIFY(!database.decision(u"other"_s));
        QCOMPARE(database.coolOff(u"k"_s), rest);
        QCOMPARE(database.review(u"p#1"_s), review);
        database.recordWritten(fileAt(u"/o/a.flac"_s), u"k"_s, u"p"_s); // ends both
        QVERIFY(!database.coolOff(u"k"_s));
        QVERIFY(database.reviews().empty());
    }

    void aBrokenDatabaseIsSetAside() {
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        const QByteArray junk(8'192, 'j');
        home.write(path, junk);
        Database database(path, _warn);
        QCOMPARE(_warnings.size(), 1);
        QCOMPARE(home.read(path + u".broken-1"_s), junk);
        database.recordDecision(u"k"_s, {StoredDecision::Kind::Skip, {}});
        QVERIFY(database.decision(u"k"_s));
    }

    void damageBehindTheFirstPageIsFoundAtTheStart() {
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        {
            Database database(path, _warn);
            for (int i = 0; i < 400; ++i) {
                database.recordDecision(QString::number(i).repeated(40), {StoredDecision::Kind::Skip, {}});
            }
        }
        QByteArray bytes = home.read(path);
        QVERIFY(bytes.size() > 40'960);
        bytes.replace(20'480, 16'384, QByteArray(16'384, 'j'));
        home.write(path, bytes);
        Database database(path, _warn);
        QCOMPARE(_warnings.size(), 1);
        QCOMPARE(home.read(path + u".broken-1"_s), bytes);
        QVERIFY(!database.decision(u"0"_s.repeated(40)));
    }

    void aTruncatedDatabaseIsSetAside_data() {
        QTest::addColumn<double>("share");
        QTest::newRow("in its middle") << 0.5;
        QTest::newRow("in its first page") << 0.001;
    }

    void aTruncatedDatabaseIsSetAside() {
        QFETCH(double, share);
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        {
            Database database(path, _warn);
            for (int i = 0; i < 400; ++i) {
                database.recordDecision(QString::number(i).repeated(40), {StoredDecision::Kind::Skip, {}});
            }
        }
        const QByteArray bytes = home.read(path);
        const QByteArray cut = bytes.left(static_cast<qsizetype>(share * static_cast<double>(bytes.size())));
        home.write(path, cut);
        Database database(path, _warn);
        QCOMPARE(_warnings.size(), 1);
        QVERIFY(_warnings.first().contains(path + u".broken-1"_s));
        QCOMPARE(home.read(path + u".broken-1"_s), cut);
        database.recordDecision(u"k"_s, {StoredDecision::Kind::Skip, {}});
        QVERIFY(database.decision(u"k"_s));
    }

    void aDatabaseThatIsHeldIsWaitedForAndNeverReplaced() {
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        { Database(path, _warn).recordDecision(u"k"_s, {StoredDecision::Kind::Take, u"/c/x"_s}); }
        auto holder = std::make_unique<Holder>(path);
        Database database(path, _warn);
        QCOMPARE(_warnings.size(), 1);
        QVERIFY(_warnings.first().contains("holds"_L1));
        try {
            database.writtenFiles();
            QFAIL("it isn't there");
        } catch (const DatabaseError &error) {
            QVERIFY(error.isLock());
        }
        holder.reset();
        QCOMPARE(database.decision(u"k"_s), (StoredDecision{StoredDecision::Kind::Take, u"/c/x"_s}));
        QVERIFY(!QFile::exists(path + u".broken-1"_s));
    }

    void aSyncDuringWhichTheMemoryIsHeldWritesNothingTwice() {
        const EngineHome home;
        home.addAudio(u"a.flac"_s, u"Ann"_s, u"One"_s);
        home.addAudio(u"b.flac"_s, u"Ann"_s, u"Two"_s);
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s});
        {
            EngineChild engine(home);
            engine.syncAll();
        }
        home.addList(u"L.csv"_s, {u"One|Ann|2"_s, u"Two|Ann|2"_s});
        auto holder = std::make_unique<Holder>(home.path(u".local/share/zelk/engine.db"_s));
        EngineChild engine(home);
        QString said;
        for (const QJsonObject &error : named(engine.syncAll(), u"error"_s)) {
            said += dataOf(error).value("message"_L1).toString();
        }
        QVERIFY2(said.contains("Another program holds"_L1) && said.contains("sync again"_L1), qPrintable(said));
        QCOMPARE(home.outputFiles(), QStringList{u"Ann - One.flac"_s});
        holder.reset();
        QCOMPARE(endings(engine.syncAll()).values(), QStringList({u"present"_s, u"ok downloaded"_s}));
        QCOMPARE(home.outputFiles(), QStringList({u"Ann - One.flac"_s, u"Ann - Two.flac"_s}));
    }

    void aDatabaseOfAnotherKindIsSetAside() {
        const EngineHome home;
        const QString path = pathsIn(home).databaseFile;
        QDir().mkpath(QFileInfo(path).absolutePath());
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
            other.setDatabaseName(path);
            QVERIFY(other.open());
            QVERIFY(QSqlQuery(other).exec(u"CREATE TABLE wants (other INTEGER)"_s));
        }
        QSqlDatabase::removeDatabase(u"other"_s);
        Database database(path, _warn);
        QCOMPARE(_warnings.size(), 1);
        QVERIFY(QFile::exists(path + u".broken-1"_s));
        QVERIFY(database.wants().empty());
    }

    void withoutAPlaceForADatabaseTheMemoryLastsForTheProcess() {
        const EngineHome home;
        home.write(home.path(u"file"_s), "x");
        Database database(home.path(u"file/engine.db"_s), _warn);
        QCOMPARE(_warnings.size(), 1);
        database.recordDecision(u"k"_s, {StoredDecision::Kind::Skip, {}});
        QVERIFY(database.decision(u"k"_s));
        QCOMPARE(home.read(home.path(u"file"_s)), QByteArray("x"));
    }
};

QTEST_GUILESS_MAIN(EngineStore)
#include "tst_enginestore.moc"
