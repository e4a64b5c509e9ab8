#include "TabBench.h"

#include "Views/Settings/ProxyLogic.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Bench : TabBench {
    explicit Bench(bool isConfigured) { load(config(false, false, isConfigured)); }

    QQuickItem *field() const { return tab.item("subscription"); }
    QQuickItem *action() const { return tab.item("proxyAction"); }
    QQuickItem *forget() const { return tab.item("forgetProxy"); }
    QString entered() const { return field()->property("text").toString(); }
    QString label() const { return action()->property("text").toString(); }
    // The text of something that stands there only at times; empty when it doesn't.
    QString shown(const char *name) const {
        const QQuickItem *const item = tab.item(name);
        return item->isVisible() ? item->property("text").toString() : QString();
    }
    void type(const QString &text) {
        use(tab, field());
        tab.type(text);
    }
    void paste(const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        use(tab, field());
        tab.key(Qt::Key_V, Qt::ControlModifier);
    }
    // Tests, with that as the engine's answer.
    void test(const QByteArray &answer) {
        client->reply(Method::testProxy, answer);
        use(tab, action());
        QTRY_VERIFY(client->sentCount(Method::testProxy) > 0 && !logic.showsTesting());
    }

    ProxyLogic logic{model};
    FormBench tab{u"Settings/ProxySettings"_s, {{u"logic"_s, QVariant::fromValue(&logic)}}, QSize(640, 480)};
};

const QByteArray good = R"({"ok":true})";
const QByteArray goodInWords = R"({"ok":true,"detail":"3 nodes"})";
const QByteArray badInWords = R"({"ok":false,"detail":"No route."})";
const QByteArray bad = R"({"ok":false,"detail":""})";
const QString address = u"https://vpn.example/sub?token=1"_s;

Request storing(const QString &token) {
    return Request::storeAccountToken(AccountService::proxy, token);
}

} // namespace

class ProxySettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// What was cancelled with a model ends on the next turn.
    void cleanup() { settle(); }
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void withoutASubscriptionThereIsNothingToSaveOrForget() {
        const Bench bench(false);
        QCOMPARE(bench.label(), u"Save"_s);
        QVERIFY(!bench.action()->isEnabled());
        QVERIFY(!bench.forget()->isVisible());
        QCOMPARE(bench.field()->property("placeholderText").toString(), u"Subscription URL"_s);
    }

    void withOneItCanBeTestedAndForgotten() {
        const Bench bench(true);
        QCOMPARE(bench.label(), u"Test"_s);
        QVERIFY(bench.action()->isEnabled());
        QVERIFY(bench.forget()->isVisible());
        QCOMPARE(bench.entered(), QString());
    }

    void savingStoresTheLinkReadsTheConfigurationAndClearsTheField_data() { addHands(); }
    void savingStoresTheLinkReadsTheConfigurationAndClearsTheField() {
        QFETCH(Hand, hand);
        Bench bench(false);
        bench.client->reply(Method::storeAccountToken, "{}");
        bench.replyConfig(TabBench::config(false, false, true));
        bench.type(address);
        QVERIFY(bench.action()->isEnabled());
        use(bench.tab, bench.action(), hand);
        QTRY_COMPARE(bench.entered(), QString());
        QCOMPARE(bench.sent(), (std::vector{storing(address), Request::getConfig()}));
        QCOMPARE(bench.label(), u"Test"_s);
        QVERIFY(bench.forget()->isVisible());
    }

    void returnInTheFieldSaves_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("return") << Qt::Key_Return;
        QTest::newRow("enter") << Qt::Key_Enter;
    }
    void returnInTheFieldSaves() {
        QFETCH(Qt::Key, key);
        Bench bench(true);
        bench.type(address);
        bench.tab.key(key);
        QTRY_COMPARE(bench.sent(), std::vector{storing(address)});
    }

    void returnInAFieldOfBlanksDoesNothing() {
        Bench bench(true);
        bench.type(u"  "_s);
        QCOMPARE(bench.entered(), u"  "_s);
        QCOMPARE(bench.label(), u"Test"_s);
        bench.tab.key(Qt::Key_Return);
        settle();
        QVERIFY(bench.sent().empty());
        QCOMPARE(bench.entered(), u"  "_s);
    }

    void blanksAroundTheLinkAreTakenOffAndTheEndOfALineStays_data() {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("stored");
        QTest::newRow("blanks") << u"  "_s + address + u" \t"_s << address;
        QTest::newRow("a new line") << address + u'\n' << address + u'\n';
        QTest::newRow("a new line behind blanks") << address + u" \n"_s << address + u" \n"_s;
    }
    void blanksAroundTheLinkAreTakenOffAndTheEndOfALineStays() {
        QFETCH(QString, pasted);
        QFETCH(QString, stored);
        Bench bench(false);
        bench.paste(pasted);
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.sent(), std::vector{storing(stored)});
    }

    void aSaveThatFailsIsToldBesideTheButtonsAndTheFieldIsClearedAllTheSame() {
        Bench bench(true);
        bench.client->fail(Method::storeAccountToken, HelperError::engineError(u"x"_s, u"No such address."_s));
        bench.type(address);
        QCOMPARE(bench.shown("proxyFailure"), QString());
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.shown("proxyFailure"), u"No such address."_s);
        QTRY_COMPARE(bench.entered(), QString());
        QCOMPARE(bench.sent(), std::vector{storing(address)});
        QVERIFY(FormBench::names(&bench.tab.window).contains(u"No such address."_s));
        bench.load(TabBench::config(false, false, true));
        QCOMPARE(bench.shown("proxyFailure"), QString());
    }

    void testingIsSaidByTheButtonAndThenByItsResult_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("detail");
        QTest::newRow("good") << good << u"Connected"_s << QString();
        QTest::newRow("good, in words") << goodInWords << u"Connected"_s << u"3 nodes"_s;
        QTest::newRow("bad") << badInWords << u"Failed"_s << u"No route."_s;
        QTest::newRow("bad, without a word") << bad << u"Failed"_s << QString();
    }
    void testingIsSaidByTheButtonAndThenByItsResult() {
        QFETCH(QByteArray, answer);
        Bench bench(true);
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.client->held(), 1);
        QVERIFY(!bench.action()->isEnabled());
        QVERIFY(bench.tab.item("testing")->isVisible());
        QCOMPARE(bench.action()->property("ink").value<QColor>().alpha(), 0);
        QCOMPARE(bench.shown("testResult"), QString());
        bench.client->release(answer);
        QTRY_VERIFY(bench.action()->isEnabled());
        QVERIFY(!bench.tab.item("testing")->isVisible());
        QTEST(bench.shown("testResult"), "result");
        QTEST(bench.shown("testDetail"), "detail");
        QCOMPARE(bench.sent(), std::vector{Request::testProxy()});
        QCOMPARE(bench.shown("proxyFailure"), QString());
    }

    void aTestThatCannotBeMadeHasFailedInItsWords() {
        Bench bench(true);
        bench.client->fail(Method::testProxy, HelperError::engineError(u"x"_s, u"The engine is busy."_s));
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.shown("testResult"), u"Failed"_s);
        QCOMPARE(bench.shown("testDetail"), u"The engine is busy."_s);
        QCOMPARE(bench.shown("proxyFailure"), QString());
    }

    void startingToTypeHidesTheResultAndTurnsTestIntoSave() {
        Bench bench(true);
        bench.test(good);
        QCOMPARE(bench.shown("testResult"), u"Connected"_s);
        bench.type(u"h"_s);
        QCOMPARE(bench.shown("testResult"), QString());
        QCOMPARE(bench.label(), u"Save"_s);
        bench.tab.key(Qt::Key_Backspace);
        QCOMPARE(bench.shown("testResult"), u"Connected"_s);
        QCOMPARE(bench.label(), u"Test"_s);
    }

    void whatIsEnteredDuringATestCanBeSaved() {
        Bench bench(true);
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.client->held(), 1);
        bench.type(address);
        QCOMPARE(bench.label(), u"Save"_s);
        QVERIFY(bench.action()->isEnabled());
        QVERIFY(!bench.tab.item("testing")->isVisible());
    }

    void aTestSaysNothingOfASubscriptionThatCameAfterIt() {
        Bench bench(true);
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.client->held(), 1);
        bench.client->reply(Method::storeAccountToken, "{}");
        bench.replyConfig(TabBench::config(false, false, true));
        bench.type(address);
        use(bench.tab, bench.action());
        QTRY_COMPARE(bench.entered(), QString());
        bench.client->release(badInWords);
        QTRY_VERIFY(bench.action()->isEnabled());
        QCOMPARE(bench.shown("testResult"), QString());
        QCOMPARE(bench.shown("testDetail"), QString());
    }

    void forgettingClearsTheFieldAndTheResult_data() { addHands(); }
    void forgettingClearsTheFieldAndTheResult() {
        QFETCH(Hand, hand);
        Bench bench(true);
        bench.test(goodInWords);
        bench.type(u"half"_s);
        bench.client->reply(Method::disconnectAccount, "{}");
        bench.replyConfig(TabBench::config(false, false, false));
        use(bench.tab, bench.forget(), hand);
        QTRY_COMPARE(bench.entered(), QString());
        QCOMPARE(bench.sent(), (std::vector{Request::testProxy(), Request::disconnectAccount(AccountService::proxy),
                                            Request::getConfig()}));
        QCOMPARE(bench.shown("testDetail"), QString());
        QCOMPARE(bench.label(), u"Save"_s);
        QVERIFY(!bench.action()->isEnabled());
        QVERIFY(!bench.forget()->isVisible());
    }

    void itIsForgottenOnceTheConfigurationSaysSo() {
        Bench bench(true);
        use(bench.tab, bench.forget());
        QTRY_COMPARE(bench.client->held(), 1);
        QVERIFY(bench.forget()->isVisible());
        QCOMPARE(bench.label(), u"Test"_s);
        bench.client->releaseFailing(HelperError::engineError(u"x"_s, u"The keyring is locked."_s));
        QTRY_COMPARE(bench.shown("proxyFailure"), u"The keyring is locked."_s);
        QVERIFY(bench.forget()->isVisible());
    }

    void whoForgetsByKeyboardGoesOnInTheField() {
        Bench bench(true);
        bench.client->reply(Method::disconnectAccount, "{}");
        bench.replyConfig(TabBench::config(false, false, false));
        use(bench.tab, bench.forget(), Hand::space);
        QTRY_VERIFY(bench.field()->hasActiveFocus());
    }

    void whatIsTypedIsMaskedUntilItIsAskedToShow() {
        Bench bench(false);
        bench.type(address);
        QVERIFY(!bench.field()->property("displayText").toString().contains(u"https"_s));
        QVERIFY(FormBench::state(bench.field()).passwordEdit);
        QQuickItem *const reveal = bench.tab.item("reveal");
        QCOMPARE(spoken(reveal), u"Show Subscription URL"_s);
        QVERIFY(press(reveal));
        QCOMPARE(bench.field()->property("displayText").toString(), address);
        QCOMPARE(spoken(reveal), u"Hide Subscription URL"_s);
        QCOMPARE(bench.entered(), address);
    }

    void theKeyboardGoesFromTheFieldToTheButtons() {
        Bench bench(true);
        for (const QQuickItem *item : {bench.field(), bench.action(), bench.forget()}) {
            bench.tab.key(Qt::Key_Tab);
            QCOMPARE(bench.tab.window.activeFocusItem(), item);
        }
    }

    void aScreenReaderFindsTheFormInOrder() {
        Bench bench(true);
        bench.test(badInWords);
        QCOMPARE(FormBench::names(&bench.tab.window),
                 (QStringList{u"Vantrix VPN"_s, u"Vantrix VPN"_s, u"Subscription URL"_s, u"Test"_s, u"Failed"_s,
                              u"Forget"_s, u"No route."_s, bench.logic.footer()}));
        QCOMPARE(FormBench::role(bench.field()), QAccessible::EditableText);
        QCOMPARE(FormBench::role(bench.action()), QAccessible::Button);
        QCOMPARE(FormBench::role(bench.forget()), QAccessible::Button);
        QCOMPARE(FormBench::role(bench.tab.item("testResult")), QAccessible::StaticText);
    }

    void withoutAnEngineSavingClearsTheFieldAndTestingShowsNothing() {
        AppModel model(AppModel::Launcher(), surroundings());
        ProxyLogic logic(model);
        logic.setSubscription(address);
        logic.act();
        QTRY_COMPARE(logic.subscription(), QString());
        logic.runTest();
        settle();
        QVERIFY(!logic.showsTesting());
        QCOMPARE(logic.outcomeText(), QString());
        QCOMPARE(logic.detail(), QString());
    }

    void aTabThatIsClosedLetsTheSaveGoOn() {
        TabBench bench;
        auto logic = std::make_unique<ProxyLogic>(bench.model);
        logic->setSubscription(address);
        logic->act();
        logic.reset();
        QTRY_COMPARE(bench.client->sent(), std::vector{storing(address)});
    }
};

QTEST_MAIN(ProxySettingsTest)
#include "tst_proxysettings.moc"
