#pragma once

#include "Files/FileOps.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace zelk::engine {

/// The whole content of a file, or nothing if there is no such file; throws FileProblem if it can't be read.
std::optional<QByteArray> readWholeFile(const QString &path);

/// Makes a folder and those above it, unless they are there; throws FileProblem with what stands in the way.
void makeFolder(const QString &path);

/// Writes a file that only its owner may read (mode 0600), creating its folder: into a new file beside it, flushed,
/// then renamed, so that whatever goes wrong the old content or the new one is there. A link stays one, and what it
/// leads to is replaced. Throws FileProblem.
void writePrivateFile(const QString &path, const QByteArray &bytes, FileOps &ops = FileOps::system());

/// Moves a file that can't be used out of the way, under a name of its own beside it, and returns that name. Nothing is
/// lost: a person may mend it. Throws FileProblem.
QString setAside(const QString &path);

/// Flushes the entry of a folder that a rename has changed. Failures don't matter: some file systems can't.
void syncFolder(const QString &folder, FileOps &ops = FileOps::system());

} // namespace zelk::engine
