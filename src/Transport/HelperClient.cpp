#include "Transport/HelperClient.h"

#include "Support/Logger.h"
#include "Support/OneShot.h"
#include "Support/Task.h"
#include "Transport/HelperError.h"
#include "Transport/LineDecoder.h"
#include "Transport/NDJSONFramer.h"

#include <QCoroFuture>
#include <QHash>

#include <cstdint>
#include <map>

namespace zelk {

namespace {

template<typename Failure>
std::exception_ptr failureOf(Failure failure) {
    return std::make_exception_ptr(std::move(failure));
}

QString asLogText(QByteArrayView line) {
    return line.isValidUtf8() ? QString::fromUtf8(line) : QStringLiteral("<non-utf8>");
}

double inSeconds(Clock::Duration duration) {
    return std::chrono::duration<double>(duration).count();
}

/// A request on its way, between its caller and the executor that keeps it.
struct Call {
    OneShot<void> done{failureOf(HelperError::helperUnavailable())};
    QString id; // the executor's alone
};

} // namespace

/// The state, touched on the executor's thread only.
class HelperClient::Core : public std::enable_shared_from_this<Core> {
public:
    using Ref = std::shared_ptr<Core>;
    using Weak = std::weak_ptr<Core>;

    Core(std::weak_ptr<SerialExecutor> executor, std::shared_ptr<HelperProcess> process, std::shared_ptr<Clock> clock)
        : _executor(std::move(executor)), _process(std::move(process)), _clock(std::move(clock)) {}

    ~Core() { failPending(HelperError::helperUnavailable()); }

    EventReader events() const { return _events.reader(); }
    void finishEvents() const { _events.finish(); }

    void start(const OneShotRef<void> &done) {
        if (std::exchange(_started, true)) {
            done->fulfil();
            return;
        }
        startTask(&_tasks, [self = weak_from_this(), done](std::stop_token) -> QCoro::Task<> {
            try {
                auto launching = launch(self);
                co_await launching;
            } catch (...) {
                done->fail(std::current_exception());
            }
            done->fulfil();
        });
    }

    void beginRequest(const Request &request, ReadResult read, QString typeName, std::chrono::nanoseconds timeout,
                      const std::shared_ptr<Call> &call) {
        call->id = takeId();
        QByteArray line;
        try {
            line = request.encodedLine(call->id) + '\n';
        } catch (...) {
            call->done.fail(std::current_exception());
            return;
        }

        auto alarm = _clock->after(timeout, [self = weak_from_this(), id = call->id] {
            if (const auto core = self.lock())
                core->dropPending(id, failureOf(HelperError::requestTimedOut()));
        });
        _pending.insert_or_assign(call->id, Pending{call, std::move(read), std::move(typeName), std::move(alarm)});

        startTask(&_tasks, [self = weak_from_this(), id = call->id, line](std::stop_token) -> QCoro::Task<> {
            std::exception_ptr failure;
            try {
                auto writing = write(self, line);
                co_await writing;
            } catch (...) {
                failure = std::current_exception();
            }
            const auto core = self.lock();
            if (core && failure)
                core->dropPending(id, failure);
        });
    }

    void beginNotify(const Request &request, const OneShotRef<void> &done) {
        QByteArray line;
        try {
            line = request.encodedLine(takeId()) + '\n';
        } catch (...) {
            done->fail(std::current_exception());
            return;
        }
        startTask(&_tasks, [self = weak_from_this(), line, done](std::stop_token) -> QCoro::Task<> {
            try {
                auto writing = write(self, line);
                co_await writing;
            } catch (...) {
                done->fail(std::current_exception());
            }
            done->fulfil();
        });
    }

    /// Takes the entry first, whoever calls: that is what keeps each request's end to one.
    void dropPending(const QString &id, const std::exception_ptr &failure) {
        if (auto entry = _pending.extract(id))
            entry.mapped().call->done.fail(failure);
    }

private:
    struct Pending {
        std::shared_ptr<Call> call;
        ReadResult read;
        QString typeName;
        std::unique_ptr<Clock::Alarm> alarm;
    };

    QString takeId() { return QStringLiteral("r%1").arg(++_nextId); }

    // What waits for the supervisor keeps its own thread, on which it goes on, but neither the state nor the
    // supervisor: the release of the client must reach them, since it is what ends a write that nobody reads.

    static QCoro::Task<> write(Weak self, QByteArray line) {
        Ref core = self.lock();
        if (!core)
            throw HelperError::helperUnavailable();
        const auto thread = SerialExecutor::current();
        auto writing = core->_process->write(std::move(line));
        core.reset();
        co_await writing;
    }

    static QCoro::Task<> launch(Weak self) {
        Ref core = self.lock();
        if (!core)
            co_return;
        const auto thread = SerialExecutor::current();
        HelperProcess::OnTermination onTermination = [self, executor = core->_executor](const auto &termination) {
            if (const auto here = executor.lock())
                here->post([self, termination] {
                    if (const auto alive = self.lock())
                        alive->onTermination(termination);
                });
        };
        auto starting = core->_process->start(std::move(onTermination));
        core.reset();
        auto chunks = co_await starting;
        core = self.lock();
        if (!core)
            co_return;
        core->_chunks = chunks;
        core->_pumpTask =
            startTask(&core->_tasks, [self, chunks](std::stop_token stop) { return pump(self, chunks, stop); });
        core->_events.push(HelperEvent::helperReady());
        if (const auto early = std::exchange(core->_earlyTermination, std::nullopt))
            core->onTermination(*early);
    }

    static QCoro::Task<> pump(Weak self, HelperProcess::Chunks chunks, std::stop_token stop) {
        while (true) {
            const auto chunk = co_await chunks.next(stop);
            if (!chunk)
                co_return;
            if (const auto core = self.lock())
                core->take(*chunk);
        }
    }

    void take(const QByteArray &chunk) {
        std::vector<HelperEvent> events;
        // As many as the chunk before had: in a burst they are alike, and nothing moves to make room.
        events.reserve(_eventsOfChunk);
        _framer.feed(chunk, [&](QByteArrayView line) { route(line, events); });
        _eventsOfChunk = events.size();
        // One push for the chunk: a burst costs a lock and a wake-up for each read, not for each line.
        _events.push(std::move(events));
    }

    void route(QByteArrayView line, std::vector<HelperEvent> &events) {
        const auto isPending = [this](const QString &id) { return _pending.contains(id); };
        const auto onReply = [&](Response response) {
            // What the engine said before its reply is on the stream before the caller hears of the reply.
            _events.push(std::move(events));
            events.clear();
            complete(std::move(response));
        };
        const auto onEvent = [&](ServerEvent event) { events.emplace_back(HelperEvent::Server{std::move(event)}); };
        if (!_decoder.route(line, isPending, onReply, onEvent))
            _logger.error(QStringLiteral("dropping undecodable line: %1").arg(asLogText(line)));
    }

    void complete(Response response) {
        auto entry = _pending.extract(response.id);
        if (!entry)
            return;
        const Pending &pending = entry.mapped();
        auto &done = pending.call->done;
        if (response.ok) {
            try {
                pending.read(response.result);
                done.fulfil();
            } catch (const std::exception &misfit) {
                done.fail(failureOf(HelperError::decodeFailure(
                    QStringLiteral("result did not match %1: %2").arg(pending.typeName, describe(misfit)))));
            }
        } else if (response.error) {
            done.fail(failureOf(HelperError::engineError(response.error->code, response.error->message)));
        } else {
            done.fail(failureOf(HelperError::decodeFailure(QStringLiteral("ok:false with no error payload"))));
        }
    }

    void failPending(const HelperError &failure) {
        const auto open = std::exchange(_pending, {});
        for (const auto &[id, entry] : open)
            entry.call->done.fail(failureOf(failure));
    }

    void onTermination(const HelperProcess::Termination &termination) {
        if (!_chunks) {
            // An engine that dies at once may be reported dead before its launch is.
            _earlyTermination = termination;
            return;
        }
        // What the engine said last counts, even if the pump had no turn for it yet.
        const auto rest = _chunks->takeGathered();
        for (const auto &chunk : rest)
            take(chunk);
        _chunks.reset();
        _pumpTask.cancel();
        _pumpTask = {};
        failPending(HelperError::helperCrashed());
        if (termination.kind == HelperProcess::Termination::Kind::Clean) {
            _logger.info(QStringLiteral("helper exited cleanly"));
            _events.finish();
            return;
        }
        _logger.error(
            QStringLiteral("helper crashed: status=%1 reason=%2").arg(termination.status).arg(termination.reason));
        _events.push(HelperEvent::helperCrashed());
        _framer = {};
        startTask(&_tasks, [self = weak_from_this()](std::stop_token stop) { return restart(self, stop); });
    }

    static QCoro::Task<> restart(Weak self, std::stop_token stop) {
        Ref core = self.lock();
        if (!core)
            co_return;
        const auto thread = SerialExecutor::current();
        const auto clock = core->_clock;
        const auto logger = core->_logger;
        auto asking = core->_process->registerCrashAndShouldRestart();
        core.reset();
        const bool goOn = co_await asking;
        if (!goOn) {
            finishEventsOf(self);
            co_return;
        }
        core = self.lock();
        if (!core)
            co_return;
        auto delaying = core->_process->nextBackoffDelay();
        core.reset();
        const auto delay = co_await delaying;
        logger.info(QStringLiteral("restarting helper in %1s").arg(inSeconds(delay), 0, 'f', 2));
        try {
            auto sleeping = clock->sleep(delay, stop);
            co_await sleeping;
        } catch (const Cancelled &) {
            // An interrupted sleep restarts at once; if the client has gone, the launch does nothing.
        }
        try {
            auto launching = launch(self);
            co_await launching;
        } catch (const std::exception &failure) {
            logger.fault(QStringLiteral("helper relaunch failed: %1").arg(QString::fromUtf8(failure.what())));
            finishEventsOf(self);
        }
    }

    static void finishEventsOf(const Weak &self) {
        if (const auto core = self.lock())
            core->_events.finish();
    }

    const std::weak_ptr<SerialExecutor> _executor;
    const std::shared_ptr<HelperProcess> _process;
    const std::shared_ptr<Clock> _clock;
    const Logger _logger{"client"};
    std::size_t _eventsOfChunk = 0;
    const AsyncStream<HelperEvent> _events;
    NDJSONFramer _framer;
    LineDecoder _decoder;
    std::map<QString, Pending> _pending;
    std::uint64_t _nextId = 0;
    std::optional<HelperProcess::Termination> _earlyTermination;
    std::optional<HelperProcess::Chunks> _chunks; // while the engine runs
    TaskHandle _pumpTask;
    bool _started = false;
    TaskScope _tasks; // last, so that tasks are cancelled before what they use goes
};

HelperClient::HelperClient(std::shared_ptr<HelperProcess> process, std::shared_ptr<Clock> clock)
    : _executor(SerialExecutor::make(QStringLiteral("orrim.zelk.client"))),
      _core(std::make_shared<Core>(_executor, std::move(process), std::move(clock))) {}

HelperClient::~HelperClient() {
    _core->finishEvents();
    // The state ends where it lives, behind the calls that are queued.
    _executor->post([core = std::move(_core)]() mutable { core.reset(); });
}

EventReader HelperClient::events() const {
    return _core->events();
}

QCoro::Task<> HelperClient::start() {
    auto done = std::make_shared<OneShot<void>>(failureOf(HelperError::helperUnavailable()));
    const auto future = done->future();
    _executor->post([core = Core::Weak(_core), done = std::move(done)] {
        if (const auto alive = core.lock())
            alive->start(done);
    });
    co_await future;
}

QCoro::Task<> HelperClient::notify(Request request) {
    auto done = std::make_shared<OneShot<void>>(failureOf(HelperError::helperUnavailable()));
    const auto future = done->future();
    _executor->post([core = Core::Weak(_core), done = std::move(done), request = std::move(request)] {
        if (const auto alive = core.lock())
            alive->beginNotify(request, done);
    });
    co_await future;
}

QCoro::Task<> HelperClient::perform(Request request, ReadResult read, QString typeName,
                                    std::chrono::nanoseconds timeout, std::stop_token stop) {
    if (stop.stop_requested())
        throw Cancelled();
    // Only what was posted holds the call, so that it fails when that is released.
    auto call = std::make_shared<Call>();
    const auto future = call->done.future();
    const auto core = Core::Weak(_core);
    const std::weak_ptr<Call> posted = call;
    _executor->post([core, call = std::move(call), request = std::move(request), read = std::move(read), typeName,
                     timeout]() mutable {
        if (const auto alive = core.lock())
            alive->beginRequest(request, std::move(read), typeName, timeout, call);
    });
    const std::stop_callback onStop(stop, [core, posted, executor = std::weak_ptr(_executor)] {
        // Behind the job above, so that the id is known.
        if (const auto here = executor.lock())
            here->post([core, posted] {
                const auto alive = core.lock();
                const auto open = posted.lock();
                if (alive && open)
                    alive->dropPending(open->id, failureOf(Cancelled()));
            });
    });
    co_await future;
}

} // namespace zelk
