#pragma once

#include "Files/FileOps.h"
#include "Files/Stopped.h"

#include <QString>

#include <functional>
#include <stdexcept>
#include <stop_token>

namespace zelk::engine {

/// A file wasn't the same at the end of its copying as at the beginning. what() is a sentence in UTF-8 that says what
/// to do.
class FileChanged : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

using CopyProgress = std::function<void(qint64 done, qint64 total)>;

/// Copies a file to a new one, which must not be there. Throws FileProblem, naming the file that failed, FileChanged,
/// or Stopped; the new file is then gone again.
void copyFile(const QString &from, const QString &to, const CopyProgress &progress, std::stop_token stop,
              FileOps &ops = FileOps::system());

/// Flushes a finished file and moves it to its place, over the file of that name if `replace` says so. Throws
/// FileProblem; the file is then still where it was.
void putInPlace(const QString &from, const QString &to, bool replace, FileOps &ops = FileOps::system());

} // namespace zelk::engine
