#include "Platform/DBusMenu_linux.h"

#include <QDBusError>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const QVariantMap &defaults() {
    static const QVariantMap values{{u"type"_s, u"standard"_s},
                                    {u"label"_s, QString()},
                                    {u"enabled"_s, true},
                                    {u"visible"_s, true},
                                    {u"children-display"_s, QString()},
                                    {u"shortcut"_s, QVariant::fromValue(DBusMenuShortcut())}};
    return values;
}

/// Marks the mnemonic with an underscore instead of an "&".
QString labelOf(const QString &title) {
    QString label;
    for (qsizetype i = 0; i < title.size(); ++i) {
        const QChar at = title.at(i);
        if (at == u'_')
            label += u"__"_s;
        else if (at != u'&')
            label += at;
        else if (i + 1 < title.size() && title.at(i + 1) == u'&')
            label += title.at(++i);
        else
            label += u'_';
    }
    return label;
}

QStringList pressOf(QKeyCombination press) {
    QStringList names;
    for (const auto &[modifier, name] : {std::pair{Qt::MetaModifier, u"Super"_s},
                                         {Qt::ControlModifier, u"Control"_s},
                                         {Qt::AltModifier, u"Alt"_s},
                                         {Qt::ShiftModifier, u"Shift"_s}}) {
        if (press.keyboardModifiers().testFlag(modifier))
            names.append(name);
    }
    const QString key = QKeySequence(press.key()).toString(QKeySequence::PortableText);
    // Who reads them may join the names by these two.
    names.append(key == u"+" ? u"plus"_s : key == u"-" ? u"minus"_s : key);
    return names;
}

DBusMenuShortcut shortcutOf(const QKeySequence &keys) {
    DBusMenuShortcut shortcut;
    for (int i = 0; i < keys.count(); ++i)
        shortcut.append(pressOf(keys[static_cast<uint>(i)]));
    return shortcut;
}

QVariantMap propertiesOf(const MenuItem &item) {
    QVariantMap properties;
    if (item.kind == MenuItem::Kind::divider)
        return {{u"type"_s, u"separator"_s}};
    properties.insert(u"label"_s, labelOf(item.title));
    if (item.kind == MenuItem::Kind::menu)
        properties.insert(u"children-display"_s, u"submenu"_s);
    if (!item.enabled)
        properties.insert(u"enabled"_s, false);
    if (!item.keys.isEmpty())
        properties.insert(u"shortcut"_s, QVariant::fromValue(shortcutOf(item.keys)));
    return properties;
}

QVariantMap onlyThose(const QVariantMap &properties, const QStringList &names) {
    if (names.isEmpty())
        return properties;
    QVariantMap some;
    for (const auto &name : names) {
        if (const auto found = properties.find(name); found != properties.end())
            some.insert(name, *found);
    }
    return some;
}

} // namespace

DBusMenu::DBusMenu(QObject *parent) : QObject(parent), _nodes(nodesOf({})) {
    registerDBusMenuTypes();
}

QString DBusMenu::textDirection() const {
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? u"rtl"_s : u"ltr"_s;
}

int DBusMenu::append(const MenuItem &item, std::vector<Node> &nodes) {
    const auto id = nodes.size();
    nodes.push_back({.properties = propertiesOf(item), .pick = item.pick});
    for (const auto &each : item.items) {
        const int child = append(each, nodes);
        nodes[id].children.append(child);
    }
    return static_cast<int>(id);
}

std::vector<DBusMenu::Node> DBusMenu::nodesOf(const QList<MenuItem> &menus) {
    std::vector<Node> nodes;
    append({.kind = MenuItem::Kind::menu, .items = menus}, nodes);
    nodes.front().properties.remove(u"label"_s);
    return nodes;
}

bool DBusMenu::isLaidOutAs(const std::vector<Node> &others) const {
    return std::ranges::equal(_nodes, others, {}, &Node::children, &Node::children);
}

void DBusMenu::setMenus(const QList<MenuItem> &menus) {
    const auto before = std::exchange(_nodes, nodesOf(menus));
    if (isLaidOutAs(before))
        tellChanges(before);
    else
        Q_EMIT LayoutUpdated(++_revision, 0);
}

void DBusMenu::tellChanges(const std::vector<Node> &before) {
    QList<DBusMenuProperties> updated;
    QList<DBusMenuPropertyNames> removed;
    for (std::size_t i = 0; i < _nodes.size(); ++i) {
        const QVariantMap &now = _nodes[i].properties;
        const QVariantMap &then = before[i].properties;
        DBusMenuProperties changes{.id = static_cast<int>(i), .properties = {}};
        for (const auto &[name, value] : now.asKeyValueRange()) {
            if (then.value(name) != value)
                changes.properties.insert(name, value);
        }
        DBusMenuPropertyNames gone{.id = static_cast<int>(i), .names = {}};
        for (const auto &[name, value] : then.asKeyValueRange()) {
            if (!now.contains(name))
                gone.names.append(name);
        }
        if (!changes.properties.isEmpty())
            updated.append(changes);
        if (!gone.names.isEmpty())
            removed.append(gone);
    }
    if (!updated.isEmpty() || !removed.isEmpty())
        Q_EMIT ItemsPropertiesUpdated(updated, removed);
}

const DBusMenu::Node *DBusMenu::find(int id) const {
    return id >= 0 && static_cast<std::size_t>(id) < _nodes.size() ? &_nodes[static_cast<std::size_t>(id)] : nullptr;
}

const DBusMenu::Node *DBusMenu::findOrRefuse(int id) const {
    const Node *const found = find(id);
    if (!found)
        sendErrorReply(QDBusError::InvalidArgs, u"There is no item %1."_s.arg(id));
    return found;
}

DBusMenuLayout DBusMenu::layoutOf(int id, int depth, const QStringList &names) const {
    const Node &node = *find(id);
    DBusMenuLayout layout{.id = id, .properties = onlyThose(node.properties, names), .children = {}};
    if (depth != 0) {
        for (const int child : node.children)
            layout.children.append(QDBusVariant(QVariant::fromValue(layoutOf(child, depth - 1, names))));
    }
    return layout;
}

uint DBusMenu::GetLayout(int parentId, int depth, const QStringList &names, DBusMenuLayout &layout) {
    if (findOrRefuse(parentId))
        layout = layoutOf(parentId, depth, names);
    return _revision;
}

QList<DBusMenuProperties> DBusMenu::GetGroupProperties(const QList<int> &ids, const QStringList &names) {
    QList<DBusMenuProperties> found;
    const auto add = [this, &found, &names](int id) {
        if (const Node *const node = find(id))
            found.append({id, onlyThose(node->properties, names)});
    };
    for (const int id : ids)
        add(id);
    if (ids.isEmpty()) {
        for (std::size_t i = 0; i < _nodes.size(); ++i)
            add(static_cast<int>(i));
    }
    return found;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString &name) {
    const Node *const node = findOrRefuse(id);
    if (!node)
        return {};
    const QVariant value = node->properties.value(name, defaults().value(name));
    if (!value.isValid())
        sendErrorReply(QDBusError::InvalidArgs, u"There is no property \"%1\"."_s.arg(name));
    return QDBusVariant(value);
}

void DBusMenu::take(const QString &kind, const Node &node) {
    // After the answer: an entry may end the application.
    if (kind == u"clicked" && node.pick)
        QMetaObject::invokeMethod(this, node.pick, Qt::QueuedConnection);
}

void DBusMenu::Event(int id, const QString &kind, const QDBusVariant & /*data*/, uint /*time*/) {
    if (const Node *const node = findOrRefuse(id))
        take(kind, *node);
}

QList<int> DBusMenu::EventGroup(const QList<DBusMenuEvent> &events) {
    QList<int> unknown;
    for (const auto &event : events) {
        if (const Node *const node = find(event.id))
            take(event.kind, *node);
        else
            unknown.append(event.id);
    }
    if (!unknown.isEmpty() && unknown.size() == events.size())
        sendErrorReply(QDBusError::InvalidArgs, u"There is none of these items."_s);
    return unknown;
}

bool DBusMenu::AboutToShow(int id) {
    findOrRefuse(id);
    return false;
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &unknownIds) {
    std::ranges::copy_if(ids, std::back_inserter(unknownIds), [this](int id) { return !find(id); });
    if (!unknownIds.isEmpty() && unknownIds.size() == ids.size())
        sendErrorReply(QDBusError::InvalidArgs, u"There is none of these items."_s);
    return {};
}

} // namespace zelk
