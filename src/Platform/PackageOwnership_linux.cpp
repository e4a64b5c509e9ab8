#include "Platform/PackageOwnership.h"

#include "Support/Cancelled.h"
#include "Support/OneShot.h"

#include <QCoroFuture>
#include <QProcess>

#include <chrono>
#include <utility>

namespace zelk {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 10s;

/// The program takes a pattern; every character of a path stands for itself.
QString patternFor(const QString &path) {
    QString pattern;
    for (const QChar character : path) {
        if (QStringLiteral("\\*?[").contains(character))
            pattern += u'\\';
        pattern += character;
    }
    return pattern;
}

bool meansOwned(int status, QProcess::ExitStatus exit) {
    return exit != QProcess::NormalExit || status != 1;
}

} // namespace

QCoro::Task<bool> isOwnedByPackageManager(QString path, std::shared_ptr<Clock> clock, std::stop_token stop,
                                          QString program) {
    const auto cancelled = std::make_exception_ptr(Cancelled());
    const auto answer = std::make_shared<OneShot<bool>>(cancelled);
    const auto future = answer->future();
    QProcess asking; // released, it ends a child that still runs
    asking.setStandardInputFile(QProcess::nullDevice());
    asking.setStandardOutputFile(QProcess::nullDevice());
    asking.setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(&asking, &QProcess::finished, &asking,
                     [answer](int status, QProcess::ExitStatus exit) { answer->fulfil(meansOwned(status, exit)); });
    QObject::connect(&asking, &QProcess::errorOccurred, &asking, [answer](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            answer->fulfil(false);
    });
    const auto alarm = clock->after(patience, [answer] { answer->fulfil(true); });
    const std::stop_callback onStop(stop, [answer, cancelled] { answer->fail(cancelled); });
    asking.start(program, QStringList() << QStringLiteral("-S") << QStringLiteral("--") << patternFor(path));
    const bool owned = co_await future;
    asking.disconnect();
    asking.kill();
    if (stop.stop_requested())
        throw Cancelled();
    co_return owned;
}

} // namespace zelk
