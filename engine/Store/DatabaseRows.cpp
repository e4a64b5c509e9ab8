// What the database remembers of the rows of playlists: decisions, cool-offs, reviews, and by which key each is known.
#include "Playlists/RowIdentity.h"
#include "Store/DatabaseTransaction.h"
#include "Transport/JSONReader.h"
#include "Transport/JSONWriter.h"

#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

PendingReview reviewOf(const QString &record) {
    return readJSON<PendingReview>(record.toUtf8());
}

} // namespace

void Database::enterDecision(const QString &rowKey, const StoredDecision &decision) {
    const QString kind = decision.kind == StoredDecision::Kind::Take ? u"take"_s : u"skip"_s;
    query(u"INSERT OR REPLACE INTO decisions (row_key, kind, path) VALUES (?, ?, ?)"_s,
          {rowKey, kind, storedText(decision.path)});
}

qint64 Database::recordOutcome(const std::vector<PendingReview> &rows, const StoredDecision &decision,
                               const WrittenFile *file) {
    return transaction(
        [&] {
            const QString &rowKey = rows.front().rowKey;
            enterDecision(rowKey, decision);
            const qint64 id = file ? enterFile(*file) : 0;
            for (std::size_t i = 0; file && i < rows.size(); ++i) {
                enterWant({id, rowKey, rows[i].playlistId});
            }
            query(u"DELETE FROM cooloffs WHERE row_key = ?"_s, {rowKey});
            query(u"DELETE FROM reviews WHERE row_key = ?"_s, {rowKey});
            return id;
        },
        Begins::Either, Lasts::ThroughPowerCuts);
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
    transaction([&] { enterDecision(rowKey, decision); }, Begins::Either, Lasts::ThroughPowerCuts);
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
              {rowKey, coolOff.untilMs, storedText(coolOff.fingerprint), storedText(coolOff.detail)});
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
        query(u"INSERT OR REPLACE INTO playlists (id, origin) VALUES (?, ?)"_s, {playlistId, storedText(origin)});
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

} // namespace zelk::engine
