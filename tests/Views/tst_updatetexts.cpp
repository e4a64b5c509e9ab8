#include "Views/UpdateTexts.h"

#include <QLocale>
#include <QSet>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestUpdateTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void nothingHasNoFace() { QVERIFY(!updateFace(UpdateScene::Nothing())); }

    void aCheckCanOnlyBeCancelled() {
        const auto face = updateFace(UpdateScene::Checking());
        QCOMPARE(face->heading, u"Checking for Updates…"_s);
        QCOMPARE(face->primary.text, QString());
        QVERIFY(face->secondary == (UpdateButton{u"Cancel"_s, UpdateAnswer::cancel}));
        QCOMPARE(face->closed, UpdateAnswer::cancel);
        QVERIFY(face->busy);
        QVERIFY(!face->progress);
    }

    void beingUpToDateIsSaidWithTheVersion() {
        const auto face = updateFace(UpdateScene::UpToDate{u"1.0"_s});
        QCOMPARE(face->heading, u"zelk Is Up to Date"_s);
        QCOMPARE(face->text, u"You have version 1.0, the newest there is."_s);
        QVERIFY(face->primary == (UpdateButton{u"OK"_s, UpdateAnswer::later}));
        QCOMPARE(face->secondary.text, QString());
        QCOMPARE(face->closed, UpdateAnswer::later);
    }

    void anUpdateIsOfferedTheWayItArrives_data() {
        QTest::addColumn<UpdateDelivery>("delivery");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("downloads");
        QTest::newRow("by download")
            << UpdateDelivery::download
            << u"You have version 1.0. zelk can download the new one beside itself. Installing it is up to you."_s
            << true;
        QTest::newRow("by package")
            << UpdateDelivery::packageManager
            << u"You have version 1.0. The package manager of this system installed zelk, and brings the new version too."_s
            << false;
        QTest::newRow("by hand")
            << UpdateDelivery::elsewhere
            << u"You have version 1.0. zelk can't write to the folder that it is in. Get the new version where you got this one."_s
            << false;
    }
    void anUpdateIsOfferedTheWayItArrives() {
        QFETCH(const UpdateDelivery, delivery);
        QFETCH(const bool, downloads);
        const auto face = updateFace(
            UpdateScene::Found{.version = u"2.0"_s, .current = u"1.0"_s, .notes = u"Faster."_s, .delivery = delivery});
        QCOMPARE(face->heading, u"zelk 2.0 Is Available"_s);
        QTEST(face->text, "text");
        QCOMPARE(face->notes, u"Faster."_s);
        QVERIFY(face->tertiary == (UpdateButton{u"Skip This Version"_s, UpdateAnswer::skip}));
        QCOMPARE(face->closed, UpdateAnswer::later);
        if (downloads) {
            QVERIFY(face->primary == (UpdateButton{u"Download"_s, UpdateAnswer::download}));
            QVERIFY(face->secondary == (UpdateButton{u"Later"_s, UpdateAnswer::later}));
        } else {
            QVERIFY(face->primary == (UpdateButton{u"OK"_s, UpdateAnswer::later}));
            QCOMPARE(face->secondary.text, QString());
        }
    }

    void aDownloadSaysHowFarItIs_data() {
        QTest::addColumn<qint64>("received");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("progress");
        QTest::newRow("begun") << qint64(0) << u"0 bytes of 12.0 MB"_s << 0.0;
        QTest::newRow("half") << qint64(6'000'000) << u"6.0 MB of 12.0 MB"_s << 0.5;
        QTest::newRow("whole") << qint64(12'000'000) << u"Checking its signature…"_s << 1.0;
    }
    void aDownloadSaysHowFarItIs() {
        QFETCH(const qint64, received);
        const auto face = updateFace(UpdateScene::Downloading{u"2.0"_s, received, 12'000'000});
        QCOMPARE(face->heading, u"Downloading zelk 2.0…"_s);
        QTEST(face->text, "text");
        QTEST(face->progress.value(), "progress");
        QCOMPARE(face->primary.text, QString());
        QVERIFY(face->secondary == (UpdateButton{u"Cancel"_s, UpdateAnswer::cancel}));
        QCOMPARE(face->closed, UpdateAnswer::cancel);
    }

    void aDownloadThatArrivedCanBeShown() {
        const auto face = updateFace(UpdateScene::Ready{u"2.0"_s, u"/opt/zelk-2.0.tar.gz"_s});
        QCOMPARE(face->heading, u"zelk 2.0 Is Downloaded"_s);
        QVERIFY(face->text.endsWith(u"\n/opt/zelk-2.0.tar.gz"_s));
        QVERIFY(face->primary == (UpdateButton{u"Show in Folder"_s, UpdateAnswer::showInFolder}));
        QVERIFY(face->secondary == (UpdateButton{u"Close"_s, UpdateAnswer::later}));
        QCOMPARE(face->closed, UpdateAnswer::later);
    }

    void everyProblemIsExplainedInWordsOfItsOwn() {
        QSet<QString> texts;
        constexpr int count = static_cast<int>(UpdateProblem::unwritable) + 1;
        for (int i = 0; i < count; ++i) {
            const auto face = updateFace(UpdateScene::Failed{static_cast<UpdateProblem>(i)});
            QVERIFY(!face->heading.isEmpty());
            QVERIFY(face->text.endsWith(u'.'));
            QVERIFY(face->primary == (UpdateButton{u"OK"_s, UpdateAnswer::later}));
            QCOMPARE(face->secondary.text, QString());
            texts.insert(face->text);
        }
        QCOMPARE(texts.size(), count);
    }
};

QTEST_APPLESS_MAIN(TestUpdateTexts)
#include "tst_updatetexts.moc"
