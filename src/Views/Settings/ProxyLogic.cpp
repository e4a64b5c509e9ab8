#include "Views/Settings/ProxyLogic.h"

#include "Support/Blanks.h"

#include <utility>

namespace zelk {

ProxyLogic::ProxyLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(&m_model, &AppModel::settingsChanged, this, &ProxyLogic::attach);
    attach();
}

void ProxyLogic::attach() {
    if (m_settings == m_model.settings())
        return;
    m_settings = m_model.settings();
    connect(m_settings, &SettingsStore::configChanged, this, &ProxyLogic::follow);
    connect(m_settings, &SettingsStore::lastErrorChanged, this, &ProxyLogic::changed);
    follow();
}

void ProxyLogic::follow() {
    m_face.configured = m_settings->proxyConfigured();
    Q_EMIT changed();
}

void ProxyLogic::setSubscription(const QString &text) {
    if (m_face.subscription == text)
        return;
    m_face.subscription = text;
    Q_EMIT changed();
}

bool ProxyLogic::canAct() const {
    switch (m_face.action()) {
    case ProxyFace::Action::save:
        return true;
    case ProxyFace::Action::test:
        return !m_face.testing;
    case ProxyFace::Action::nothingToSave:
        return false;
    }
    return false;
}

QString ProxyLogic::lastError() const {
    return m_settings ? m_settings->lastError().value_or(QString()) : QString();
}

void ProxyLogic::act() {
    switch (m_face.action()) {
    case ProxyFace::Action::save:
        return saveSubscription();
    case ProxyFace::Action::test:
        return runTest();
    case ProxyFace::Action::nothingToSave:
        return;
    }
}

void ProxyLogic::saveSubscription() {
    const QString trimmed = withoutBlanks(m_face.subscription).toString();
    if (!trimmed.isEmpty())
        change([trimmed](SettingsStore &settings) { return settings.setProxySubscription(trimmed); });
}

void ProxyLogic::forget() {
    change([](SettingsStore &settings) { return settings.disconnectProxy(); });
}

void ProxyLogic::leave() {
    m_face.subscription.clear();
    m_face.testResult.reset();
    Q_EMIT changed();
}

// The model's task: it goes on when whoever started it has closed the window.
void ProxyLogic::change(std::function<QCoro::Task<>(SettingsStore &)> changing) {
    startTask(&m_model,
              [self = QPointer(this), settings = m_settings,
               changing = std::move(changing)](const std::stop_token &) -> QCoro::Task<> {
                  if (settings) {
                      auto task = changing(*settings);
                      co_await task;
                  }
                  if (self)
                      self->beginAnew();
              });
}

void ProxyLogic::beginAnew() {
    ++m_generation;
    m_face.subscription.clear();
    m_face.testResult.reset();
    Q_EMIT changed();
}

void ProxyLogic::runTest() {
    if (m_face.testing)
        return;
    setTesting(true, m_face.testResult);
    startTask(this, [self = QPointer(this)](const std::stop_token &) { return test(self); });
}

QCoro::Task<> ProxyLogic::test(QPointer<ProxyLogic> self) {
    std::optional<SettingsStore::ProxyTest> result;
    const int generation = self->m_generation;
    if (self->m_settings) {
        auto testing = self->m_settings->testProxy();
        result = co_await testing;
        if (!self)
            co_return;
        if (generation != self->m_generation)
            result.reset();
    }
    self->setTesting(false, std::move(result));
}

void ProxyLogic::setTesting(bool testing, std::optional<SettingsStore::ProxyTest> result) {
    m_face.testing = testing;
    m_face.testResult = std::move(result);
    Q_EMIT changed();
}

} // namespace zelk
