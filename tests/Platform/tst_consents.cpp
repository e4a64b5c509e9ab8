#include "Platform/MusicAuthorization.h"
#include "Platform/MusicLibraryConsent.h"
#include "Platform/RememberedConsent.h"
#include "Platform/UserDefaults.h"
#include "Support/Await.h"
#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"
#include "Support/SignInFakes.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using Answer = Question::Answer;

const Question::Wording wording{u"May I?"_s, u"Please."_s, u"Yes"_s, u"No"_s};

/// A consent in a folder of its own, which is there again for another one.
struct Bench {
    QTemporaryDir folder;
    std::shared_ptr<UserDefaults> defaults = std::make_shared<UserDefaults>(folder.filePath(u"a.conf"_s));
    std::shared_ptr<ScriptedQuestion> question = std::make_shared<ScriptedQuestion>();
    std::shared_ptr<RememberedConsent> consent =
        std::make_shared<RememberedConsent>(defaults, u"consent"_s, question, wording);
    QString file = folder.filePath(u"Library.xml"_s);
    std::shared_ptr<MusicLibraryConsent> library = MusicLibraryConsent::make(consent, file);

    void writeLibrary() const {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("<plist/>");
    }

    /// What another thread gets that asks; it goes on asking meanwhile.
    QFuture<ConsentStatus> askElsewhere() const {
        const auto answer = std::make_shared<OneShot<ConsentStatus>>(std::make_exception_ptr(Cancelled()));
        const auto executor = SerialExecutor::make(u"asking"_s);
        executor->post([library = library, answer] { answer->fulfil(library->determine(true)); });
        return answer->future();
    }
};

/// Somebody who doesn't leave it at a question that was closed.
QCoro::Task<std::optional<bool>> askTwice(std::shared_ptr<RememberedConsent> consent) {
    auto first = consent->ask();
    co_await first;
    auto second = consent->ask();
    co_return co_await second;
}

} // namespace

Q_DECLARE_METATYPE(zelk::Question::Answer)

class TestConsents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theQuestionIsAskedInItsOwnWords() {
        Bench bench;
        bench.question->next = Answer::no;
        outcomeOf(bench.consent->ask());
        QCOMPARE(bench.question->asked.size(), 1u);
        QCOMPARE(bench.question->asked[0].title, wording.title);
        QCOMPARE(bench.question->asked[0].text, wording.text);
        QCOMPARE(bench.question->asked[0].yes, wording.yes);
        QCOMPARE(bench.question->asked[0].no, wording.no);
    }

    void anAnswerIsGivenOnce_data() {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<ConsentStatus>("status");
        QTest::newRow("yes") << Answer::yes << ConsentStatus::authorized;
        QTest::newRow("no") << Answer::no << ConsentStatus::denied;
    }
    void anAnswerIsGivenOnce() {
        QFETCH(Answer, answer);
        QFETCH(ConsentStatus, status);
        Bench bench;
        bench.question->next = answer;
        const auto authorization = MusicAuthorization::make(bench.consent);
        QCOMPARE(outcomeOf(authorization->request()).value, status);
        bench.question->next = {};
        QCOMPARE(outcomeOf(authorization->request()).value, status);
        QCOMPARE(bench.question->asked.size(), 1u);

        // Nor is it asked again after a restart.
        bench.defaults.reset();
        bench.consent.reset();
        const auto again = std::make_shared<RememberedConsent>(
            std::make_shared<UserDefaults>(bench.folder.filePath(u"a.conf"_s)), u"consent"_s, bench.question, wording);
        QCOMPARE(outcomeOf(MusicAuthorization::make(again)->request()).value, status);
        QCOMPARE(bench.question->asked.size(), 1u);
    }

    void aClosedQuestionIsNoAnswerAndIsAskedAgain() {
        Bench bench;
        const auto authorization = MusicAuthorization::make(bench.consent);
        bench.question->next = Answer::none;
        QCOMPARE(outcomeOf(authorization->request()).value, ConsentStatus::undetermined);
        QVERIFY(!bench.consent->answer());
        bench.question->next = Answer::yes;
        QCOMPARE(outcomeOf(authorization->request()).value, ConsentStatus::authorized);
        QCOMPARE(bench.question->asked.size(), 2u);
    }

    void aKeptValueThatMeansNothingIsNoAnswer() {
        Bench bench;
        bench.defaults->set(u"consent"_s, u"perhaps"_s);
        QVERIFY(!bench.consent->answer());
    }

    void whoAsksMeanwhileWaitsForTheSameAnswer() {
        Bench bench;
        QObject owner;
        const auto first = observe(&owner, bench.consent->ask());
        const auto second = observe(&owner, bench.consent->ask());
        QCoreApplication::processEvents();
        QCOMPARE(bench.question->asked.size(), 1u);
        bench.question->settle(Answer::yes);
        QTRY_VERIFY(first->isOver() && second->isOver());
        QCOMPARE(*first->value, std::optional(true));
        QCOMPARE(*second->value, std::optional(true));
    }

    void aQuestionThatIsAskedAgainAtOnceIsOneForAllAsWell() {
        Bench bench;
        QObject owner;
        const auto persistent = observe(&owner, askTwice(bench.consent));
        const auto second = observe(&owner, bench.consent->ask());
        QCoreApplication::processEvents();
        QCOMPARE(bench.question->asked.size(), 1u);
        bench.question->settle(Answer::none);
        QTRY_VERIFY(second->isOver());
        QVERIFY(!persistent->isOver());
        const auto third = observe(&owner, bench.consent->ask());
        QCoreApplication::processEvents();
        QCOMPARE(bench.question->asked.size(), 2u);
        bench.question->settle(Answer::yes);
        QTRY_VERIFY(persistent->isOver() && third->isOver());
        QCOMPARE(*persistent->value, std::optional(true));
        QCOMPARE(*third->value, std::optional(true));
    }

    void anAnswerGivenElsewhereMeanwhileStands() {
        Bench bench;
        QObject owner;
        const auto asking = observe(&owner, bench.consent->ask());
        QCoreApplication::processEvents();
        bench.consent->setAnswer(false);
        bench.question->settle(Answer::yes);
        QTRY_VERIFY(asking->isOver());
        QCOMPARE(*asking->value, std::optional(false));
    }

    void theLibraryIsAuthorizedWhenItIsAllowedAndReadable_data() {
        QTest::addColumn<QString>("kept");
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<ConsentStatus>("status");
        using enum ConsentStatus;
        QTest::newRow("allowed and there") << u"allowed"_s << true << authorized;
        QTest::newRow("allowed but not there") << u"allowed"_s << false << undetermined;
        QTest::newRow("refused and there") << u"denied"_s << true << denied;
        QTest::newRow("refused and not there") << u"denied"_s << false << denied;
        QTest::newRow("never asked and there") << QString() << true << undetermined;
        QTest::newRow("never asked and not there") << QString() << false << undetermined;
        QTest::newRow("neither and there") << u"perhaps"_s << true << undetermined;
    }
    void theLibraryIsAuthorizedWhenItIsAllowedAndReadable() {
        QFETCH(QString, kept);
        QFETCH(bool, isThere);
        QFETCH(ConsentStatus, status);
        Bench bench;
        if (!kept.isEmpty())
            bench.defaults->set(u"consent"_s, kept);
        if (isThere)
            bench.writeLibrary();
        QCOMPARE(bench.library->determine(false), status);
        QCOMPARE(bench.question->asked.size(), 0u);
    }

    void aFolderInTheLibrarysPlaceIsNotReadable() {
        Bench bench;
        bench.consent->setAnswer(true);
        QVERIFY(QDir().mkdir(bench.file));
        QCOMPARE(bench.library->determine(false), ConsentStatus::undetermined);
    }

    void aLibraryThatMayNotBeReadIsUndetermined() {
        if (geteuid() == 0)
            QSKIP("root may read everything; a folder in its place is the same case");
        Bench bench;
        bench.consent->setAnswer(true);
        bench.writeLibrary();
        QVERIFY(QFile::setPermissions(bench.file, {}));
        QCOMPARE(bench.library->determine(false), ConsentStatus::undetermined);
    }

    void askingForTheLibraryBlocksAnotherThreadUntilTheAnswer_data() {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<ConsentStatus>("status");
        QTest::newRow("yes") << Answer::yes << ConsentStatus::authorized;
        QTest::newRow("no") << Answer::no << ConsentStatus::denied;
        QTest::newRow("closed") << Answer::none << ConsentStatus::undetermined;
    }
    void askingForTheLibraryBlocksAnotherThreadUntilTheAnswer() {
        QFETCH(Answer, answer);
        QFETCH(ConsentStatus, status);
        Bench bench;
        bench.writeLibrary();
        const auto asked = bench.askElsewhere();
        QTRY_COMPARE(bench.question->asked.size(), 1u);
        QVERIFY(!asked.isFinished());
        QCOMPARE(bench.library->determine(false), ConsentStatus::undetermined);
        bench.question->settle(answer);
        QTRY_VERIFY(asked.isFinished());
        QCOMPARE(asked.result(), status);
        QCOMPARE(bench.library->determine(false), status);
    }

    void aRefusedLibraryIsNotAskedForAgain() {
        Bench bench;
        bench.consent->setAnswer(false);
        const auto asked = bench.askElsewhere();
        QTRY_VERIFY(asked.isFinished());
        QCOMPARE(asked.result(), ConsentStatus::denied);
        QCOMPARE(bench.question->asked.size(), 0u);
    }

    void quittingWhileTheQuestionStandsEndsTheWait() {
        QFuture<ConsentStatus> asked;
        {
            Bench bench;
            asked = bench.askElsewhere();
            QTRY_COMPARE(bench.question->asked.size(), 1u);
        }
        QTRY_VERIFY(asked.isFinished());
        QCOMPARE(asked.result(), ConsentStatus::undetermined);
    }

    void nothingIsAskedOnceTheApplicationHasGone() {
        Bench bench;
        bench.question.reset();
        QCOMPARE(*outcomeOf(bench.consent->ask()).value, std::optional<bool>());
    }
};

QTEST_GUILESS_MAIN(TestConsents)
#include "tst_consents.moc"
