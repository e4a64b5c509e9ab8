#pragma once

#include "Files/FileProblem.h"

#include <QString>

#include <exception>

namespace zelk::engine {

/// Why a track couldn't be written, for its row, and whether the output folder itself is to blame, in which case it is
/// worth telling once for the run.
struct WriteFailure {
    QString detail;
    bool ofOutput = false;
};

/// Takes apart what writeTrack threw; not for Stopped.
WriteFailure explainWriteFailure(const std::exception &error, const QString &sourcePath, const QString &outputDir);

} // namespace zelk::engine
