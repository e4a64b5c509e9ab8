#include "Platform/StandIn.h"
#include "Platform/Trash.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

/// The real one, in the home that the test was given.
class TestTrash : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> _folder;

    static QStringList trashed() {
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        return QDir(data + u"/Trash/files"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    static QByteArray trashedContents(const QString &name) {
        return contentsOf(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash/files/"_s +
                          name);
    }

private Q_SLOTS:
    void init() {
        _folder = std::make_unique<QTemporaryDir>(QDir::homePath() + u"/folder"_s);
        QVERIFY(trashed().isEmpty());
    }
    void cleanup() {
        QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash"_s).removeRecursively();
    }

    void aFileCanBeTakenBack() {
        const auto path = writeProgram(_folder->filePath(u"the user's own"_s), "echo own");
        Trash::system()->put(path);
        QVERIFY(!QFile::exists(path));
        QCOMPARE(trashed(), QStringList{u"the user's own"_s}); // made with its folders: this home is new
        QVERIFY(trashedContents(u"the user's own"_s).contains("echo own"));
    }

    void aSecondOfThatNameIsKeptBesideTheFirst() {
        for (const auto *content : {"first", "second"})
            Trash::system()->put(writeProgram(_folder->filePath(u"zelk"_s), content));
        QCOMPARE(trashed().size(), 2);
    }

    void aFolderGoesAsAWhole() {
        QDir(_folder->path()).mkpath(u"zelk/below"_s);
        Trash::system()->put(_folder->filePath(u"zelk"_s));
        QVERIFY(!QFile::exists(_folder->filePath(u"zelk"_s)));
        QCOMPARE(trashed(), QStringList{u"zelk"_s});
    }

    void whatIsNotThereFails() {
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, Trash::system()->put(_folder->filePath(u"nothing"_s)));
    }

    void whereThereCanBeNoTrashTheFileStays() {
        QFile notAFolder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash"_s);
        QVERIFY(QDir().mkpath(QFileInfo(notAFolder).path()));
        QVERIFY(notAFolder.open(QIODevice::WriteOnly));
        const auto path = writeProgram(_folder->filePath(u"zelk"_s), "echo own");
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, Trash::system()->put(path));
        QVERIFY(contentsOf(path).contains("echo own"));
        QVERIFY(notAFolder.remove());
    }
};

QTEST_GUILESS_MAIN(TestTrash)
#include "tst_trash.moc"
