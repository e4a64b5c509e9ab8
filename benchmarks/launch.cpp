// From the launch of the built application, its engine beside it, to its first frame, beside a bare list of Qt's that
// is launched in the same way; then what the application costs while nobody touches it.
//   launch APPLICATION      the bare list is this program itself, as `launch --bare`
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlComponent>
#include <QQuickView>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int launches = 11;
constexpr int idleSeconds = 5;

int showBareList(int argc, char **argv) {
    const QGuiApplication application(argc, argv);
    QQuickView view;
    QQmlComponent list(view.engine());
    list.setData(R"(import QtQuick
                    ListView { width: 1040; height: 720; model: 1000; delegate: Text { text: "Row " + index } })",
                 QUrl());
    view.setContent(QUrl(), &list, list.create());
    view.show();
    return QGuiApplication::exec();
}

/// A program that has drawn its first frame, which Qt itself says.
class Launched {
public:
    Launched(const QString &program, const QStringList &arguments, const QString &home) {
        auto around = QProcessEnvironment::systemEnvironment();
        around.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        around.insert(u"HOME"_s, home);
        around.insert(u"XDG_CONFIG_HOME"_s, home + u"/.config"_s);
        around.insert(u"XDG_CACHE_HOME"_s, home + u"/.cache"_s);
        around.insert(u"XDG_DATA_HOME"_s, home + u"/.local/share"_s);
        around.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        around.insert(u"QT_QUICK_BACKEND"_s, u"software"_s);
        around.insert(u"QT_FORCE_STDERR_LOGGING"_s, u"1"_s);
        around.insert(u"QT_LOGGING_RULES"_s, u"qt.scenegraph.time.renderloop.debug=true"_s);
        process.setProcessEnvironment(around);
        process.setReadChannel(QProcess::StandardError);
        QElapsedTimer since;
        since.start();
        process.start(program, arguments);
        while (process.waitForReadyRead(20'000)) {
            if (!process.readAll().contains("rendered"))
                continue;
            milliseconds = double(since.nsecsElapsed()) / 1e6;
            return;
        }
    }
    ~Launched() {
        process.terminate();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Launched)

    QProcess process;
    double milliseconds = 0; // to the first frame; 0 if none was drawn
};

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Summed over a process's threads.
qlonglong wakeUps(qint64 pid) {
    qlonglong sum = 0;
    const QDir tasks(u"/proc/%1/task"_s.arg(pid));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(tasks.filePath(task + u"/status"_s));
        if (!status.open(QFile::ReadOnly))
            continue;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                sum += line.mid(24).trimmed().toLongLong();
        }
    }
    return sum;
}

qlonglong processorTicks(qint64 pid) {
    QFile stat(u"/proc/%1/stat"_s.arg(pid));
    if (!stat.open(QFile::ReadOnly))
        return 0;
    const QByteArray text = stat.readAll();
    const auto fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return fields.value(11).toLongLong() + fields.value(12).toLongLong();
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && qstrcmp(argv[1], "--bare") == 0)
        return showBareList(argc, argv);
    if (argc < 2)
        return 2;
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    QDir(home.path()).mkpath(u".config/orrim"_s);
    QFile defaults(home.filePath(u".config/orrim/zelk.conf"_s));
    if (!defaults.open(QFile::WriteOnly) || defaults.write("[General]\ndidOnboard=true\n") < 0)
        return 2;
    defaults.close();

    const QString ours = QString::fromLocal8Bit(argv[1]);
    std::vector<double> own, bare;
    for (int i = 0; i < launches; ++i) {
        own.push_back(Launched(ours, {}, home.path()).milliseconds);
        bare.push_back(Launched(QCoreApplication::applicationFilePath(), {u"--bare"_s}, home.path()).milliseconds);
    }
    std::printf("launch to first frame: %.0f ms (budget: 400), %.1f times a bare list's %.0f ms\n", medianOf(own),
                medianOf(own) / medianOf(bare), medianOf(bare));

    const Launched idle(ours, {}, home.path());
    QThread::sleep(3); // what a start sets going has ended
    const qint64 pid = idle.process.processId();
    const qlonglong ticks = processorTicks(pid);
    const qlonglong wakes = wakeUps(pid);
    QThread::sleep(idleSeconds);
    std::printf("idle for %d s: %.1f %% processor, %lld wake-ups (budget: 0.0 %%, none)\n", idleSeconds,
                double(processorTicks(pid) - ticks) * 100 / double(sysconf(_SC_CLK_TCK)) / idleSeconds,
                wakeUps(pid) - wakes);
    return medianOf(own) > 0 && medianOf(bare) > 0 ? 0 : 1;
}
