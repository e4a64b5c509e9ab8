// What the database remembers of audio files: those that were written, and those of the collection.
#include "Store/DatabaseTransaction.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

QVariant originValue(const std::optional<SourceId> &origin) {
    return origin ? QVariant(QString(wireName(*origin))) : QVariant();
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
    file.sourceSize = row.value(13).toLongLong();
    file.sourceModifiedMs = row.value(14).toLongLong();
    return file;
}

constexpr auto fileColumns = "files.id, files.path, files.source_path, files.size, files.modified, files.duration,"
                             " files.format, files.bitrate, files.lossless, files.origin, files.source_bitrate,"
                             " files.replaces, files.looked_with, files.source_size, files.source_modified"_L1;

} // namespace

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
              " source_bitrate, replaces, looked_with, source_size, source_modified)"
              " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"
              " ON CONFLICT (path) DO UPDATE SET source_path = excluded.source_path, size = excluded.size,"
              " modified = excluded.modified, duration = excluded.duration, format = excluded.format,"
              " bitrate = excluded.bitrate, lossless = excluded.lossless, origin = excluded.origin,"
              " source_bitrate = excluded.source_bitrate, replaces = excluded.replaces,"
              " looked_with = excluded.looked_with, source_size = excluded.source_size,"
              " source_modified = excluded.source_modified RETURNING id"_s,
              {file.path, storedText(file.sourcePath), file.size, file.modifiedMs, file.durationSec,
               storedText(file.format), file.bitrateKbps, file.lossless, originValue(file.origin), file.sourceKbps,
               storedText(file.replaces), storedText(file.lookedWith), file.sourceSize, file.sourceModifiedMs});
    stored.next();
    return stored.value(0).toLongLong();
}

/// Of a file that is still known.
void Database::enterWant(const Want &want) {
    query(u"INSERT OR IGNORE INTO wants (file_id, row_key, playlist_id) SELECT id, ?, ? FROM files WHERE id = ?"_s,
          {want.rowKey, want.playlistId, want.fileId});
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

void Database::recordWants(const std::vector<Want> &wants) {
    transaction([&] {
        for (const Want &want : wants) {
            enterWant(want);
        }
    });
}

void Database::recordReplacing(const QString &path, const QString &replaces) {
    transaction([&] { query(u"UPDATE files SET replaces = ? WHERE path = ?"_s, {storedText(replaces), path}); });
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
            query(
                u"UPDATE files SET (path, source_path, size, modified, duration, format, bitrate, lossless, origin,"
                " source_bitrate, replaces, looked_with, source_size, source_modified) = (SELECT ?, source_path, size,"
                " modified, duration, format, bitrate, lossless, origin, source_bitrate, '', looked_with,"
                " source_size, source_modified FROM files WHERE id = ?) WHERE id = ?"_s,
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
            query(u"UPDATE files SET looked_with = ? WHERE id = ?"_s, {storedText(fingerprint), id});
        }
    });
}

void Database::forgetFile(const QString &path) {
    transaction([&] { query(u"DELETE FROM files WHERE path = ?"_s, {path}); });
}

void Database::takeBack(const WrittenFile &file) {
    transaction([&] {
        query(u"DELETE FROM files WHERE path = ? AND source_path = ? AND size = ? AND modified = ?"_s,
              {file.path, storedText(file.sourcePath), file.size, file.modifiedMs});
    });
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
            const QVariantList values{file.path,
                                      file.size,
                                      file.modifiedMs,
                                      storedText(file.format),
                                      file.lossless,
                                      file.bitrateKbps,
                                      file.durationSec,
                                      storedText(file.title),
                                      storedText(file.artist),
                                      storedText(file.album),
                                      storedText(file.isrc)};
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
