#include "App/OneWindow.h"
#include "Support/LogCapture.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Claim = SingleInstance::Claim;

namespace {

/// A place of which it is known beforehand who has it.
class GivenInstance final : public SingleInstance {
public:
    explicit GivenInstance(Claim answer) : _answer(answer) {}

    Claim claim(const QString &activationToken) override {
        tokens.append(activationToken);
        return _answer;
    }

    QStringList tokens;

private:
    const Claim _answer;
};

} // namespace

class TestOneWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyAnAnswerEndsAStart_data() {
        QTest::addColumn<Claim>("claim");
        QTest::addColumn<bool>("goesOn");
        QTest::newRow("the first") << Claim::first << true;
        QTest::newRow("another has come to the front") << Claim::answered << false;
        QTest::newRow("another says nothing") << Claim::unanswered << true;
        QTest::newRow("no bus") << Claim::none << true;
    }
    void onlyAnAnswerEndsAStart() {
        QFETCH(Claim, claim);
        QFETCH(bool, goesOn);
        GivenInstance instance(claim);
        QCOMPARE(OneWindow::goesOn(instance, u"token"_s), goesOn);
        QCOMPARE(instance.tokens, QStringList{u"token"_s}); // asked once, with what may bring that one forward
    }

    void aWindowThatSaysNothingIsToldOf() {
        const LogCapture log;
        GivenInstance instance(Claim::unanswered);
        QVERIFY(OneWindow::goesOn(instance, {}));
        QCOMPARE(log.messages(u"app"_s).size(), 1);
    }

    void eachCallBringsTheWindowToTheFrontWithItsToken() {
        GivenInstance instance(Claim::first);
        QList<QByteArray> seen;
        OneWindow::answer(instance, [&seen] { seen.append(qgetenv("XDG_ACTIVATION_TOKEN")); });
        Q_EMIT instance.calledToFront(u"first"_s);
        Q_EMIT instance.calledToFront(u"second"_s);
        QCOMPARE(seen, (QList<QByteArray>{"first", "second"}));
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN")); // or the engine's next start would inherit it
    }

    void aCallWithoutATokenSetsNone() {
        GivenInstance instance(Claim::first);
        int calls = 0;
        OneWindow::answer(instance, [&calls] { ++calls; });
        Q_EMIT instance.calledToFront({});
        QCOMPARE(calls, 1);
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    }
};

QTEST_GUILESS_MAIN(TestOneWindow)
#include "tst_onewindow.moc"
