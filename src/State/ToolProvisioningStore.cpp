#include "State/ToolProvisioningStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <exception>
#include <utility>

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ToolProvisioningStore)
};

constexpr QLatin1StringView statusOk{"ok"};

std::vector<ToolProvisioningStore::ToolProgress> seededTools() {
    std::vector<ToolProvisioningStore::ToolProgress> tools(2);
    tools[0].id = tools[0].name = QStringLiteral("yt-dlp");
    tools[1].id = tools[1].name = QStringLiteral("ffmpeg");
    return tools;
}

} // namespace

ToolProvisioningStore::ToolProvisioningStore(std::shared_ptr<HelperClienting> client, QObject *parent)
    : EngineStore(std::move(client), parent), _tools(seededTools()) {}

QCoro::Task<> ToolProvisioningStore::provision() {
    const QPointer<ToolProvisioningStore> self(this);
    setPhase(Phase::running);
    setLastError(std::nullopt);
    setLastLog(std::nullopt);
    setTools(seededTools());
    ProvisionToolsResult result;
    std::exception_ptr failure;
    try {
        auto asking = client()->request<ProvisionToolsResult>(Request::provisionTools(), timeout, lifetime());
        result = co_await asking;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self)
        co_return;
    if (failure) {
        // The rows stay as the events left them.
        setPhase(Phase::failed);
        setLastError(describe(failure));
        co_return;
    }
    conclude(result);
}

void ToolProvisioningStore::conclude(const ProvisionToolsResult &result) {
    auto tools = _tools;
    for (const ToolStatusDTO &status : result.tools) {
        const auto tool = std::ranges::find(tools, status.id, &ToolProgress::id);
        if (tool == tools.end())
            continue;
        const bool isOk = status.status == statusOk;
        tool->phase = isOk ? ToolPhase::done : ToolPhase::error;
        tool->detail = status.detail;
        if (isOk)
            tool->percent = 100;
    }
    setTools(std::move(tools));
    setPhase(result.ok ? Phase::ready : Phase::failed);
    if (result.ok)
        return;
    // The engine's verdict counts, not the rows: it may fail with every tool in order, or for a tool that has no row.
    const auto culprit =
        std::ranges::find_if(result.tools, [](const auto &status) { return status.status != statusOk; });
    setLastError(culprit == result.tools.end() ? Texts::tr("Some required tools could not be installed.")
                                               : culprit->detail);
}

void ToolProvisioningStore::apply(const QString &tool, ToolPhase phase, std::optional<double> percent,
                                  const std::optional<QString> &detail) {
    auto tools = _tools;
    const auto row = std::ranges::find(tools, tool, &ToolProgress::id);
    if (row == tools.end())
        return;
    row->phase = phase;
    if (percent)
        row->percent = percent;
    if (detail)
        row->detail = detail;
    setTools(std::move(tools));
}

void ToolProvisioningStore::note(const QString &log) {
    if (_phase == Phase::running)
        setLastLog(log);
}

void ToolProvisioningStore::setPhase(Phase phase) {
    if (phase == _phase)
        return;
    _phase = phase;
    Q_EMIT phaseChanged();
}

void ToolProvisioningStore::setTools(std::vector<ToolProgress> tools) {
    if (tools == _tools)
        return;
    _tools = std::move(tools);
    Q_EMIT toolsChanged();
}

void ToolProvisioningStore::setLastLog(std::optional<QString> line) {
    if (line == _lastLog)
        return;
    _lastLog = std::move(line);
    Q_EMIT lastLogChanged();
}

} // namespace zelk
