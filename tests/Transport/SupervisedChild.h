#pragma once

#include "Platform/BootClock.h"
#include "Support/Await.h"
#include "Support/ScriptedEngine.h"
#include "Support/Task.h"
#include "Transport/HelperProcess.h"

#include <QMutex>

namespace zelk {

/// A process that plays a transcript, with its output and its end noted as they come.
class Supervised : public QObject {
public:
    explicit Supervised(const QStringList &commands, std::shared_ptr<Clock> clock = std::make_shared<BootClock>())
        : engine(commands),
          process(std::make_shared<HelperProcess>(ScriptedEngine::program(), engine.arguments(), std::move(clock))) {}

    /// What the shell makes of it, for what a transcript doesn't do.
    explicit Supervised(const char *shellScript)
        : engine(QStringList()),
          process(std::make_shared<HelperProcess>(QStringLiteral("/bin/sh"),
                                                  QStringList{QStringLiteral("-c"), QString::fromUtf8(shellScript)},
                                                  std::make_shared<BootClock>())) {}

    bool start() {
        const auto ended = [terminations = terminations](const HelperProcess::Termination &termination) {
            const QMutexLocker lock(&terminations->mutex);
            terminations->list.append(termination);
        };
        const auto started = outcomeOf(process->start(ended));
        if (!started.succeeded())
            return false;
        streamEnded = false;
        listen(*started.value);
        return true;
    }

    QList<HelperProcess::Termination> ended() const {
        const QMutexLocker lock(&terminations->mutex);
        return terminations->list;
    }

    bool write(const QByteArray &data) { return outcomeOf(process->write(data)).succeeded(); }

    ScriptedEngine engine;
    std::shared_ptr<HelperProcess> process;
    QByteArray output;
    bool streamEnded = false;

private:
    struct Terminations {
        QMutex mutex;
        QList<HelperProcess::Termination> list;
    };

    void listen(HelperProcess::Chunks chunks) {
        startTask(this, [self = QPointer(this), chunks](std::stop_token stop) -> QCoro::Task<> {
            while (true) {
                const auto chunk = co_await chunks.next(stop);
                if (!chunk)
                    break;
                self->output += *chunk;
            }
            self->streamEnded = true;
        });
    }

    std::shared_ptr<Terminations> terminations = std::make_shared<Terminations>();
};

} // namespace zelk
