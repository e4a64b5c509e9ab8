#include "Onboarding/SetupWindow.h"
#include "Views/Settings/AccountsLogic.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// The setup on its screen of accounts, and the settings' tab of them over the same model.
struct Bench : SetupWindow {
    Bench() { openAt(Screen::connectMusic); }

    AccountLogic *inSettings(bool apple) { return apple ? settings.appleMusic() : settings.spotify(); }
    QQuickItem *inSetup(bool apple, const char *name) const {
        return part(apple ? "appleMusicLine" : "spotifyLine", name);
    }
    // How often the user has been asked to sign in.
    int asked(bool apple) const { return apple ? authorization->requests : engine->sentCount(Method::connectSpotify); }
    void refuseBoth() {
        engine->reply(Method::getConfig, wrapped(bare()));
        if (authorization->open.empty())
            engine->releaseFailing(HelperError::helperUnavailable());
        authorization->refuse();
    }

    AccountsLogic settings{model};
};

void addAccounts() {
    QTest::addColumn<bool>("appleMusic");
    QTest::newRow("Apple Music") << true;
    QTest::newRow("Spotify") << false;
}

} // namespace

class SignInsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { settleDown(); }

    void theSettingsWaitForASignInOfTheSetup_data() { addAccounts(); }
    void theSettingsWaitForASignInOfTheSetup() {
        QFETCH(bool, appleMusic);
        Bench bench;
        QVERIFY(bench.inSettings(appleMusic)->canAct());
        bench.press(bench.inSetup(appleMusic, "accountConnect"));
        QTRY_COMPARE(bench.asked(appleMusic), 1);
        QVERIFY(!bench.inSettings(appleMusic)->canAct());
        QVERIFY(bench.inSettings(!appleMusic)->canAct());
        bench.inSettings(appleMusic)->act();
        settleDown();
        QCOMPARE(bench.asked(appleMusic), 1);
        bench.refuseBoth();
        QTRY_VERIFY(bench.inSettings(appleMusic)->canAct());
        // Whoever began it tells why it failed.
        QCOMPARE(bench.inSettings(appleMusic)->failure(), QString());
    }

    void theSetupJoinsASignInOfTheSettings_data() { addAccounts(); }
    void theSetupJoinsASignInOfTheSettings() {
        QFETCH(bool, appleMusic);
        Bench bench;
        bench.inSettings(appleMusic)->act();
        QTRY_COMPARE(bench.asked(appleMusic), 1);
        bench.press(bench.inSetup(appleMusic, "accountConnect"));
        QVERIFY(bench.inSetup(appleMusic, "accountConnecting"));
        settleDown();
        QCOMPARE(bench.asked(appleMusic), 1);
        bench.refuseBoth();
        QTRY_VERIFY(bench.inSetup(appleMusic, "accountConnect"));
        QTRY_VERIFY(bench.inSettings(appleMusic)->canAct());
    }

    void oneEndsAndTheNextMayBeginWhereverThatIs() {
        Bench bench;
        bench.inSettings(true)->act();
        QTRY_COMPARE(bench.asked(true), 1);
        bench.refuseBoth();
        QTRY_VERIFY(bench.inSettings(true)->canAct());
        bench.press(bench.inSetup(true, "accountConnect"));
        QTRY_COMPARE(bench.asked(true), 2);
        bench.refuseBoth();
        QTRY_VERIFY(bench.inSettings(true)->canAct());
        bench.inSettings(true)->act();
        QTRY_COMPARE(bench.asked(true), 3);
    }

    void theLibraryOfThisMachineIsAskedForOnce() {
        Bench bench;
        bench.press("localAccessAllow");
        bench.settings.actOnLocal();
        settleDown();
        QTRY_COMPARE(bench.consent->asks.load(), 1);
        settleDown();
        QCOMPARE(bench.consent->asks.load(), 1);
        bench.settings.actOnLocal();
        QTRY_COMPARE(bench.consent->asks.load(), 2);
    }

    void aSignInGoesOnWhenBothAreGone() {
        SetupServices services;
        const auto engine = std::make_shared<ScriptedClient>();
        AppModel model(engine, surroundings());
        auto settings = std::make_unique<AccountsLogic>(model);
        settings->spotify()->act();
        QTRY_COMPARE(engine->sentCount(Method::connectSpotify), 1);
        settings = std::make_unique<AccountsLogic>(model);
        QVERIFY(!settings->spotify()->canAct());
        settings.reset();
        engine->reply(Method::getConfig, SetupWindow::wrapped(SetupWindow::bare()));
        engine->reply(Method::listPlaylists, R"({"playlists":[]})");
        engine->release("null");
        QTRY_COMPARE(engine->sentCount(Method::listPlaylists), 1);
        settings = std::make_unique<AccountsLogic>(model);
        QVERIFY(settings->spotify()->canAct());
    }
};

QTEST_MAIN(SignInsTest)
#include "tst_signins.moc"
