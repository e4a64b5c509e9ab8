#include "Services/ArtworkDisk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {
constexpr qint64 limit = 268'435'456;
constexpr std::chrono::seconds pruneInterval{60};
} // namespace

ArtworkDisk::ArtworkDisk(QString diskDir, std::shared_ptr<Clock> clock, std::function<QDateTime()> wallTime)
    : _diskDir(std::move(diskDir)), _clock(std::move(clock)), _wallTime(std::move(wallTime)) {
    QDir().mkpath(_diskDir);
}

QString ArtworkDisk::fileName(const QString &key) {
    QByteArray name = key.toUtf8().toBase64();
    name.replace('/', '_');
    name.replace('+', '-');
    return QString::fromLatin1(name) + u".img"_s;
}

QString ArtworkDisk::path(const QString &key) const {
    return _diskDir + u'/' + fileName(key);
}

std::optional<QByteArray> ArtworkDisk::read(const QString &key) const {
    QFile file(path(key));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        return std::nullopt;
    file.setFileTime(_wallTime(), QFile::FileModificationTime);
    return bytes;
}

// Not QSaveFile, which waits for the disk each time: what is lost with the power is fetched again.
void ArtworkDisk::write(const QString &key, const QByteArray &bytes) const {
    QTemporaryFile file(_diskDir + u"/XXXXXX.new"_s);
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return;
    const QString name = file.fileName();
    file.close();
    std::error_code failure;
    std::filesystem::rename(QFile::encodeName(name).toStdString(), QFile::encodeName(path(key)).toStdString(), failure);
    file.setAutoRemove(bool(failure));
}

void ArtworkDisk::pruneDiskIfNeeded() {
    const Clock::Time now = _clock->now();
    if (_lastPrune && now - *_lastPrune <= pruneInterval)
        return;
    _lastPrune = now;

    struct File {
        QString path;
        qint64 size;
        QDateTime modified;
    };
    std::vector<File> files;
    const QFileInfoList infos = QDir(_diskDir).entryInfoList(QDir::Files | QDir::Hidden, QDir::Unsorted);
    for (const QFileInfo &info : infos) {
        const QDateTime modified = info.lastModified();
        if (info.isFile() && modified.isValid())
            files.push_back({info.filePath(), info.size(), modified});
    }
    qint64 total = std::accumulate(files.begin(), files.end(), qint64{0},
                                   [](qint64 sum, const File &file) { return sum + file.size; });
    if (total <= limit)
        return;
    std::stable_sort(files.begin(), files.end(), [](const File &a, const File &b) { return a.modified < b.modified; });
    for (const File &file : files) {
        if (total <= limit)
            return;
        QFile::remove(file.path);
        total -= file.size;
    }
}

} // namespace zelk
