#include "Views/VPNLogic.h"

#include <utility>

namespace zelk {

namespace {

constexpr std::chrono::seconds feedbackStay{4};

} // namespace

VPNLogic::VPNLogic(AppModel &model, std::shared_ptr<Clock> clock, QObject *parent)
    : QObject(parent), m_model(model), m_clock(std::move(clock)), m_life(std::make_unique<TaskScope>()) {
    connect(m_model.sync(), &SyncStore::proxyStatusChanged, this, &VPNLogic::changed);
    connect(m_model.sync(), &SyncStore::proxyDetailChanged, this, &VPNLogic::changed);
    connect(&m_model, &AppModel::settingsChanged, this, &VPNLogic::attach);
    attach();
}

VPNStatus VPNLogic::status() const {
    return {.enabled = m_enabled,
            .testing = m_testing,
            .feedback = m_feedback,
            .proxyStatus = m_model.sync()->proxyStatus(),
            .proxyDetail = m_model.sync()->proxyDetail(),
            .nodeCount = m_nodeCount};
}

void VPNLogic::attach() {
    if (m_settings == m_model.settings())
        return;
    m_settings = m_model.settings();
    connect(m_settings, &SettingsStore::configChanged, this, &VPNLogic::follow);
    follow();
}

void VPNLogic::follow() {
    const bool wasPresent = std::exchange(m_present, m_settings->proxyConfigured());
    const bool wasEnabled = std::exchange(m_enabled, m_settings->proxyEnabled());
    if (wasPresent && !m_present)
        beginAnew();
    if (m_present && (!wasPresent || wasEnabled != m_enabled))
        refreshNodeCount();
    Q_EMIT changed();
}

void VPNLogic::beginAnew() {
    m_life = std::make_unique<TaskScope>();
    m_testing = false;
    m_feedback.reset();
    m_nodeCount.reset();
}

void VPNLogic::refreshNodeCount() {
    m_counting.cancel();
    if (!m_enabled) {
        setNodeCount(std::nullopt);
        return;
    }
    m_counting =
        startTask(m_life.get(), [self = QPointer(this), settings = m_settings](std::stop_token stop) -> QCoro::Task<> {
            auto counting = settings->proxyNodeCount();
            const auto count = co_await counting;
            if (self && !stop.stop_requested())
                self->setNodeCount(count);
        });
}

void VPNLogic::setNodeCount(std::optional<qint64> count) {
    m_nodeCount = count;
    Q_EMIT changed();
}

void VPNLogic::toggle() {
    if (SettingsStore *settings = m_settings)
        startTask(settings, [settings, enabling = !m_enabled](const std::stop_token &) {
            return settings->setProxyEnabled(enabling);
        });
}

void VPNLogic::runTest() {
    const int token = ++m_feedbackToken;
    startTask(m_life.get(),
              [self = QPointer(this), token](std::stop_token stop) { return self->test(token, std::move(stop)); });
}

QCoro::Task<> VPNLogic::test(int token, std::stop_token stop) {
    const QPointer<VPNLogic> self(this);
    const auto clock = m_clock;
    beginTest();
    SettingsStore::ProxyTest outcome;
    if (m_settings) {
        auto testing = m_settings->testProxy();
        outcome = co_await testing;
        if (!self || stop.stop_requested())
            co_return;
    }
    endTest(outcome);
    auto staying = clock->sleep(feedbackStay, stop);
    try {
        co_await staying;
    } catch (const Cancelled &) {
        // What was to be cleared after the wait is to be cleared without it too.
    }
    if (self && m_feedbackToken == token)
        clearFeedback();
}

void VPNLogic::beginTest() {
    m_testing = true;
    m_feedback.reset();
    Q_EMIT changed();
}

void VPNLogic::endTest(const SettingsStore::ProxyTest &outcome) {
    m_testing = false;
    m_feedback = outcome.ok ? TestFeedback::success : TestFeedback::failure;
    if (outcome.ok && outcome.detail) {
        if (const auto count = leadingCount(*outcome.detail))
            m_nodeCount = count;
    }
    Q_EMIT changed();
}

void VPNLogic::clearFeedback() {
    m_feedback.reset();
    Q_EMIT changed();
}

} // namespace zelk
