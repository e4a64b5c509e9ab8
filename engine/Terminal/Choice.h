#pragma once

#include "Transport/HelperProtocolCatalogue.h"

#include <QString>
#include <QStringList>

#include <stdexcept>
#include <vector>

namespace zelk::engine {

/// A playlist as a person at a terminal names it.
struct NamedPlaylist {
    PlaylistDTO playlist;
    QString path;             ///< With the folders that it lies in: "Sets/Tram Lines".
    bool isAmbiguous = false; ///< Another one has the same path, so that only the id tells them apart.
};

/// Gives each playlist and folder its path, in the order of the list.
std::vector<NamedPlaylist> namePlaylists(const std::vector<PlaylistDTO> &playlists);

/// A name that means no playlist, or several.
class ChoiceProblem : public std::runtime_error {
public:
    ChoiceProblem(const QString &message, QStringList candidates)
        : std::runtime_error(message.toStdString()), _candidates(std::move(candidates)) {}

    QString message() const { return QString::fromUtf8(what()); }
    /// A line each, for the user to choose from.
    const QStringList &candidates() const { return _candidates; }

private:
    QStringList _candidates;
};

/// The playlists that the names mean, in the library's order; all of them if there are no names. A name is an id, a
/// playlist's name or its path; when none is exactly that, case doesn't count. A folder stands for all that is in it.
/// Throws ChoiceProblem.
std::vector<NamedPlaylist> choosePlaylists(const std::vector<NamedPlaylist> &playlists, const QStringList &names);

/// "Spotify", "Apple Music".
QString sourceName(PlaylistSourceId source);

} // namespace zelk::engine
