#include "DialogBench.h"
#include "Platform/MusicLibraryConsent.h"
#include "Platform/RememberedConsent.h"
#include "Platform/UserDefaults.h"
#include "Support/SignInFakes.h"
#include "Views/PermissionsDialog.h"
#include "Views/QuestionDialog.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

Q_DECLARE_METATYPE(std::optional<bool>)

namespace {

/// The dialog over consents in a folder of their own.
struct Bench : DialogBench {
    QTemporaryDir folder;
    QString file = folder.filePath(u"Library.xml"_s);
    std::shared_ptr<UserDefaults> defaults = std::make_shared<UserDefaults>(folder.filePath(u"a.conf"_s));
    std::shared_ptr<ScriptedQuestion> question = std::make_shared<ScriptedQuestion>();
    std::shared_ptr<RememberedConsent> library =
        std::make_shared<RememberedConsent>(defaults, u"library"_s, question, Question::Wording{});
    std::shared_ptr<RememberedConsent> appleMusic =
        std::make_shared<RememberedConsent>(defaults, u"appleMusic"_s, question, Question::Wording{});
    int answered = 0;
    PermissionsDialog dialog{host,
                             {.library = library,
                              .libraryStatus = MusicLibraryConsent::make(library, file),
                              .libraryFile = file,
                              .appleMusic = appleMusic},
                             [this] { ++answered; }};

    void writeLibrary() const {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
    }
    static QQuickWindow *window() { return shown("permissionsDialog"); }
    static QQuickItem *row(int index) { return item(window(), index == 0 ? "permission0" : "permission1"); }
    static QQuickItem *part(int index, const char *name) {
        return row(index)->findChild<QQuickItem *>(QLatin1StringView(name));
    }
    static QString state(int index) { return part(index, "permissionState")->property("text").toString(); }
    static void change(int index) {
        const QQuickItem *const button = part(index, "permissionChange");
        QVERIFY(QTest::qWaitForWindowExposed(window()));
        const QPointF middle = button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
        QTest::mouseClick(window(), Qt::LeftButton, {}, middle.toPoint());
    }
};

} // namespace

class TestPermissionsDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsSaidOfAPermission_data() {
        QTest::addColumn<std::optional<bool>>("answer");
        QTest::addColumn<ConsentStatus>("status");
        QTest::addColumn<QString>("library");
        QTest::addColumn<QString>("appleMusic");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("action");
        using Answer = std::optional<bool>;
        using enum ConsentStatus;
        QTest::newRow("none") << Answer() << undetermined << u"Not decided yet"_s << u"Not decided yet"_s << u"circle"_s
                              << u"Allow"_s;
        QTest::newRow("no") << Answer(false) << denied << u"Not allowed"_s << u"Not allowed"_s << u"minus.circle"_s
                            << u"Allow"_s;
        QTest::newRow("yes") << Answer(true) << authorized << u"Allowed"_s << u"Allowed"_s << u"checkmark.circle.fill"_s
                             << u"Don't Allow"_s;
        QTest::newRow("yes, without the file")
            << Answer(true) << undetermined << u"Allowed, but there is no such file to read"_s << u"Allowed"_s
            << u"exclamationmark.triangle.fill"_s << u"Don't Allow"_s;
    }
    void whatIsSaidOfAPermission() {
        QFETCH(std::optional<bool>, answer);
        QFETCH(ConsentStatus, status);
        QFETCH(QString, library);
        QFETCH(QString, appleMusic);
        QFETCH(QString, symbol);
        QFETCH(QString, action);
        const auto face = libraryFace(answer, status, u"/music/Library.xml"_s);
        QCOMPARE(face.state, library);
        QCOMPARE(face.symbol, symbol);
        QCOMPARE(face.action, action);
        QVERIFY(face.explanation.contains(u"/music/Library.xml"_s));
        QCOMPARE(appleMusicFace(answer).state, appleMusic);
        QCOMPARE(appleMusicFace(answer).action, action);
        QVERIFY(appleMusicFace(answer).name != face.name);
    }

    void itListsBothPermissionsAsTheyStand() {
        Bench bench;
        bench.writeLibrary();
        bench.library->setAnswer(true);
        bench.appleMusic->setAnswer(false);
        bench.dialog.open();
        QVERIFY(Bench::window());
        QCOMPARE(Bench::state(0), u"Allowed"_s);
        QCOMPARE(Bench::state(1), u"Not allowed"_s);
        QVERIFY(bench.question->asked.empty());
    }

    void eachAnswerCanBeChangedByTheButtonBesideIt_data() {
        QTest::addColumn<int>("index");
        QTest::newRow("library") << 0;
        QTest::newRow("Apple Music") << 1;
    }
    void eachAnswerCanBeChangedByTheButtonBesideIt() {
        QFETCH(int, index);
        Bench bench;
        bench.writeLibrary();
        RememberedConsent &changed = index == 0 ? *bench.library : *bench.appleMusic;
        const RememberedConsent &other = index == 0 ? *bench.appleMusic : *bench.library;
        bench.dialog.open();
        Bench::change(index);
        QCOMPARE(changed.answer(), std::optional(true));
        QCOMPARE(Bench::state(index), u"Allowed"_s);
        QCOMPARE(bench.answered, 1);
        QVERIFY(DialogBench::press(Bench::part(index, "permissionChange")));
        QCOMPARE(changed.answer(), std::optional(false));
        QCOMPARE(Bench::state(index), u"Not allowed"_s);
        QCOMPARE(bench.answered, 2);
        QVERIFY(!other.answer());
        QVERIFY(bench.question->asked.empty());
    }

    void theKeyboardIsEnough() {
        Bench bench;
        bench.dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(Bench::window()));
        for (int index = 0; index < 2; ++index) {
            QTest::keyClick(Bench::window(), Qt::Key_Tab);
            QVERIFY(Bench::part(index, "permissionChange")->property("visualFocus").toBool());
            QTest::keyClick(Bench::window(), Qt::Key_Space);
            // The focus stays where it was, for a change of mind.
            QVERIFY(Bench::part(index, "permissionChange")->property("visualFocus").toBool());
        }
        QCOMPARE(bench.library->answer(), std::optional(true));
        QCOMPARE(bench.appleMusic->answer(), std::optional(true));
    }

    void everyWayOutChangesNothing_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("Done") << 0;
        QTest::newRow("Return") << 1;
        QTest::newRow("Escape") << 2;
        QTest::newRow("closed") << 3;
    }
    void everyWayOutChangesNothing() {
        QFETCH(int, way);
        Bench bench;
        bench.dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(Bench::window()));
        const bool hasEnded = DialogBench::endsAfter([way] {
            if (way == 0)
                Bench::click(Bench::window(), "dialogPrimary");
            else if (way == 3)
                Bench::window()->close();
            else
                QTest::keyClick(Bench::window(), way == 1 ? Qt::Key_Return : Qt::Key_Escape);
        });
        QVERIFY(!hasEnded);
        QCOMPARE(Bench::window(), nullptr);
        QVERIFY(!bench.library->answer() && !bench.appleMusic->answer());
        QCOMPARE(bench.answered, 0);
    }

    void openingItAgainShowsTheSameWindowAsThingsStandNow() {
        Bench bench;
        bench.dialog.open();
        bench.dialog.open();
        QCOMPARE(DialogBench::count("permissionsDialog"), 1);
        QTest::keyClick(Bench::window(), Qt::Key_Escape);
        bench.library->setAnswer(true);
        bench.dialog.open();
        QCOMPARE(Bench::state(0), u"Allowed, but there is no such file to read"_s);
    }

    void comingBackToItShowsWhatChangedElsewhere() {
        Bench bench;
        bench.library->setAnswer(true);
        bench.dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(Bench::window()));
        QWindow elsewhere;
        elsewhere.show();
        elsewhere.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
        bench.writeLibrary();
        Bench::window()->requestActivate();
        QTRY_COMPARE(Bench::state(0), u"Allowed"_s);
    }

    void aQuestionStandsBeforeIt() {
        Bench bench;
        bench.dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(Bench::window()));
        QuestionDialog question(bench.host);
        const auto answer = question.ask({u"May I?"_s, u"Please."_s, u"Yes"_s, u"No"_s});
        QQuickWindow *const asking = DialogBench::shown("questionDialog");
        QCOMPARE(asking->transientParent(), Bench::window());
        DialogBench::click(asking, "dialogSecondary");
        QVERIFY(answer.isFinished());
        QVERIFY(Bench::window());
    }

    void itIsReadToAScreenReader() {
        Bench bench;
        bench.dialog.open();
        const auto read = [](int index, const char *name) {
            return QAccessible::queryAccessibleInterface(Bench::part(index, name));
        };
        QCOMPARE(read(0, "permissionChange")->role(), QAccessible::Button);
        QCOMPARE(read(0, "permissionChange")->text(QAccessible::Name), u"Read your exported Music library: Allow"_s);
        QCOMPARE(read(1, "permissionChange")->text(QAccessible::Name), u"Sign in to Apple Music: Allow"_s);
        QCOMPARE(read(1, "permissionState")->text(QAccessible::Name), u"Not decided yet"_s);
    }
};

QTEST_MAIN(TestPermissionsDialog)
#include "tst_permissionsdialog.moc"
