#include "Platform/FileViewer.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString service = u"org.freedesktop.FileManager1"_s;

QByteArray busConfiguration(const QString &folder) {
    return "<busconfig><type>session</type><listen>unix:tmpdir=" + QFile::encodeName(folder) +
           "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
}

} // namespace

/// The desktop's file browser.
class FileBrowser : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;
    bool refuses = false;

public Q_SLOTS:
    void ShowItems(const QStringList &addresses, const QString &startup) {
        if (refuses)
            sendErrorReply(QDBusError::Failed, u"No window"_s);
        else
            shown.append(addresses + QStringList{startup});
    }
};

class TestFileViewer : public QObject {
    Q_OBJECT

private:
    QTemporaryDir _folder;
    QProcess _daemon;
    QString _address;
    QStringList _opened;

    static QDBusConnection asking() { return QDBusConnection(u"asking"_s); }
    static QDBusConnection answering() { return QDBusConnection(u"answering"_s); }
    void show(const QDBusConnection &bus, const QString &path) {
        showInFileViewer(bus, path, [this](const QString &folder) { _opened.append(folder); });
    }

private Q_SLOTS:
    void initTestCase() {
        QFile configuration(_folder.filePath(u"bus.conf"_s));
        QVERIFY(configuration.open(QIODevice::WriteOnly));
        configuration.write(busConfiguration(_folder.path()));
        configuration.close();
        _daemon.start(u"dbus-daemon"_s,
                      {u"--nofork"_s, u"--print-address"_s, u"--config-file"_s, configuration.fileName()});
        QVERIFY(_daemon.waitForReadyRead());
        _address = QString::fromLatin1(_daemon.readLine().trimmed());
        QVERIFY(QDBusConnection::connectToBus(_address, u"asking"_s).isConnected());
        QVERIFY(QDBusConnection::connectToBus(_address, u"answering"_s).isConnected());
    }
    void init() { _opened.clear(); }
    void cleanupTestCase() {
        QDBusConnection::disconnectFromBus(u"asking"_s);
        QDBusConnection::disconnectFromBus(u"answering"_s);
        _daemon.terminate();
        QVERIFY(_daemon.waitForFinished());
    }

    void theFileBrowserIsAskedForTheFile() {
        FileBrowser browser;
        QVERIFY(
            answering().registerObject(u"/org/freedesktop/FileManager1"_s, &browser, QDBusConnection::ExportAllSlots));
        QVERIFY(answering().registerService(service));
        show(asking(), u"/opt/my apps/zelk #2.tar"_s);
        QTRY_COMPARE(browser.shown, (QStringList{u"file:///opt/my%20apps/zelk%20%232.tar"_s, QString()}));
        QVERIFY(_opened.isEmpty());
        browser.refuses = true;
        show(asking(), u"/opt/zelk.tar"_s);
        QTRY_COMPARE(_opened, QStringList{u"/opt"_s});
        answering().unregisterService(service);
        answering().unregisterObject(u"/org/freedesktop/FileManager1"_s);
    }

    void withoutAFileBrowserTheFolderIsOpened() {
        show(asking(), u"/opt/apps/zelk.tar"_s);
        QTRY_COMPARE(_opened, QStringList{u"/opt/apps"_s});
    }

    void withoutABusTheFolderIsOpened() {
        show(QDBusConnection(u"none of that name"_s), u"/opt/apps/zelk.tar"_s);
        QTRY_COMPARE(_opened, QStringList{u"/opt/apps"_s});
    }
};

QTEST_GUILESS_MAIN(TestFileViewer)
#include "tst_fileviewer.moc"
