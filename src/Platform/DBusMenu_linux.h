#pragma once

#include "Platform/DBusMenuTypes_linux.h"
#include "Platform/GlobalMenu.h"

#include <QDBusContext>
#include <QObject>

#include <functional>
#include <vector>

namespace zelk {

/// Menus as `com.canonical.dbusmenu` shows them on a bus. An item's id is its place in the order of reading; 0 is what
/// holds all menus.
class DBusMenu final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    explicit DBusMenu(QObject *parent = nullptr);

    /// Tells what has changed, and nothing if nothing has.
    void setMenus(const QList<MenuItem> &menus);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    /// `depth` counts the levels below the item; -1 is all of them. No `names` are all properties.
    uint GetLayout(int parentId, int depth, const QStringList &names, zelk::DBusMenuLayout &layout);
    /// No `ids` are all items.
    QList<zelk::DBusMenuProperties> GetGroupProperties(const QList<int> &ids, const QStringList &names);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &kind, const QDBusVariant &data, uint time);
    QList<int> EventGroup(const QList<zelk::DBusMenuEvent> &events);
    /// Whether the item has changed by that; it never does, for its changes are told as they come.
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &unknownIds);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<zelk::DBusMenuProperties> &updated,
                                const QList<zelk::DBusMenuPropertyNames> &removed);
    void LayoutUpdated(uint revision, int parentId);

private:
    /// An item; its properties are only those that aren't as they are by default.
    struct Node {
        QVariantMap properties{};
        QList<int> children{};
        std::function<void()> pick{};
    };

    static int append(const MenuItem &item, std::vector<Node> &nodes);
    static std::vector<Node> nodesOf(const QList<MenuItem> &menus);
    bool isLaidOutAs(const std::vector<Node> &others) const;
    void tellChanges(const std::vector<Node> &before);
    const Node *find(int id) const;
    const Node *findOrRefuse(int id) const;
    DBusMenuLayout layoutOf(int id, int depth, const QStringList &names) const;
    void take(const QString &kind, const Node &node);

    std::vector<Node> _nodes;
    uint _revision = 1;
};

} // namespace zelk
