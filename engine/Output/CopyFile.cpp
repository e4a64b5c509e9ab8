#include "Output/CopyFile.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Small enough that a stop is heeded at once, large enough to keep the disk busy.
constexpr qsizetype chunkSize = 256 * 1024;

class Descriptor {
public:
    Descriptor(FileOps &ops, const QString &path, int flags)
        : _ops(ops), _path(path), _number(ops.open(QFile::encodeName(path), flags, 0666)) {
        if (_number < 0) {
            throw FileProblem(path, errno);
        }
    }
    ~Descriptor() {
        if (_number >= 0) {
            _ops.close(_number);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return _number; }

    /// Some file systems tell of a full disk only here.
    void close() {
        if (_ops.close(std::exchange(_number, -1)) != 0) {
            throw FileProblem(_path, errno);
        }
    }

private:
    FileOps &_ops;
    QString _path;
    int _number;
};

void pump(const Descriptor &in, const QString &from, const Descriptor &out, const QString &to,
          const CopyProgress &progress, const std::stop_token &stop, FileOps &ops) {
    struct stat status {};
    const qint64 total = ::fstat(in.number(), &status) == 0 ? status.st_size : 0;
    QByteArray chunk(chunkSize, Qt::Uninitialized);
    qint64 done = 0;
    for (;;) {
        if (stop.stop_requested()) {
            throw Stopped();
        }
        const ssize_t count = ops.read(in.number(), chunk.data(), static_cast<size_t>(chunk.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throw FileProblem(from, errno);
        }
        if (count == 0) {
            break;
        }
        writeAll(ops, out.number(), QByteArrayView(chunk).first(count), to);
        done += count;
        progress(done, std::max(total, done));
    }
    struct stat after {};
    if (::fstat(in.number(), &after) != 0 || after.st_size != status.st_size || done != after.st_size ||
        after.st_mtim.tv_sec != status.st_mtim.tv_sec || after.st_mtim.tv_nsec != status.st_mtim.tv_nsec) {
        throw FileChanged(
            u"%1 changed while it was copied. Wait until nothing writes to it, and sync again."_s.arg(from)
                .toStdString());
    }
}

} // namespace

void copyFile(const QString &from, const QString &to, const CopyProgress &progress, std::stop_token stop,
              FileOps &ops) {
    const Descriptor in(ops, from, O_RDONLY);
    Descriptor out(ops, to, O_WRONLY | O_CREAT | O_EXCL);
    try {
        pump(in, from, out, to, progress, stop, ops);
        out.close();
    } catch (...) {
        ops.unlink(QFile::encodeName(to));
        throw;
    }
}

void putInPlace(const QString &from, const QString &to, bool replace, FileOps &ops) {
    {
        Descriptor file(ops, from, O_RDONLY);
        if (ops.sync(file.number()) != 0) {
            throw FileProblem(to, errno);
        }
    }
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if ((replace ? ops.rename(source, target) : ops.renameToNew(source, target)) != 0) {
        throw FileProblem(to, errno);
    }
    syncFolder(QFileInfo(to).absolutePath(), ops);
}

} // namespace zelk::engine
