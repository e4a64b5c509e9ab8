#include "Views/Onboarding/SetupChoices.h"

#include "Models/ServiceCatalog.h"
#include "Views/Onboarding/SetupRecap.h"

#include <QCoroFuture>

#include <algorithm>
#include <utility>

namespace zelk {

SetupChoices::SetupChoices(AppModel &model, std::shared_ptr<FolderPanel> folders, QObject *parent)
    : QObject(parent), m_model(model), m_folders(std::move(folders)) {
    connect(&m_model, &AppModel::setupCoordinatorChanged, this, &SetupChoices::follow);
    connect(&m_model, &AppModel::settingsChanged, this, &SetupChoices::followSettings);
    connect(m_model.automationPermission(), &AutomationPermissionMonitor::statusChanged, this, &SetupChoices::changed);
    follow();
    followSettings();
}

void SetupChoices::follow() {
    m_coordinator = m_model.setupCoordinator();
    if (m_coordinator) {
        for (const auto signal : {&SetupCoordinator::selectedSourcesChanged, &SetupCoordinator::qualityProfileChanged,
                                  &SetupCoordinator::identityEnabledChanged, &SetupCoordinator::identityStrictChanged,
                                  &SetupCoordinator::outputDirChanged, &SetupCoordinator::soundcloudTokenChanged,
                                  &SetupCoordinator::acoustidKeyChanged, &SetupCoordinator::proxySubscriptionChanged})
            connect(m_coordinator, signal, this, &SetupChoices::changed);
    }
    Q_EMIT changed();
}

void SetupChoices::followSettings() {
    if (const auto *settings = m_model.settings())
        connect(settings, &SettingsStore::configChanged, this, &SetupChoices::changed);
}

void SetupChoices::setIdentityEnabled(bool enabled) {
    if (m_coordinator)
        m_coordinator->setIdentityEnabled(enabled);
}

void SetupChoices::setIdentityStrict(bool strict) {
    if (m_coordinator)
        m_coordinator->setIdentityStrict(strict);
}

void SetupChoices::setAcoustidKey(const QString &key) {
    if (m_coordinator)
        m_coordinator->setAcoustidKey(key);
}

void SetupChoices::setSoundcloudToken(const QString &token) {
    if (m_coordinator)
        m_coordinator->setSoundcloudToken(token);
}

void SetupChoices::setProxySubscription(const QString &url) {
    if (m_coordinator)
        m_coordinator->setProxySubscription(url);
}

QVariantList SetupChoices::sources() const {
    QVariantList choices;
    for (const auto &info : ServiceCatalog::downloadSources()) {
        const bool isSelected = m_coordinator && std::ranges::count(m_coordinator->selectedSources(), info.id) > 0;
        choices += QVariant::fromValue(SourceChoice{info.name, info.assetName, info.blurb, info.keyService.has_value(),
                                                    info.keyPlaceholder.value_or(tr("Token")), isSelected});
    }
    return choices;
}

void SetupChoices::setSourceEnabled(int index, bool enabled) {
    if (!m_coordinator)
        return;
    const auto &chosen = m_coordinator->selectedSources();
    const SourceId touched = ServiceCatalog::downloadSources().at(static_cast<std::size_t>(index)).id;
    std::vector<SourceId> rebuilt;
    for (const SourceId each : allCases<SourceId>()) {
        if (each == touched ? enabled : std::ranges::count(chosen, each) > 0)
            rebuilt.push_back(each);
    }
    m_coordinator->setSelectedSources(std::move(rebuilt));
}

QVariantList SetupChoices::qualities() const {
    QVariantList choices;
    for (const auto &info : ServiceCatalog::qualityProfiles()) {
        const bool isSelected = m_coordinator && m_coordinator->qualityProfile() == info.id;
        choices += QVariant::fromValue(QualityChoice{info.name, info.blurb, isSelected});
    }
    return choices;
}

void SetupChoices::chooseQuality(int index) {
    if (m_coordinator)
        m_coordinator->setQualityProfile(ServiceCatalog::qualityProfiles().at(static_cast<std::size_t>(index)).id);
}

void SetupChoices::chooseFolder() {
    startTask(this, [self = QPointer(this), asked = m_coordinator](std::stop_token) -> QCoro::Task<> {
        const auto choosing = self->m_folders->choose(tr("Download location"), self->outputDir());
        const auto chosen = co_await choosing;
        // It is for the setup that was up then.
        if (asked && chosen)
            asked->setOutputDir(*chosen);
    });
}

QVariantList SetupChoices::recap() const {
    const auto *settings = m_model.settings();
    Recap recap;
    recap.playlists =
        playlistSummary(settings && settings->appleMusicConnected(), settings && settings->spotifyConnected(),
                        m_model.automationPermission()->status());
    if (m_coordinator) {
        recap.sources = sourcesSummary(m_coordinator->selectedSources());
        recap.quality = ServiceCatalog::qualityProfile(m_coordinator->qualityProfile()).name;
        recap.folder = m_coordinator->outputDir();
    }
    QVariantList rows;
    for (const RecapFace &each : recapRows(recap))
        rows += QVariant::fromValue(each);
    return rows;
}

} // namespace zelk
