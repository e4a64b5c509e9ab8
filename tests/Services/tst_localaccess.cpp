#include "Platform/ApplicationActivation.h"
#include "Platform/ConsentSettings.h"
#include "Platform/MusicLibraryConsent.h"
#include "Platform/RememberedConsent.h"
#include "Platform/UserDefaults.h"
#include "Services/AppleMusicLocalAccess.h"
#include "Services/AutomationPermissionMonitor.h"
#include "Support/Await.h"
#include "Support/SerialExecutor.h"
#include "Support/SharedInstance.h"
#include "Support/SignInFakes.h"

#include <QFile>
#include <QMetaEnum>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Says what the test tells it, or fails; and on which thread it was asked.
class ScriptedConsent final : public MusicLibraryConsent {
public:
    ConsentStatus determine(bool askIfNeeded) override {
        if (!askIfNeeded) {
            ++reads;
        } else {
            ++asks;
            wasAskedOnMain = SerialExecutor::main()->isCurrent();
            if (blocks)
                mayGoOn.acquire();
        }
        if (fails)
            throw std::runtime_error("broken");
        const ConsentStatus answer = status;
        if (askIfNeeded)
            hasRead.release();
        return answer;
    }
    bool wasAnswered() const override { return isAnswered; }

    std::atomic<ConsentStatus> status = ConsentStatus::undetermined;
    std::atomic_bool fails = false;
    std::atomic_bool blocks = false;
    std::atomic_bool wasAskedOnMain = false;
    bool isAnswered = false;
    std::atomic_int reads = 0;
    std::atomic_int asks = 0;
    QSemaphore mayGoOn;
    QSemaphore hasRead;
};

class ScriptedSettings final : public ConsentSettings {
public:
    void open() override { ++opened; }
    int opened = 0;
};

struct Bench {
    std::shared_ptr<ScriptedConsent> consent = std::make_shared<ScriptedConsent>();
    std::shared_ptr<ScriptedSettings> settings = std::make_shared<ScriptedSettings>();
    ApplicationActivation activation;
    std::optional<AppleMusicLocalAccess> access{std::in_place, consent, settings};
    std::optional<AutomationPermissionMonitor> monitor{std::in_place, *access, activation};

    void activate() {
        Q_EMIT activation.didBecomeActive();
        QCoreApplication::processEvents();
    }
};

using enum ConsentStatus;

} // namespace

class TestLocalAccess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theStatusesAreOneByteInTheirOrder() {
        QCOMPARE(sizeof(AppleMusicLocalAccess::Status), 1u);
        QCOMPARE(int(authorized), 0);
        QCOMPARE(int(denied), 1);
        QCOMPARE(int(undetermined), 2);
        QCOMPARE(QMetaEnum::fromType<ConsentStatus>().valueToKey(1), "denied");
    }

    void theMonitorKnowsTheStatusFromTheStartWithoutAsking() {
        Bench bench;
        bench.monitor.reset();
        bench.consent->status = denied;
        bench.monitor.emplace(*bench.access, bench.activation);
        QCOMPARE(bench.monitor->status(), denied);
        QCOMPARE(bench.consent->asks, 0);
    }

    void whatFailsIsUndeterminedAndNotDenied() {
        Bench bench;
        bench.consent->status = denied;
        bench.monitor->recheck();
        bench.consent->fails = true;
        bench.monitor->recheck();
        QCOMPARE(bench.monitor->status(), undetermined);
        QCOMPARE(outcomeOf(bench.access->request()).value, undetermined);
    }

    void askingNeverHappensOnTheMainThread() {
        Bench bench;
        bench.consent->status = authorized;
        bench.consent->blocks = true;
        QObject owner;
        const auto outcome = observe(&owner, bench.access->request());
        QTRY_COMPARE(bench.consent->asks, 1);
        QVERIFY(!outcome->isOver());
        QVERIFY(!bench.consent->wasAskedOnMain);
        bench.consent->mayGoOn.release();
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->value, authorized);
    }

    void oneAskDoesNotWaitForAnother() {
        Bench bench;
        bench.consent->blocks = true;
        QObject owner;
        const auto first = observe(&owner, bench.access->request());
        const auto second = observe(&owner, bench.access->request());
        QTRY_COMPARE(bench.consent->asks, 2);
        bench.consent->mayGoOn.release(2);
        QTRY_VERIFY(first->isOver() && second->isOver());
    }

    void askingUpdatesTheStatusAndGivesIt() {
        Bench bench;
        QSignalSpy told(&*bench.monitor, &AutomationPermissionMonitor::statusChanged);
        bench.consent->status = authorized;
        QCOMPARE(outcomeOf(bench.monitor->requestAccess()).value, authorized);
        QCOMPARE(bench.monitor->status(), authorized);
        QCOMPARE(told.count(), 1);
        QCOMPARE(outcomeOf(bench.monitor->requestAccess()).value, authorized);
        QCOMPARE(told.count(), 1);
    }

    void whatChangedOnTheWayBackIsWhatCounts() {
        Bench bench;
        bench.consent->status = authorized;
        QSignalSpy told(&*bench.monitor, &AutomationPermissionMonitor::statusChanged);
        QObject owner;
        const auto outcome = observe(&owner, bench.monitor->requestAccess());
        QCoreApplication::processEvents();
        bench.consent->hasRead.acquire();
        bench.consent->status = denied;
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(bench.monitor->status(), denied);
        QCOMPARE(outcome->value, denied);
        QCOMPARE(told.count(), 1);
    }

    void theMonitorMayGoWhileItAsks() {
        Bench bench;
        bench.consent->blocks = true;
        bench.consent->status = denied;
        QObject owner;
        const auto outcome = observe(&owner, bench.monitor->requestAccess());
        QTRY_COMPARE(bench.consent->asks, 1);
        bench.monitor.reset();
        bench.access.reset();
        bench.consent->mayGoOn.release();
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->value, denied);
    }

    void comingBackTellsARealChangeOnly() {
        Bench bench;
        QSignalSpy told(&*bench.monitor, &AutomationPermissionMonitor::statusChanged);
        bench.activate();
        QCOMPARE(bench.consent->reads, 2);
        QCOMPARE(told.count(), 0);
        bench.consent->status = authorized;
        QCOMPARE(bench.monitor->status(), undetermined);
        bench.activate();
        QCOMPARE(bench.monitor->status(), authorized);
        QCOMPARE(told.count(), 1);
        bench.consent->status = denied;
        bench.activate();
        QCOMPARE(bench.monitor->status(), denied);
        QCOMPARE(told.count(), 2);
        bench.activate();
        QCOMPARE(told.count(), 2);
        QCOMPARE(bench.consent->asks, 0);
    }

    void anActivationOutlivesItsMonitor() {
        Bench bench;
        Q_EMIT bench.activation.didBecomeActive();
        bench.monitor.reset();
        QCoreApplication::processEvents();
        QCOMPARE(bench.consent->reads, 1);
        bench.activate();
        QCOMPARE(bench.consent->reads, 1);
    }

    void theSettingsAreOpened() {
        Bench bench;
        bench.access->openAutomationSettings();
        QCOMPARE(bench.settings->opened, 1);
    }

    void askingOpensTheSettingsWhereNothingIsAskedAndNothingGained_data() {
        QTest::addColumn<bool>("isAnswered");
        QTest::addColumn<ConsentStatus>("status");
        QTest::addColumn<int>("opened");
        QTest::newRow("asked, and allowed") << false << authorized << 0;
        QTest::newRow("asked, and refused") << false << denied << 0;
        QTest::newRow("asked, and left or without a library") << false << undetermined << 0;
        QTest::newRow("allowed before") << true << authorized << 0;
        QTest::newRow("refused before") << true << denied << 0;
        QTest::newRow("allowed before, without a library") << true << undetermined << 1;
    }
    void askingOpensTheSettingsWhereNothingIsAskedAndNothingGained() {
        QFETCH(bool, isAnswered);
        QFETCH(ConsentStatus, status);
        Bench bench;
        bench.consent->isAnswered = isAnswered;
        bench.consent->status = status;
        QCOMPARE(outcomeOf(bench.monitor->requestAccess()).value, status);
        QTEST(bench.settings->opened, "opened");
    }

    void aServiceThatHasGoneOpensNoSettings() {
        Bench bench;
        bench.consent->isAnswered = true;
        bench.consent->blocks = true;
        QObject owner;
        const auto outcome = observe(&owner, bench.access->request());
        QTRY_COMPARE(bench.consent->asks, 1);
        bench.monitor.reset();
        bench.access.reset();
        const std::weak_ptr<ScriptedSettings> settings = bench.settings;
        bench.settings.reset();
        QVERIFY(settings.expired());
        bench.consent->mayGoOn.release();
        QTRY_VERIFY(outcome->isOver());
        QCOMPARE(outcome->value, undetermined);
    }

    void whoAllowedALibraryThatIsNotThereIsLedToTheSettingsAndNotAskedAgain() {
        const QTemporaryDir folder;
        const auto question = std::make_shared<ScriptedQuestion>();
        const auto settings = std::make_shared<ScriptedSettings>();
        const auto kept =
            std::make_shared<RememberedConsent>(std::make_shared<UserDefaults>(folder.filePath(u"a.conf"_s)),
                                                u"musicLibraryConsent"_s, question, Question::Wording{});
        AppleMusicLocalAccess access(MusicLibraryConsent::make(kept, folder.filePath(u"Library.xml"_s)), settings);

        question->next = Question::Answer::none;
        QCOMPARE(outcomeOf(access.request()).value, undetermined);
        question->next = Question::Answer::yes;
        QCOMPARE(outcomeOf(access.request()).value, undetermined);
        QCOMPARE(question->asked.size(), 2u);
        QCOMPARE(settings->opened, 0);
        QCOMPARE(outcomeOf(access.request()).value, undetermined);
        QCOMPARE(question->asked.size(), 2u);
        QCOMPARE(settings->opened, 1);
    }

    void aRefusalIsRememberedAndAGrantElsewhereIsSeenOnComingBack() {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Library.xml"_s);
        QFile library(file);
        QVERIFY(library.open(QIODevice::WriteOnly));
        const auto question = std::make_shared<ScriptedQuestion>();
        const auto kept =
            std::make_shared<RememberedConsent>(std::make_shared<UserDefaults>(folder.filePath(u"a.conf"_s)),
                                                u"musicLibraryConsent"_s, question, Question::Wording{});
        AppleMusicLocalAccess access(MusicLibraryConsent::make(kept, file), std::make_shared<ScriptedSettings>());
        ApplicationActivation activation;
        AutomationPermissionMonitor monitor(access, activation);
        QCOMPARE(monitor.status(), undetermined);

        question->next = Question::Answer::no;
        QCOMPARE(outcomeOf(monitor.requestAccess()).value, denied);
        QCOMPARE(monitor.status(), denied);
        question->next = Question::Answer::yes;
        QCOMPARE(outcomeOf(monitor.requestAccess()).value, denied);
        QCOMPARE(question->asked.size(), 1u);

        kept->setAnswer(true);
        Q_EMIT activation.didBecomeActive();
        QTRY_COMPARE(monitor.status(), authorized);
        QVERIFY(library.remove());
        Q_EMIT activation.didBecomeActive();
        QTRY_COMPARE(monitor.status(), undetermined);
    }

    void theSharedOnesAreThoseThatTheApplicationMade() {
        Bench bench;
        {
            const SharedInstance access(*bench.access);
            const SharedInstance monitor(*bench.monitor);
            QCOMPARE(&AppleMusicLocalAccess::shared(), &*bench.access);
            QCOMPARE(&AutomationPermissionMonitor::shared(), &*bench.monitor);
        }
        Bench another;
        const SharedInstance access(*another.access);
        QCOMPARE(&AppleMusicLocalAccess::shared(), &*another.access);
    }
};

QTEST_GUILESS_MAIN(TestLocalAccess)
#include "tst_localaccess.moc"
