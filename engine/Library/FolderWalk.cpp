#include "Library/FolderWalk.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <set>
#include <sys/stat.h>
#include <utility>

namespace zelk::engine {

namespace {

/// Names of a folder's entries, sorted; sets errno and returns false if it can't be read.
bool namesIn(const QByteArray &folder, QList<QByteArray> &names) {
    DIR *stream = ::opendir(folder.constData());
    if (!stream) {
        return false;
    }
    while (const dirent *entry = ::readdir(stream)) {
        if (entry->d_name[0] != '.') {
            names += QByteArray(entry->d_name);
        }
    }
    ::closedir(stream);
    std::sort(names.begin(), names.end());
    return true;
}

/// Something was listed and is gone; a link to nowhere isn't.
bool vanished(const QByteArray &path) {
    struct stat status {};
    return ::lstat(path.constData(), &status) != 0 && errno == ENOENT;
}

QString reason(int code) {
    return QString::fromLocal8Bit(std::strerror(code));
}

/// The name as text; false if its bytes are no UTF-8, since such a path can't be told to anybody.
bool decoded(const QByteArray &name, QString &text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    text = decoder(name);
    return !decoder.hasError();
}

} // namespace

void walkFolder(const QString &root, const FolderVisitor &visitor, std::stop_token stop) {
    std::set<std::pair<dev_t, ino_t>> entered;
    QList<QByteArray> waiting{QFile::encodeName(root)};
    while (!waiting.isEmpty() && !stop.stop_requested()) {
        const QByteArray folder = waiting.takeLast();
        struct stat status {};
        QList<QByteArray> names;
        if (::stat(folder.constData(), &status) != 0 || !namesIn(folder, names)) {
            if (const int code = errno; !vanished(folder)) {
                visitor.problem(QFile::decodeName(folder), reason(code));
            }
            continue;
        }
        if (!entered.insert({status.st_dev, status.st_ino}).second) {
            continue;
        }
        if (visitor.folder) {
            visitor.folder(QFile::decodeName(folder));
        }
        QList<QByteArray> inner;
        for (const QByteArray &name : std::as_const(names)) {
            if (stop.stop_requested()) {
                return;
            }
            const QByteArray path = folder.endsWith('/') ? folder + name : folder + '/' + name;
            QString text;
            if (!decoded(path, text)) {
                visitor.problem(QString::fromLatin1(path), QStringLiteral("its name isn't UTF-8; rename it"));
            } else if (::stat(path.constData(), &status) != 0) {
                if (const int code = errno; !vanished(path)) {
                    visitor.problem(text, reason(code));
                }
            } else if (S_ISDIR(status.st_mode)) {
                inner += path;
            } else if (S_ISREG(status.st_mode)) {
                visitor.file(text);
            }
        }
        std::reverse(inner.begin(), inner.end());
        waiting += inner;
    }
}

} // namespace zelk::engine
