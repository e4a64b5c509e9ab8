#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <stop_token>

namespace zelk {

/// How a program ended, and what it said until then: the first mebibyte of each.
struct CommandEnd {
    int exitStatus = 0; ///< -1 if a signal ended it, or nobody can tell
    QByteArray output;
    QByteArray error; ///< empty if it was asked for together with the output
};

enum class CommandErrors { apart, withTheOutput };

/// How long to wait for a program.
struct CommandPatience {
    std::optional<std::chrono::milliseconds> most; ///< none: for as long as it takes
    std::stop_token stop;
};

/// Runs `program`, a path, in our environment and with nothing to read, and blocks its caller to the program's end;
/// that of its own children isn't waited for. Throws std::system_error when it can't be started and, after killing it,
/// when the patience is over (std::errc::timed_out). Throws `Cancelled` when `stop` says so: the program is asked to
/// end, and left to itself if it doesn't at once.
CommandEnd runCommand(const QString &program, const QStringList &arguments, CommandErrors errors,
                      const CommandPatience &patience);

/// `bytes` as the UTF-8 that they should be, without the white space round them; none if they aren't.
std::optional<QString> trimmedText(const QByteArray &bytes);

} // namespace zelk
