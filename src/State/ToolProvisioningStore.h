#pragma once

#include "State/EngineStore.h"
#include "State/StateEnums.h"
#include "Transport/HelperProtocolConfig.h"

#include <chrono>
#include <vector>

namespace zelk {

/// The one-off installation, by the engine, of the outside tools that it needs. It outlives any one showing of the
/// setup: whoever comes again finds the earlier outcome.
class ToolProvisioningStore final : public EngineStore {
    Q_OBJECT
    Q_PROPERTY(zelk::StateEnums::ProvisioningPhase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(bool isReady READ isReady NOTIFY phaseChanged)
    /// The last line that the engine logged during a run; empty when there is none.
    Q_PROPERTY(QString lastLog READ lastLogText NOTIFY lastLogChanged)

public:
    using Phase = ProvisioningPhase;

    /// How one tool stands.
    struct ToolProgress {
        QString id;                    // by which events and results find it
        QString name;                  // to show
        std::optional<double> percent; // 0 to 100
        ToolPhase phase = ToolPhase::download;
        std::optional<QString> detail;
        bool operator==(const ToolProgress &) const = default;
    };

    /// A bound that covers two downloads.
    static constexpr std::chrono::seconds timeout{600};

    explicit ToolProvisioningStore(std::shared_ptr<HelperClienting> client, QObject *parent = nullptr);

    Phase phase() const { return _phase; }
    bool isReady() const { return _phase == Phase::ready; }
    /// Always the same tools in the same order; rows are never added.
    const std::vector<ToolProgress> &tools() const { return _tools; }
    const std::optional<QString> &lastLog() const { return _lastLog; }

    /// Has the tools installed; how that came out is in `phase`, `tools` and `lastError`. It is for the caller not to
    /// start a second run beside the first.
    QCoro::Task<> provision();
    QCoro::Task<> retry() { return provision(); }
    /// What an event says of a tool, whatever the phase. What it doesn't say stays; a tool that isn't ours is nothing.
    void apply(const QString &tool, ToolPhase phase, std::optional<double> percent,
               const std::optional<QString> &detail);
    /// A line of the engine's log, which counts only during a run.
    void note(const QString &log);

Q_SIGNALS:
    void phaseChanged();
    void toolsChanged();
    void lastLogChanged();

private:
    void conclude(const ProvisionToolsResult &result);
    void setPhase(Phase phase);
    void setTools(std::vector<ToolProgress> tools);
    void setLastLog(std::optional<QString> line);
    QString lastLogText() const { return _lastLog.value_or(QString()); }

    Phase _phase = Phase::idle;
    std::vector<ToolProgress> _tools;
    std::optional<QString> _lastLog;
};

} // namespace zelk
