#include "Views/AboutDialog.h"

#include "Views/DialogHost.h"

#include <QCoreApplication>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

QString AboutLogic::version() const {
    return QCoreApplication::translate("zelk", "Version %1").arg(QCoreApplication::applicationVersion());
}

AboutDialog::AboutDialog(DialogHost &host, std::function<void(const QUrl &url)> openUrl) : m_host(host) {
    QObject::connect(&m_logic, &AboutLogic::websiteRequested, &m_logic,
                     [openUrl = std::move(openUrl)] { openUrl(QUrl(QStringLiteral(ZELK_WEBSITE))); });
    QObject::connect(&m_logic, &AboutLogic::closed, &m_logic, [this] { m_window->hide(); });
}

void AboutDialog::open() {
    if (!m_window)
        m_window = m_host.make(u"AboutDialog"_s, {{u"logic"_s, QVariant::fromValue(&m_logic)}});
    if (m_window)
        m_host.present(*m_window);
}

} // namespace zelk
