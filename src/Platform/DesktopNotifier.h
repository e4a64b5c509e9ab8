#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QDBusConnection;

namespace zelk {

/// Says something to the user outside of the application's windows, where the desktop has a place for that. There is at
/// most one message at a time: a new one takes the place of the last.
class DesktopNotifier : public QObject {
    Q_OBJECT

public:
    /// That of this session.
    static std::unique_ptr<DesktopNotifier> ofSession();
    /// The one that answers on that bus, which may be none.
    static std::unique_ptr<DesktopNotifier> on(const QDBusConnection &bus);

    /// Shows a message of plain text. Returns at once and fails silently.
    virtual void notify(const QString &summary, const QString &body) = 0;
    /// Takes the message away, if it is still there.
    virtual void withdraw() = 0;

Q_SIGNALS:
    /// The user has picked the message: a window that asks to be active now may come to the front.
    void activated();

protected:
    using QObject::QObject;
};

} // namespace zelk
