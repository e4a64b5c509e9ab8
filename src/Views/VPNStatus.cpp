#include "Views/VPNStatus.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

// "3 nodes". The number is put in by hand: what chooses the plural form is an int.
QString nodes(qint64 count) {
    const auto form = static_cast<int>(std::clamp<qint64>(count, 0, std::numeric_limits<int>::max()));
    return Texts::tr("%1 node(s)", nullptr, form).arg(count);
}

QString withNodes(const QString &text, std::optional<qint64> count) {
    return count ? text + u" — "_s + nodes(*count) : text;
}

} // namespace

std::optional<qint64> leadingCount(const QString &detail) {
    const QList<uint> letters = detail.toUcs4();
    const auto end = std::ranges::find_if_not(letters, [](uint letter) { return QChar::isNumber(letter); });
    const QString number = QString::fromUcs4(reinterpret_cast<const char32_t *>(letters.data()), end - letters.begin());
    bool ok = false;
    const qint64 count = number.toLongLong(&ok);
    return ok ? std::optional(count) : std::nullopt;
}

ProxyStatusValue VPNStatus::liveStatus() const {
    if (testing)
        return ProxyStatusValue::connecting;
    return enabled ? proxyStatus : ProxyStatusValue::off;
}

std::optional<qint64> VPNStatus::serverCount() const {
    if (proxyStatus == ProxyStatusValue::connected && proxyDetail) {
        if (const auto count = leadingCount(*proxyDetail))
            return count;
    }
    return nodeCount;
}

QString VPNStatus::statusText() const {
    if (feedback == TestFeedback::failure)
        return Texts::tr("Connection test failed");
    if (feedback == TestFeedback::success)
        return withNodes(Texts::tr("Connection test passed"), serverCount());
    switch (liveStatus()) {
    case ProxyStatusValue::off:
        return enabled ? withNodes(Texts::tr("On"), serverCount()) : Texts::tr("Vantrix VPN is off");
    case ProxyStatusValue::connecting:
        return testing ? Texts::tr("Testing connection…") : Texts::tr("Connecting to Vantrix VPN…");
    case ProxyStatusValue::connected:
        return proxyDetail ? Texts::tr("Connected (%1)").arg(*proxyDetail) : Texts::tr("Connected");
    case ProxyStatusValue::down:
        return Texts::tr("Disconnected — Soulseek is paused");
    case ProxyStatusValue::error:
        return Texts::tr("Connection error — Soulseek is paused");
    }
    return {};
}

std::optional<QString> VPNStatus::labelText() const {
    if (feedback == TestFeedback::failure)
        return Texts::tr("Failed");
    if (!enabled)
        return {};
    if (const auto count = serverCount())
        return nodes(*count);
    return liveStatus() == ProxyStatusValue::connecting ? Texts::tr("Testing…") : Texts::tr("On");
}

QString VPNStatus::icon() const {
    if (feedback == TestFeedback::failure)
        return u"xmark.shield.fill"_s;
    if (feedback == TestFeedback::success)
        return u"checkmark.shield.fill"_s;
    switch (liveStatus()) {
    case ProxyStatusValue::off:
        return enabled ? u"lock.shield.fill"_s : u"lock.shield"_s;
    case ProxyStatusValue::connecting:
        return u"lock.shield"_s;
    case ProxyStatusValue::connected:
        return u"lock.shield.fill"_s;
    case ProxyStatusValue::down:
    case ProxyStatusValue::error:
        return u"exclamationmark.shield.fill"_s;
    }
    return {};
}

Ink VPNStatus::tint() const {
    if (feedback == TestFeedback::failure)
        return Ink::red;
    if (feedback == TestFeedback::success)
        return Ink::green;
    switch (liveStatus()) {
    case ProxyStatusValue::off:
        return enabled ? Ink::accent : Ink::secondary;
    case ProxyStatusValue::connecting:
        return Ink::yellow;
    case ProxyStatusValue::connected:
        return Ink::green;
    case ProxyStatusValue::down:
    case ProxyStatusValue::error:
        return Ink::red;
    }
    return Ink::primary;
}

} // namespace zelk
