#include "Views/Settings/GeneralLogic.h"

#include <QGuiApplication>
#include <QLocale>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

constexpr QLatin1StringView themeKey{"appAppearance"};
// What is remembered, in the order of the choices.
constexpr std::array themeValues{QLatin1StringView("system"), QLatin1StringView("light"), QLatin1StringView("dark")};

bool isSettings(const QString &title) {
    const QLocale locale;
    return locale.toLower(title).contains(locale.toLower(u"settings"_s)) ||
           title.contains(u"settings", Qt::CaseInsensitive);
}

} // namespace

QWindow *workWindow(const QWindowList &windows) {
    const auto found = std::ranges::find_if(windows, [](const QWindow *each) {
        return each->isVisible() && each->type() == Qt::Window && !isSettings(each->title());
    });
    return found == windows.end() ? nullptr : *found;
}

GeneralLogic::GeneralLogic(AppModel &model, UpdaterModel &updater, std::shared_ptr<Appearance> appearance,
                           std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent), m_model(model), m_updater(updater), m_appearance(std::move(appearance)),
      m_defaults(std::move(defaults)) {
    connect(m_appearance.get(), &Appearance::changed, this, &GeneralLogic::appearanceChanged);
    connect(&m_updater, &UpdaterModel::automaticallyChecksChanged, this, &GeneralLogic::automaticallyChecksChanged);
    connect(m_model.cliTool(), &CLIToolStore::detectedVersionChanged, this, &GeneralLogic::cliVersionChanged);
}

QStringList GeneralLogic::themes() const {
    return {tr("System"), tr("Light"), tr("Dark")};
}

int GeneralLogic::theme() const {
    const QVariant value = m_defaults->value(themeKey);
    if (!value.isValid())
        return 0;
    const auto found = std::ranges::find(themeValues, value.toString());
    return found == themeValues.end() ? -1 : static_cast<int>(found - themeValues.begin());
}

void GeneralLogic::setTheme(int theme) {
    if (theme == this->theme() || theme < 0 || std::cmp_greater_equal(theme, themeValues.size()))
        return;
    m_defaults->set(themeKey, QString(themeValues.at(static_cast<std::size_t>(theme))));
    Q_EMIT themeChanged();
}

QString GeneralLogic::cliVersion() const {
    return m_model.cliTool()->detectedVersion().value_or(QString());
}

void GeneralLogic::reRunSetup() {
    m_model.beginOnboarding(SetupCoordinator::Mode::reRun);
    QWindow *const window = workWindow(QGuiApplication::topLevelWindows());
    if (!window)
        return;
    if (window->windowStates() & Qt::WindowMinimized)
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->raise();
    window->requestActivate();
}

} // namespace zelk
