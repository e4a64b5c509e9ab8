#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <sys/types.h>

namespace zelk::engine {

/// The few calls by which the engine changes files, so that a test can let any of them fail. Each returns what the
/// system call of its name does: -1 with errno set on failure. Paths are in the file system's encoding.
class FileOps {
public:
    virtual ~FileOps() = default;

    virtual int open(const QByteArray &path, int flags, mode_t mode);
    virtual ssize_t read(int descriptor, char *bytes, size_t count);
    virtual ssize_t write(int descriptor, const char *bytes, size_t count);
    virtual int sync(int descriptor);
    virtual int close(int descriptor);
    virtual int rename(const QByteArray &from, const QByteArray &to);
    /// Fails with EEXIST if there is something at `to`.
    virtual int renameToNew(const QByteArray &from, const QByteArray &to);
    virtual int unlink(const QByteArray &path);

    /// The real calls.
    static FileOps &system();
};

/// Writes all of it, however little the system takes at a time. Throws FileProblem, which names `path`.
void writeAll(FileOps &ops, int descriptor, QByteArrayView bytes, const QString &path);

} // namespace zelk::engine
