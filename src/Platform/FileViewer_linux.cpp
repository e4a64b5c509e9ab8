#include "Platform/FileViewer.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QUrl>

#include <utility>

namespace zelk {

namespace {

constexpr int patience = 5000; // milliseconds; a file browser may have to be started first

} // namespace

void showInFileViewer(const QString &path, std::function<void(const QString &)> openFolder) {
    showInFileViewer(QDBusConnection::sessionBus(), path, std::move(openFolder));
}

void showInFileViewer(const QDBusConnection &bus, const QString &path,
                      std::function<void(const QString &)> openFolder) {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())) << QString();
    const auto asked = bus.asyncCall(call, patience);
    const QString folder = QFileInfo(path).absolutePath();
    // Without a bus the call has failed already, and nobody is told.
    if (asked.isFinished() && asked.isError()) {
        openFolder(folder);
        return;
    }
    auto *const answer = new QDBusPendingCallWatcher(asked, QCoreApplication::instance());
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [answer, folder, openFolder = std::move(openFolder)] {
                         answer->deleteLater();
                         if (answer->isError())
                             openFolder(folder);
                     });
}

} // namespace zelk
