#include "Platform/DesktopNotifier.h"

#include "Platform/ActivationToken.h"
#include "Platform/DesktopEntry.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");
const QString pick = QStringLiteral("default"); // the action that a click on the message itself stands for

QDBusMessage callTo(const QString &method) {
    return QDBusMessage::createMethodCall(service, objectPath, service, method);
}

/// Asks whichever service answers to the desktop's common name for them.
class NotificationService final : public DesktopNotifier {
    Q_OBJECT

public:
    explicit NotificationService(QDBusConnection bus) : _bus(std::move(bus)) {
        if (!_bus.isConnected())
            return;
        _bus.connect(service, objectPath, service, u"ActionInvoked"_s, this, SLOT(actionInvoked(uint, QString)));
        _bus.connect(service, objectPath, service, u"ActivationToken"_s, this, SLOT(activationToken(uint, QString)));
    }

    void notify(const QString &summary, const QString &body) override {
        if (!_bus.isConnected()) // the watcher of such a call would never tell
            return;
        auto call = callTo(u"Notify"_s);
        call << u"zelk"_s << _shown << desktopEntryName() << summary << body.toHtmlEscaped()
             << QStringList{pick, QCoreApplication::translate("zelk", "Show zelk")}
             << QVariantMap{{u"desktop-entry"_s, desktopEntryName()}} << -1;
        auto *const reply = new QDBusPendingCallWatcher(_bus.asyncCall(call), this);
        connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, turn = ++_turn] {
            reply->deleteLater();
            const QDBusPendingReply<uint> answer = *reply;
            if (answer.isError())
                return;
            _shown = answer.value();
            if (turn != _turn)
                close();
        });
    }

    void withdraw() override {
        ++_turn; // what is still under way isn't wanted any more
        close();
    }

private Q_SLOTS:
    void actionInvoked(uint id, const QString &action) {
        if (id != _shown || action != pick)
            return;
        _shown = 0; // it goes by being picked
        const ActivationToken token(std::exchange(_token, {}));
        Q_EMIT activated();
    }

    /// Comes before the action.
    void activationToken(uint id, const QString &token) {
        if (id == _shown)
            _token = token;
    }

private:
    void close() {
        if (_shown == 0)
            return;
        auto call = callTo(u"CloseNotification"_s);
        call << std::exchange(_shown, 0);
        _bus.send(call);
    }

    QDBusConnection _bus;
    uint _shown = 0; // as the service names it; 0 is none
    QString _token;
    int _turn = 0;
};

} // namespace

std::unique_ptr<DesktopNotifier> DesktopNotifier::ofSession() {
    return on(QDBusConnection::sessionBus());
}

std::unique_ptr<DesktopNotifier> DesktopNotifier::on(const QDBusConnection &bus) {
    return std::make_unique<NotificationService>(bus);
}

} // namespace zelk

#include "DesktopNotifier_linux.moc"
