#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QMap>
#include <QObject>

#include <utility>

namespace zelk {

/// What keeps the menus of a desktop's windows, on a bus of a test's own. It is there from its making to its end.
class AppMenuRegistrar : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.AppMenu.Registrar")

public:
    explicit AppMenuRegistrar(QDBusConnection bus) : _bus(std::move(bus)) {
        _bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
        _bus.registerService(name);
    }
    ~AppMenuRegistrar() override {
        _bus.unregisterService(name);
        _bus.unregisterObject(path);
    }
    Q_DISABLE_COPY_MOVE(AppMenuRegistrar)

    void answer() { _bus.send(open.takeFirst().createReply()); }

    struct Menu {
        QString service;
        QString path;
    };
    QMap<uint, Menu> menus; // by the window's id
    int registrations = 0;
    QList<QDBusMessage> open;
    bool refuses = false;
    bool isSlow = false;

public Q_SLOTS:
    void RegisterWindow(uint window, const QDBusObjectPath &menu) {
        ++registrations;
        if (refuses) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("no"));
            return;
        }
        if (isSlow) {
            setDelayedReply(true);
            open.append(message());
        }
        menus.insert(window, {message().service(), menu.path()});
    }
    void UnregisterWindow(uint window) { menus.remove(window); }

private:
    const QString name = QStringLiteral("com.canonical.AppMenu.Registrar");
    const QString path = QStringLiteral("/com/canonical/AppMenu/Registrar");
    QDBusConnection _bus;
};

} // namespace zelk
