#pragma once

#include "Files/FileProblem.h"

#include <QString>

#include <exception>

namespace zelk::engine {

/// Why a track couldn't be written.
struct WriteFailure {
    enum class Fault {
        Passing, ///< May be gone at the next try.
        Output,  ///< The output folder itself is to blame, which is worth telling once for the run.
        Source,  ///< The same comes of it as long as the file is what it is.
    };
    QString detail; ///< For its row.
    Fault fault = Fault::Passing;
};

/// Takes apart what writeTrack threw; not for Stopped.
WriteFailure explainWriteFailure(const std::exception &error, const QString &sourcePath, const QString &outputDir);

} // namespace zelk::engine
