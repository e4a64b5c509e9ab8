#include "Services/UpdateDownload.h"

#include "Services/HttpsReader.h"
#include "Services/UpdateSignature.h"
#include "Support/Cancelled.h"
#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"

#include <QCoroFuture>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace zelk {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString partPrefix = u".zelk-update-"_s;
const QString partSuffix = u".part"_s;
constexpr int steps = 200; // of the progress
constexpr int names = 100; // of a file that is there already

/// What a download that was cut off with the whole program left behind. What is younger may belong to another copy.
void sweep(const QDir &folder) {
    const auto yesterday = QDateTime::currentDateTime().addDays(-1);
    const auto left =
        folder.entryInfoList({partPrefix + u"??????"_s + partSuffix}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const auto &file : left) {
        if (file.lastModified() < yesterday)
            QFile::remove(file.filePath());
    }
}

/// The last part of the address where that is a plain name, else one of our own.
QString nameFor(const AppcastItem &item) {
    static const QRegularExpression plain(u"\\A[A-Za-z0-9_][A-Za-z0-9._+-]{0,99}\\z"_s);
    const QString name = item.url.fileName(QUrl::FullyDecoded);
    if (plain.match(name).hasMatch() && name.contains(u'.'))
        return name;
    return u"zelk-update"_s;
}

/// Gives what lies at `from` a second name, never that of another file. False when the name is taken.
bool linkTo(const std::filesystem::path &from, const QFileInfo &to) {
    std::error_code failure;
    std::filesystem::create_hard_link(from, to.filesystemFilePath(), failure);
    if (!failure)
        return true;
    if (failure == std::errc::file_exists || to.exists() || to.isSymLink())
        return false;
    // A file system without second names.
    std::filesystem::rename(from, to.filesystemFilePath(), failure);
    if (failure)
        throw UpdateError(UpdateProblem::unwritable, QString::fromStdString(failure.message()));
    return true;
}

/// The path under which it then lies: `name`, or `2-name` and so on.
QString publish(QTemporaryFile &file, const QDir &folder, const QString &name) {
    if (!file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther))
        throw UpdateError(UpdateProblem::unwritable, file.errorString());
    const auto from = QFileInfo(file.fileName()).filesystemFilePath();
    for (int i = 1; i <= names; ++i) {
        const QFileInfo to(folder.filePath(i == 1 ? name : u"%1-%2"_s.arg(i).arg(name)));
        if (linkTo(from, to))
            return to.filePath();
    }
    throw UpdateError(UpdateProblem::unwritable, u"every name is taken"_s);
}

QCoro::Task<bool> verify(UpdateOffer offer, QString path) {
    const auto answer = std::make_shared<OneShot<bool>>(std::make_exception_ptr(Cancelled()));
    const auto future = answer->future();
    const auto executor = SerialExecutor::make(u"orrim.zelk.updates"_s);
    executor->post([answer, offer, path] {
        QFile file(path);
        answer->fulfil(file.open(QIODevice::ReadOnly) && isSignedBy(offer.key, offer.item.signature, file));
    });
    co_return co_await future;
}

/// Writes what comes, and refuses what is more than announced.
HttpsReader::Sink writerTo(const std::shared_ptr<QTemporaryFile> &file, qint64 total,
                           std::function<void(qint64)> progress) {
    const auto told = std::make_shared<qint64>(0);
    return [file, total, told, progress = std::move(progress)](const QByteArray &chunk) {
        if (chunk.size() > total - file->pos())
            throw UpdateError(UpdateProblem::wrongLength, u"more than %1 bytes"_s.arg(total));
        if (file->write(chunk) != chunk.size())
            throw UpdateError(UpdateProblem::unwritable, file->errorString());
        const qint64 received = file->pos();
        if (received == total || received - *told >= total / steps) {
            *told = received;
            progress(received);
        }
    };
}

} // namespace

QCoro::Task<QString> downloadUpdate(UpdaterSurroundingsRef surroundings, UpdateOffer offer,
                                    std::function<void(qint64)> progress, std::stop_token stop) {
    const QDir folder(surroundings->folder);
    sweep(folder);
    // Its release removes the name that it has until then.
    const auto file = std::make_shared<QTemporaryFile>(folder.filePath(partPrefix + u"XXXXXX"_s + partSuffix));
    if (!file->open())
        throw UpdateError(UpdateProblem::unwritable, file->errorString());
    const HttpsReader reader(surroundings->network, surroundings->clock);
    const qint64 total = offer.item.length;
    const auto sink = writerTo(file, total, std::move(progress));
    auto reading = reader.read(offer.item.url, sink, HttpsReader::Patience{.silence = 60s, .whole = 24h}, stop);
    co_await reading;
    if (!file->flush())
        throw UpdateError(UpdateProblem::unwritable, file->errorString());
    if (file->size() != total)
        throw UpdateError(UpdateProblem::wrongLength, u"%1 of %2 bytes"_s.arg(file->size()).arg(total));
    auto verifying = verify(offer, file->fileName());
    const bool good = co_await verifying;
    if (stop.stop_requested())
        throw Cancelled();
    if (!good)
        throw UpdateError(UpdateProblem::wrongSignature);
    co_return publish(*file, folder, nameFor(offer.item));
}

} // namespace zelk
