// The longest gap of a 16 ms tick on the main thread while a run of 300,000 events comes through the pipe into the open
// window: client, bridge, stores, models and views, all of it.
#include "OpenWindow.h"

#include "Platform/BootClock.h"
#include "Platform/ProcessSignals.h"
#include "Transport/HelperClient.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int tracks = 1000;
constexpr int events = 300'000;

void writeRun(QFile &out) {
    QByteArray rows;
    for (int i = 0; i < tracks; ++i) {
        rows += i ? "," : "";
        rows += R"({"id":"p#)" + QByteArray::number(i) + R"(","title":"Title )" + QByteArray::number(i) +
                R"(","artist":"Artist","durationSec":240,"artwork":{"kind":"none"}})";
    }
    out.write(R"({"event":"syncStarted","correlationId":"r","data":{"runId":"r","totalPlaylists":1}})"
              "\n");
    out.write(
        R"({"event":"playlistStarted","correlationId":"r","data":{"playlistId":"p","index":0,"name":"P","tracks":[)" +
        rows + "]}}\n");
    for (int i = 0; i < events; ++i) {
        const QByteArray id = QByteArray::number(i % tracks);
        const QByteArray percent = QByteArray::number(i * 100 / events);
        out.write(R"({"event":"downloadProgress","correlationId":"r","data":{"trackId":"p#)" + id + R"(","percent":)" +
                  percent +
                  R"(,"sizeText":"6 MB","speedText":"1.2 MB/s"}})"
                  "\n");
    }
    out.write(
        R"({"event":"syncDone","correlationId":"r","data":{"runId":"r","summary":{"present":0,"ok":0,"flagged":0,"failed":0,)"
        R"("skipped":0,"upgraded":0,"removed":0}}})"
        "\n");
}

} // namespace

int main(int argc, char **argv) {
    prepareProcessSignals();
    const QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString stream = folder.filePath(u"run"_s);
    QFile out(stream);
    if (!out.open(QFile::WriteOnly))
        return 2;
    writeRun(out);
    out.close();

    const auto clock = std::make_shared<BootClock>();
    AppModel::Launcher launcher = [&] {
        const auto process = std::make_shared<HelperProcess>(u"/bin/cat"_s, QStringList{stream}, clock);
        const auto client = std::make_shared<HelperClient>(process, clock);
        return AppModel::Engine{.client = client, .start = [client] { return client->start(); }};
    };
    OpenWindow open(launcher, clock);
    AppModel &model = open.model;
    if (!open.window.window())
        return 2;

    QElapsedTimer sinceTick;
    std::vector<double> gaps;
    QTimer tick;
    tick.setTimerType(Qt::PreciseTimer);
    tick.callOnTimeout([&] {
        gaps.push_back(double(sinceTick.nsecsElapsed()) / 1e6);
        sinceTick.restart();
    });
    QElapsedTimer whole;
    // The run alone is measured: the window's own first frames are over by then, or count with it if they aren't.
    QObject::connect(model.sync(), &SyncStore::phaseChanged, [&] {
        if (model.sync()->phase() == SyncPhase::done)
            QCoreApplication::quit();
        if (model.sync()->phase() != SyncPhase::running)
            return;
        sinceTick.start();
        whole.start();
        tick.start(16);
    });
    QGuiApplication::exec();
    std::sort(gaps.begin(), gaps.end());
    std::printf("burst of %d events into the open window: %.2f s\n", events, double(whole.nsecsElapsed()) / 1e9);
    if (gaps.empty())
        return 1;
    std::printf("  16 ms tick: median %.1f ms, longest gap %.1f ms (budget: 33)\n", gaps[gaps.size() / 2], gaps.back());
    return 0;
}
