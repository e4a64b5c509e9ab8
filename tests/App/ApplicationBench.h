#pragma once

#include "Support/ScriptedEngine.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace zelk {

/// Transcripts are full of texts: "like this"_s.
inline QString operator""_s(const char *text, std::size_t size) {
    return QString::fromUtf8(text, static_cast<qsizetype>(size));
}

inline const QString config =
    R"({"config":{"sources":["youtube"],"quality":{"floor":"any","losslessOnly":false,"bestQuality":true,"upgradeEnabled":false},"run":{"searchCount":5,"concurrency":4,"toleranceSec":5,"searchTimeoutSec":30,"cooloffHours":24},"ui":{"theme":"dark"},"identity":{"enabled":true,"strict":false},"proxy":{"enabled":false,"configured":false},"spotifyConnected":true,"soundcloudConnected":false,"acoustidConfigured":false,"appleMusicConnected":false}})"_s;

inline QString reply(const QString &result) {
    return R"(send {"id":"%id%","ok":true,"result":)"_s + result + u'}';
}

inline QString playlists(const QString &name) {
    return R"({"playlists":[{"id":"p","source":"spotify","name":")"_s + name +
           R"(","isFolder":false,"trackCount":2,"artwork":{"kind":"none"}}]})"_s;
}

inline const QStringList upToTheList{"expect getConfig"_s, reply(config), "expect listPlaylists"_s};

/// What the application asks for at its start.
inline const QStringList firstLines{R"({"id":"r1","method":"getConfig"})"_s,
                                    R"({"id":"r2","method":"listPlaylists"})"_s};

/// Makes this the home of somebody who has been through the setup, or of somebody new.
inline void setOnboarded(bool isOnboarded = true) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/orrim"_s;
    QDir().mkpath(folder);
    QFile file(folder + "/zelk.conf"_s);
    if (file.open(QFile::WriteOnly) && isOnboarded)
        file.write("[General]\ndidOnboard=true\n");
}

/// The built application as a process, with the scripted engine as its child.
class Application {
public:
    Application(const QStringList &commands, const QStringList &arguments) : engine(commands) {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ZELK_HELPER_PATH"_s, ScriptedEngine::program());
        environment.insert("ZELK_SCRIPT"_s, engine.transcript());
        environment.insert("QT_LOGGING_RULES"_s, "orrim.zelk.*=true"_s);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(ZELK_APPLICATION), arguments);
    }
    ~Application() {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Application)

    bool finished(int timeout = 30000) {
        return process.state() == QProcess::NotRunning || process.waitForFinished(timeout);
    }

    ScriptedEngine engine;
    QProcess process;
};

} // namespace zelk
