#include "App/AppModel.h"
#include "App/UnattendedRun.h"
#include "Platform/BootClock.h"
#include "Platform/MusicLibrary.h"
#include "Platform/ProcessSignals.h"
#include "Services/ArtworkProvider.h"
#include "Transport/HelperClient.h"
#include "Transport/HelperProcess.h"
#include "Views/MainWindow.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QStandardPaths>

#include <cstdlib>
#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Arguments {
    bool unattended = false;
    QString screenshot;
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
    return {.unattended = parser.isSet(unattended), .screenshot = parser.value(screenshot)};
}

/// The engine of this machine, as a child of this process.
AppModel::Launcher engineLauncher(const std::shared_ptr<Clock> &clock) {
    return [clock] {
        const auto process = std::make_shared<HelperProcess>(QStringList{u"serve"_s}, clock);
        const auto client = std::make_shared<HelperClient>(process, clock);
        return AppModel::Engine{.client = client, .start = [client] { return client->start(); }};
    };
}

std::shared_ptr<ArtworkProvider> artworkOf(const std::shared_ptr<Clock> &clock) {
    return std::make_shared<ArtworkProvider>(ArtworkProvider::Surroundings{
        .cachesFolder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation),
        .clock = clock,
        .wallTime = [] { return QDateTime::currentDateTime(); },
        .openLibrary = [] { return MusicLibrary::open(MusicLibrary::defaultFile()); },
        .mayReadLibrary = {}});
}

int run(const Arguments &arguments) {
    const auto clock = std::make_shared<BootClock>();
    ArtworkProvider::setShared(artworkOf(clock));
    const auto letGo = qScopeGuard([] { ArtworkProvider::setShared(nullptr); });
    AppModel model(engineLauncher(clock), {.clock = clock, .defaults = UserDefaults::standard()});
    const MainWindow window(model);
    if (!window.window())
        return EXIT_FAILURE;
    std::optional<UnattendedRun> unattended;
    if (arguments.unattended)
        unattended.emplace(model, *window.window(), arguments.screenshot);
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    prepareProcessSignals();
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"orrim"_s);
    QCoreApplication::setApplicationName(u"zelk"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(ZELK_VERSION));
    const auto arguments = readArguments();

    const int status = run(arguments);
    // What was cancelled with the model ends on the next turn.
    QCoreApplication::processEvents();
    return status;
}
