// How long a stream of lines takes from an engine's pipe to typed events on the main thread, through the whole client,
// beside Node's readline and JSON.parse on the same pipe, which build nothing of what they read. Usage:
// bench_pipe_to_event LINES-FILE REPEATS [NODE-SCRIPT]. Prints the ratio, which carries over from machine to machine.
#include "Platform/BootClock.h"
#include "Platform/ProcessSignals.h"
#include "Support/Task.h"
#include "Transport/HelperClient.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace zelk;

namespace {

constexpr double budget = 4.5;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Result {
    double milliseconds = 0;
    qsizetype events = 0;
};

/// From the launch of a child that pours the file out to the end of its stream of events.
Result throughTheClient(const QString &file) {
    const auto clock = std::make_shared<BootClock>();
    const auto client = std::make_shared<HelperClient>(
        std::make_shared<HelperProcess>(QStringLiteral("/bin/cat"), QStringList{file}, clock), clock);
    QObject owner;
    Result result;
    QElapsedTimer timer;
    timer.start();
    startTask(&owner, [client](std::stop_token) { return client->start(); });
    startTask(&owner, [reader = client->events(), &result](std::stop_token stop) -> QCoro::Task<> {
        while (const auto event = co_await reader.next(stop))
            ++result.events;
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    result.milliseconds = double(timer.nsecsElapsed()) / 1e6;
    return result;
}

/// The same in Node, which prints the milliseconds from its launch of the child on; nothing without Node.
double throughNode(const QString &script, const QString &file) {
    QProcess node;
    node.start(QStringLiteral("node"), {script, file});
    if (!node.waitForFinished(300000) || node.exitStatus() != QProcess::NormalExit || node.exitCode() != 0)
        return 0;
    return node.readAllStandardOutput().toDouble();
}

} // namespace

int main(int argc, char **argv) {
    prepareProcessSignals();
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::fprintf(stderr, "usage: bench_pipe_to_event LINES-FILE REPEATS [NODE-SCRIPT]\n");
        return 2;
    }
    QFile lines(arguments.at(1));
    if (!lines.open(QFile::ReadOnly)) {
        std::fprintf(stderr, "no lines in %s\n", argv[1]);
        return 2;
    }
    const QByteArray once = lines.readAll();
    const int repeats = arguments.at(2).toInt();
    const QTemporaryDir folder;
    const QString stream = folder.filePath(QStringLiteral("stream"));
    QFile out(stream);
    if (!out.open(QFile::WriteOnly))
        return 2;
    for (int i = 0; i < repeats; ++i)
        out.write(once);
    out.close();

    constexpr int rounds = 7;
    std::vector<double> ours;
    std::vector<double> theirs;
    qsizetype events = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto result = throughTheClient(stream);
        ours.push_back(result.milliseconds);
        events = result.events;
        if (arguments.size() > 3)
            theirs.push_back(throughNode(arguments.at(3), stream));
    }
    std::printf("pipe to event: %lld lines of %.0f bytes, %lld events\n", qlonglong(once.count('\n')) * repeats,
                double(once.size()) / double(once.count('\n')), qlonglong(events));
    std::printf("  here: median %.0f ms, %.2f us a line\n", median(ours), median(ours) * 1000 / double(events));
    if (theirs.empty() || median(theirs) <= 0) {
        std::printf("  node: not measured, there is none\n");
        return 0;
    }
    std::printf("  node: median %.0f ms\n", median(theirs));
    std::printf("  ratio: %.2f times as fast (budget: at least %.1f)\n", median(theirs) / median(ours), budget);
    return 0;
}
