#include "Store/Database.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Playlists/RowIdentity.h"
#include "Store/Schema.h"
#include "Transport/JSONReader.h"
#include "Transport/JSONWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

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
    file.sourceKbps = row.value(10).toInt();
    file.replaces = row.value(11).toString();
    file.lookedWith = row.value(12).toString();
    return file;
}

constexpr auto fileColumns = "files.id, files.path, files.source_path, files.size, files.modified, files.duration,"
                             " files.format, files.bitrate, files.lossless, files.origin, files.source_bitrate,"
                             " files.replaces, files.looked_with"_L1;

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

template<class Function>
auto Database::transaction(Function function, Begins begins) {
    return _queue.run([&]() -> decltype(function()) {
        if (!_awaited.isEmpty()) {
            prepare(_awaited);
            _awaited.clear();
        }
        QSqlDatabase database = QSqlDatabase::database(_connection, false);
        query(begins == Begins::Writing ? u"BEGIN IMMEDIATE"_s : u"BEGIN"_s);
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
        QSqlQuery row =
            prepared(u"SELECT DISTINCT %1 FROM wants JOIN files ON files.id = wants.file_id WHERE row_key = ?"_s.arg(
                fileColumns));
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

qint64 Database::enterFile(const WrittenFile &file) {
    QSqlQuery stored =
        query(u"INSERT INTO files (path, source_path, size, modified, duration, format, bitrate, lossless, origin,"
              " source_bitrate, replaces, looked_with) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"
              " ON CONFLICT (path) DO UPDATE SET source_path = excluded.source_path, size = excluded.size,"
              " modified = excluded.modified, duration = excluded.duration, format = excluded.format,"
              " bitrate = excluded.bitrate, lossless = excluded.lossless, origin = excluded.origin,"
              " source_bitrate = excluded.source_bitrate, replaces = excluded.replaces,"
              " looked_with = excluded.looked_with RETURNING id"_s,
              {file.path, text(file.sourcePath), file.size, file.modifiedMs, file.durationSec, text(file.format),
               file.bitrateKbps, file.lossless, originValue(file.origin), file.sourceKbps, text(file.replaces),
               text(file.lookedWith)});
    stored.next();
    return stored.value(0).toLongLong();
}

/// Of a file that is still known.
void Database::enterWant(const Want &want) {
    query(u"INSERT OR IGNORE INTO wants (file_id, row_key, playlist_id) SELECT id, ?, ? FROM files WHERE id = ?"_s,
          {want.rowKey, want.playlistId, want.fileId});
}

void Database::enterDecision(const QString &rowKey, const StoredDecision &decision) {
    const QString kind = decision.kind == StoredDecision::Kind::Take ? u"take"_s : u"skip"_s;
    query(u"INSERT OR REPLACE INTO decisions (row_key, kind, path) VALUES (?, ?, ?)"_s,
          {rowKey, kind, text(decision.path)});
}

qint64 Database::recordWritten(const WrittenFile &file, const QString &rowKey, const QString &playlistId) {
    return transaction([&] {
        const qint64 id = enterFile(file);
        enterWant({id, rowKey, playlistId});
        query(u"DELETE FROM cooloffs WHERE row_key = ?"_s, {rowKey});
        query(u"DELETE FROM reviews WHERE row_key = ?"_s, {rowKey});
        return id;
    });
}

qint64 Database::recordOutcome(const std::vector<PendingReview> &rows, const StoredDecision &decision,
                               const WrittenFile *file) {
    return transaction([&] {
        const QString &rowKey = rows.front().rowKey;
        enterDecision(rowKey, decision);
        const qint64 id = file ? enterFile(*file) : 0;
        for (std::size_t i = 0; file && i < rows.size(); ++i) {
            enterWant({id, rowKey, rows[i].playlistId});
        }
        query(u"DELETE FROM cooloffs WHERE row_key = ?"_s, {rowKey});
        query(u"DELETE FROM reviews WHERE row_key = ?"_s, {rowKey});
        return id;
    });
}

void Database::recordWants(const std::vector<Want> &wants) {
    transaction([&] {
        for (const Want &want : wants) {
            enterWant(want);
        }
    });
}

void Database::recordReplacing(const QString &path, const QString &replaces) {
    transaction([&] { query(u"UPDATE files SET replaces = ? WHERE path = ?"_s, {text(replaces), path}); });
}

qint64 Database::finishReplacing(const QString &path, KeptId kept) {
    return transaction([&]() -> qint64 {
        QSqlQuery row =
            query(u"SELECT new.id, old.id FROM files AS new LEFT JOIN files AS old ON old.path = new.replaces"
                  " AND old.id <> new.id WHERE new.path = ?"_s,
                  {path});
        if (!row.next()) {
            return 0;
        }
        const QVariant fresh = row.value(0);
        const QVariant old = row.value(1);
        row.finish();
        query(u"UPDATE files SET replaces = '' WHERE id = ?"_s, {fresh});
        if (old.isNull()) {
            return fresh.toLongLong();
        }
        const auto [stays, goes] = kept == KeptId::Old ? std::pair(old, fresh) : std::pair(fresh, old);
        query(u"INSERT OR IGNORE INTO wants (file_id, row_key, playlist_id)"
              " SELECT ?, row_key, playlist_id FROM wants WHERE file_id = ?"_s,
              {stays, goes});
        if (kept == KeptId::Old) {
            query(u"UPDATE files SET path = path || ' ' WHERE id = ?"_s, {fresh}); // a path is one row's
            query(u"UPDATE files SET (path, source_path, size, modified, duration, format, bitrate, lossless, origin,"
                  " source_bitrate, replaces, looked_with) = (SELECT ?, source_path, size, modified, duration, format,"
                  " bitrate, lossless, origin, source_bitrate, '', looked_with FROM files WHERE id = ?) WHERE id = ?"_s,
                  {path, fresh, old});
        }
        query(u"DELETE FROM files WHERE id = ?"_s, {goes});
        return stays.toLongLong();
    });
}

bool Database::isDecided(qint64 fileId) {
    return transaction([&] {
        return query(
                   u"SELECT 1 FROM wants JOIN decisions ON decisions.row_key = wants.row_key WHERE file_id = ? LIMIT 1"_s,
                   {fileId})
            .next();
    });
}

void Database::recordLooks(const std::vector<qint64> &fileIds, const QString &fingerprint) {
    transaction([&] {
        for (const qint64 id : fileIds) {
            query(u"UPDATE files SET looked_with = ? WHERE id = ?"_s, {text(fingerprint), id});
        }
    });
}

void Database::forgetFile(const QString &path) {
    transaction([&] { query(u"DELETE FROM files WHERE path = ?"_s, {path}); });
}

void Database::takeBack(const WrittenFile &file) {
    transaction([&] {
        query(u"DELETE FROM files WHERE path = ? AND source_path = ? AND size = ? AND modified = ?"_s,
              {file.path, text(file.sourcePath), file.size, file.modifiedMs});
    });
}

std::optional<StoredDecision> Database::decision(const QString &rowKey) {
    return transaction([&] {
        std::optional<StoredDecision> found;
        // Keys with another length begin with the same; ";" is the sign behind ":".
        const QString common = keyWithoutLength(rowKey);
        for (QSqlQuery row = query(u"SELECT row_key, kind, path FROM decisions WHERE row_key >= ? AND row_key < ?"_s,
                                   {common, common + u';'});
             row.next();) {
            const QString key = row.value(0).toString();
            if (key == rowKey || (!found && mayBeOneRecording(key, rowKey))) {
                const bool take = row.value(1).toString() == "take"_L1;
                found = {take ? StoredDecision::Kind::Take : StoredDecision::Kind::Skip, row.value(2).toString()};
                if (key == rowKey) {
                    break;
                }
            }
        }
        return found;
    });
}

void Database::recordDecision(const QString &rowKey, const StoredDecision &decision) {
    transaction([&] { enterDecision(rowKey, decision); });
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

std::vector<PendingReview> Database::reviewsOf(const QString &rowKey) {
    return transaction([&] {
        std::vector<PendingReview> reviews;
        for (QSqlQuery row = query(u"SELECT record FROM reviews WHERE row_key = ? ORDER BY track_id"_s, {rowKey});
             row.next();) {
            reviews.push_back(reviewOf(row.value(0).toString()));
        }
        return reviews;
    });
}

std::vector<PendingReview> Database::takeReviewsOfLists(const QSet<QString> &playlistIds) {
    return transaction([&] {
        std::vector<PendingReview> taken;
        for (QSqlQuery row = query(u"SELECT record FROM reviews"_s); row.next();) {
            if (PendingReview review = reviewOf(row.value(0).toString()); playlistIds.contains(review.playlistId)) {
                taken.push_back(std::move(review));
            }
        }
        for (const PendingReview &review : taken) {
            query(u"DELETE FROM reviews WHERE track_id = ?"_s, {review.trackId});
        }
        return taken;
    });
}

void Database::recordReview(const PendingReview &review) {
    transaction([&] { enter(review); });
}

void Database::enter(const PendingReview &review) {
    query(u"INSERT OR REPLACE INTO reviews (track_id, row_key, record) VALUES (?, ?, ?)"_s,
          {review.trackId, review.rowKey, QString::fromUtf8(writeJSON(review))});
}

void Database::forgetReviewsOf(const QString &rowKey) {
    transaction([&] { query(u"DELETE FROM reviews WHERE row_key = ?"_s, {rowKey}); });
}

void Database::followRows(const QHash<QString, QString> &rowKeys, Remember which) {
    transaction(
        [&] {
            QHash<QString, QString> before; // of these rows
            for (QSqlQuery row = query(u"SELECT spelling, row_key FROM spellings"_s); row.next();) {
                if (const QString spelling = row.value(0).toString(); rowKeys.contains(spelling)) {
                    before.insert(spelling, row.value(1).toString());
                }
            }
            QSet<QString> met;
            if (which == Remember::WhatIsMet) {
                for (QSqlQuery row = query(u"SELECT row_key FROM wants UNION SELECT row_key FROM decisions"_s);
                     row.next();) {
                    met.insert(row.value(0).toString());
                }
            }
            QSqlQuery entry = prepared(u"INSERT OR REPLACE INTO spellings (spelling, row_key) VALUES (?, ?)"_s);
            for (auto row = rowKeys.cbegin(); row != rowKeys.cend(); ++row) {
                const QString key = before.value(row.key());
                if (key.isEmpty() ? which == Remember::WhatIsMet && !met.contains(*row) : key == *row) {
                    continue;
                }
                if (!key.isEmpty()) {
                    follow(key, *row);
                }
                entry.bindValue(0, row.key());
                entry.bindValue(1, *row);
                if (!entry.exec()) {
                    throw errorOf(entry.lastError());
                }
            }
        },
        Begins::Writing);
}

/// Two rows that had one key may have two now, so what was remembered is copied: the old key is nobody's in the end.
void Database::follow(const QString &before, const QString &now) {
    query(u"INSERT OR IGNORE INTO wants (file_id, row_key, playlist_id)"
          " SELECT file_id, ?, playlist_id FROM wants WHERE row_key = ?"_s,
          {now, before});
    query(u"INSERT OR IGNORE INTO decisions (row_key, kind, path)"
          " SELECT ?, kind, path FROM decisions WHERE row_key = ?"_s,
          {now, before});
    std::vector<PendingReview> waiting;
    for (QSqlQuery row = query(u"SELECT record FROM reviews WHERE row_key = ?"_s, {before}); row.next();) {
        waiting.push_back(reviewOf(row.value(0).toString()));
    }
    for (PendingReview &review : waiting) {
        review.rowKey = now;
        enter(review);
    }
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
        QSqlQuery entry = prepared(u"INSERT OR REPLACE INTO audio (path, size, modified, format, lossless, bitrate,"
                                   " duration, title, artist, album, isrc) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s);
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
