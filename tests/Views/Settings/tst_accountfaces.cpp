#include "Views/Settings/AccountFace.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class AccountFacesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anAccountSaysThatItIsConnectedOrNothing() {
        const AccountFace connected = accountFace(true);
        QCOMPARE(connected.state, u"Connected"_s);
        QCOMPARE(connected.symbol, Tokens::Status::symbol(StatusRole::done));
        QCOMPARE(connected.ink, Tokens::Status::color(StatusRole::done));
        QCOMPARE(connected.action, u"Disconnect"_s);
        QVERIFY(connected.destructive);

        const AccountFace unconnected = accountFace(false);
        QCOMPARE(unconnected.state, QString());
        QCOMPARE(unconnected.action, u"Connect"_s);
        QVERIFY(!unconnected.destructive);
    }

    void theLocalLibraryIsToldByItsConsent_data() {
        QTest::addColumn<ConsentStatus>("status");
        QTest::addColumn<QString>("state");
        QTest::addColumn<StatusRole>("role");
        QTest::addColumn<QString>("action");
        using enum ConsentStatus;
        QTest::newRow("authorized") << authorized << u"Enabled"_s << StatusRole::done << QString();
        QTest::newRow("undetermined") << undetermined << u"Not enabled"_s << StatusRole::review << u"Grant Access"_s;
        QTest::newRow("denied") << denied << u"Denied"_s << StatusRole::failed << u"Open Settings…"_s;
    }
    void theLocalLibraryIsToldByItsConsent() {
        QFETCH(ConsentStatus, status);
        QFETCH(StatusRole, role);
        const AccountFace face = localFace(status);
        QTEST(face.state, "state");
        QCOMPARE(face.symbol, Tokens::Status::symbol(role));
        QCOMPARE(face.ink, Tokens::Status::color(role));
        QTEST(face.action, "action");
        QVERIFY(!face.destructive);
    }
};

QTEST_GUILESS_MAIN(AccountFacesTest)
#include "tst_accountfaces.moc"
