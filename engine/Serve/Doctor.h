#pragma once

#include "Store/EngineConfig.h"
#include "Transport/HelperProtocolResults.h"

#include <QString>

#include <optional>
#include <vector>

namespace zelk::engine {

/// What the doctor has to know.
struct DoctorSubject {
    EngineConfig config;
    QString outputDir;            ///< Absolute.
    bool outputHeldFiles = false; ///< Files of ours were once written into it.
    qsizetype playlists = 0;
    QStringList problems = {}; ///< Of files and folders of playlists: the path, and what is wrong with it.
};

/// The checks "ffmpeg", "output-folder", "playlists", "collection" and "disk-space", in this order. Changes nothing.
std::vector<DoctorCheck> examine(const DoctorSubject &subject);

/// Makes the folder that a check misses. Throws FileProblem if it can't, and MethodError if there is nothing to make.
void fixCheck(const QString &checkId, const DoctorSubject &subject);

} // namespace zelk::engine
