#pragma once

#include "Playlists/ListedTrack.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <memory>
#include <stop_token>

namespace zelk::engine {

/// Whether a file of this name may hold playlists, by its extension; and whose, if so.
std::optional<PlaylistSourceId> playlistSourceOf(const QString &path);

/// The files that hold playlists, each read again only when it has changed. One thread at a time.
class PlaylistFiles {
public:
    using Warn = std::function<void(const QString &message)>;

    explicit PlaylistFiles(Warn warn) : _warn(std::move(warn)) {}

    struct Reading {
        /// Null if the file is gone, can't be read, or the reading was stopped.
        std::shared_ptr<const ReadFile> content;
        /// True if it is there but what it holds isn't known, or not all of it: that may still be wanted.
        bool isPartial = false;
        QString problem{}; ///< Why, if it is partial and wasn't merely stopped.
    };
    /// What is passed over goes to the log, once for each state of the file.
    Reading read(const QString &path, std::stop_token stop);

    /// Reads the file again the next time, even if it looks unchanged.
    void distrust(const QString &path) { _known.remove(path); }
    /// Forgets all other files.
    void keepOnly(const QSet<QString> &paths);

    /// Says that a file or folder can't be read, unless that has been the last word on it.
    void warnOnce(const QString &path, const QString &why);

private:
    /// All that tells two states of a file apart.
    struct Stamp {
        quint64 device = 0;
        quint64 node = 0;
        qint64 size = 0;
        qint64 modifiedNs = 0;
        qint64 changedNs = 0;
        bool operator==(const Stamp &) const = default;
    };
    struct Known {
        Stamp stamp;
        std::shared_ptr<const ReadFile> content;
    };

    static std::optional<Stamp> stampOf(const QString &path);
    void tellWarnings(const QString &path, const ReadFile &content);

    const Warn _warn;
    QHash<QString, Known> _known;
    QHash<QString, QString> _told;
};

} // namespace zelk::engine
