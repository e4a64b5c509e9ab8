#include "App/OneWindow.h"
#include "App/UnattendedRun.h"
#include "App/ZELKApp.h"
#include "Platform/DesktopEntry.h"
#include "Platform/ProcessSignals.h"
#include "Platform/SingleInstance.h"
#include "Styling/ApplicationIcon.h"
#include "Support/Logger.h"
#include "Views/MainWindow.h"
#include "Views/RunNotice.h"
#include "Views/RunProgress.h"
#include "Views/Translations.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QUrl>

#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Arguments {
    bool unattended = false;
    QString screenshot;
    QList<QUrl> addresses{};
};

Arguments readArguments() {
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Turns playlists into a DJ-ready local music library."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption unattended(u"unattended"_s, u"Sync all playlists, print the outcome and quit."_s);
    const QCommandLineOption screenshot(u"screenshot"_s,
                                        u"With --unattended: write a picture of the window at the end."_s, u"file"_s);
    parser.addOptions({unattended, screenshot});
    parser.process(*QCoreApplication::instance());
    Arguments read{.unattended = parser.isSet(unattended), .screenshot = parser.value(screenshot)};
    const auto rest = parser.positionalArguments();
    for (const auto &each : rest)
        read.addresses.append(QUrl(each));
    return read;
}

/// An address that was handed to the application. Nothing comes in this way, no sign-in either, so that it is dropped;
/// what stands behind its scheme may be a secret and isn't even logged.
void open(const QUrl &address) {
    static const Logger logger("app");
    logger.debug(u"Dropped an address with the scheme \"%1\"."_s.arg(address.scheme()));
}

/// What the desktop shows of a run beside the window.
struct RunSigns {
    RunSigns(const SyncStore &sync, const MainWindow &window, const std::shared_ptr<Clock> &clock)
        : notice(sync, {.notifier = DesktopNotifier::ofSession(),
                        .activation = ApplicationActivation::make(),
                        .isInFront = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; },
                        .bringToFront = [&window] { window.bringToFront(); }}),
          progress(sync, TaskBarProgress::ofSession(), clock) {}

    const RunNotice notice;
    const RunProgress progress;
};

/// What the desktop gave this start so that its window may come to the front. Qt clears it away.
QString activationToken() {
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

/// `instance` is null for a run that stands beside any window.
int run(const Arguments &arguments, std::unique_ptr<SingleInstance> instance) {
    const ZELKApp app(arguments.unattended ? ZELKApp::Attendance::unattended : ZELKApp::Attendance::attended);
    const auto surroundings = app.windowSurroundings();
    const MainWindow window(app.model(), surroundings);
    if (!window.window())
        return EXIT_FAILURE;
    if (instance)
        OneWindow::answer(*instance, [&window] { window.bringToFront(); });
    std::optional<UnattendedRun> unattended;
    std::optional<RunSigns> signs;
    if (arguments.unattended)
        unattended.emplace(app.model(), *window.window(), arguments.screenshot);
    else
        signs.emplace(*app.model().sync(), window, surroundings.clock);
    const int status = QGuiApplication::exec();
    instance.reset(); // from here on nobody would answer
    return status;
}

} // namespace

int main(int argc, char **argv) {
    prepareProcessSignals();
    const QString token = activationToken();
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"orrim"_s);
    QCoreApplication::setApplicationName(u"zelk"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(ZELK_VERSION));
    QGuiApplication::setDesktopFileName(desktopEntryName());
    QGuiApplication::setWindowIcon(applicationIcon());
    const auto arguments = readArguments();
    for (const auto &address : arguments.addresses)
        open(address);

    std::unique_ptr<SingleInstance> instance;
    if (!arguments.unattended) {
        instance = SingleInstance::ofSession(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
        if (!OneWindow::goesOn(*instance, token))
            return EXIT_SUCCESS;
    }
    Translations::install();
    const int status = run(arguments, std::move(instance));
    // What was cancelled with the model ends on the next turn.
    QCoreApplication::processEvents();
    return status;
}
