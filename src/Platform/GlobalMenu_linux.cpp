#include "Platform/GlobalMenu.h"

#include "Platform/DBusMenu_linux.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QGuiApplication>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const QString service = QStringLiteral("com.canonical.AppMenu.Registrar");
const QString objectPath = QStringLiteral("/com/canonical/AppMenu/Registrar");
const QString menuPath = QStringLiteral("/org/orrim/zelk/menu");

QDBusMessage callTo(const QString &method) {
    auto call = QDBusMessage::createMethodCall(service, objectPath, service, method);
    // A registrar that has to be started first has no bar: whoever shows one runs it.
    call.setAutoStartService(false);
    return call;
}

/// Tells the registrar, which leads the bars to the menu of the window that is in front.
class RegisteredMenu final : public GlobalMenu {
    Q_OBJECT

public:
    explicit RegisteredMenu(const QDBusConnection &bus)
        : _bus(bus), _registrar(service, bus, QDBusServiceWatcher::WatchForOwnerChange) {
        connect(&_registrar, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString &, const QString &, const QString &owner) {
                    setTaken(false);
                    ++_turn;
                    if (!owner.isEmpty())
                        tellRegistrar();
                });
        // Nobody tells what goes with the bus itself.
        _bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                     SLOT(withdraw()));
    }
    ~RegisteredMenu() override { leave(); }
    Q_DISABLE_COPY_MOVE(RegisteredMenu)

    void offer(WId window, const QList<MenuItem> &menus) override {
        withdraw();
        _menu.setMenus(menus);
        if (!_bus.isConnected() ||
            !_bus.registerObject(menuPath, &_menu,
                                 QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                     QDBusConnection::ExportAllProperties))
            return;
        _window = static_cast<uint>(window); // what X11 gives its windows has 32 bits
        tellRegistrar();
    }

    void update(const QList<MenuItem> &menus) override { _menu.setMenus(menus); }

    bool isTaken() const override { return _taken; }

public Q_SLOTS:
    void withdraw() override {
        leave();
        setTaken(false);
    }

private:
    void tellRegistrar() {
        if (_window == 0)
            return;
        auto call = callTo(u"RegisterWindow"_s);
        call << _window << QDBusObjectPath(menuPath);
        auto *const reply = new QDBusPendingCallWatcher(_bus.asyncCall(call), this);
        connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, turn = ++_turn] {
            reply->deleteLater();
            if (turn == _turn)
                setTaken(!reply->isError());
        });
    }

    void leave() {
        ++_turn; // an answer to what was asked doesn't count any more
        if (_window == 0)
            return;
        auto call = callTo(u"UnregisterWindow"_s);
        call << std::exchange(_window, 0);
        _bus.send(call);
        _bus.unregisterObject(menuPath);
    }

    void setTaken(bool taken) {
        if (std::exchange(_taken, taken) != taken)
            Q_EMIT takenChanged();
    }

    QDBusConnection _bus;
    QDBusServiceWatcher _registrar;
    DBusMenu _menu;
    uint _window = 0; // 0 is none
    int _turn = 0;
    bool _taken = false;
};

} // namespace

std::unique_ptr<GlobalMenu> GlobalMenu::ofSession() {
    return on(QGuiApplication::platformName() == u"xcb" ? QDBusConnection::sessionBus() : QDBusConnection(QString()));
}

std::unique_ptr<GlobalMenu> GlobalMenu::on(const QDBusConnection &bus) {
    return std::make_unique<RegisteredMenu>(bus);
}

} // namespace zelk

#include "GlobalMenu_linux.moc"
