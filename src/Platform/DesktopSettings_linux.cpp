#include "Platform/DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <array>
#include <cmath>
#include <optional>

namespace zelk {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

enum Key : std::size_t { colorSchemeKey, contrastKey, reducedMotionKey, enableAnimationsKey, textScaleKey, keyCount };

struct Name {
    QString group;
    QString key;
};

std::array<Name, keyCount> names() {
    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    const QString gnome = QStringLiteral("org.gnome.desktop.interface");
    return {{{appearance, QStringLiteral("color-scheme")},
             {appearance, QStringLiteral("contrast")},
             {appearance, QStringLiteral("reduced-motion")},
             {gnome, QStringLiteral("enable-animations")},
             {gnome, QStringLiteral("text-scaling-factor")}}};
}

/// The answer of `Read` holds a variant in a variant, that of other portals one less, the signal one.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

template<typename T>
std::optional<T> asExactly(const QVariant &value) {
    if (value.metaType() != QMetaType::fromType<T>())
        return std::nullopt;
    return value.value<T>();
}

/// Asks the settings portal, and listens to it.
class PortalSettings final : public DesktopSettings {
    Q_OBJECT

public:
    explicit PortalSettings(const QDBusConnection &bus)
        : _bus(bus), _watcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange) {
        if (!_bus.isConnected())
            return;
        _bus.connect(service, objectPath, interface, QStringLiteral("SettingChanged"), this,
                     SLOT(settingChanged(QString, QString, QDBusVariant)));
        // A portal that goes leaves what it said: it may be restarting.
        connect(&_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString &, const QString &, const QString &owner) {
                    if (!owner.isEmpty())
                        readAll();
                });
        readAll();
    }

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value) {
        for (std::size_t i = 0; i < keyCount; ++i) {
            if (_names[i].group != group || _names[i].key != key)
                continue;
            ++_turns[i]; // what was asked before is answered
            take(i, value.variant());
        }
    }

private:
    void readAll() {
        for (std::size_t i = 0; i < keyCount; ++i)
            read(i);
    }

    void read(std::size_t key) {
        auto call = QDBusMessage::createMethodCall(service, objectPath, interface, QStringLiteral("Read"));
        call << _names[key].group << _names[key].key;
        auto *const reply = new QDBusPendingCallWatcher(_bus.asyncCall(call), this);
        connect(reply, &QDBusPendingCallWatcher::finished, this, [this, key, reply, turn = ++_turns[key]] {
            reply->deleteLater();
            if (turn != _turns[key])
                return;
            // A failure has no value, and none is what is meant by it.
            take(key, reply->isError() ? QVariant() : reply->reply().arguments().value(0));
        });
    }

    void take(std::size_t key, const QVariant &told) {
        _values[key] = unwrapped(told);
        switch (key) {
        case colorSchemeKey:
            setColorScheme(schemeOf(asExactly<uint>(_values[key]).value_or(0)));
            break;
        case contrastKey:
            setIncreasedContrast(asExactly<uint>(_values[key]).value_or(0) == 1);
            break;
        case textScaleKey:
            setTextScale(scaleOf(asExactly<double>(_values[key]).value_or(1)));
            break;
        default:
            setReducedMotion(isMotionReduced());
            break;
        }
    }

    static ColorScheme schemeOf(uint told) {
        switch (told) {
        case 1:
            return ColorScheme::dark;
        case 2:
            return ColorScheme::light;
        default:
            return ColorScheme::noPreference;
        }
    }

    static double scaleOf(double told) { return std::isfinite(told) && told > 0 ? told : 1; }

    bool isMotionReduced() const {
        if (const auto reduced = asExactly<uint>(_values[reducedMotionKey]))
            return *reduced == 1;
        return !asExactly<bool>(_values[enableAnimationsKey]).value_or(true);
    }

    const std::array<Name, keyCount> _names = names();
    QDBusConnection _bus;
    QDBusServiceWatcher _watcher;
    std::array<QVariant, keyCount> _values;
    std::array<int, keyCount> _turns{}; // the last question for each key; answers to earlier ones don't count
};

} // namespace

std::unique_ptr<DesktopSettings> DesktopSettings::ofSession() {
    return on(QDBusConnection::sessionBus());
}

std::unique_ptr<DesktopSettings> DesktopSettings::on(const QDBusConnection &bus) {
    return std::make_unique<PortalSettings>(bus);
}

} // namespace zelk

#include "DesktopSettings_linux.moc"
