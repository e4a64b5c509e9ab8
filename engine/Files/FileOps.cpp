#include "Files/FileOps.h"

#include "Files/FileProblem.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace zelk::engine {

int FileOps::open(const QByteArray &path, int flags, mode_t mode) {
    return ::open(path.constData(), flags | O_CLOEXEC, mode);
}

ssize_t FileOps::read(int descriptor, char *bytes, size_t count) {
    return ::read(descriptor, bytes, count);
}

ssize_t FileOps::write(int descriptor, const char *bytes, size_t count) {
    return ::write(descriptor, bytes, count);
}

int FileOps::sync(int descriptor) {
    return ::fsync(descriptor);
}

int FileOps::close(int descriptor) {
    return ::close(descriptor);
}

int FileOps::rename(const QByteArray &from, const QByteArray &to) {
    return std::rename(from.constData(), to.constData());
}

int FileOps::renameToNew(const QByteArray &from, const QByteArray &to) {
    const int done = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE);
    if (done == 0 || (errno != EINVAL && errno != ENOSYS)) {
        return done;
    }
    // A file system that doesn't know the flag: a hard link refuses to replace as well, and where there are no hard
    // links either, a look beforehand has to do.
    if (::link(from.constData(), to.constData()) == 0) {
        return ::unlink(from.constData());
    }
    if (errno == EEXIST) {
        return -1;
    }
    if (::access(to.constData(), F_OK) == 0) {
        errno = EEXIST;
        return -1;
    }
    return std::rename(from.constData(), to.constData());
}

int FileOps::unlink(const QByteArray &path) {
    return ::unlink(path.constData());
}

FileOps &FileOps::system() {
    static FileOps ops;
    return ops;
}

void writeAll(FileOps &ops, int descriptor, QByteArrayView bytes, const QString &path) {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written = ops.write(descriptor, bytes.data() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno != EINTR) {
            throw FileProblem(path, errno);
        }
        done += std::max<ssize_t>(written, 0);
    }
}

} // namespace zelk::engine
