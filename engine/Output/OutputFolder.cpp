#include "Output/OutputFolder.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr auto partialPrefix = ".zelk-partial-"_L1;

/// When a process began, in the system's count, which tells it from a later one of the same number; empty if there is
/// no such process.
QString beginningOf(qint64 process) {
    QFile file(u"/proc/%1/stat"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray fields = file.readAll();
    return QString::fromLatin1(fields.mid(fields.lastIndexOf(')') + 2).split(' ').value(19));
}

} // namespace

OutputFolder::OutputFolder(QString path, FileOps &ops) : _path(std::move(path)), _ops(ops) {}

void OutputFolder::prepare(bool heldFiles) {
    if (heldFiles && !QFileInfo::exists(_path)) {
        throw FileProblem(_path, ENOENT);
    }
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
    static const QRegularExpression form(u"^\\.zelk-partial-(\\d+)-(\\d+)"_s);
    for (const QString &name : QDir(_path).entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        const auto match = form.match(name);
        if (match.hasMatch() && beginningOf(match.captured(1).toLongLong()) != match.captured(2)) {
            _ops.unlink(QFile::encodeName(_path + u'/' + name));
        }
    }
}

QStringList OutputFolder::others(const QSet<QString> &ownFiles) const {
    QStringList others;
    for (const QString &name :
         QDir(_path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        const QString path = _path + u'/' + name;
        if (!ownFiles.contains(path) && !name.startsWith(partialPrefix)) {
            others += path;
        }
    }
    return others;
}

QString OutputFolder::partialPath(const QString &extension) const {
    static std::atomic<quint64> count = 0;
    static const QString self = u"%1-%2"_s.arg(::getpid()).arg(beginningOf(::getpid()));
    return u"%1/%2%3-%4.%5"_s.arg(_path, partialPrefix, self).arg(++count).arg(extension);
}

QString outputAdvice(const QString &folder, const FileProblem &problem) {
    if (problem.isFull()) {
        return u"The disk of the output folder %1 is full. Make room and sync again."_s.arg(folder);
    }
    if (problem.code() == ENOENT) {
        return u"The output folder %1 isn't there. Connect the disk that it is on, make the folder, or choose another "
               u"one"
               " in Settings, and sync again."_s.arg(folder);
    }
    return u"The output folder %1 can't be written (%2). Make it writable, or choose another one in Settings."_s.arg(
        folder, problem.reason());
}

} // namespace zelk::engine
