// What rows cost: the memory of a window with none, 10,000 and 100,000 of them, a frame while they scroll, and a change
// of one that is in view. Frames are drawn by the software renderer into a picture; times are the main thread's own
// processor time, so that waiting doesn't count.
#include "OpenWindow.h"

#include "Platform/BootClock.h"
#include "Platform/ProcessSignals.h"
#include "Support/MockHelperClient.h"
#include "Views/ListWindow.h"

#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int rowsOfPlaylist = 500;
constexpr int frames = 400;
constexpr int changes = 200;

double processorMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double residentMebibytes() {
    QFile statm(u"/proc/self/statm"_s);
    if (!statm.open(QFile::ReadOnly))
        return 0;
    return double(statm.readAll().split(' ').value(1).toLongLong()) * 4096 / (1024 * 1024);
}

QString rowId(int list, int row) {
    return u"list%1#%2"_s.arg(list).arg(row);
}

void route(AppModel &model, ServerEvent event) {
    model.sync()->route(HelperEvent::server(std::move(event)));
}

void beginRun(AppModel &model, int rows) {
    const int lists = rows / rowsOfPlaylist;
    const QString run = u"run%1"_s.arg(rows);
    route(model, ServerEvent::SyncStarted{run, run, lists});
    for (int list = 0; list < lists; ++list) {
        std::vector<TrackDTO> tracks;
        for (int row = 0; row < rowsOfPlaylist; ++row) {
            TrackDTO track;
            track.id = rowId(list, row);
            track.title = u"Title %1 of %2"_s.arg(row).arg(list);
            track.artist = u"Artist %1"_s.arg(row % 97);
            track.album = u"Album %1"_s.arg(row % 31);
            track.durationSec = 180 + row % 240;
            tracks.push_back(std::move(track));
        }
        route(model, ServerEvent::PlaylistStarted{run, u"list%1"_s.arg(list), list, u"List %1"_s.arg(list),
                                                  std::move(tracks)});
    }
}

void settle() {
    for (int i = 0; i < 50; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

struct Times {
    double median, worst;
};

Times of(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times.back()};
}

Times scroll(QQuickWindow &window, QQuickItem &table) {
    std::vector<double> times;
    const double end = table.property("contentHeight").toDouble() - table.height();
    for (int frame = 0; frame < frames; ++frame) {
        const double before = processorMilliseconds();
        // Every tenth is a jump, as with a dragged bar; the others are turns of a wheel.
        const double y = frame % 10 == 0 ? end * (frame * 7 % frames) / frames
                                         : std::min(end, table.property("contentY").toDouble() + 140);
        table.setProperty("contentY", y);
        window.grabWindow();
        times.push_back(processorMilliseconds() - before);
    }
    return of(std::move(times));
}

Times change(AppModel &model, QQuickItem &table) {
    table.setProperty("contentY", 0);
    settle();
    const MeasuredListModel *rows = table.findChild<ListWindow *>()->model();
    bool told = false;
    const auto connection = QObject::connect(rows, &QAbstractItemModel::dataChanged, [&told](const QModelIndex &at) {
        told = told || at.row() > 1; // the card above tells of its counts too
    });
    std::vector<double> times;
    for (int i = 0; i < changes; ++i) {
        told = false;
        const double before = processorMilliseconds();
        route(model, ServerEvent::DownloadProgress{u"run"_s, rowId(0, i % 8), double(i % 100), u"6 MB"_s, {}});
        while (!told)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        times.push_back(processorMilliseconds() - before);
    }
    QObject::disconnect(connection);
    return of(std::move(times));
}

} // namespace

int main(int argc, char **argv) {
    prepareProcessSignals();
    const QGuiApplication application(argc, argv);
    const auto client = std::make_shared<MockHelperClient>();
    OpenWindow open(
        [&] {
            return AppModel::Engine{client, []() -> QCoro::Task<> { co_return; }};
        },
        std::make_shared<BootClock>());
    QQuickWindow *window = open.window.window();
    if (!window)
        return 2;
    settle();
    window->grabWindow();
    std::printf("memory: no row %.0f MiB", residentMebibytes());

    std::vector<Times> scrolled, changed;
    for (const int rows : {5000, 10'000, 100'000}) {
        beginRun(open.model, rows);
        settle();
        window->grabWindow();
        if (rows != 5000)
            std::printf(", %d rows %.0f MiB", rows, residentMebibytes());
        auto *table = window->findChild<QQuickItem *>(u"trackTable"_s);
        if (!table)
            return 2;
        scrolled.push_back(scroll(*window, *table));
        changed.push_back(change(open.model, *table));
    }
    std::printf(" (budget at 100,000: 200)\n");
    std::printf("a frame while 100,000 rows scroll: median %.1f ms, worst %.1f ms; %.2f times that of 5,000 rows\n",
                scrolled.back().median, scrolled.back().worst, scrolled.back().median / scrolled.front().median);
    std::printf("a change of a row in view at 100,000 rows: %.2f times that at 5,000 (budget: 1.2; %.0f and %.0f us)\n",
                changed.back().median / changed.front().median, changed.back().median * 1e3,
                changed.front().median * 1e3);
    return 0;
}
