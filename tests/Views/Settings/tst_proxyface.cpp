#include "Views/Settings/ProxyFace.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Action = ProxyFace::Action;
using Result = std::optional<SettingsStore::ProxyTest>;
Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Result)

class ProxyFaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void blanksAndTabsAreNoInputAndNothingElseIs_data() {
        QTest::addColumn<QString>("subscription");
        QTest::addColumn<bool>("hasInput");
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("blanks") << u"   "_s << false;
        QTest::newRow("blanks and tabs") << u" \t \t"_s << false;
        QTest::newRow("a letter") << u"h"_s << true;
        QTest::newRow("a letter among blanks") << u"  h\t"_s << true;
        QTest::newRow("the end of a line") << u"\n"_s << true;
    }
    void blanksAndTabsAreNoInputAndNothingElseIs() {
        QFETCH(QString, subscription);
        QTEST(ProxyFace{.subscription = subscription}.hasInput(), "hasInput");
    }

    void theButtonGoesByWhatIsEnteredAndWhatIsStored_data() {
        QTest::addColumn<QString>("subscription");
        QTest::addColumn<bool>("configured");
        QTest::addColumn<Action>("action");
        QTest::addColumn<QString>("text");
        QTest::newRow("entered, stored") << u"x"_s << true << Action::save << u"Save"_s;
        QTest::newRow("entered, none stored") << u"x"_s << false << Action::save << u"Save"_s;
        QTest::newRow("nothing entered, stored") << QString() << true << Action::test << u"Test"_s;
        QTest::newRow("nothing entered, none stored") << QString() << false << Action::nothingToSave << u"Save"_s;
        QTest::newRow("blanks, stored") << u" \t"_s << true << Action::test << u"Test"_s;
        QTest::newRow("blanks, none stored") << u" \t"_s << false << Action::nothingToSave << u"Save"_s;
    }
    void theButtonGoesByWhatIsEnteredAndWhatIsStored() {
        QFETCH(QString, subscription);
        QFETCH(bool, configured);
        const ProxyFace face{.subscription = subscription, .configured = configured};
        QTEST(face.action(), "action");
        QTEST(face.actionText(), "text");
    }

    void aTestIsToldUntilSomethingIsEntered_data() {
        QTest::addColumn<QString>("subscription");
        QTest::addColumn<Result>("result");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<Ink>("ink");
        const Result good{{true, std::nullopt}};
        const Result bad{{false, u"No route."_s}};
        QTest::newRow("none") << QString() << Result() << QString() << QString() << Ink::secondary;
        QTest::newRow("good") << QString() << good << u"Connected"_s << u"checkmark.circle.fill"_s << Ink::green;
        QTest::newRow("bad") << QString() << bad << u"Failed"_s << u"xmark.octagon.fill"_s << Ink::red;
        QTest::newRow("good, blanks") << u"  "_s << good << u"Connected"_s << u"checkmark.circle.fill"_s << Ink::green;
        QTest::newRow("good, entered") << u"x"_s << good << QString() << QString() << Ink::secondary;
        QTest::newRow("bad, entered") << u"x"_s << bad << QString() << QString() << Ink::secondary;
    }
    void aTestIsToldUntilSomethingIsEntered() {
        QFETCH(QString, subscription);
        QFETCH(Result, result);
        QFETCH(QString, text);
        const auto outcome = ProxyFace{.subscription = subscription, .testResult = result}.outcome();
        QCOMPARE(outcome.has_value(), !text.isEmpty());
        const auto shown = outcome.value_or(ProxyFace::Outcome());
        QCOMPARE(shown.text, text);
        QTEST(shown.symbol, "symbol");
        QTEST(shown.ink, "ink");
    }

    void theDetailStandsAsLongAsTheResult_data() {
        QTest::addColumn<Result>("result");
        QTest::addColumn<QString>("detail");
        QTest::newRow("no test") << Result() << QString();
        QTest::newRow("none given") << Result{{false, std::nullopt}} << QString();
        QTest::newRow("an empty one") << Result{{true, QString()}} << QString();
        QTest::newRow("good") << Result{{true, u"3 nodes"_s}} << u"3 nodes"_s;
        QTest::newRow("bad") << Result{{false, u"No route."_s}} << u"No route."_s;
    }
    void theDetailStandsAsLongAsTheResult() {
        QFETCH(Result, result);
        QTEST(ProxyFace{.testResult = result}.detail(), "detail");
        const ProxyFace entering{.subscription = u"x"_s, .testResult = result};
        QTEST(entering.detail(), "detail");
    }

    void theFooterSaysWhetherOneIsStored() {
        QCOMPARE(ProxyFace{.configured = true}.footer(),
                 u"A subscription URL is stored in your Keychain. Paste a new one to replace it. Turn routing on or "
                 "off from the VPN button in the toolbar. Soulseek is hard-stopped if the tunnel drops, so your IP is "
                 "never exposed to peers."_s);
        QCOMPARE(ProxyFace{.configured = false}.footer(),
                 u"Paste your VPN subscription URL. Stored securely in your Keychain. Turn routing on or off from the "
                 "VPN button in the toolbar. Soulseek is hard-stopped if the tunnel drops, so your IP is never exposed "
                 "to peers."_s);
    }
};

QTEST_GUILESS_MAIN(ProxyFaceTest)
#include "tst_proxyface.moc"
