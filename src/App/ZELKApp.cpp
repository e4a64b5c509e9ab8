#include "App/ZELKApp.h"

#include "Platform/ApplicationActivation.h"
#include "Platform/BootClock.h"
#include "Platform/DesktopSettings.h"
#include "Platform/FileBrowser.h"
#include "Platform/GlobalMenu.h"
#include "Platform/MusicAuthorization.h"
#include "Platform/MusicLibrary.h"
#include "Platform/MusicLibraryConsent.h"
#include "Platform/MusicUserTokenProvider.h"
#include "Platform/PackageOwnership.h"
#include "Platform/RememberedConsent.h"
#include "Platform/UrlOpener.h"
#include "Services/AppleMusicAuthService.h"
#include "Services/AppleMusicLocalAccess.h"
#include "Services/ArtworkProvider.h"
#include "Services/AutomationPermissionMonitor.h"
#include "Services/CLIInstaller.h"
#include "Services/SpotifyAuthService.h"
#include "Services/URLSession.h"
#include "Services/UpdaterModel.h"
#include "Support/SharedInstance.h"
#include "Transport/HelperClient.h"
#include "Transport/HelperProcess.h"
#include "Views/AboutDialog.h"
#include "Views/Appearance.h"
#include "Views/DialogHost.h"
#include "Views/FolderDialogPanel.h"
#include "Views/PermissionsDialog.h"
#include "Views/QuestionDialog.h"
#include "Views/Settings/SettingsWindow.h"
#include "Views/UpdateDialog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QStandardPaths>

#include <functional>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

/// The engine of this machine, as a child of this process.
AppModel::Launcher engineLauncher(const std::shared_ptr<Clock> &clock) {
    return [clock] {
        const auto process = std::make_shared<HelperProcess>(QStringList{u"serve"_s}, clock);
        const auto client = std::make_shared<HelperClient>(process, clock);
        return AppModel::Engine{.client = client, .start = [client] { return client->start(); }};
    };
}

Question::Wording libraryWording(const QString &libraryFile) {
    return {
        .title = Texts::tr("Let zelk read your exported Music library?"),
        .text =
            Texts::tr("It is the library that the Music app exports to %1, and the covers of its tracks. This is about "
                      "what the application itself reads; nothing is changed.")
                .arg(libraryFile),
        .yes = Texts::tr("Allow"),
        .no = Texts::tr("Don't Allow")};
}

Question::Wording signInWording() {
    return {.title = Texts::tr("Let zelk sign in to Apple Music?"),
            .text = Texts::tr(
                "zelk asks its web service for a key, and your browser opens a page on which you allow zelk to "
                "read your Apple Music library and playlists."),
            .yes = Texts::tr("Allow"),
            .no = Texts::tr("Don't Allow")};
}

/// The sign-ins and consents of this process, which ask the user in dialogs of our own.
struct SignIn {
    SignIn(DialogHost &dialogs, std::shared_ptr<UserDefaults> defaults, const std::shared_ptr<UrlOpener> &opener,
           const std::shared_ptr<Clock> &clock)
        : question(std::make_shared<QuestionDialog>(dialogs)), libraryFile(MusicLibrary::defaultFile()),
          library(std::make_shared<RememberedConsent>(defaults, u"musicLibraryConsent"_s, question,
                                                      libraryWording(libraryFile))),
          account(std::make_shared<RememberedConsent>(defaults, u"appleMusicConsent"_s, question, signInWording())),
          libraryStatus(MusicLibraryConsent::make(library, libraryFile)),
          permissions(std::make_shared<PermissionsDialog>(
              dialogs, PermissionsLogic::Permissions{library, libraryStatus, libraryFile, account},
              [this] { monitor->recheck(); })),
          appleMusic({.authorization = MusicAuthorization::make(account),
                      .makeTokenProvider =
                          [browser = MusicUserTokenProvider::Browser{.opener = opener, .clock = clock}] {
                              return MusicUserTokenProvider::make(browser);
                          },
                      .session = std::make_shared<URLSession>(network, clock)}),
          localAccess(libraryStatus, permissions), activation(ApplicationActivation::make()),
          monitor(std::make_shared<AutomationPermissionMonitor>(localAccess, *activation)) {}

    using Consent = std::shared_ptr<RememberedConsent>;

    const std::shared_ptr<QuestionDialog> question;
    const QString libraryFile;
    const Consent library;
    const Consent account;
    const std::shared_ptr<MusicLibraryConsent> libraryStatus;
    const std::shared_ptr<PermissionsDialog> permissions;
    QNetworkAccessManager network;
    AppleMusicAuthService appleMusic;
    AppleMusicLocalAccess localAccess;
    const std::unique_ptr<ApplicationActivation> activation;
    const std::shared_ptr<AutomationPermissionMonitor> monitor;
    SpotifyAuthService spotify;

    const SharedInstance<AppleMusicAuthService> sharedAppleMusic{appleMusic};
    const SharedInstance<AppleMusicLocalAccess> sharedLocalAccess{localAccess};
    const SharedInstance<AutomationPermissionMonitor> sharedMonitor{*monitor};
    const SharedInstance<SpotifyAuthService> sharedSpotify{spotify};
};

/// Covers from the network and, where the user allows it, from the local library.
std::shared_ptr<ArtworkProvider> artworkOf(const SignIn &signIn, const std::shared_ptr<Clock> &clock) {
    ArtworkProvider::Surroundings here;
    here.cachesFolder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    here.clock = clock;
    here.wallTime = [] { return QDateTime::currentDateTime(); };
    here.openLibrary = [file = signIn.libraryFile] { return MusicLibrary::open(file); };
    here.mayReadLibrary = [consent = signIn.libraryStatus] {
        return consent->determine(false) == ConsentStatus::authorized;
    };
    return std::make_shared<ArtworkProvider>(std::move(here));
}

AppModel::Surroundings modelSurroundings(const SignIn &signIn, std::shared_ptr<UserDefaults> defaults,
                                         std::shared_ptr<Clock> clock) {
    return {
        .clock = std::move(clock),
        .defaults = std::move(defaults),
        .toolPlaces = CLIToolPlaces::ofThisUser(),
        .toolTarget = [] { return CLIToolStore::engineOf(Bundle::main(), QProcessEnvironment::systemEnvironment()); },
        .automationPermission = signIn.monitor};
}

/// Makes the covers' provider the process's own, for as long as this stands.
struct SharedArtwork {
    explicit SharedArtwork(std::shared_ptr<ArtworkProvider> provider) {
        ArtworkProvider::setShared(std::move(provider));
    }
    ~SharedArtwork() { ArtworkProvider::setShared(nullptr); }
    Q_DISABLE_COPY_MOVE(SharedArtwork)
};

/// What updates of this copy stand on.
UpdaterSurroundings updaterSurroundings(UpdateUserDriver &driver, const std::shared_ptr<UserDefaults> &defaults,
                                        const std::shared_ptr<FileBrowser> &files,
                                        const std::shared_ptr<Clock> &clock) {
    UpdaterSurroundings here{.bundle = Bundle::main()};
    here.folder = QFileInfo(here.bundle.path()).absolutePath();
    here.defaults = defaults;
    here.clock = clock;
    here.wallTime = [] { return QDateTime::currentDateTimeUtc(); };
    here.network = std::make_shared<QNetworkAccessManager>();
    here.isOwnedByPackageManager = [clock](QString path, std::stop_token stop) {
        return isOwnedByPackageManager(std::move(path), clock, std::move(stop));
    };
    here.showInFolder = [files](const QString &path) { files->reveal(path); };
    here.driver = &driver;
    return here;
}

} // namespace

struct ZELKApp::Parts {
    explicit Parts(Attendance whoIsThere)
        : attendance(whoIsThere), signIn(dialogs, defaults, opener, clock), artwork(artworkOf(signIn, clock)),
          model(engineLauncher(clock), modelSurroundings(signIn, defaults, clock)), updateDialog(dialogs),
          updater(updates()), settings(model, settingsSurroundings()) {}

    UpdaterSurroundings updates() {
        auto surroundings = updaterSurroundings(updateDialog, defaults, files, clock);
        surroundings.unattended = attendance == Attendance::unattended;
        return surroundings;
    }

    SettingsWindow::Surroundings settingsSurroundings() {
        return {.appearance = appearance,
                .defaults = defaults,
                .updater = &updater,
                .installer = CLIInstaller::shared(),
                .folders = folders};
    }

    std::function<void(const QUrl &url)> openUrl() const {
        return [opener = opener](const QUrl &url) { opener->open(url); };
    }

    const Attendance attendance;
    const std::shared_ptr<Clock> clock = std::make_shared<BootClock>();
    const std::shared_ptr<UserDefaults> defaults = UserDefaults::standard();
    const std::shared_ptr<UrlOpener> opener = UrlOpener::make();
    const std::shared_ptr<FileBrowser> files = FileBrowser::ofSession(openUrl());
    const std::shared_ptr<Appearance> appearance = std::make_shared<Appearance>(DesktopSettings::ofSession(), defaults);
    const std::shared_ptr<FolderPanel> folders = std::make_shared<FolderDialogPanel>();
    const std::shared_ptr<GlobalMenu> globalMenu = GlobalMenu::ofSession();
    DialogHost dialogs{appearance};
    AboutDialog about{dialogs, openUrl()};
    SignIn signIn;
    const SharedArtwork artwork;
    AppModel model;
    UpdateDialog updateDialog;
    UpdaterModel updater;
    SettingsWindow settings;
};

ZELKApp::ZELKApp(Attendance attendance) : _parts(std::make_unique<Parts>(attendance)) {}

ZELKApp::~ZELKApp() = default;

AppModel &ZELKApp::model() const {
    return _parts->model;
}

void ZELKApp::openSettings() const {
    _parts->settings.open();
}

MainWindow::Surroundings ZELKApp::windowSurroundings() const {
    return {.clock = _parts->clock,
            .files = _parts->files,
            .folders = _parts->folders,
            .appearance = _parts->appearance,
            .defaults = _parts->defaults,
            .openUrl = _parts->openUrl(),
            .checkForUpdates = [this] { _parts->updater.checkForUpdates(); },
            .openAbout = [this] { _parts->about.open(); },
            .openSettings = [this] { openSettings(); },
            .offersSetup = _parts->attendance == Attendance::attended,
            .globalMenu = _parts->globalMenu};
}

} // namespace zelk
