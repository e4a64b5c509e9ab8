#pragma once

#include <QString>
#include <QStringList>

namespace zelk::engine {

/// Where the engine looks and keeps things, made once from the environment.
struct EnginePaths {
    QString home;
    QString configFile;  ///< engine.json
    QString secretsFile; ///< The accounts' tokens, apart from what a person edits.
    QString dataFolder;
    QString databaseFile;
    QString musicFolder;        ///< Where "Library.xml" is looked for.
    QStringList playlistDirs;   ///< From the environment; empty if it doesn't say.
    QStringList collectionDirs; ///< The same.

    /// By HOME, XDG_CONFIG_HOME, XDG_DATA_HOME, ZELK_PLAYLIST_DIRS and ZELK_COLLECTION_DIRS.
    static EnginePaths fromEnvironment();

    /// A path with its leading "~" replaced by the home folder, made absolute and clean.
    QString expanded(const QString &path) const;

    /// The Music app's exported library.
    QString libraryFile() const { return musicFolder + QStringLiteral("/Library.xml"); }

    static QString defaultOutputDir() { return QStringLiteral("~/Music/DjayImport"); }
    static QString defaultPlaylistDir() { return QStringLiteral("~/Music/zelk/Playlists"); }
    static QString defaultCollectionDir() { return QStringLiteral("~/Music/zelk/Collection"); }
};

} // namespace zelk::engine
