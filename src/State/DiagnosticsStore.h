#pragma once

#include "State/EngineStore.h"
#include "Transport/HelperProtocolResults.h"
#include "Transport/ServerEvent.h"

#include <QDateTime>
#include <QUuid>

#include <deque>
#include <vector>

namespace zelk {

/// A line of the engine's log.
struct LogEntry {
    QUuid id;
    ServerEvent::LogLevel level{};
    QString message;
    QDateTime date; // of its arrival here
    bool operator==(const LogEntry &) const = default;
};

/// What the engine's doctor found, and the engine's last log lines.
class DiagnosticsStore final : public EngineStore {
    Q_OBJECT
    /// The doctor is at work.
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)

public:
    static constexpr int defaultLogCapacity = 500;

    explicit DiagnosticsStore(std::shared_ptr<HelperClienting> client, int logCapacity = defaultLogCapacity,
                              QObject *parent = nullptr);

    /// Of the last run that came through, in the engine's order.
    const std::vector<DoctorCheck> &checks() const { return _checks; }
    /// The newest, `logCapacity` at most, oldest first.
    const std::deque<LogEntry> &logs() const { return _logs; }
    int logCapacity() const { return _logCapacity; }
    bool isRunning() const { return _isRunning; }

    void appendLog(ServerEvent::LogLevel level, const QString &message);
    /// Has the doctor look. A failure goes to `lastError`, and the old findings stay. It is for the caller not to start
    /// a second run beside the first.
    QCoro::Task<> runDoctor();
    /// Has the engine mend what a check found, and the doctor look again. A failure goes to `lastError`.
    QCoro::Task<> fix(QString checkId);

Q_SIGNALS:
    void checksChanged();
    void logsChanged();
    void isRunningChanged();

private:
    void setChecks(std::vector<DoctorCheck> checks);
    void setRunning(bool isRunning);

    const int _logCapacity;
    std::vector<DoctorCheck> _checks;
    std::deque<LogEntry> _logs;
    bool _isRunning = false;
};

} // namespace zelk
