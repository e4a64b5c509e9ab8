#include "Fuzzing.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// Shows a fuzzer the inputs that are kept: with any compiler, and in every run of the tests. The program's name,
/// tst_fuzz_NAME, says which.
class Replay : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyKeptInputIsGood_data() {
        QTest::addColumn<QString>("path");
        const auto fuzzer = QString::fromLatin1(QTest::currentAppName()).section(u'_', 2);
        QStringList folders = {QStringLiteral(FUZZ_CORPORA "/") + fuzzer};
        if (fuzzer == u"lines"_s)
            folders += QStringLiteral(WIRE_FIXTURES);
        for (const QString &folder : std::as_const(folders)) {
            for (QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
                const QString path = files.next();
                QTest::newRow(qPrintable(QDir(folder).relativeFilePath(path))) << path;
            }
        }
    }

    void everyKeptInputIsGood() {
        QFETCH(const QString, path);
        QFile file(path);
        QVERIFY(file.open(QFile::ReadOnly));
        const QByteArray input = file.readAll();
        try {
            zelk::fuzz::fuzz(input);
        } catch (const zelk::fuzz::Broken &broken) {
            QFAIL(broken.property);
        }
    }

    void theEmptyInputIsGood() {
        try {
            zelk::fuzz::fuzz({});
        } catch (const zelk::fuzz::Broken &broken) {
            QFAIL(broken.property);
        }
    }
};

QTEST_APPLESS_MAIN(Replay)
#include "Replay.moc"
