#include "Platform/SingleInstance.h"

#include "Platform/DesktopEntry.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>
#include <QVariantMap>

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

constexpr int severalOthers = 5;

const QString objectPath = desktopObjectPath();
const QString interfaceName = QStringLiteral("org.freedesktop.Application");
const QString tokenKey = QStringLiteral("activation-token");

/// The folder may come to be only after the first claim, which must not change the name.
QString nameFor(const QString &folder) {
    std::error_code failed;
    const auto plain = std::filesystem::path(QFile::encodeName(folder).toStdString());
    auto canonical = std::filesystem::weakly_canonical(plain, failed);
    if (failed)
        canonical = plain.lexically_normal();
    const auto bytes = QByteArray::fromStdString(canonical.string());
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().first(16);
    return desktopEntryName() + u".Instance_"_s + QString::fromLatin1(hash);
}

/// Holds a name on the session bus, which the bus takes back when the process ends.
class OwnedName final : public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    OwnedName(QDBusConnection bus, const QString &folder, std::chrono::milliseconds patience)
        : _bus(std::move(bus)), _name(nameFor(folder)), _patience(int(patience.count())) {}
    ~OwnedName() override {
        if (!_claimed || !_bus.isConnected())
            return;
        _bus.unregisterService(_name);
        _bus.unregisterObject(objectPath);
    }
    Q_DISABLE_COPY_MOVE(OwnedName)

    Claim claim(const QString &activationToken) override {
        if (!_bus.isConnected())
            return Claim::none;
        // Before the name, so that whoever finds the name finds somebody to call.
        if (!_bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots))
            return Claim::none;
        const Claim claimed = claimName(activationToken);
        if (claimed == Claim::answered || claimed == Claim::none)
            _bus.unregisterObject(objectPath);
        else
            _claimed = true;
        return claimed;
    }

public Q_SLOTS:
    void Activate(const QVariantMap &platformData) { Q_EMIT calledToFront(platformData.value(tokenKey).toString()); }

private:
    using Bus = QDBusConnectionInterface;

    Claim claimName(const QString &activationToken) {
        for (int others = 0; others < severalOthers; ++others) {
            const auto owned = own(Bus::DontQueueService);
            if (!owned)
                return Claim::none;
            if (*owned)
                return Claim::first;
            const QString other = owner();
            if (callToFront(activationToken))
                return Claim::answered;
            if (owner() == other)
                break;
            // That one was on its way out, and whoever has the place now, if anybody, may well answer.
        }
        // One that only doesn't answer is followed when it goes.
        return own(Bus::QueueService) == true ? Claim::first : Claim::unanswered;
    }

    /// The connection that has the name, empty if none has.
    QString owner() { return _bus.interface()->serviceOwner(_name).value(); }

    /// Whether the name is ours now; nothing where the bus doesn't say.
    std::optional<bool> own(Bus::ServiceQueueOptions queue) {
        Bus *const bus = _bus.interface();
        bus->setTimeout(_patience);
        const QDBusReply<Bus::RegisterServiceReply> reply =
            bus->registerService(_name, queue, Bus::DontAllowReplacement);
        if (!reply.isValid())
            return std::nullopt;
        return reply.value() == Bus::ServiceRegistered;
    }

    bool callToFront(const QString &activationToken) {
        auto call = QDBusMessage::createMethodCall(_name, objectPath, interfaceName, u"Activate"_s);
        call.setAutoStartService(false);
        call << (activationToken.isEmpty() ? QVariantMap() : QVariantMap{{tokenKey, activationToken}});
        return _bus.call(call, QDBus::Block, _patience).type() == QDBusMessage::ReplyMessage;
    }

    QDBusConnection _bus;
    const QString _name;
    const int _patience;
    bool _claimed = false;
};

} // namespace

std::unique_ptr<SingleInstance> SingleInstance::ofSession(const QString &configurationFolder) {
    return on(QDBusConnection::sessionBus(), configurationFolder, usualPatience);
}

std::unique_ptr<SingleInstance> SingleInstance::on(const QDBusConnection &bus, const QString &configurationFolder,
                                                   std::chrono::milliseconds patience) {
    return std::make_unique<OwnedName>(bus, configurationFolder, patience);
}

} // namespace zelk

#include "SingleInstance_linux.moc"
