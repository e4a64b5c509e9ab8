#include "Store/Database.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Store/DatabaseTransaction.h"
#include "Store/Schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <QVariant>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// SQLite's own codes: a plain error, which a foreign schema gives, a damaged file, and a file that is no database.
constexpr int codeOfError = 1;
constexpr int codeOfDamage = 11;
constexpr int codeOfOtherFile = 26;

bool isDamage(int code) {
    return code == codeOfError || code == codeOfDamage || code == codeOfOtherFile;
}

/// Within one process as well as between two.
constexpr int codesOfLock[] = {5, 6};

/// Sets the file aside with what belongs to it, and returns its new path.
QString setAsideWhole(const QString &path) {
    QString aside = setAside(path);
    for (const auto suffix : {"-wal"_L1, "-shm"_L1}) {
        QFile::rename(path + suffix, aside + suffix);
    }
    return aside;
}

} // namespace

bool DatabaseError::isLock() const {
    return std::find(std::begin(codesOfLock), std::end(codesOfLock), _code) != std::end(codesOfLock);
}

Database::Database(const QString &path, const Warn &warn)
    : _connection(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    _queue.run([&] { open(path, warn); });
}

Database::~Database() {
    _queue.run([this] {
        QSqlDatabase::database(_connection, false).close();
        QSqlDatabase::removeDatabase(_connection);
    });
}

void Database::open(const QString &path, const Warn &warn) {
    QString failure;
    QDir().mkpath(QFileInfo(path).absolutePath());
    try {
        prepare(path);
        return;
    } catch (const DatabaseError &error) {
        failure = QString::fromStdString(error.what());
        if (error.isLock()) {
            _awaited = path;
            warn(
                u"Another program holds what the engine remembers in %1. Nothing can be synced until it lets go."_s.arg(
                    path));
            return;
        }
        if (isDamage(error.code()) && QFileInfo(path).isFile()) {
            try {
                QSqlDatabase::database(_connection, false).close();
                warn(
                    u"What the engine remembered in %1 can't be used (%2). It is kept as %3, and a new memory is begun."_s
                        .arg(path, failure, setAsideWhole(path)));
                prepare(path);
                return;
            } catch (const FileProblem &problem) {
                failure = problem.description();
            } catch (const DatabaseError &again) {
                failure = QString::fromStdString(again.what());
            }
        }
    }
    warn(u"The engine can't remember what it does in %1 (%2). Everything works, but it is forgotten at the end."_s.arg(
        path, failure));
    prepare(u":memory:"_s);
}

void Database::prepare(const QString &path) {
    if (QSqlDatabase::contains(_connection)) {
        QSqlDatabase::database(_connection, false).close();
        QSqlDatabase::removeDatabase(_connection);
    }
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, _connection);
    database.setDatabaseName(path);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=5000"_s);
    if (!database.open()) {
        throw errorOf(database.lastError());
    }
    query(u"PRAGMA journal_mode = WAL"_s);
    query(u"PRAGMA synchronous = NORMAL"_s);
    _lasts = Lasts::ThroughCrashes;
    query(u"PRAGMA foreign_keys = ON"_s);
    // Damage behind the first page would otherwise be met in the middle of a run.
    if (QSqlQuery check = query(u"PRAGMA quick_check(1)"_s); check.next() && check.value(0).toString() != "ok"_L1) {
        throw DatabaseError(check.value(0).toString().toStdString(), codeOfDamage);
    }
    const auto stepsLeft = [this] {
        QSqlQuery version = query(u"PRAGMA user_version"_s);
        version.next();
        return schemaSteps(version.value(0).toInt());
    };
    if (stepsLeft().isEmpty()) {
        return;
    }
    query(u"BEGIN IMMEDIATE"_s); // all or nothing; and of two engines that start together, one does it
    for (const QString &statement : stepsLeft()) {
        query(statement);
    }
    query(u"COMMIT"_s);
}

/// To be carried out many times: there may be 100,000.
QSqlQuery Database::prepared(const QString &statement) {
    QSqlQuery query(QSqlDatabase::database(_connection, false));
    query.setForwardOnly(true);
    if (!query.prepare(statement)) {
        throw errorOf(query.lastError());
    }
    return query;
}

QSqlQuery Database::query(const QString &statement, const QVariantList &values) {
    QSqlQuery query = prepared(statement);
    for (const QVariant &value : values) {
        query.addBindValue(value);
    }
    if (!query.exec()) {
        throw errorOf(query.lastError());
    }
    return query;
}

} // namespace zelk::engine
