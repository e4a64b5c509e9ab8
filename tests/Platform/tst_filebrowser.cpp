#include "Platform/FileBrowser.h"
#include "Platform/PrivateBus.h"
#include "Support/Settle.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString managerName = u"org.freedesktop.FileManager1"_s;
const QString managerPath = u"/org/freedesktop/FileManager1"_s;

} // namespace

/// What answers for the desktop's file manager.
class Manager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit Manager(QDBusConnection bus) : _bus(std::move(bus)) {
        _bus.registerObject(managerPath, this, QDBusConnection::ExportAllSlots);
        _bus.registerService(managerName);
    }
    ~Manager() override {
        _bus.unregisterService(managerName);
        _bus.unregisterObject(managerPath);
    }

    void answer(const QDBusMessage &question) { _bus.send(question.createReply()); }

    QStringList shown; // a line for each call
    QStringList startupIds;
    QList<QDBusMessage> open;
    bool refuses = false;
    bool isSilent = false;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &startupId) {
        shown.append(uris.join(u' '));
        startupIds.append(startupId);
        if (refuses)
            sendErrorReply(QDBusError::Failed, u"no"_s);
        if (isSilent) {
            setDelayedReply(true);
            open.append(message());
        }
    }

private:
    QDBusConnection _bus;
};

/// Over a bus of its own, on which the file manager and who asks it have a connection each.
class TestFileBrowser : public QObject {
    Q_OBJECT

    QTemporaryDir _folder;
    PrivateBus _bus;
    std::unique_ptr<Manager> _manager;
    QList<QUrl> _opened;
    std::shared_ptr<FileBrowser> _browser;

    std::shared_ptr<FileBrowser> browserOn(const QDBusConnection &bus) {
        return FileBrowser::on(bus, [this](const QUrl &folder) { _opened.append(folder); });
    }
    QString file(const QString &name) const {
        QFile file(_folder.filePath(name));
        return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
    }

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() { _bus.stop(); }
    void init() {
        _opened.clear();
        _manager = std::make_unique<Manager>(_bus.connection(u"manager"_s));
        _browser = browserOn(_bus.connection(u"asker"_s));
    }
    void cleanup() {
        _browser.reset();
        _manager.reset();
        for (const auto &name : {u"manager"_s, u"asker"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void theFileManagerShowsTheFile() {
        const QString path = file(u"Salt Flats.aiff"_s);
        _browser->reveal(path);
        QVERIFY(_manager->shown.isEmpty()); // nobody has waited for it
        QTRY_COMPARE(_manager->shown, QStringList{u"file://"_s + _folder.path() + u"/Salt%20Flats.aiff"_s});
        QCOMPARE(_manager->startupIds, QStringList{QString()});
        settle();
        QVERIFY(_opened.isEmpty());
    }

    void aNameWithCharactersOfAddressesArrivesWhole() {
        const QString path = file(u"50% #1? ü&ß+.aiff"_s);
        _browser->reveal(path);
        QTRY_COMPARE(_manager->shown.size(), 1);
        const QString uri = _manager->shown.at(0);
        QVERIFY(uri.endsWith(u"/50%25%20%231%3F%20%C3%BC&%C3%9F+.aiff"_s));
        QCOMPARE(QUrl(uri).toLocalFile(), path);
    }

    void aFolderIsShownAmongItsNeighbours() {
        QVERIFY(QDir(_folder.path()).mkpath(u"Output"_s));
        _browser->reveal(_folder.filePath(u"Output"_s));
        QTRY_COMPARE(_manager->shown, QStringList{u"file://"_s + _folder.path() + u"/Output"_s});
    }

    void whatIsNotThereIsNotShown() {
        _browser->reveal(_folder.filePath(u"gone.aiff"_s));
        _browser->reveal(QString());
        _browser->reveal(file(u"there.aiff"_s));
        QTRY_COMPARE(_manager->shown.size(), 1);
        QVERIFY(_manager->shown.at(0).endsWith(u"/there.aiff"_s));
        QVERIFY(_opened.isEmpty());
    }

    void aLinkThatLeadsNowhereIsStillAFile() {
        QVERIFY(QFile::link(_folder.filePath(u"nowhere"_s), _folder.filePath(u"link.aiff"_s)));
        _browser->reveal(_folder.filePath(u"link.aiff"_s));
        QTRY_COMPARE(_manager->shown.size(), 1);
    }

    void withoutAFileManagerTheFolderIsOpened() {
        _manager.reset();
        _browser->reveal(file(u"a b.aiff"_s));
        QTRY_COMPARE(_opened, QList{QUrl::fromLocalFile(_folder.path())});
    }

    void aFolderItselfIsOpenedThen() {
        _manager.reset();
        QVERIFY(QDir(_folder.path()).mkpath(u"Output #2"_s));
        _browser->reveal(_folder.filePath(u"Output #2"_s));
        QTRY_COMPARE(_opened, QList{QUrl::fromLocalFile(_folder.filePath(u"Output #2"_s))});
    }

    void aFileManagerThatRefusesIsAsGoodAsNone() {
        _manager->refuses = true;
        _browser->reveal(file(u"a.aiff"_s));
        QTRY_COMPARE(_opened, QList{QUrl::fromLocalFile(_folder.path())});
    }

    void withoutABusTheFolderIsOpened() {
        const auto lone = browserOn(QDBusConnection(u"no such bus"_s));
        lone->reveal(file(u"a.aiff"_s));
        QCOMPARE(_opened, QList{QUrl::fromLocalFile(_folder.path())});
    }

    void theSessionOfATestHasNoBus() {
        const auto own = FileBrowser::ofSession([this](const QUrl &folder) { _opened.append(folder); });
        own->reveal(file(u"a.aiff"_s));
        QCOMPARE(_opened.size(), 1);
    }

    void anAnswerThatComesAfterItsEndOpensNothing() {
        _manager->isSilent = true;
        _browser->reveal(file(u"a.aiff"_s));
        QTRY_COMPARE(_manager->open.size(), 1);
        _browser.reset();
        _manager.reset(); // which fails what it left open
        settle();
        QVERIFY(_opened.isEmpty());
    }

    void aSlowFileManagerIsWaitedForWithoutStandingStill() {
        _manager->isSilent = true;
        _browser->reveal(file(u"a.aiff"_s));
        _browser->reveal(file(u"b.aiff"_s));
        QTRY_COMPARE(_manager->open.size(), 2);
        for (const auto &question : std::as_const(_manager->open))
            _manager->answer(question);
        settle();
        QVERIFY(_opened.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFileBrowser)
#include "tst_filebrowser.moc"
