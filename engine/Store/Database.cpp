#include "Store/Database.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Transport/JSONReader.h"
#include "Transport/JSONWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

const QStringList &schema() {
    static const QStringList statements = {
        u"CREATE TABLE IF NOT EXISTS files (id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, source_path TEXT NOT "
        u"NULL,"
        " size INTEGER NOT NULL, modified INTEGER NOT NULL, duration REAL NOT NULL, format TEXT NOT NULL,"
        " bitrate INTEGER NOT NULL, lossless INTEGER NOT NULL, origin TEXT)"_s,
        u"CREATE TABLE IF NOT EXISTS wants (file_id INTEGER NOT NULL REFERENCES files(id) ON DELETE CASCADE,"
        " row_key TEXT NOT NULL, playlist_id TEXT NOT NULL, PRIMARY KEY (row_key, file_id, playlist_id)) WITHOUT ROWID"_s,
        u"CREATE INDEX IF NOT EXISTS wants_by_file ON wants (file_id)"_s,
        u"CREATE TABLE IF NOT EXISTS decisions (row_key TEXT PRIMARY KEY, kind TEXT NOT NULL, path TEXT NOT NULL)"_s,
        u"CREATE TABLE IF NOT EXISTS cooloffs (row_key TEXT PRIMARY KEY, until_ms INTEGER NOT NULL,"
        " fingerprint TEXT NOT NULL, detail TEXT NOT NULL)"_s,
        u"CREATE TABLE IF NOT EXISTS playlists (id TEXT PRIMARY KEY, origin TEXT NOT NULL)"_s,
        u"CREATE TABLE IF NOT EXISTS reviews (track_id TEXT PRIMARY KEY, row_key TEXT NOT NULL, record TEXT NOT NULL)"_s,
        u"CREATE INDEX IF NOT EXISTS reviews_by_row ON reviews (row_key)"_s,
        u"CREATE TABLE IF NOT EXISTS audio (path TEXT PRIMARY KEY, size INTEGER NOT NULL, modified INTEGER NOT NULL,"
        " format TEXT NOT NULL, lossless INTEGER NOT NULL, bitrate INTEGER NOT NULL, duration REAL NOT NULL,"
        " title TEXT NOT NULL, artist TEXT NOT NULL, album TEXT NOT NULL, isrc TEXT NOT NULL) WITHOUT ROWID"_s,
        u"PRAGMA user_version = 1"_s};
    return statements;
}

QVariant originValue(const std::optional<SourceId> &origin) {
    return origin ? QVariant(QString(wireName(*origin))) : QVariant();
}

/// Null texts would be stored as NULL.
QString text(const QString &value) {
    return value.isNull() ? u""_s : value;
}

WrittenFile writtenFileOf(const QSqlQuery &row) {
    WrittenFile file;
    file.id = row.value(0).toLongLong();
    file.path = row.value(1).toString();
    file.sourcePath = row.value(2).toString();
    file.size = row.value(3).toLongLong();
    file.modifiedMs = row.value(4).toLongLong();
    file.durationSec = row.value(5).toDouble();
    file.format = row.value(6).toString();
    file.bitrateKbps = row.value(7).toInt();
    file.lossless = row.value(8).toBool();
    file.origin = fromWireName<SourceId>(QStringView(row.value(9).toString()));
    return file;
}

constexpr auto fileColumns = "files.id, files.path, files.source_path, files.size, files.modified, files.duration,"
                             " files.format, files.bitrate, files.lossless, files.origin"_L1;

/// SQLite's own codes: a plain error, which a foreign schema gives, a damaged file, and a file that is no database.
constexpr int codeOfError = 1;
constexpr int codeOfDamage = 11;
constexpr int codeOfOtherFile = 26;

bool isDamage(int code) {
    return code == codeOfError || code == codeOfDamage || code == codeOfOtherFile;
}

/// Within one process as well as between two.
constexpr int codesOfLock[] = {5, 6};

DatabaseError errorOf(const QSqlError &error) {
    return {error.text().toStdString(), error.nativeErrorCode().toInt() & 0xFF};
}

/// Sets the file aside with what belongs to it, and returns its new path.
QString setAsideWhole(const QString &path) {
    QString aside = setAside(path);
    for (const auto suffix : {"-wal"_L1, "-shm"_L1}) {
        QFile::rename(path + suffix, aside + suffix);
    }
    return aside;
}

PendingReview reviewOf(const QString &record) {
    return readJSON<PendingReview>(record.toUtf8());
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
    query(u"PRAGMA foreign_keys = ON"_s);
    // Damage behind the first page would otherwise be met in the middle of a run.
    if (QSqlQuery check = query(u"PRAGMA quick_check(1)"_s); check.next() && check.value(0).toString() != "ok"_L1) {
        throw DatabaseError(check.value(0).toString().toStdString(), codeOfDamage);
    }
    for (const QString &statement : schema()) {
        query(statement);
    }
}

QSqlQuery Database::query(const QString &statement, const QVariantList &values) {
    QSqlQuery query(QSqlDatabase::database(_connection, false));
    query.setForwardOnly(true);
    bool ok = query.prepare(statement);
    for (const QVariant &value : values) {
        query.addBindValue(value);
    }
    ok = ok && query.exec();
    if (!ok) {
        throw errorOf(query.lastError());
    }
    return query;
}

template<class Function>
auto Database::transaction(Function function) {
    return _queue.run([&]() -> decltype(function()) {
        if (!_awaited.isEmpty()) {
            prepare(_awaited);
            _awaited.clear();
        }
        QSqlDatabase database = QSqlDatabase::database(_connection, false);
        if (!database.transaction()) {
            throw errorOf(database.lastError());
        }
        const auto commit = [&database] {
            if (!database.commit()) {
                throw errorOf(database.lastError());
            }
        };
        try {
            if constexpr (std::is_void_v<decltype(function())>) {
                function();
                commit();
            } else {
                auto result = function();
                commit();
                return result;
            }
        } catch (...) {
            database.rollback();
            throw;
        }
    });
}

std::vector<WrittenFile> Database::writtenFiles() {
    return transaction([&] {
        std::vector<WrittenFile> files;
        for (QSqlQuery row = query(u"SELECT %1 FROM files ORDER BY path"_s.arg(fileColumns)); row.next();) {
            files.push_back(writtenFileOf(row));
        }
        return files;
    });
}

bool Database::knowsFilesIn(const QString &folder) {
    const QString start = folder + u'/';
    return transaction([&] {
        return query(u"SELECT 1 FROM files WHERE substr(path, 1, length(?)) = ? LIMIT 1"_s, {start, start}).next();
    });
}

std::vector<Want> Database::wants() {
    return transaction([&] {
        std::vector<Want> wants;
        for (QSqlQuery row = query(u"SELECT file_id, row_key, playlist_id FROM wants"_s); row.next();) {
            wants.push_back({row.value(0).toLongLong(), row.value(1).toString(), row.value(2).toString()});
        }
        return wants;
    });
}

QMultiHash<QString, WrittenFile> Database::writtenFor(const QStringList &rowKeys) {
    return transaction([&] {
        QMultiHash<QString, WrittenFile> files;
        QSqlQuery row(QSqlDatabase::database(_connection, false));
        row.setForwardOnly(true);
        if (!row.prepare(
                u"SELECT DISTINCT %1 FROM wants JOIN files ON files.id = wants.file_id WHERE row_key = ?"_s.arg(
                    fileColumns))) {
            throw errorOf(row.lastError());
        }
        for (const QString &rowKey : rowKeys) {
            if (files.contains(rowKey)) {
                continue;
            }
            row.bindValue(0, rowKey);
            if (!row.exec()) {
                throw errorOf(row.lastError());
            }
            while (row.next()) {
                files.insert(rowKey, writtenFileOf(row));
            }
        }
        return files;
    });
}

qint64 Database::recordWritten(const WrittenFile &file, const QString &rowKey, const QString &playlistId) {
    return transaction([&] {
        QSqlQuery stored = query(
            u"INSERT INTO files (path, source_path, size, modified, duration, format, bitrate, lossless, origin)"
            " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT (path) DO UPDATE SET source_path = excluded.source_path,"
            " size = excluded.size, modified = excluded.modified, duration = excluded.duration,"
            " format = excluded.format, bitrate = excluded.bitrate, lossless = excluded.lossless,"
            " origin = excluded.origin RETURNING id"_s,
            {file.path, text(file.sourcePath), file.size, file.modifiedMs, file.durationSec, text(file.format),
             file.bitrateKbps, file.lossless, originValue(file.origin)});
        stored.next();
        const qint64 id = stored.value(0).toLongLong();
        stored.finish();
        query(u"INSERT OR IGNORE INTO wants (file_id, row_key, playlist_id) VALUES (?, ?, ?)"_s,
              {id, rowKey, playlistId});
        query(u"DELETE FROM cooloffs WHERE row_key = ?"_s, {rowKey});
        query(u"DELETE FROM reviews WHERE row_key = ?"_s, {rowKey});
        return id;
    });
}

void Database::recordWants(const std::vector<Want> &wants) {
    transaction([&] {
        for (const Want &want : wants) {
            query(u"INSERT OR IGNORE INTO wants (file_id, row_key, playlist_id) VALUES (?, ?, ?)"_s,
                  {want.fileId, want.rowKey, want.playlistId});
        }
    });
}

void Database::forgetFile(const QString &path) {
    transaction([&] { query(u"DELETE FROM files WHERE path = ?"_s, {path}); });
}

std::optional<StoredDecision> Database::decision(const QString &rowKey) {
    return transaction([&]() -> std::optional<StoredDecision> {
        QSqlQuery row = query(u"SELECT kind, path FROM decisions WHERE row_key = ?"_s, {rowKey});
        if (!row.next()) {
            return std::nullopt;
        }
        const bool take = row.value(0).toString() == "take"_L1;
        return StoredDecision{take ? StoredDecision::Kind::Take : StoredDecision::Kind::Skip, row.value(1).toString()};
    });
}

void Database::recordDecision(const QString &rowKey, const StoredDecision &decision) {
    transaction([&] {
        const QString kind = decision.kind == StoredDecision::Kind::Take ? u"take"_s : u"skip"_s;
        query(u"INSERT OR REPLACE INTO decisions (row_key, kind, path) VALUES (?, ?, ?)"_s,
              {rowKey, kind, text(decision.path)});
    });
}

void Database::forgetDecision(const QString &rowKey) {
    transaction([&] { query(u"DELETE FROM decisions WHERE row_key = ?"_s, {rowKey}); });
}

std::optional<CoolOff> Database::coolOff(const QString &rowKey) {
    return transaction([&]() -> std::optional<CoolOff> {
        QSqlQuery row = query(u"SELECT until_ms, fingerprint, detail FROM cooloffs WHERE row_key = ?"_s, {rowKey});
        if (!row.next()) {
            return std::nullopt;
        }
        return CoolOff{row.value(0).toLongLong(), row.value(1).toString(), row.value(2).toString()};
    });
}

void Database::recordCoolOff(const QString &rowKey, const CoolOff &coolOff) {
    transaction([&] {
        query(u"INSERT OR REPLACE INTO cooloffs (row_key, until_ms, fingerprint, detail) VALUES (?, ?, ?, ?)"_s,
              {rowKey, coolOff.untilMs, text(coolOff.fingerprint), text(coolOff.detail)});
    });
}

QHash<QString, QString> Database::playlistOrigins() {
    return transaction([&] {
        QHash<QString, QString> origins;
        for (QSqlQuery row = query(u"SELECT id, origin FROM playlists"_s); row.next();) {
            origins.insert(row.value(0).toString(), row.value(1).toString());
        }
        return origins;
    });
}

void Database::recordPlaylistOrigin(const QString &playlistId, const QString &origin) {
    transaction([&] {
        query(u"INSERT OR REPLACE INTO playlists (id, origin) VALUES (?, ?)"_s, {playlistId, text(origin)});
    });
}

std::optional<PendingReview> Database::review(const QString &trackId) {
    return transaction([&]() -> std::optional<PendingReview> {
        QSqlQuery row = query(u"SELECT record FROM reviews WHERE track_id = ?"_s, {trackId});
        return row.next() ? std::optional(reviewOf(row.value(0).toString())) : std::nullopt;
    });
}

std::vector<PendingReview> Database::reviews() {
    return transaction([&] {
        std::vector<PendingReview> reviews;
        for (QSqlQuery row = query(u"SELECT record FROM reviews ORDER BY track_id"_s); row.next();) {
            reviews.push_back(reviewOf(row.value(0).toString()));
        }
        return reviews;
    });
}

void Database::recordReview(const PendingReview &review) {
    transaction([&] {
        query(u"INSERT OR REPLACE INTO reviews (track_id, row_key, record) VALUES (?, ?, ?)"_s,
              {review.trackId, review.rowKey, QString::fromUtf8(writeJSON(review))});
    });
}

void Database::forgetReviewsOf(const QString &rowKey) {
    transaction([&] { query(u"DELETE FROM reviews WHERE row_key = ?"_s, {rowKey}); });
}

QHash<QString, AudioFile> Database::audioFiles() {
    return transaction([&] {
        QHash<QString, AudioFile> files;
        for (QSqlQuery row = query(u"SELECT path, size, modified, format, lossless, bitrate, duration, title, artist,"
                                   " album, isrc FROM audio"_s);
             row.next();) {
            AudioFile file;
            file.path = row.value(0).toString();
            file.size = row.value(1).toLongLong();
            file.modifiedMs = row.value(2).toLongLong();
            file.format = row.value(3).toString();
            file.lossless = row.value(4).toBool();
            file.bitrateKbps = row.value(5).toInt();
            file.durationSec = row.value(6).toDouble();
            file.title = row.value(7).toString();
            file.artist = row.value(8).toString();
            file.album = row.value(9).toString();
            file.isrc = row.value(10).toString();
            files.insert(file.path, file);
        }
        return files;
    });
}

void Database::recordAudioFiles(const std::vector<AudioFile> &read, const QStringList &gone) {
    transaction([&] {
        QSqlQuery entry(QSqlDatabase::database(_connection, false)); // prepared once: there may be 100,000
        if (!entry.prepare(u"INSERT OR REPLACE INTO audio (path, size, modified, format, lossless, bitrate, duration,"
                           " title, artist, album, isrc) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s)) {
            throw errorOf(entry.lastError());
        }
        for (const AudioFile &file : read) {
            const QVariantList values{file.path,         file.size,        file.modifiedMs,  text(file.format),
                                      file.lossless,     file.bitrateKbps, file.durationSec, text(file.title),
                                      text(file.artist), text(file.album), text(file.isrc)};
            for (int i = 0; i < values.size(); ++i) {
                entry.bindValue(i, values[i]);
            }
            if (!entry.exec()) {
                throw errorOf(entry.lastError());
            }
        }
        for (const QString &path : gone) {
            query(u"DELETE FROM audio WHERE path = ?"_s, {path});
        }
    });
}

} // namespace zelk::engine
