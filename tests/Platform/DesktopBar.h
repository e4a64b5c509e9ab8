#pragma once

#include "Platform/AppMenuRegistrar.h"
#include "Platform/DBusMenuTypes_linux.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>

#include <utility>

namespace zelk {

/// A bar that shows the menu of a window, and reads it as bars do.
class DesktopBar : public QObject {
    Q_OBJECT

public:
    struct Update {
        int id;
        QVariantMap properties;
        bool operator==(const Update &) const = default;
    };

    DesktopBar(QDBusConnection bus, AppMenuRegistrar::Menu menu) : _bus(std::move(bus)), _menu(std::move(menu)) {
        registerDBusMenuTypes();
        _bus.connect(_menu.service, _menu.path, interface, QStringLiteral("ItemsPropertiesUpdated"), this,
                     SLOT(propertiesUpdated(QList<zelk::DBusMenuProperties>, QList<zelk::DBusMenuPropertyNames>)));
        _bus.connect(_menu.service, _menu.path, interface, QStringLiteral("LayoutUpdated"), this,
                     SLOT(layoutUpdated(uint, int)));
    }

    QDBusMessage call(const QString &method, const QVariantList &arguments, const QString &of = {}) {
        auto message = QDBusMessage::createMethodCall(_menu.service, _menu.path, of.isEmpty() ? interface : of, method);
        message.setArguments(arguments);
        return _bus.call(message, QDBus::BlockWithGui);
    }
    QVariant property(const QString &name) {
        return QDBusReply<QVariant>(
                   call(QStringLiteral("Get"), {interface, name}, QStringLiteral("org.freedesktop.DBus.Properties")))
            .value();
    }
    DBusMenuLayout layout(int parent = 0, int depth = -1, const QStringList &names = {}) {
        return layoutOf(call(QStringLiteral("GetLayout"), {parent, depth, names}).arguments().value(1));
    }
    void send(int id, const QString &kind = QStringLiteral("clicked")) {
        call(QStringLiteral("Event"), {id, kind, QVariant::fromValue(QDBusVariant(0)), 0U});
    }

    static DBusMenuLayout layoutOf(const QVariant &argument) { return qdbus_cast<DBusMenuLayout>(argument); }
    static DBusMenuLayout child(const DBusMenuLayout &parent, qsizetype place) {
        return layoutOf(parent.children.value(place).variant());
    }
    /// The id of the entry of that label; -1 without one.
    static int find(const DBusMenuLayout &within, const QString &label) {
        if (within.properties.value(QStringLiteral("label")) == label)
            return within.id;
        for (qsizetype i = 0; i < within.children.size(); ++i) {
            if (const int found = find(child(within, i), label); found >= 0)
                return found;
        }
        return -1;
    }
    /// A line for each item, indented by its depth: its label, its keys in brackets, "off" for a disabled one.
    static QStringList lines(const DBusMenuLayout &layout, int depth = 0) {
        QStringList all;
        for (qsizetype i = 0; i < layout.children.size(); ++i) {
            const DBusMenuLayout item = child(layout, i);
            QString line(2 * depth, u' ');
            if (item.properties.value(QStringLiteral("type")) == QStringLiteral("separator"))
                line += u'-';
            line += item.properties.value(QStringLiteral("label")).toString();
            const auto shortcut = qdbus_cast<DBusMenuShortcut>(item.properties.value(QStringLiteral("shortcut")));
            for (const auto &press : shortcut)
                line += QStringLiteral(" [%1]").arg(press.join(u' '));
            if (!item.properties.value(QStringLiteral("enabled"), true).toBool())
                line += QStringLiteral(" off");
            all += line;
            all += lines(item, depth + 1);
        }
        return all;
    }

    QList<Update> updates;
    QList<std::pair<int, QStringList>> removals; // what is as it is by default again
    QList<uint> revisions;

private Q_SLOTS:
    void propertiesUpdated(const QList<zelk::DBusMenuProperties> &updated,
                           const QList<zelk::DBusMenuPropertyNames> &removed) {
        for (const auto &each : updated)
            updates.append({each.id, each.properties});
        for (const auto &each : removed)
            removals.append({each.id, each.names});
    }
    void layoutUpdated(uint revision, int /*parent*/) { revisions.append(revision); }

private:
    const QString interface = QStringLiteral("com.canonical.dbusmenu");
    QDBusConnection _bus;
    const AppMenuRegistrar::Menu _menu;
};

} // namespace zelk
