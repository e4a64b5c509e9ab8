// What the hand-over of events to the main thread costs: the stream, which takes what a read brought in one go, beside
// one queued call for each event. And the longest gap of a 16 ms tick on the main thread while a burst arrives.
#include "Platform/BootClock.h"
#include "Support/AsyncStream.h"
#include "Support/SerialExecutor.h"
#include "Support/Task.h"
#include "Transport/HelperEvent.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace zelk;

namespace {

constexpr int burst = 300'000;
constexpr int perRead = 400; // lines in one read of the pipe
constexpr int rounds = 9;

HelperEvent makeEvent(int i) {
    ServerEvent::DownloadProgress progress;
    progress.correlationId = QStringLiteral("run-1");
    progress.trackId = QStringLiteral("spotify:demo#%1").arg(i % 1000);
    progress.percent = i % 100;
    progress.sizeText = QStringLiteral("6 MB");
    return HelperEvent::server(ServerEvent{std::move(progress)});
}

std::vector<std::vector<HelperEvent>> makeReads() {
    std::vector<std::vector<HelperEvent>> reads;
    for (int i = 0; i < burst; i += perRead) {
        auto &read = reads.emplace_back();
        for (int j = i; j < i + perRead; ++j)
            read.push_back(makeEvent(j));
    }
    return reads;
}

class Tick {
public:
    Tick() {
        _timer.setTimerType(Qt::PreciseTimer);
        _timer.callOnTimeout([this] {
            _longest = std::max(_longest, double(_since.nsecsElapsed()) / 1e6);
            _since.restart();
        });
        _since.start();
        _timer.start(16);
    }
    double longest() const { return _longest; }

private:
    QTimer _timer;
    QElapsedTimer _since;
    double _longest = 0;
};

struct Result {
    double milliseconds = 0;
    double longestTick = 0;
};

/// What each event does on arrival: enough to touch it.
void apply(const HelperEvent &event, qsizetype &seen) {
    seen += std::holds_alternative<HelperEvent::Server>(event.value) ? 1 : 0;
}

Result byStream() {
    auto reads = makeReads();
    const auto writer = SerialExecutor::make(QStringLiteral("writer"));
    AsyncStream<HelperEvent> stream;
    QObject owner;
    qsizetype seen = 0;
    const Tick tick;
    QElapsedTimer timer;
    startTask(&owner, [reader = stream.reader(), &seen](std::stop_token stop) -> QCoro::Task<> {
        while (const auto event = co_await reader.next(stop))
            apply(*event, seen);
        QCoreApplication::quit();
    });
    timer.start();
    writer->post([&stream, &reads] {
        for (auto &read : reads)
            stream.push(std::move(read));
        stream.finish();
    });
    QCoreApplication::exec();
    return {.milliseconds = double(timer.nsecsElapsed()) / 1e6, .longestTick = tick.longest()};
}

Result byQueuedCalls() {
    auto reads = makeReads();
    const auto writer = SerialExecutor::make(QStringLiteral("writer"));
    const auto main = SerialExecutor::main();
    qsizetype seen = 0;
    const Tick tick;
    QElapsedTimer timer;
    timer.start();
    writer->post([&] {
        for (auto &read : reads) {
            for (auto &event : read)
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(), [event = std::move(event), &seen] { apply(event, seen); },
                    Qt::QueuedConnection);
        }
        main->post([] { QCoreApplication::quit(); });
    });
    QCoreApplication::exec();
    return {.milliseconds = double(timer.nsecsElapsed()) / 1e6, .longestTick = tick.longest()};
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    std::vector<double> stream;
    std::vector<double> queued;
    double longestTick = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto ours = byStream();
        const auto theirs = byQueuedCalls();
        stream.push_back(ours.milliseconds);
        queued.push_back(theirs.milliseconds);
        longestTick = std::max(longestTick, ours.longestTick);
    }
    std::printf("hand-over of %d events to the main thread\n", burst);
    std::printf("  stream: median %.0f ms; one queued call for each: median %.0f ms\n", median(stream), median(queued));
    std::printf("  ratio: %.2f times as fast (budget: at least 2.5)\n", median(queued) / median(stream));
    std::printf("  longest gap of a 16 ms tick during the burst: %.1f ms (budget: 33)\n", longestTick);
    return 0;
}
