#include "Rest.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

using namespace std::chrono_literals;

namespace zelk {

namespace {

constexpr auto glance = 200ms;
constexpr auto patience = 20s;
constexpr int fewTurns = 20; // a cursor blinks, a thread says that it has ended

} // namespace

void waitForRest(const QString &scene) {
    int turns = 0;
    const auto counting =
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, [&turns] { ++turns; });
    const QDeadlineTimer deadline(patience);
    do {
        turns = 0;
        QEventLoop loop;
        QTimer::singleShot(glance, &loop, &QEventLoop::quit);
        loop.exec();
    } while (turns > fewTurns && !deadline.hasExpired());
    QObject::disconnect(counting);
    if (turns > fewTurns)
        qFatal("%s doesn't come to rest: %d turns in 200 ms", qPrintable(scene), turns);
}

} // namespace zelk
