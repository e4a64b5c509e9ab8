#include "Store/EnginePaths.h"

#include <QDir>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// A base folder of the desktop's rules: only an absolute path counts.
QString baseFolder(const char *variable, const QString &otherwise) {
    const QString told = qEnvironmentVariable(variable);
    return told.startsWith(u'/') ? QDir::cleanPath(told) : otherwise;
}

QStringList listOf(const char *variable) {
    return qEnvironmentVariable(variable).split(u':', Qt::SkipEmptyParts);
}

} // namespace

EnginePaths EnginePaths::fromEnvironment() {
    EnginePaths paths;
    paths.home = QDir::homePath();
    const QString config = baseFolder("XDG_CONFIG_HOME", paths.home + "/.config"_L1) + "/zelk"_L1;
    paths.configFile = config + "/engine.json"_L1;
    paths.secretsFile = config + "/secrets.json"_L1;
    paths.dataFolder = baseFolder("XDG_DATA_HOME", paths.home + "/.local/share"_L1) + "/zelk"_L1;
    paths.databaseFile = paths.dataFolder + "/engine.db"_L1;
    paths.musicFolder = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    if (paths.musicFolder.isEmpty()) {
        paths.musicFolder = paths.home + "/Music"_L1;
    }
    paths.playlistDirs = listOf("ZELK_PLAYLIST_DIRS");
    paths.collectionDirs = listOf("ZELK_COLLECTION_DIRS");
    return paths;
}

QString EnginePaths::expanded(const QString &path) const {
    QString full = path;
    if (full == "~"_L1 || full.startsWith("~/"_L1)) {
        full.replace(0, 1, home);
    }
    return QDir::cleanPath(QDir(home).absoluteFilePath(full));
}

} // namespace zelk::engine
