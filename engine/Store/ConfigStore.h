#pragma once

#include "Store/EngineConfig.h"
#include "Store/EnginePaths.h"
#include "Transport/JSONValue.h"

#include <functional>
#include <mutex>
#include <optional>

namespace zelk::engine {

/// Keeps the settings in engine.json. What the file says beyond what this engine knows stays in it, and so does what
/// somebody else has written into it since. A file that can't be understood is set aside, and what held before holds
/// on: the defaults at first. Any thread may call.
class ConfigStore {
public:
    /// Where a line about the file goes that the user should see.
    using Warn = std::function<void(const QString &message)>;

    /// Reads the file. Never fails: what is wrong with it goes to `warn`.
    ConfigStore(EnginePaths paths, Warn warn);

    EngineConfig current() const;

    /// Each writes the file before the new settings hold; throws FileProblem, and then nothing has changed.
    void apply(const ConfigPatch &patch);
    /// Nothing: as if nothing had been said about the source.
    void setConnected(PlaylistSourceId source, std::optional<bool> connected);
    /// Connects a source about which nothing has been said yet.
    void connectAtFirst(PlaylistSourceId source);

private:
    /// Reads the file if it has changed since it was last seen.
    void catchUp();
    void take(const QByteArray &bytes);
    void write(EngineConfig changed);

    const EnginePaths _paths;
    const Warn _warn;
    mutable std::mutex _mutex; // guards all below
    JSONValue::Object _document;
    EngineConfig _config;
    std::optional<QByteArray> _seen; // the file as it was read or written last
    bool _readable = true;           // false: the file is there but can't be read, so it must not be replaced
};

} // namespace zelk::engine
