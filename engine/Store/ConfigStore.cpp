#include "Store/ConfigStore.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Transport/JSONReader.h"
#include "Transport/JSONWriter.h"

#include <QJsonDocument>

#include <cerrno>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

/// The file's form. All keys may be missing.
struct ConfigDocument {
    std::optional<std::vector<SourceId>> sources;
    std::optional<SafeConfig::Quality> quality;
    std::optional<SafeConfig::Run> run;
    std::optional<SafeConfig::UI> ui;
    std::optional<SafeConfig::Identity> identity;
    std::optional<QString> outputDir;
    std::optional<QStringList> playlistDirs;
    std::optional<QStringList> collectionDirs;
    std::optional<bool> spotifyConnected;
    std::optional<bool> appleMusicConnected;
};
ZELK_JSON_FIELDS(ConfigDocument, sources, quality, run, ui, identity, outputDir, playlistDirs, collectionDirs,
                 spotifyConnected, appleMusicConnected)

namespace {

QStringList folders(const EnginePaths &paths, const QStringList &fromEnvironment,
                    const std::optional<QStringList> &told, const QString &otherwise) {
    QStringList expanded;
    for (const QString &folder : !fromEnvironment.isEmpty() ? fromEnvironment : told.value_or(QStringList{otherwise})) {
        if (const QString path = paths.expanded(folder); !folder.isEmpty() && !expanded.contains(path)) {
            expanded += path;
        }
    }
    return expanded;
}

EngineConfig configOf(const ConfigDocument &document, const EnginePaths &paths) {
    EngineConfig config;
    config.sources = document.sources.value_or(config.sources);
    config.quality = document.quality.value_or(config.quality);
    config.run = document.run.value_or(config.run);
    config.ui = document.ui.value_or(config.ui);
    config.identity = document.identity.value_or(config.identity);
    config.outputDir = document.outputDir.value_or(EnginePaths::defaultOutputDir());
    config.playlistDirs = folders(paths, paths.playlistDirs, document.playlistDirs, EnginePaths::defaultPlaylistDir());
    config.collectionDirs =
        folders(paths, paths.collectionDirs, document.collectionDirs, EnginePaths::defaultCollectionDir());
    config.spotifyConnected = document.spotifyConnected;
    config.appleMusicConnected = document.appleMusicConnected;
    return config;
}

} // namespace

ConfigStore::ConfigStore(EnginePaths paths, Warn warn)
    : _paths(std::move(paths)), _warn(std::move(warn)), _config(configOf({}, _paths)) {
    catchUp();
}

void ConfigStore::catchUp() {
    try {
        const auto bytes = readWholeFile(_paths.configFile);
        _readable = true;
        if (bytes && bytes != _seen) {
            take(*bytes);
        }
        _seen = bytes;
    } catch (const FileProblem &problem) {
        if (std::exchange(_readable, false)) {
            _warn(u"The settings can't be read, and those from before are used. %1"_s.arg(problem.description()));
        }
    }
}

void ConfigStore::take(const QByteArray &bytes) {
    try {
        const JSONValue value = JSONValue::parse(bytes);
        const auto document = readJSON<ConfigDocument>(value);
        ConfigPatch stored;
        stored.run = document.run;
        stored.outputDir = document.outputDir;
        if (const auto objection = objectionTo(stored)) {
            throw JSONError({}, *objection);
        }
        _document = *value.asObject();
        _config = configOf(document, _paths);
    } catch (const JSONError &error) {
        const QString aside = setAside(_paths.configFile);
        _warn(
            u"The settings in %1 can't be understood (%2). They are kept as %3, and those from before are used."_s.arg(
                _paths.configFile, error.description(), aside));
    }
}

EngineConfig ConfigStore::current() const {
    const std::lock_guard lock(_mutex);
    return _config;
}

void ConfigStore::apply(const ConfigPatch &patch) {
    const std::lock_guard lock(_mutex);
    catchUp();
    EngineConfig changed = _config;
    changed.sources = patch.sources.value_or(changed.sources);
    changed.quality = patch.quality.value_or(changed.quality);
    changed.run = patch.run.value_or(changed.run);
    changed.ui = patch.ui.value_or(changed.ui);
    changed.outputDir = patch.outputDir.value_or(changed.outputDir);
    changed.identity = patch.identity.value_or(changed.identity);
    write(std::move(changed));
}

void ConfigStore::setConnected(PlaylistSourceId source, std::optional<bool> connected) {
    const std::lock_guard lock(_mutex);
    catchUp();
    EngineConfig changed = _config;
    (source == PlaylistSourceId::spotify ? changed.spotifyConnected : changed.appleMusicConnected) = connected;
    if (changed != _config) {
        write(std::move(changed));
    }
}

void ConfigStore::connectAtFirst(PlaylistSourceId source) {
    const std::lock_guard lock(_mutex);
    catchUp();
    EngineConfig changed = _config;
    auto &connected = source == PlaylistSourceId::spotify ? changed.spotifyConnected : changed.appleMusicConnected;
    if (!connected) {
        connected = true;
        write(std::move(changed));
    }
}

void ConfigStore::write(EngineConfig changed) {
    if (!_readable) {
        throw FileProblem(_paths.configFile, EACCES);
    }
    // The folders stay as the document has them: they may come from the environment, which is not the file's business.
    ConfigDocument document;
    document.sources = changed.sources;
    document.quality = changed.quality;
    document.run = changed.run;
    document.ui = changed.ui;
    document.identity = changed.identity;
    document.outputDir = changed.outputDir;
    document.spotifyConnected = changed.spotifyConnected;
    document.appleMusicConnected = changed.appleMusicConnected;
    JSONValue::Object merged = _document;
    const JSONValue known = toJSONValue(document);
    for (auto it = known.asObject()->cbegin(); it != known.asObject()->cend(); ++it) {
        merged.insert(it.key(), it.value());
    }
    const QByteArray compact = JSONValue::object(merged).json();
    const QByteArray bytes = QJsonDocument::fromJson(compact).toJson(QJsonDocument::Indented);
    writePrivateFile(_paths.configFile, bytes);
    _seen = bytes;
    _document = std::move(merged);
    _config = std::move(changed);
}

} // namespace zelk::engine
