#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QWindow>

#include <functional>
#include <memory>

class QDBusConnection;

namespace zelk {

/// What a menu holds: an entry, a divider, or a menu of its own.
struct MenuItem {
    enum class Kind { entry, divider, menu };

    Kind kind = Kind::entry;
    QString title{};     ///< its mnemonic stands behind an "&"
    QKeySequence keys{}; ///< only shown: who offers the menu listens to them
    bool enabled = true;
    std::function<void()> pick{}; ///< what an entry does
    QList<MenuItem> items{};      ///< what a menu holds
};

/// The desktop's own bar for the menus of applications, where there is one. It may come and go at any time.
class GlobalMenu : public QObject {
    Q_OBJECT

public:
    /// That of this session; none where windows have no ids that the whole session knows, which they have on X11 alone.
    static std::unique_ptr<GlobalMenu> ofSession();
    /// The one that answers on that bus, which may be none.
    static std::unique_ptr<GlobalMenu> on(const QDBusConnection &bus);

    /// Offers these menus as those of a window, now and whenever there is a bar. Returns at once and fails silently.
    virtual void offer(WId window, const QList<MenuItem> &menus) = 0;
    /// Says what the offered menus are by now.
    virtual void update(const QList<MenuItem> &menus) = 0;
    /// Offers nothing any more.
    virtual void withdraw() = 0;
    /// Whether there is a bar that has taken what is offered.
    virtual bool isTaken() const = 0;

Q_SIGNALS:
    void takenChanged();

protected:
    using QObject::QObject;
};

} // namespace zelk
