#pragma once

#include "Library/AudioFile.h"
#include "Output/CopyFile.h"
#include "Output/OutputFolder.h"
#include "Output/Tagging.h"
#include "Store/Records.h"

#include <functional>
#include <stdexcept>
#include <stop_token>

namespace zelk::engine {

/// One file to be written.
struct WriteOrder {
    AudioFile source;
    QString madeFrom; ///< What is remembered as its source, where that isn't the source's path.
    QString target;   ///< Absolute, with the extension of targetFormOf(source).
    /// A file of ours that the new one takes the place of, perhaps under another name; empty if there is none.
    QString replaces;
    /// Whether what is replaced may be the user's own work; then it goes to the Trash.
    bool sparesReplaced = false;
    /// Files that the new one needn't be put beside if one of them is the same, byte by byte. Only where nothing is
    /// replaced.
    QStringList strays;
    Tags tags;
    /// Asked for a cover if the source has none and none lies beside it. May be absent.
    std::function<std::optional<Cover>()> cover;
    double toleranceSec = 5; ///< By how much the written file's length may differ from its source's.
};

/// Told of while a file is written, on the writer's thread.
struct WriteHooks {
    CopyProgress progress;
    std::function<void(Phase phase)> step;
    /// Enters the file into the engine's memory just before it appears, so that no file ever stands that isn't known.
    std::function<void(const WrittenFile &file)> commit;
    /// Takes that back if the file couldn't be put in place after all.
    std::function<void(const WrittenFile &file)> rollback;
};

/// A file isn't what it should be. what() is a sentence in UTF-8 that says what to do.
class VerifyFailed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Copies or converts, tags, verifies, flushes and puts in place, or finds that the file is in the folder already, and
/// says under which name. Throws FileProblem, FileChanged, ConversionFailed,
/// VerifyFailed, Stopped, or what `commit` throws; then there is no new file, and what was there is untouched.
WrittenFile writeTrack(const WriteOrder &order, const OutputFolder &folder, const WriteHooks &hooks,
                       std::stop_token stop, FileOps &ops = FileOps::system());

/// What is in the place of a file that was written earlier.
enum class Standing {
    Ours,   ///< It opens, is as long as it was, and has the bytes that its length needs. One that was tagged anew is.
    Longer, ///< Sound audio that nothing of ours can have become: the user's own.
    Short,  ///< It opens, and has lost some of its length: cut off, or by the user.
    Broken, ///< It doesn't open.
    Gone,
};
Standing standingOf(const WrittenFile &file, double toleranceSec);

/// Whether there is nothing to be written in that place.
inline bool standsWhole(Standing standing) {
    return standing == Standing::Ours || standing == Standing::Longer;
}
inline bool standsWhole(const WrittenFile &file, double toleranceSec) {
    return standsWhole(standingOf(file, toleranceSec));
}

/// Whether a file was made from that one as it is now. What isn't known of it counts as the same.
bool isMadeFrom(const WrittenFile &file, const AudioFile &source);

} // namespace zelk::engine
