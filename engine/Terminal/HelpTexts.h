#pragma once

#include "Serve/CommandLine.h"

#include <QString>

namespace zelk::engine {

/// What `zelk --help` prints.
QString helpText();
/// What `zelk VERB --help` prints.
QString helpText(CommandLine::Verb verb);
/// "Usage: zelk sync [--dry-run] [--cleanup] [NAME...]", with a line feed.
QString usageOf(CommandLine::Verb verb);

} // namespace zelk::engine
