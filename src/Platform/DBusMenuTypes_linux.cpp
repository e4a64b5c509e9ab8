#include "Platform/DBusMenuTypes_linux.h"

#include <QDBusMetaType>

namespace zelk {

namespace {

template<typename... Fields>
void write(QDBusArgument &to, const Fields &...fields) {
    to.beginStructure();
    (to << ... << fields);
    to.endStructure();
}

template<typename... Fields>
void read(const QDBusArgument &from, Fields &...fields) {
    from.beginStructure();
    (from >> ... >> fields);
    from.endStructure();
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuLayout &from) {
    write(to, from.id, from.properties, from.children);
    return to;
}

const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuLayout &to) {
    read(from, to.id, to.properties, to.children);
    return from;
}

QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuProperties &from) {
    write(to, from.id, from.properties);
    return to;
}

const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuProperties &to) {
    read(from, to.id, to.properties);
    return from;
}

QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuPropertyNames &from) {
    write(to, from.id, from.names);
    return to;
}

const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuPropertyNames &to) {
    read(from, to.id, to.names);
    return from;
}

QDBusArgument &operator<<(QDBusArgument &to, const DBusMenuEvent &from) {
    write(to, from.id, from.kind, from.data, from.time);
    return to;
}

const QDBusArgument &operator>>(const QDBusArgument &from, DBusMenuEvent &to) {
    read(from, to.id, to.kind, to.data, to.time);
    return from;
}

void registerDBusMenuTypes() {
    qDBusRegisterMetaType<DBusMenuLayout>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<QList<DBusMenuProperties>>();
    qDBusRegisterMetaType<DBusMenuPropertyNames>();
    qDBusRegisterMetaType<QList<DBusMenuPropertyNames>>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
    qDBusRegisterMetaType<DBusMenuShortcut>();
}

} // namespace zelk
