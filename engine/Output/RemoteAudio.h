#pragma once

#include "Files/Download.h"
#include "Library/AudioFile.h"
#include "Output/CopyFile.h"

#include <memory>

namespace zelk::engine {

/// Downloads an audio file into a folder of the engine's own and makes sure that it opens. The file lasts as long as
/// what is returned. Throws DownloadFailed, FileProblem or Stopped; nothing is then left.
std::shared_ptr<const AudioFile> fetchAudio(const QString &address, const QString &folder, const CopyProgress &progress,
                                            std::stop_token stop, FileOps &ops = FileOps::system(),
                                            const DownloadLimits &limits = {});

} // namespace zelk::engine
