#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace zelk {

/// A session bus of a test's own, which ends with it. Everybody on it may own every name.
class PrivateBus {
public:
    void start() {
        QFile configuration(_folder.filePath(QStringLiteral("bus.conf")));
        QVERIFY(configuration.open(QIODevice::WriteOnly));
        configuration.write("<busconfig><type>session</type><listen>unix:tmpdir=" + QFile::encodeName(_folder.path()) +
                            "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        configuration.close();
        _daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                      QStringLiteral("--config-file=") + configuration.fileName()});
        QVERIFY2(_daemon.waitForStarted(), "install dbus");
        QTRY_VERIFY(_daemon.canReadLine());
        _address = QString::fromUtf8(_daemon.readLine()).trimmed();
    }
    void stop() {
        _daemon.terminate();
        _daemon.waitForFinished();
    }

    /// A connection by that name, which `QDBusConnection::disconnectFromBus` ends.
    QDBusConnection connection(const QString &name) const { return QDBusConnection::connectToBus(_address, name); }
    /// What a program's environment names this bus by.
    QString address() const { return _address; }

private:
    QTemporaryDir _folder;
    QProcess _daemon;
    QString _address;
};

} // namespace zelk
