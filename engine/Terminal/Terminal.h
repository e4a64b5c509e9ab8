#pragma once

#include "Serve/CommandLine.h"

namespace zelk::engine {

/// Carries out a verb for a person or a script at a terminal, with the same engine that `serve` drives. Returns the
/// exit status.
int runAtTerminal(const CommandLine &line);

/// Writes a text to standard output or, with `isError`, to standard error. Returns whether it could be written.
bool print(const QString &text, bool isError);

} // namespace zelk::engine
