#include "Platform/DesktopNotifier.h"
#include "Platform/PrivateBus.h"
#include "Support/Settle.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString serviceName = u"org.freedesktop.Notifications"_s;
const QString servicePath = u"/org/freedesktop/Notifications"_s;

} // namespace

/// What answers for the desktop's messages.
class Service : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    explicit Service(QDBusConnection bus) : _bus(std::move(bus)) {
        _bus.registerObject(servicePath, this, QDBusConnection::ExportAllSlots);
        _bus.registerService(serviceName);
    }
    ~Service() override {
        _bus.unregisterService(serviceName);
        _bus.unregisterObject(servicePath);
    }

    /// The user picks an action of a message, on a desktop that has a token for the window.
    void pick(uint id, const QString &action, const QString &token) {
        say(u"ActivationToken"_s, {id, token});
        say(u"ActionInvoked"_s, {id, action});
    }
    void say(const QString &signal, const QVariantList &arguments) {
        auto message = QDBusMessage::createSignal(servicePath, serviceName, signal);
        message.setArguments(arguments);
        _bus.send(message);
    }
    void answer() { _bus.send(open.takeFirst().createReply(++last)); }

    struct Message {
        QString application;
        uint replaces;
        QString icon;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int timeout;
    };
    QList<Message> shown;
    QList<uint> closed;
    QList<QDBusMessage> open;
    uint last = 40;
    bool refuses = false;
    bool isSlow = false;

public Q_SLOTS:
    uint Notify(const QString &application, uint replaces, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int timeout) {
        shown.append({application, replaces, icon, summary, body, actions, hints, timeout});
        if (refuses)
            sendErrorReply(QDBusError::Failed, u"no"_s);
        if (isSlow) {
            setDelayedReply(true);
            open.append(message());
        }
        return refuses || isSlow ? 0 : replaces ? replaces : ++last;
    }
    void CloseNotification(uint id) { closed.append(id); }

private:
    QDBusConnection _bus;
};

/// Over a bus of its own, on which the service and who asks it have a connection each.
class TestDesktopNotifier : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    std::unique_ptr<Service> _service;
    std::unique_ptr<DesktopNotifier> _notifier;

    void show() {
        _notifier->notify(u"Complete"_s, u"2 done"_s);
        QTRY_COMPARE(_service->shown.size(), 1);
        // Its answer comes before that to what is asked now.
        auto ping = QDBusMessage::createMethodCall(serviceName, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
        _bus.connection(u"asker"_s).call(ping, QDBus::BlockWithGui);
        settle();
    }

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() { _bus.stop(); }
    void init() {
        _service = std::make_unique<Service>(_bus.connection(u"service"_s));
        _notifier = DesktopNotifier::on(_bus.connection(u"asker"_s));
    }
    void cleanup() {
        _notifier.reset();
        _service.reset();
        for (const auto &name : {u"service"_s, u"asker"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void aMessageSaysWhoseItIs() {
        _notifier->notify(u"Complete"_s, u"2 done · 1 failed"_s);
        QVERIFY(_service->shown.isEmpty()); // nobody has waited for it
        QTRY_COMPARE(_service->shown.size(), 1);
        const auto &message = _service->shown.constFirst();
        QCOMPARE(message.application, u"zelk"_s);
        QCOMPARE(message.replaces, 0U);
        QCOMPARE(message.icon, u"org.orrim.zelk"_s);
        QCOMPARE(message.summary, u"Complete"_s);
        QCOMPARE(message.body, u"2 done · 1 failed"_s);
        QCOMPARE(message.actions.value(0), u"default"_s);
        QCOMPARE(message.actions.size(), 2);
        QCOMPARE(message.hints.value(u"desktop-entry"_s).toString(), u"org.orrim.zelk"_s);
        QCOMPARE(message.timeout, -1);
    }

    void theTextIsNoMarkup() {
        _notifier->notify(u"A & B"_s, u"<b>1</b> & 2"_s);
        QTRY_COMPARE(_service->shown.size(), 1);
        QCOMPARE(_service->shown.constFirst().summary, u"A & B"_s); // which is never markup
        QCOMPARE(_service->shown.constFirst().body, u"&lt;b&gt;1&lt;/b&gt; &amp; 2"_s);
    }

    void pickingTheMessageActivates() {
        QList<QByteArray> tokens;
        connect(_notifier.get(), &DesktopNotifier::activated,
                [&tokens] { tokens.append(qgetenv("XDG_ACTIVATION_TOKEN")); });
        show();
        _service->pick(_service->last, u"default"_s, u"token-1"_s);
        QTRY_COMPARE(tokens, QList<QByteArray>{"token-1"});
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    }

    void whatIsPickedElsewhereDoesNothing() {
        QList<QByteArray> tokens;
        connect(_notifier.get(), &DesktopNotifier::activated,
                [&tokens] { tokens.append(qgetenv("XDG_ACTIVATION_TOKEN")); });
        show();
        _service->pick(_service->last + 1, u"default"_s, u"another's"_s);
        _service->say(u"ActionInvoked"_s, {_service->last, u"other"_s});
        _service->pick(_service->last, u"default"_s, u"ours"_s);
        QTRY_COMPARE(tokens, QList<QByteArray>{"ours"});
    }

    void aNewMessageTakesTheOldOnesPlace() {
        show();
        _notifier->notify(u"Interrupted"_s, u"1 / 2 done"_s);
        QTRY_COMPARE(_service->shown.size(), 2);
        QCOMPARE(_service->shown.constLast().replaces, _service->last);
    }

    void aMessageCanBeTakenAwayOnce() {
        show();
        _notifier->withdraw();
        _notifier->withdraw();
        _notifier->notify(u"Complete"_s, {});
        QTRY_COMPARE(_service->shown.size(), 2); // what was asked before has come before
        QCOMPARE(_service->closed, QList<uint>{_service->last - 1});
        QCOMPARE(_service->shown.constLast().replaces, 0U);
    }

    void aMessageThatIsStillToBeShownCanBeTakenAway() {
        _service->isSlow = true;
        _notifier->notify(u"Complete"_s, {});
        QTRY_COMPARE(_service->open.size(), 1);
        _notifier->withdraw();
        _service->answer();
        QTRY_COMPARE(_service->closed, QList<uint>{_service->last});
    }

    void aServiceThatRefusesOrGoesIsNoMatter() {
        _service->refuses = true;
        _notifier->notify(u"Complete"_s, {});
        QTRY_COMPARE(_service->shown.size(), 1);
        _notifier->notify(u"Complete"_s, {});
        QTRY_COMPARE(_service->shown.size(), 2);
        QCOMPARE(_service->shown.constLast().replaces, 0U);
        _service.reset();
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        _notifier->notify(u"Complete"_s, {});
        _notifier->withdraw();
        settle();
    }

    void withoutABusNothingHappens() {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        const auto session = DesktopNotifier::ofSession();
        const auto none = DesktopNotifier::on(QDBusConnection(u"no such bus"_s));
        for (DesktopNotifier *each : {session.get(), none.get()}) {
            each->notify(u"Complete"_s, {});
            each->withdraw();
        }
        settle();
    }
};

QTEST_GUILESS_MAIN(TestDesktopNotifier)
#include "tst_desktopnotifier.moc"
