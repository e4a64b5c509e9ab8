#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QVariantMap>

namespace zelk {

/// What `com.canonical.dbusmenu` sends and takes. `registerDBusMenuTypes` comes before the first use.

/// An item and what it holds, each a `DBusMenuLayout` too.
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

struct DBusMenuPropertyNames {
    int id = 0;
    QStringList names;
};

struct DBusMenuEvent {
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint time = 0;
};

/// Presses one after another; each is the names of its modifiers and then of its key.
using DBusMenuShortcut = QList<QStringList>;

QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuLayout &from);
const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuLayout &to);
QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuProperties &from);
const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuProperties &to);
QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuPropertyNames &from);
const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuPropertyNames &to);
QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuEvent &from);
const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuEvent &to);

void registerDBusMenuTypes();

} // namespace zelk
