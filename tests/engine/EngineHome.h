#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

namespace zelk::engine::testing {

/// A home folder of somebody who exported playlists and owns audio, gone at the end.
class EngineHome {
public:
    EngineHome();

    QString path(const QString &below = {}) const;
    QString collection(const QString &below) const { return path(QStringLiteral("Music/zelk/Collection/") + below); }
    QString playlists(const QString &below) const { return path(QStringLiteral("Music/zelk/Playlists/") + below); }
    QString output(const QString &below = {}) const { return path(QStringLiteral("Music/DjayImport") + below); }

    void write(const QString &path, const QByteArray &bytes) const;
    QByteArray read(const QString &path) const;

    /// Puts a tagged copy of the two-second tone of that format ("flac", "mp3", "m4a", "opus") into the collection.
    void addAudio(const QString &below, const QString &artist, const QString &title) const;
    /// A valid WAV file of that length whose name tells artist and title.
    void addWav(const QString &below, int seconds) const;
    /// A CSV list; each row is "title|artist|seconds".
    void addList(const QString &name, const QStringList &rows) const;

    /// The names in the output folder, hidden ones too, sorted.
    QStringList outputFiles() const;
    QMap<QString, QByteArray> outputContents() const;

private:
    QTemporaryDir _folder;
};

/// The built engine as a child with pipes, spoken to line by line.
class EngineChild {
public:
    explicit EngineChild(const EngineHome &home, const QProcessEnvironment &extra = {});
    ~EngineChild();

    QProcess &process() { return *_process; }
    void send(const QByteArray &line);
    /// Sends a request and waits for its reply; events that come first are kept.
    QJsonObject call(const QString &method, const QJsonValue &params = QJsonValue::Undefined);
    /// A request that isn't answered.
    void tell(const QString &method, const QJsonObject &params);
    /// The next line, an event kept before included; empty when none comes in time.
    QJsonObject next(int patienceMs = 20'000);
    /// Goes on to the next event of that name and returns it; empty when none comes in time.
    QJsonObject until(const QString &event);
    /// As until(), for the event of a track.
    QJsonObject untilTrack(const QString &event, qint64 row);

    /// Lists the playlists and returns the selection of all that aren't folders.
    QJsonArray selectAll();
    /// Syncs everything and returns all events of it up to syncDone.
    QList<QJsonObject> syncAll(const QJsonObject &options = {});

    /// Ends its input and returns the exit status, or nothing if it doesn't end in time.
    std::optional<int> finish(int patienceMs = 5'000);

private:
    std::optional<QJsonObject> readLine(int patienceMs);

    std::unique_ptr<QProcess> _process;
    QList<QJsonObject> _kept;
    int _requests = 0;
};

QJsonObject dataOf(const QJsonObject &event);
/// The "status kind" of each trackFinished or "present" of each diskCheck that ended a row, by track id.
QMap<QString, QString> endings(const QList<QJsonObject> &events);
QList<QJsonObject> named(const QList<QJsonObject> &events, const QString &event);

} // namespace zelk::engine::testing
