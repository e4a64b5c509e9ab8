#include "Files/PrivateFile.h"

#include "Files/FileProblem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

std::optional<QByteArray> readWholeFile(const QString &path) {
    FileOps &ops = FileOps::system();
    const int descriptor = ops.open(QFile::encodeName(path), O_RDONLY, 0);
    if (descriptor < 0) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        throw FileProblem(path, errno);
    }
    QByteArray content;
    QByteArray chunk(1 << 16, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = ops.read(descriptor, chunk.data(), static_cast<size_t>(chunk.size()));
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            const int code = errno;
            ops.close(descriptor);
            throw FileProblem(path, code);
        }
        content.append(chunk.constData(), std::max<ssize_t>(count, 0));
    }
    ops.close(descriptor);
    return content;
}

void makeFolder(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    if (::stat(name.constData(), &status) == 0) {
        if (!S_ISDIR(status.st_mode)) {
            throw FileProblem(path, ENOTDIR);
        }
        return;
    }
    const int failure = errno;
    const QString parent = path.section(u'/', 0, -2);
    if (failure != ENOENT || parent == path) {
        throw FileProblem(path, failure);
    }
    makeFolder(parent.isEmpty() ? QStringLiteral("/") : parent);
    if (::mkdir(name.constData(), 0777) != 0 && errno != EEXIST) {
        throw FileProblem(path, errno);
    }
}

namespace {

constexpr auto freshSuffix = ".new-"_L1;

/// What processes have left that were killed in the middle of a write: it may hold secrets.
void removeAbandoned(const QString &path, FileOps &ops) {
    const QFileInfo info(path);
    const QString prefix = info.fileName() + freshSuffix;
    for (const QString &name : QDir(info.absolutePath()).entryList(QDir::Files | QDir::Hidden)) {
        const qint64 process = name.startsWith(prefix) ? name.mid(prefix.size()).toLongLong() : 0;
        if (process > 0 && !QFileInfo::exists(QStringLiteral("/proc/%1").arg(process))) {
            ops.unlink(QFile::encodeName(info.absolutePath() + u'/' + name));
        }
    }
}

} // namespace

void writePrivateFile(const QString &named, const QByteArray &bytes, FileOps &ops) {
    const QString target = QFileInfo(named).canonicalFilePath(); // empty if there is nothing yet
    const QString path = target.isEmpty() ? named : target;
    const QString folder = QFileInfo(path).absolutePath();
    makeFolder(folder);
    const QString fresh = path + freshSuffix + QString::number(::getpid());
    const QByteArray freshName = QFile::encodeName(fresh);
    const int descriptor = ops.open(freshName, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (descriptor < 0) {
        throw FileProblem(path, errno);
    }
    try {
        writeAll(ops, descriptor, bytes, path);
        if (ops.sync(descriptor) != 0) {
            throw FileProblem(path, errno);
        }
    } catch (const FileProblem &) {
        ops.close(descriptor);
        ops.unlink(freshName);
        throw;
    }
    if (ops.close(descriptor) != 0 || ops.rename(freshName, QFile::encodeName(path)) != 0) {
        const int code = errno;
        ops.unlink(freshName);
        throw FileProblem(path, code);
    }
    syncFolder(folder, ops);
    removeAbandoned(path, ops);
}

QString setAside(const QString &path) {
    for (int i = 1;; ++i) {
        const QString aside = path + QStringLiteral(".broken-%1").arg(i);
        if (FileOps::system().renameToNew(QFile::encodeName(path), QFile::encodeName(aside)) == 0) {
            return aside;
        }
        if (errno != EEXIST) {
            throw FileProblem(path, errno);
        }
    }
}

void syncFolder(const QString &folder, FileOps &ops) {
    const int descriptor = ops.open(QFile::encodeName(folder), O_RDONLY | O_DIRECTORY, 0);
    if (descriptor >= 0) {
        ops.sync(descriptor);
        ops.close(descriptor);
    }
}

} // namespace zelk::engine
