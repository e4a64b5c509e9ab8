#pragma once

#include "Matching/MatchIndex.h"
#include "Store/Database.h"

#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>

namespace zelk::engine {

/// The user's own audio: what is in the collection's folders, read once and then only where a file has changed. Any
/// thread may call; a scan under way makes others wait for it.
class AudioLibrary {
public:
    /// Where a line about a file goes that can't be used. The same trouble is told once, until the file changes.
    using Warn = std::function<void(const QString &message)>;

    AudioLibrary(Database &database, Warn warn);

    /// Looks at the folders and returns the index of all that is in them now. Returns null only if asked to stop.
    /// `warn` is told what is wrong with them instead of the library's own.
    std::shared_ptr<const MatchIndex> refresh(const QStringList &folders, std::stop_token stop, const Warn &warn = {});

private:
    std::vector<AudioFile> scan(const QStringList &folders, std::stop_token stop);
    std::vector<AudioFile> readAll(const QStringList &paths, std::stop_token stop);
    void warnOnce(const QString &path, const QString &why);
    void remember(const std::vector<AudioFile> &read, const QStringList &gone);

    Database &_database;
    const Warn _ownWarn;
    std::mutex _mutex; // held by the one scan that is under way; guards all below
    Warn _warn;
    bool _loaded = false;
    QHash<QString, AudioFile> _known;
    QHash<QString, QString> _unusable; // path to stamp and reason, so that each is told once
    std::shared_ptr<const MatchIndex> _index;
};

/// Those of the folders that aren't there.
QStringList absentFolders(const QStringList &folders);

} // namespace zelk::engine
