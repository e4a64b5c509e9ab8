#pragma once

#include <QString>
#include <QStringList>

namespace zelk::engine {

/// What the program was asked to do.
struct CommandLine {
    enum class Verb { None, Serve };
    Verb verb = Verb::None;
    QString output;     ///< To be printed: on stdout with status 0, otherwise on stderr.
    int exitStatus = 0; ///< For Verb::None: 0, or 2 for wrong use.

    bool operator==(const CommandLine &) const = default;
};

/// `arguments` without the program's name.
CommandLine readCommandLine(const QStringList &arguments);

} // namespace zelk::engine
