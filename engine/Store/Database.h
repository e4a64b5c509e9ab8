#pragma once

#include "Library/AudioFile.h"
#include "Store/Records.h"
#include "Threads/WorkQueue.h"

#include <QHash>
#include <QSet>
#include <QSqlDatabase>
#include <QVariant>

#include <functional>
#include <stdexcept>

class QSqlQuery;

namespace zelk::engine {

/// A failure of the store itself, in SQLite's words.
class DatabaseError : public std::runtime_error {
public:
    DatabaseError(const std::string &what, int code) : std::runtime_error(what), _code(code) {}
    /// SQLite's primary result code.
    int code() const { return _code; }
    /// Somebody else holds the store.
    bool isLock() const;

private:
    int _code;
};

/// What the engine remembers over restarts: the files it wrote and who wants them, the user's decisions, cool-offs,
/// waiting reviews, and what it last read of each file of the collection. Lives on a thread of its own; any thread may
/// call, and each call is one transaction. Throws DatabaseError.
class Database {
public:
    using Warn = std::function<void(const QString &message)>;

    /// Opens or makes the file. One that is damaged is set aside. One that another program holds is waited for: each
    /// call tries again, and throws. Where no file can be made, what is remembered lasts as long as the process. `warn`
    /// says so in each case.
    Database(const QString &path, const Warn &warn);
    ~Database();

    // Written files
    std::vector<WrittenFile> writtenFiles();
    /// Whether any was written into that folder.
    bool knowsFilesIn(const QString &folder);
    std::vector<Want> wants();
    /// The files written for any of these rows, by row key; several when the output folder has changed.
    QMultiHash<QString, WrittenFile> writtenFor(const QStringList &rowKeys);
    /// Enters a file, or what has changed of it, together with the row that wants it, and ends the row's cool-off and
    /// review. Returns its id.
    qint64 recordWritten(const WrittenFile &file, const QString &rowKey, const QString &playlistId);
    void recordWants(const std::vector<Want> &wants);
    void forgetFile(const QString &path);
    /// Forgets a file that couldn't be put in place after all, unless another one has been entered in its place.
    void takeBack(const WrittenFile &file);
    /// Says that a file takes the place of another one, which goes next.
    void recordReplacing(const QString &path, const QString &replaces);
    enum class KeptId { Old, New };
    /// Makes the file that has taken another's place, and the one that is gone, one entry wanted by the rows of both.
    /// Returns its id.
    qint64 finishReplacing(const QString &path, KeptId kept);
    /// Whether the user has decided about any row that wants this file.
    bool isDecided(qint64 fileId);
    /// Keeps that nothing better than these files was found in the collection of that fingerprint.
    void recordLooks(const std::vector<qint64> &fileIds, const QString &fingerprint);

    // Decisions and cool-offs
    std::optional<StoredDecision> decision(const QString &rowKey);
    void recordDecision(const QString &rowKey, const StoredDecision &decision);
    void forgetDecision(const QString &rowKey);
    std::optional<CoolOff> coolOff(const QString &rowKey);
    void recordCoolOff(const QString &rowKey, const CoolOff &coolOff);

    // Playlists
    /// The file that last told each playlist that a run has gone through, by the playlist's id.
    QHash<QString, QString> playlistOrigins();
    void recordPlaylistOrigin(const QString &playlistId, const QString &origin);

    // Reviews
    std::optional<PendingReview> review(const QString &trackId);
    std::vector<PendingReview> reviews();
    /// Those of one recording.
    std::vector<PendingReview> reviewsOf(const QString &rowKey);
    /// Forgets all reviews of these playlists and returns them.
    std::vector<PendingReview> takeReviewsOfLists(const QSet<QString> &playlistIds);
    void recordReview(const PendingReview &review);
    void forgetReviewsOf(const QString &rowKey);
    /// Ends the reviews of one recording with what the user decided and the file that came of it, if any, which all its
    /// rows want. Returns the file's id, or 0.
    qint64 recordOutcome(const std::vector<PendingReview> &rows, const StoredDecision &decision,
                         const WrittenFile *file);

    // Rows by what their lists say of them, whatever the program makes of that
    enum class Remember { All, WhatIsMet };
    /// Makes what is remembered under a key that a row once had known under the one that it has now, and keeps which
    /// key each row has, or each of which anything is remembered. `rowKeys` is by spelling.
    void followRows(const QHash<QString, QString> &rowKeys, Remember which);

    // What was read of the collection
    QHash<QString, AudioFile> audioFiles();
    void recordAudioFiles(const std::vector<AudioFile> &read, const QStringList &gone);

private:
    /// What reads before it writes has to say so at its beginning: SQLite refuses it the write if another engine has
    /// written since it has read.
    enum class Begins { Either, Writing };
    /// What is done again by the next run needs no wait for the disk; what the user did does.
    enum class Lasts { ThroughCrashes, ThroughPowerCuts };
    template<class Function>
    auto transaction(Function function, Begins begins = Begins::Either, Lasts lasts = Lasts::ThroughCrashes);
    QSqlQuery prepared(const QString &statement);
    QSqlQuery query(const QString &statement, const QVariantList &values = {});
    // Parts of transactions
    qint64 enterFile(const WrittenFile &file);
    void enterWant(const Want &want);
    void enterDecision(const QString &rowKey, const StoredDecision &decision);
    void follow(const QString &before, const QString &now);
    void enter(const PendingReview &review);
    void open(const QString &path, const Warn &warn);
    void prepare(const QString &path);

    QString _connection;
    Lasts _lasts = Lasts::ThroughCrashes; // as SQLite is set at present
    QString _awaited;                     // a file that somebody else held when it was to be opened
    WorkQueue _queue;                     // the thread that alone touches the connection
};

} // namespace zelk::engine
