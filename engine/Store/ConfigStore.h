#pragma once

#include "Store/EngineConfig.h"
#include "Store/EnginePaths.h"
#include "Transport/JSONValue.h"

#include <functional>
#include <mutex>

namespace zelk::engine {

/// Keeps the settings in engine.json. What the file says beyond what this engine knows stays in it. A file that can't
/// be understood is set aside and the defaults hold. Any thread may call.
class ConfigStore {
public:
    /// Where a line about the file goes that the user should see.
    using Warn = std::function<void(const QString &message)>;

    /// Reads the file. Never fails: what is wrong with it goes to `warn`.
    ConfigStore(EnginePaths paths, const Warn &warn);

    EngineConfig current() const;

    /// Each writes the file before the new settings hold; throws FileProblem, and then nothing has changed.
    void apply(const ConfigPatch &patch);
    void setConnected(PlaylistSourceId source, bool connected);
    /// Connects a source about which nothing has been said yet.
    void connectAtFirst(PlaylistSourceId source);

private:
    void load(const Warn &warn);
    void write(EngineConfig changed);

    const EnginePaths _paths;
    mutable std::mutex _mutex; // guards all below
    JSONValue::Object _document;
    EngineConfig _config;
    bool _readable = true; // false: the file is there but can't be read, so it must not be replaced
};

} // namespace zelk::engine
