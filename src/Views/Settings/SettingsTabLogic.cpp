#include "Views/Settings/SettingsTabLogic.h"

#include <exception>
#include <utility>

namespace zelk {

SettingsTabLogic::SettingsTabLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(&m_model, &AppModel::settingsChanged, this, &SettingsTabLogic::attach);
    attach();
}

void SettingsTabLogic::attach() {
    if (m_settings == m_model.settings())
        return;
    m_settings = m_model.settings();
    connect(m_settings, &SettingsStore::configChanged, this, &SettingsTabLogic::configChanged);
    Q_EMIT configChanged();
}

const SafeConfig *SettingsTabLogic::config() const {
    return m_settings && m_settings->config() ? &*m_settings->config() : nullptr;
}

void SettingsTabLogic::apply(std::function<std::optional<ConfigPatch>()> make) {
    startTask(this, [settings = m_settings, make = std::move(make)](std::stop_token) -> QCoro::Task<> {
        auto patch = settings ? make() : std::nullopt;
        if (!patch)
            co_return;
        auto applying = settings->apply(std::move(*patch));
        co_await applying;
    });
}

void SettingsTabLogic::storeToken(AccountService service, const QString &token) {
    startTask(&m_model, [model = QPointer(&m_model), service, token](std::stop_token) -> QCoro::Task<> {
        try {
            auto storing = model->storeAccountToken(service, token);
            co_await storing;
        } catch (const std::exception &) {
            // Whether the engine has it shows in the accounts; here nothing is said of it.
        }
    });
}

} // namespace zelk
