#include "Platform/FileBrowser.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QObject>

#include <utility>

namespace zelk {

namespace {

/// Asks whichever file manager answers to the desktop's common name for them.
class FileManager final : public FileBrowser {
public:
    FileManager(QDBusConnection bus, OpenFolder openFolder)
        : _bus(std::move(bus)), _openFolder(std::move(openFolder)) {}

    void reveal(const QString &path) override {
        const QFileInfo info(path);
        if (!info.exists() && !info.isSymLink())
            return;
        auto call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
        call << QStringList{QUrl::fromLocalFile(info.absoluteFilePath()).toString(QUrl::FullyEncoded)} << QString();
        const QString folder = info.isDir() ? info.absoluteFilePath() : info.absolutePath();
        if (!_bus.isConnected()) { // the watcher of such a call would never tell
            _openFolder(QUrl::fromLocalFile(folder));
            return;
        }
        auto *const reply = new QDBusPendingCallWatcher(_bus.asyncCall(call), &_replies);
        QObject::connect(reply, &QDBusPendingCallWatcher::finished, &_replies, [this, reply, folder] {
            reply->deleteLater();
            if (reply->isError())
                _openFolder(QUrl::fromLocalFile(folder));
        });
    }

private:
    QDBusConnection _bus;
    const OpenFolder _openFolder;
    QObject _replies; // those that are still to come end with it
};

} // namespace

std::shared_ptr<FileBrowser> FileBrowser::ofSession(OpenFolder openFolder) {
    return on(QDBusConnection::sessionBus(), std::move(openFolder));
}

std::shared_ptr<FileBrowser> FileBrowser::on(const QDBusConnection &bus, OpenFolder openFolder) {
    return std::make_shared<FileManager>(bus, std::move(openFolder));
}

} // namespace zelk
