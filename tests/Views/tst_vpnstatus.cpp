#include "Styling/Symbols.h"
#include "Views/VPNStatus.h"

#include <QTest>
#include <QTranslator>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Live = ProxyStatusValue;
using Feedback = VPNStatus::TestFeedback;
using Count = std::optional<qint64>;

Q_DECLARE_METATYPE(zelk::VPNStatus)

class VPNStatusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Q_INIT_RESOURCE(translations);
        Q_INIT_RESOURCE(symbols);
        QVERIFY(m_english.load(u":/zelk/i18n/zelk_en.qm"_s));
        QCoreApplication::installTranslator(&m_english);
    }

    void everyStateHasItsFace_data() {
        QTest::addColumn<VPNStatus>("status");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("icon");
        QTest::addColumn<Ink>("tint");
        const auto row = [](const char *name, const VPNStatus &status, const QString &text, const QString &label,
                            const QString &icon,
                            Ink tint) { QTest::newRow(name) << status << text << label << icon << tint; };
        const auto shield = [](const char *name) { return QString::fromLatin1(name) + u".shield"_s; };
        const auto filled = [](const char *name) { return QString::fromLatin1(name) + u".shield.fill"_s; };
        const auto on = [](Live live, const std::optional<QString> &detail = {}, Count nodes = {}) {
            return VPNStatus{.enabled = true, .proxyStatus = live, .proxyDetail = detail, .nodeCount = nodes};
        };

        row("off", {}, u"Vantrix VPN is off"_s, {}, shield("lock"), Ink::secondary);
        row("off, whatever the engine last said of it",
            {.proxyStatus = Live::connected, .proxyDetail = u"3 nodes"_s, .nodeCount = 4}, u"Vantrix VPN is off"_s, {},
            shield("lock"), Ink::secondary);
        row("on", on(Live::off), u"On"_s, u"On"_s, filled("lock"), Ink::accent);
        row("on with nodes", on(Live::off, {}, 12), u"On — 12 nodes"_s, u"12 nodes"_s, filled("lock"), Ink::accent);
        row("on with one node", on(Live::off, {}, 1), u"On — 1 node"_s, u"1 node"_s, filled("lock"), Ink::accent);
        row("on with none", on(Live::off, {}, 0), u"On — 0 nodes"_s, u"0 nodes"_s, filled("lock"), Ink::accent);
        row("connecting", on(Live::connecting), u"Connecting to Vantrix VPN…"_s, u"Testing…"_s, shield("lock"),
            Ink::yellow);
        row("connecting with nodes", on(Live::connecting, {}, 2), u"Connecting to Vantrix VPN…"_s, u"2 nodes"_s,
            shield("lock"), Ink::yellow);
        row("connected", on(Live::connected), u"Connected"_s, u"On"_s, filled("lock"), Ink::green);
        row("connected with nodes", on(Live::connected, u"3 nodes"_s, 9), u"Connected (3 nodes)"_s, u"3 nodes"_s,
            filled("lock"), Ink::green);
        row("connected, known by the subscription", on(Live::connected, {}, 9), u"Connected"_s, u"9 nodes"_s,
            filled("lock"), Ink::green);
        row("a detail without a number", on(Live::connected, u"Frankfurt 3"_s), u"Connected (Frankfurt 3)"_s, u"On"_s,
            filled("lock"), Ink::green);
        row("a detail without a number beside the subscription's", on(Live::connected, u"Frankfurt"_s, 5),
            u"Connected (Frankfurt)"_s, u"5 nodes"_s, filled("lock"), Ink::green);
        row("a detail counts only while connected", on(Live::down, u"3 nodes"_s),
            u"Disconnected — Soulseek is paused"_s, u"On"_s, filled("exclamationmark"), Ink::red);
        row("error", on(Live::error, {}, 2), u"Connection error — Soulseek is paused"_s, u"2 nodes"_s,
            filled("exclamationmark"), Ink::red);

        row("testing", {.enabled = true, .testing = true}, u"Testing connection…"_s, u"Testing…"_s, shield("lock"),
            Ink::yellow);
        row("testing with nodes",
            {.enabled = true, .testing = true, .proxyStatus = Live::connected, .proxyDetail = u"3 nodes"_s},
            u"Testing connection…"_s, u"3 nodes"_s, shield("lock"), Ink::yellow);
        row("testing while off", {.testing = true}, u"Testing connection…"_s, {}, shield("lock"), Ink::yellow);

        VPNStatus passed = on(Live::down);
        passed.feedback = Feedback::success;
        row("passed goes before the live state", passed, u"Connection test passed"_s, u"On"_s, filled("checkmark"),
            Ink::green);
        passed.nodeCount = 1;
        row("passed with a node", passed, u"Connection test passed — 1 node"_s, u"1 node"_s, filled("checkmark"),
            Ink::green);
        passed.enabled = false;
        row("passed, then turned off", passed, u"Connection test passed — 1 node"_s, {}, filled("checkmark"),
            Ink::green);
        VPNStatus failed = on(Live::connected, u"3 nodes"_s);
        failed.feedback = Feedback::failure;
        row("failed goes before the live state", failed, u"Connection test failed"_s, u"Failed"_s, filled("xmark"),
            Ink::red);
        failed.enabled = false;
        row("failed, then turned off", failed, u"Connection test failed"_s, u"Failed"_s, filled("xmark"), Ink::red);
    }
    void everyStateHasItsFace() {
        QFETCH(VPNStatus, status);
        QTEST(status.statusText(), "text");
        QTEST(status.labelText().value_or(QString()), "label");
        QTEST(status.icon(), "icon");
        QTEST(status.tint(), "tint");
        QVERIFY(Symbols::contains(status.icon()));
    }

    void theLiveStateIsConnectingWhileATestRuns() {
        for (const Live live : {Live::off, Live::connecting, Live::connected, Live::down, Live::error}) {
            QCOMPARE((VPNStatus{.enabled = true, .proxyStatus = live}.liveStatus()), live);
            QCOMPARE((VPNStatus{.enabled = false, .proxyStatus = live}.liveStatus()), Live::off);
            QCOMPARE((VPNStatus{.enabled = true, .testing = true, .proxyStatus = live}.liveStatus()), Live::connecting);
            QCOMPARE((VPNStatus{.testing = true, .proxyStatus = live}.liveStatus()), Live::connecting);
        }
    }

    void theCountIsTheNumberThatADetailBeginsWith_data() {
        QTest::addColumn<QString>("detail");
        QTest::addColumn<Count>("count");
        QTest::newRow("nodes") << u"3 nodes"_s << Count(3);
        QTest::newRow("bare") << u"17"_s << Count(17);
        QTest::newRow("run together") << u"4nodes"_s << Count(4);
        QTest::newRow("leading zeros") << u"007"_s << Count(7);
        QTest::newRow("large") << u"99999999999 nodes"_s << Count(99999999999);
        QTest::newRow("empty") << u""_s << Count();
        QTest::newRow("a word first") << u"via 3 nodes"_s << Count();
        QTest::newRow("a space first") << u" 3"_s << Count();
        QTest::newRow("a sign first") << u"-3"_s << Count();
        QTest::newRow("numeric but no decimal") << u"3½ nodes"_s << Count();
        QTest::newRow("digits of another script") << u"٣ nodes"_s << Count();
        QTest::newRow("digits beyond the first plane") << u"3𝟜 nodes"_s << Count();
        QTest::newRow("too large") << u"99999999999999999999"_s << Count();
    }
    void theCountIsTheNumberThatADetailBeginsWith() {
        QFETCH(QString, detail);
        QTEST(leadingCount(detail), "count");
    }

    void aCountBeyondAnIntIsShownAsItIs() {
        QCOMPARE((VPNStatus{.enabled = true, .nodeCount = 99999999999}.labelText()), u"99999999999 nodes"_s);
    }

private:
    QTranslator m_english;
};

QTEST_MAIN(VPNStatusTest)
#include "tst_vpnstatus.moc"
