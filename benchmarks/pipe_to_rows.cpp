// How long a child that pours out a file of lines takes to arrive: in the rows that the window shows, through the whole
// client and the store of the run, or as QJsonDocuments of which nothing is made. Prints the milliseconds from the
// child's launch to its end, for benchmarks/compare.
//   bench_pipe_to_rows [--documents] LINES-FILE
#include "Platform/BootClock.h"
#include "Platform/ProcessSignals.h"
#include "State/SyncStore.h"
#include "Support/Task.h"
#include "Transport/HelperClient.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cstdio>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString cat = QStringLiteral("/bin/cat");

/// How many events came.
qsizetype intoRows(const QString &file) {
    const auto clock = std::make_shared<BootClock>();
    const auto process = std::make_shared<HelperProcess>(cat, QStringList{file}, clock);
    const auto client = std::make_shared<HelperClient>(process, clock);
    SyncStore store;
    qsizetype events = 0;
    startTask(&store, [client](std::stop_token) { return client->start(); });
    startTask(&store, [reader = client->events(), &store, &events](std::stop_token stop) -> QCoro::Task<> {
        while (const auto event = co_await reader.next(stop)) {
            store.route(*event);
            ++events;
        }
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return events;
}

qsizetype intoDocuments(const QString &file) {
    QProcess process;
    qsizetype events = 0;
    const auto read = [&] {
        while (process.canReadLine())
            events += QJsonDocument::fromJson(process.readLine()).object().contains("event"_L1) ? 1 : 0;
    };
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, read);
    QObject::connect(&process, &QProcess::finished, &process, [&] {
        read();
        QCoreApplication::quit();
    });
    process.start(cat, {file});
    QCoreApplication::exec();
    return events;
}

} // namespace

int main(int argc, char **argv) {
    prepareProcessSignals();
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return 2;
    const bool asDocuments = arguments.constFirst() == u"--documents";
    QElapsedTimer since;
    since.start();
    const qsizetype events = asDocuments ? intoDocuments(arguments.constLast()) : intoRows(arguments.constLast());
    std::printf("%.3f\n", double(since.nsecsElapsed()) / 1e6);
    return events > 0 ? 0 : 1;
}
