#pragma once

#include "Support/Await.h"
#include "Support/ManualClock.h"
#include "Support/ScriptedEngine.h"
#include "Transport/HelperClient.h"
#include "Transport/HelperError.h"

#include <QPointer>
#include <QTest>

namespace zelk {

// Transcripts are full of texts: "like this"_s.
inline QString operator""_s(const char *text, std::size_t size) {
    return QString::fromUtf8(text, static_cast<qsizetype>(size));
}

// A client of an engine that plays a transcript, with its events noted in words as they come.
class Connected : public QObject {
public:
    explicit Connected(const QStringList &commands, const QString &program = ScriptedEngine::program())
        : engine(commands), process(std::make_shared<HelperProcess>(program, engine.arguments(), clock)),
          client(std::make_shared<HelperClient>(process, clock)) {
        startTask(this, [self = QPointer(this), reader = client->events()](std::stop_token stop) -> QCoro::Task<> {
            while (true) {
                const auto event = co_await reader.next(stop);
                if (!event)
                    break;
                self->events.append(inWords(*event));
            }
            self->ended = true;
        });
    }

    bool start() const { return outcomeOf(client->start()).succeeded(); }

    template<typename T>
    auto request(Request request, std::chrono::nanoseconds timeout = HelperClienting::standardTimeout) {
        return observe(this, client->request<T>(std::move(request), timeout));
    }

    // Moves the clock once somebody waits for it.
    bool advanceWhenAwaited(Clock::Duration duration) const {
        const bool awaited =
            QTest::qWaitFor([&] { return clock->untilNextAlarm() && *clock->untilNextAlarm() <= duration; });
        clock->advance(duration);
        return awaited;
    }

    static QString inWords(const HelperEvent &event) {
        if (std::holds_alternative<HelperEvent::HelperReady>(event.value))
            return QStringLiteral("ready");
        if (std::holds_alternative<HelperEvent::HelperCrashed>(event.value))
            return QStringLiteral("crashed");
        const auto &server = std::get<HelperEvent::Server>(event.value).event;
        if (const auto *log = std::get_if<ServerEvent::Log>(&server.value))
            return log->message;
        if (const auto *unknown = std::get_if<ServerEvent::Unknown>(&server.value))
            return QStringLiteral("unknown ") + unknown->type;
        return QStringLiteral("other");
    }

    ScriptedEngine engine;
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<HelperProcess> process;
    std::shared_ptr<HelperClient> client;
    QStringList events;
    bool ended = false;
};

inline QString log(const QString &message) {
    return QStringLiteral(R"(send {"event":"log","data":{"level":"info","message":"%1"}})").arg(message);
}

inline const QString previewTrack = QStringLiteral(
    R"({"id":"p#0","title":"T","artist":"A","durationSec":3,"artwork":{"kind":"none"},"onDisk":"present"})");

inline Request tracksOf(const QString &id) {
    return Request::getPlaylistTracks(PlaylistSourceId::apple, id);
}

} // namespace zelk
