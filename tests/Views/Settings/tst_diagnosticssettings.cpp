#include "SettingsBench.h"
#include "Views/Settings/DiagnosticsLogic.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Requests = std::vector<Request>;

namespace {

QByteArray checks() {
    return R"({"checks": [
        {"id": "engine", "title": "Engine", "status": "ok", "detail": "Answering."},
        {"id": "ytdlp", "title": "yt-dlp", "status": "warn", "fixable": true},
        {"id": "output", "status": "fail", "fixable": false},
        {"id": "acoustid", "title": "AcoustID", "status": "skip"}]})";
}

struct Bench : SettingsBench {
    Bench() { show(7); }
    void runAll() {
        client->reply(Method::runDoctor, checks());
        click("runAll");
        settle();
    }
    QStringList marks() const {
        QStringList symbols;
        for (QQuickItem *each : items("checkMark"))
            symbols += each->property("name").toString();
        return symbols;
    }
};

} // namespace

class DiagnosticsSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { failOnWarnings(); }
    void cleanup() { settle(); }

    void beforeTheFirstRunItSaysWhatToDo() {
        const Bench bench;
        QCOMPARE(bench.spokenTree(), (QStringList{u"section: Checks"_s, u"heading: Checks"_s, u"button: Run All"_s,
                                                  u"text: Run the checks to see your setup status."_s}));
        QVERIFY(bench.sent(Method::runDoctor).empty());
    }

    void aRunShowsEachCheckInTheEnginesOrder() {
        Bench bench;
        bench.runAll();
        QCOMPARE(bench.spokenTree(),
                 (QStringList{u"section: Checks"_s, u"heading: Checks"_s, u"button: Run All"_s, u"picture: OK"_s,
                              u"text: Engine"_s, u"text: Answering."_s, u"picture: Warning"_s, u"text: yt-dlp"_s,
                              u"button: Fix"_s, u"picture: Failed"_s, u"text: output"_s, u"picture: Skipped"_s,
                              u"text: AcoustID"_s}));
        QCOMPARE(bench.marks(), (QStringList{u"checkmark.circle.fill"_s, u"exclamationmark.triangle.fill"_s,
                                             u"xmark.circle.fill"_s, u"minus.circle"_s}));
    }

    void theMarks_data() {
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<Ink>("ink");
        QTest::newRow("ok") << u"ok"_s << u"checkmark.circle.fill"_s << Ink::green;
        QTest::newRow("warn") << u"warn"_s << u"exclamationmark.triangle.fill"_s << Ink::orange;
        QTest::newRow("fail") << u"fail"_s << u"xmark.circle.fill"_s << Ink::red;
        QTest::newRow("skip") << u"skip"_s << u"minus.circle"_s << Ink::secondary;
        QTest::newRow("another case") << u"OK"_s << u"minus.circle"_s << Ink::secondary;
        QTest::newRow("empty") << u""_s << u"minus.circle"_s << Ink::secondary;
    }
    void theMarks() {
        QFETCH(QString, status);
        const CheckFace face = faceOf({.id = u"id"_s, .title = {}, .status = status, .detail = {}, .fixable = {}});
        QTEST(face.symbol, "symbol");
        QTEST(face.ink, "ink");
        QCOMPARE(face.title, u"id"_s);
        QVERIFY(!face.fixable);
    }

    void onlyWhatIsFixableHasAButton() {
        DoctorCheck check{.id = u"id"_s, .title = u"Title"_s, .status = u"fail"_s, .detail = u"Why"_s, .fixable = true};
        QCOMPARE(faceOf(check), (CheckFace{u"Title"_s, u"Why"_s, u"xmark.circle.fill"_s, Ink::red, true, u"Failed"_s}));
        check.fixable = false;
        QVERIFY(!faceOf(check).fixable);
        check.fixable.reset();
        QVERIFY(!faceOf(check).fixable);
    }

    void fixMendsItsOwnCheckAndLooksAgain() {
        Bench bench;
        bench.runAll();
        bench.client->reply(Method::doctorFix, "null");
        bench.client->reply(Method::runDoctor, R"({"checks": []})");
        QCOMPARE(bench.items("fix").size(), 1);
        QVERIFY(press(bench.item("fix")));
        QCOMPARE(bench.sent(Method::doctorFix), (Requests{Request::doctorFix(u"ytdlp"_s)}));
        QCOMPARE(bench.sent(Method::runDoctor).size(), 2U);
        QVERIFY(bench.shows(u"Run the checks to see your setup status."_s));
        QVERIFY(!bench.item("check"));
    }

    void noSecondRunIsBegunBesideTheFirst() {
        Bench bench;
        bench.click("runAll");
        settle();
        QVERIFY(!bench.item("runAll")->isEnabled());
        bench.click("runAll");
        QCOMPARE(bench.sent(Method::runDoctor).size(), 1U);
        bench.client->release(checks());
        QTRY_VERIFY(bench.item("runAll")->isEnabled());
    }

    void aRunThatFailsIsSaidUnderTheChecksUntilOneSucceeds() {
        Bench bench;
        bench.runAll();
        for (int i = 0; i < 2; ++i)
            bench.client->fail(Method::runDoctor, HelperError::engineError(u"busy"_s, u"Not now."_s));
        bench.focus("runAll");
        bench.key(Qt::Key_Return);
        settle();
        QVERIFY(bench.shows(u"Not now."_s));
        QCOMPARE(bench.items("check").size(), 4);
        bench.runAll();
        QVERIFY(!bench.shows(u"Not now."_s));
    }

    void aFixThatFailsIsSaidUnderTheChecks() {
        Bench bench;
        bench.runAll();
        bench.client->fail(Method::doctorFix, HelperError::engineError(u"busy"_s, u"Not now."_s));
        bench.click("fix");
        settle();
        QVERIFY(bench.shows(u"Not now."_s));
        QCOMPARE(bench.sent(Method::runDoctor).size(), 1U);
    }

    void withoutADoctorNothingIsSaid() {
        AppModel model([]() -> AppModel::Engine { throw HelperError::helperUnavailable(); }, surroundings());
        const DiagnosticsLogic logic(model);
        QVERIFY(!logic.present());
        QVERIFY(logic.checks().isEmpty());
        QVERIFY(!logic.running());
    }
};

QTEST_MAIN(DiagnosticsSettingsTest)
#include "tst_diagnosticssettings.moc"
