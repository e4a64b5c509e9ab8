#pragma once

#include "Files/FileOps.h"

#include <QSet>
#include <QString>
#include <QStringList>

namespace zelk::engine {

class FileProblem;

/// The one folder that a run writes into.
class OutputFolder {
public:
    explicit OutputFolder(QString path, FileOps &ops = FileOps::system());

    const QString &path() const { return _path; }

    /// Makes the folder where it is missing and makes sure that files can be made in it; throws FileProblem. A folder
    /// that held files and is gone isn't made anew, since it may be on a disk that isn't connected: the code is ENOENT.
    void prepare(bool heldFiles);

    /// Removes the partial files that an engine left that is no longer running. What this process or another one is
    /// writing just now stays.
    void removeLeftovers();

    /// The paths of all that is in the folder and is neither ours nor a partial file.
    QStringList others(const QSet<QString> &ownFiles) const;

    /// A name for a file that is still being written, unused by any other engine or thread. Keeps the extension, by
    /// which taggers tell the format; begins with a dot, so that nobody takes it for music.
    QString partialPath(const QString &extension) const;

private:
    QString _path;
    FileOps &_ops;
};

/// What to tell the user when the output folder can't be used, and what to do.
QString outputAdvice(const QString &folder, const FileProblem &problem);

} // namespace zelk::engine
