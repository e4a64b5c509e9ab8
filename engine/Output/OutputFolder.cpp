#include "Output/OutputFolder.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr auto partialPrefix = ".zelk-partial-"_L1;

} // namespace

OutputFolder::OutputFolder(QString path, FileOps &ops) : _path(std::move(path)), _ops(ops) {}

void OutputFolder::prepare() {
    makeFolder(_path);
    const QByteArray probe = QFile::encodeName(partialPath(u"probe"_s));
    const int descriptor = _ops.open(probe, O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (descriptor < 0) {
        throw FileProblem(_path, errno);
    }
    _ops.close(descriptor);
    _ops.unlink(probe);
}

void OutputFolder::removeLeftovers() {
    static const QRegularExpression form(u"^\\.zelk-partial-(\\d+)-"_s);
    for (const QString &name : QDir(_path).entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        const auto match = form.match(name);
        if (!match.hasMatch()) {
            continue;
        }
        const auto pid = static_cast<pid_t>(match.captured(1).toLongLong());
        const bool alive = pid > 0 && pid != ::getpid() && (::kill(pid, 0) == 0 || errno == EPERM);
        if (!alive) {
            _ops.unlink(QFile::encodeName(_path + u'/' + name));
        }
    }
}

QStringList OutputFolder::stems(const QStringList &ownFiles) const {
    const QSet<QString> own(ownFiles.begin(), ownFiles.end());
    QStringList stems;
    for (const QString &name :
         QDir(_path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        if (!own.contains(_path + u'/' + name) && !name.startsWith(partialPrefix)) {
            const auto dot = name.lastIndexOf(u'.');
            stems += dot > 0 ? name.left(dot) : name;
        }
    }
    return stems;
}

QString OutputFolder::partialPath(const QString &extension) const {
    static std::atomic<quint64> count = 0;
    return u"%1/%2%3-%4.%5"_s.arg(_path, partialPrefix).arg(::getpid()).arg(++count).arg(extension);
}

QString outputAdvice(const QString &folder, const QString &reason) {
    return u"The output folder %1 can't be written (%2). Make it writable, or choose another one in Settings."_s.arg(
        folder, reason);
}

} // namespace zelk::engine
