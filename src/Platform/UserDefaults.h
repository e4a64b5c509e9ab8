#pragma once

#include <QString>
#include <QVariant>

#include <memory>

class QSettings;

namespace zelk {

/// The user's defaults: the few local preferences that survive a restart, by key. Used on one thread. A value that
/// can't be written is kept for the life of the process.
class UserDefaults {
public:
    /// Those of this user: `~/.config/orrim/zelk.conf`.
    static std::shared_ptr<UserDefaults> standard();
    /// Those in a file of their own, which need not exist.
    explicit UserDefaults(const QString &file);
    ~UserDefaults();
    Q_DISABLE_COPY_MOVE(UserDefaults)

    /// Invalid when there is none.
    QVariant value(const QString &key) const;
    /// False when there is none.
    bool boolValue(const QString &key) const { return value(key).toBool(); }
    void set(const QString &key, const QVariant &value);
    void remove(const QString &key);

private:
    explicit UserDefaults(std::unique_ptr<QSettings> settings);

    const std::unique_ptr<QSettings> _settings;
};

} // namespace zelk
