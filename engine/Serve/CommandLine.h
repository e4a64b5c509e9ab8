#pragma once

#include <QString>
#include <QStringList>

namespace zelk::engine {

/// What the program was asked to do.
struct CommandLine {
    enum class Verb { None, Serve, List, Sync, Review, Doctor };
    Verb verb = Verb::None;
    QString output;       ///< To be printed: on stdout with status 0, otherwise on stderr.
    int exitStatus = 0;   ///< For Verb::None: 0, or 2 for wrong use.
    QStringList names;    ///< Sync: of playlists; empty for all.
    bool dryRun = false;  ///< Sync.
    bool cleanup = false; ///< Sync.
    bool fix = false;     ///< Doctor.

    bool operator==(const CommandLine &) const = default;
};

/// `arguments` without the program's name.
CommandLine readCommandLine(const QStringList &arguments);

} // namespace zelk::engine
