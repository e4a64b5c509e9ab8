#include "App/AppModel.h"
#include "App/UnattendedRun.h"
#include "Platform/ApplicationActivation.h"
#include "Platform/BootClock.h"
#include "Platform/FileViewer.h"
#include "Platform/MusicAuthorization.h"
#include "Platform/MusicLibraryConsent.h"
#include "Platform/MusicUserTokenProvider.h"
#include "Platform/PackageOwnership.h"
#include "Platform/ProcessSignals.h"
#include "Platform/RememberedConsent.h"
#include "Platform/UrlOpener.h"
#include "Platform/UserDefaults.h"
#include "Services/AppleMusicAuthService.h"
#include "Services/AppleMusicLocalAccess.h"
#include "Services/AutomationPermissionMonitor.h"
#include "Services/SpotifyAuthService.h"
#include "Services/URLSession.h"
#include "Services/UpdaterModel.h"
#include "Support/SharedInstance.h"
#include "Transport/HelperClient.h"
#include "Transport/HelperProcess.h"
#include "Views/DialogHost.h"
#include "Views/MainWindow.h"
#include "Views/PermissionsDialog.h"
#include "Views/QuestionDialog.h"
#include "Views/UpdateDialog.h"

#include <QCommandLineParser>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QQuickWindow>

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

QString tr(const char *text) {
    return QCoreApplication::translate("zelk", text);
}

Question::Wording libraryWording(const QString &libraryFile) {
    return {.title = tr("Let zelk read your exported Music library?"),
            .text =
                tr("It is the library that the Music app exports to %1, and the covers of its tracks. This is about "
                   "what the application itself reads; nothing is changed.")
                    .arg(libraryFile),
            .yes = tr("Allow"),
            .no = tr("Don't Allow")};
}

Question::Wording signInWording() {
    return {.title = tr("Let zelk sign in to Apple Music?"),
            .text = tr("zelk asks its web service for a key, and your browser opens a page on which you allow zelk to "
                       "read your Apple Music library and playlists."),
            .yes = tr("Allow"),
            .no = tr("Don't Allow")};
}

/// The sign-ins and consents of this process, which ask the user in dialogs of our own.
struct SignIn {
    explicit SignIn(std::shared_ptr<Clock> given) : clock(std::move(given)) {}

    using Consent = std::shared_ptr<RememberedConsent>;

    const std::shared_ptr<Clock> clock;
    DialogHost dialogs;
    const std::shared_ptr<QuestionDialog> question = std::make_shared<QuestionDialog>(dialogs);
    const std::shared_ptr<UserDefaults> defaults = UserDefaults::standard();
    const QString libraryFile = MusicLibraryConsent::defaultLibraryFile();
    const Consent library =
        std::make_shared<RememberedConsent>(defaults, u"musicLibraryConsent"_s, question, libraryWording(libraryFile));
    const Consent account =
        std::make_shared<RememberedConsent>(defaults, u"appleMusicConsent"_s, question, signInWording());
    const std::shared_ptr<MusicLibraryConsent> libraryStatus = MusicLibraryConsent::make(library, libraryFile);
    const std::shared_ptr<PermissionsDialog> permissions = std::make_shared<PermissionsDialog>(
        dialogs, PermissionsLogic::Permissions{library, libraryStatus, libraryFile, account},
        [this] { monitor.recheck(); });

    QNetworkAccessManager network;
    AppleMusicAuthService appleMusic{
        {.authorization = MusicAuthorization::make(account),
         .makeTokenProvider =
             [browser = MusicUserTokenProvider::Browser{.opener = UrlOpener::make(), .clock = clock}] {
                 return MusicUserTokenProvider::make(browser);
             },
         .session = std::make_shared<URLSession>(network, clock)}};
    AppleMusicLocalAccess localAccess{libraryStatus, permissions};
    const std::unique_ptr<ApplicationActivation> activation = ApplicationActivation::make();
    AutomationPermissionMonitor monitor{localAccess, *activation};
    SpotifyAuthService spotify;

    const SharedInstance<AppleMusicAuthService> sharedAppleMusic{appleMusic};
    const SharedInstance<AppleMusicLocalAccess> sharedLocalAccess{localAccess};
    const SharedInstance<AutomationPermissionMonitor> sharedMonitor{monitor};
    const SharedInstance<SpotifyAuthService> sharedSpotify{spotify};
};

/// What updates of this copy stand on.
UpdaterSurroundings updaterSurroundings(UpdateUserDriver &driver, const std::shared_ptr<Clock> &clock) {
    UpdaterSurroundings here{.bundle = Bundle::main()};
    here.folder = QFileInfo(here.bundle.path()).absolutePath();
    here.defaults = UserDefaults::standard();
    here.clock = clock;
    here.wallTime = [] { return QDateTime::currentDateTimeUtc(); };
    here.network = std::make_shared<QNetworkAccessManager>();
    here.isOwnedByPackageManager = [clock](QString path, std::stop_token stop) {
        return isOwnedByPackageManager(std::move(path), clock, std::move(stop));
    };
    here.showInFolder = [](const QString &path) {
        showInFileViewer(path, [](const QString &folder) { QDesktopServices::openUrl(QUrl::fromLocalFile(folder)); });
    };
    here.driver = &driver;
    return here;
}

int run(const Arguments &arguments) {
    const auto clock = std::make_shared<BootClock>();
    SignIn signIn(clock);
    AppModel model(engineLauncher(clock), {.clock = clock, .defaults = signIn.defaults});
    UpdateDialog updateDialog(signIn.dialogs);
    auto surroundings = updaterSurroundings(updateDialog, clock);
    surroundings.unattended = arguments.unattended;
    const UpdaterModel updater(std::move(surroundings));
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
