#include "Platform/TaskBarProgress.h"

#include "Platform/DesktopEntry.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

/// Tells it to all who listen; task bars know the application by its desktop entry.
class LauncherEntry final : public TaskBarProgress {
public:
    explicit LauncherEntry(QDBusConnection bus) : _bus(std::move(bus)) {}

    void show(double fraction) override { tell({{u"progress"_s, fraction}, {u"progress-visible"_s, true}}); }
    void clear() override { tell({{u"progress"_s, 0.0}, {u"progress-visible"_s, false}}); }

private:
    void tell(const QVariantMap &properties) {
        if (!_bus.isConnected())
            return;
        auto signal =
            QDBusMessage::createSignal(desktopObjectPath(), u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
        signal << u"application://%1.desktop"_s.arg(desktopEntryName()) << properties;
        _bus.send(signal);
    }

    QDBusConnection _bus;
};

} // namespace

std::unique_ptr<TaskBarProgress> TaskBarProgress::ofSession() {
    return on(QDBusConnection::sessionBus());
}

std::unique_ptr<TaskBarProgress> TaskBarProgress::on(const QDBusConnection &bus) {
    return std::make_unique<LauncherEntry>(bus);
}

} // namespace zelk
