#include "Platform/PackageOwnership.h"

#include "Platform/CommandRun.h"
#include "Support/Cancelled.h"
#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QStandardPaths>

#include <chrono>
#include <system_error>
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

/// The path of `program`, which may be a name to be looked up. None where there is no such program.
QString locate(const QString &program) {
    if (!program.contains(u'/'))
        return QStandardPaths::findExecutable(program);
    return QFileInfo::exists(program) ? program : QString();
}

/// Blocks until the program has answered. Whatever is no clear no is a yes.
bool isOwned(const QString &program, const QString &path, const std::stop_token &stop) {
    const QStringList arguments{QStringLiteral("-S"), QStringLiteral("--"), patternFor(path)};
    try {
        const auto end = runCommand(program, arguments, CommandErrors::withTheOutput, {.most = {}, .stop = stop});
        return end.exitStatus != 1;
    } catch (const Cancelled &) {
        return true;
    } catch (const std::system_error &) {
        return true;
    }
}

/// On a thread of its own. The promise is the job's, so that it is kept even if the job never runs.
void startAsking(const OneShotRef<bool> &answer, const QString &program, const QString &path,
                 const std::stop_token &stop) {
    SerialExecutor::make(QStringLiteral("orrim.zelk.package-ownership"))->post([answer, program, path, stop] {
        answer->fulfil(isOwned(program, path, stop));
    });
}

} // namespace

QCoro::Task<bool> isOwnedByPackageManager(QString path, std::shared_ptr<Clock> clock, std::stop_token stop,
                                          QString program) {
    const QString located = locate(program);
    if (located.isEmpty())
        co_return false;
    auto answer = std::make_shared<OneShot<bool>>(std::make_exception_ptr(Cancelled()));
    const auto future = answer->future();
    const std::weak_ptr<OneShot<bool>> open = answer;
    std::stop_source ending;
    const auto alarm = clock->after(patience, [open, ending]() mutable {
        if (const auto waiting = open.lock())
            waiting->fulfil(true);
        ending.request_stop();
    });
    const std::stop_callback onStop(stop, [open, ending]() mutable {
        if (const auto waiting = open.lock())
            waiting->fail(std::make_exception_ptr(Cancelled()));
        ending.request_stop();
    });
    startAsking(answer, located, path, ending.get_token());
    answer.reset();
    const bool owned = co_await future;
    if (stop.stop_requested())
        throw Cancelled();
    co_return owned;
}

} // namespace zelk
