#include "Store/Schema.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr int presentVersion = 3;

/// The first form, which everybody's database once had.
const QStringList &firstForm() {
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
        " title TEXT NOT NULL, artist TEXT NOT NULL, album TEXT NOT NULL, isrc TEXT NOT NULL) WITHOUT ROWID"_s};
    return statements;
}

/// Rows by what their lists say of them, and what each file was made from and is about to take the place of.
const QStringList &secondForm() {
    static const QStringList statements = {
        u"CREATE TABLE spellings (spelling TEXT PRIMARY KEY, row_key TEXT NOT NULL) WITHOUT ROWID"_s,
        u"ALTER TABLE files ADD COLUMN source_bitrate INTEGER NOT NULL DEFAULT 0"_s,
        u"ALTER TABLE files ADD COLUMN replaces TEXT NOT NULL DEFAULT ''"_s,
        u"ALTER TABLE files ADD COLUMN looked_with TEXT NOT NULL DEFAULT ''"_s,
        u"UPDATE files SET source_bitrate = bitrate"_s};
    return statements;
}

/// Which file it was that each was made from, since another one may lie in its place by now.
const QStringList &thirdForm() {
    static const QStringList statements = {
        u"ALTER TABLE files ADD COLUMN source_size INTEGER NOT NULL DEFAULT 0"_s,
        u"ALTER TABLE files ADD COLUMN source_modified INTEGER NOT NULL DEFAULT 0"_s};
    return statements;
}

} // namespace

QStringList schemaSteps(int version) {
    QStringList steps;
    if (version < 1) {
        steps += firstForm();
    }
    if (version < 2) {
        steps += secondForm();
    }
    if (version < 3) {
        steps += thirdForm();
    }
    if (!steps.isEmpty()) {
        steps += u"PRAGMA user_version = %1"_s.arg(presentVersion);
    }
    return steps;
}

} // namespace zelk::engine
