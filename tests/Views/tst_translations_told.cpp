// What the state and the services tell the user, in English and then in German.
#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "German.h"
#include "Platform/MusicSignInPage.h"
#include "Platform/StandIn.h"
#include "Services/AppleMusicAuthService.h"
#include "Services/CLIInstallation.h"
#include "Services/InstallerBench.h"
#include "Services/LocalServer.h"
#include "Services/SignInBench.h"
#include "Services/URLSession.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/ScriptedClient.h"
#include "Support/Settle.h"
#include "Support/SignInFakes.h"
#include "Views/Translations.h"

#include <QMap>
#include <QNetworkAccessManager>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

using Told = QMap<QString, QString>; // by where it was told

// Where they come from. A text of theirs that none of these tests brings about fails.
const QStringList tellers{u"AppModel"_s,
                          u"AppleMusicAuthService"_s,
                          u"CLIInstaller"_s,
                          u"HelperError"_s,
                          u"MusicSignInPage"_s,
                          u"MusicUserTokenProvider"_s,
                          u"RaisedShell"_s,
                          u"SyncStore"_s,
                          u"ToolProvisioningStore"_s,
                          u"URLSession"_s};
// It takes a machine without a free port.
const QString unreached = u"The sign-in page could not be made ready: %1."_s;

QList<HelperError> helperErrors() {
    return {HelperError::decodeFailure(u"odd"_s), HelperError::helperMissing(),   HelperError::helperCrashed(),
            HelperError::helperUnavailable(),     HelperError::requestTimedOut(), HelperError::cancelled()};
}

AppModel::Launcher noEngine() {
    return []() -> AppModel::Engine { throw HelperError::helperMissing(); };
}

QString textOf(const std::optional<SyncBanner> &banner) {
    return banner ? banner->message : QString();
}

/// Brings about whatever there is to tell.
class Teller {
public:
    Told told;

    void tellAll() {
        tellOfTheTunnel();
        tellOfARun();
        tellOfTools();
        tellOfTheModel();
        tellOfAppleMusic();
        tellOfTheSignIn();
        tellOfTheCommandLine();
        for (const auto &each : helperErrors())
            note("engine: "_L1 + QLatin1StringView(each.what()), each.errorDescription());
        note(u"a failure of no kind"_s, describe(std::make_exception_ptr(7)));
    }

private:
    void note(const QString &where, const QString &text) {
        QVERIFY2(!text.isEmpty(), qUtf8Printable(where));
        QVERIFY2(!told.contains(where), qUtf8Printable(where));
        told.insert(where, text);
    }

    void tellOfTheTunnel() {
        for (const auto status : allCases<ProxyStatusValue>()) {
            if (status == ProxyStatusValue::off)
                continue;
            for (const auto &detail : {std::optional<QString>(), std::optional(u"3"_s)}) {
                SyncStore store;
                store.route(HelperEvent::server({ServerEvent::ProxyStatus{status, detail}}));
                note(u"tunnel %1 %2"_s.arg(QString(wireName(status)), detail.value_or(u"-"_s)), textOf(store.banner()));
            }
        }
    }

    void tellOfARun() {
        SyncStore store;
        const auto route = [&](const ServerEvent &event) { store.route(HelperEvent::server(event)); };
        const QString run = u"run"_s;
        const QString track = u"t"_s;
        route({ServerEvent::SyncStarted{run, run, 1}});
        route({ServerEvent::PlaylistStarted{run, u"p"_s, 0, u"Nachts"_s, {{track, u"A"_s, u"B"_s, u"C"_s, 200, {}}}}});
        const auto *row = store.groups()->at(0)->track(0);
        route({ServerEvent::DownloadProgress{run, track, 50, {}, {}}});
        note(u"progress"_s, row->progressDetail().value_or(QString()));
        route({ServerEvent::TrackFinished{run, track, Finish::failed, {}, {}, {}}});
        const auto *failed = caseOf<TrackState::Failed>(row->state());
        QVERIFY(failed);
        note(u"failed track"_s, failed->reason);
        store.route(HelperEvent::helperCrashed());
        note(u"interrupted run"_s, textOf(store.banner()));
    }

    void tellOfTools() {
        const auto client = std::make_shared<ScriptedClient>();
        ToolProvisioningStore store(client);
        client->reply(Method::provisionTools, R"({"ok":false,"tools":[]})");
        outcomeOf(store.provision());
        note(u"tools"_s, store.lastError().value_or(QString()));
    }

    void tellOfTheModel() {
        const auto client = std::make_shared<ScriptedClient>();
        AppModel model(client, surroundings());
        model.startSync();
        QTRY_VERIFY(model.sync()->banner());
        note(u"no selection"_s, textOf(model.sync()->banner()));
        client->fail(Method::connectSpotify, HelperError::requestTimedOut());
        outcomeOf(model.connectSpotify());
        note(u"Spotify"_s, textOf(model.sync()->banner()));
        AppModel bare(noEngine(), surroundings());
        outcomeOf(bare.start());
        note(u"start"_s, bare.startupError().value_or(QString()));
        settle();
    }

    void tellOfAppleMusic() {
        const auto connect = [this](const QString &where, ConsentStatus consent, const QByteArray &answer,
                                    const std::exception_ptr &failure) {
            LocalServer server(answer);
            QNetworkAccessManager network;
            const auto script = std::make_shared<TokenScript>();
            script->failure = failure;
            const auto authorization = std::make_shared<ScriptedAuthorization>();
            authorization->status = consent;
            AppleMusicAuthService service(
                {.authorization = authorization,
                 .makeTokenProvider = [script] { return std::make_unique<ScriptedTokenProvider>(script); },
                 .session = std::make_shared<URLSession>(network, std::make_shared<ManualClock>())},
                server.url());
            ScriptedModel model;
            outcomeOf(service.connect(model));
            note(where, textOf(model.syncStore->banner()));
        };
        const auto token = LocalServer::response(200, "token");
        const auto failure = std::make_exception_ptr(HelperError::helperUnavailable());
        connect(u"no consent"_s, ConsentStatus::denied, token, {});
        connect(u"no service"_s, ConsentStatus::authorized, LocalServer::response(503, {}), {});
        connect(u"no engine"_s, ConsentStatus::authorized, token, failure);
        connect(u"too much"_s, ConsentStatus::authorized,
                LocalServer::response(200, QByteArray(URLSession::mostBody + 1, 't')), {});
    }

    void tellOfTheSignIn() {
        const auto opener = std::make_shared<ScriptedOpener>();
        const auto clock = std::make_shared<ManualClock>();
        const auto provider = MusicUserTokenProvider::make({.opener = opener, .clock = clock});
        QObject owner;
        const auto ask = [&] { return observe(&owner, provider->userToken(u"token"_s, {})); };
        const auto late = ask();
        settle();
        clock->advance(std::chrono::minutes(6));
        QTRY_VERIFY(late->isOver());
        note(u"late"_s, late->failureText());
        opener->onOpen = [](const QUrl &url) {
            QTcpSocket *const socket = new QTcpSocket(QCoreApplication::instance());
            socket->connectToHost(QHostAddress::LocalHost, quint16(url.port()));
            const QByteArray host = "127.0.0.1:" + QByteArray::number(url.port());
            socket->write("POST " + url.path().toLatin1() + " HTTP/1.1\r\nHost: " + host + "\r\nOrigin: http://" +
                          host + "\r\nContent-Type: application/json\r\nContent-Length: 18\r\n\r\n" +
                          R"({"cancelled":true})");
        };
        const auto cancelled = ask();
        QTRY_VERIFY(cancelled->isOver());
        note(u"cancelled"_s, cancelled->failureText());
        opener->opens = false;
        const auto closed = ask();
        QTRY_VERIFY(closed->isOver());
        note(u"no browser"_s, closed->failureText());
        auto page = QString::fromUtf8(MusicSignInPage::content({}).html);
        page.remove(QRegularExpression(u"<style.*</style>"_s, QRegularExpression::DotMatchesEverythingOption));
        note(u"page"_s, page);
    }

    void tellOfTheCommandLine() {
        using InstallError = CLIInstaller::InstallError;
        note(u"no helper"_s, InstallError::noHelper().errorDescription());
        note(u"no link"_s, InstallError::ioFailed(u"ENOSPC"_s).errorDescription());
        InstallerBench bench;
        InstallerBench::makeLink(bench.places().systemLink(), bench.engine);
        bench.unwritable = {bench.places().systemFolder()};
        const auto program = writeProgram(bench.folder.filePath(u"silent"_s), "printf '\\377' >&2; exit 1");
        bench.shell->answer = [shell = RaisedShell::over(program)](const QString &command, std::stop_token stop) {
            return shell->run(command, std::move(stop));
        };
        CLIInstallation installation(std::make_shared<CLIInstaller>(bench.around), nullptr);
        installation.uninstall();
        QTRY_VERIFY(!installation.busy());
        note(u"no rights"_s, installation.lastError().value_or(QString()));
    }
};

} // namespace

class ToldTest : public QObject {
    Q_OBJECT

    Told english;
    Told german;

private Q_SLOTS:
    // Before anything is translated, and after.
    void initTestCase() {
        Teller before;
        before.tellAll();
        english = before.told;
        Q_INIT_RESOURCE(translations);
        qputenv("ZELK_LANGUAGE", "de");
        Translations::install();
        Teller after;
        after.tellAll();
        german = after.told;
    }

    void whatIsToldIsInGerman() {
        QCOMPARE(german.keys(), english.keys());
        for (auto each = english.cbegin(); each != english.cend(); ++each)
            QVERIFY2(german.value(each.key()) != each.value(), qUtf8Printable(each.key()));
        QCOMPARE(
            german.value(u"Spotify"_s),
            u"Die Verbindung mit Spotify ist fehlgeschlagen: Das Hilfsprogramm hat nicht rechtzeitig geantwortet."_s);
        QCOMPARE(german.value(u"tunnel connected 3"_s), u"Soulseek läuft über Vantrix VPN (3)"_s);
    }

    // Not even a part of it, such as the reason of a failure.
    void nothingOfItIsEnglish() {
        const auto foreign = foreignTexts(QStringLiteral(ZELK_GERMAN));
        QVERIFY(foreign.size() > 300);
        for (auto each = german.cbegin(); each != german.cend(); ++each) {
            for (const auto &text : foreign) {
                // A short one may be part of a German word, or a word of the page's script.
                if (text.size() > 10)
                    QVERIFY2(!each.value().contains(text), qUtf8Printable(each.key() + u": "_s + text));
            }
        }
    }

    // What a class has to say is said in one of these tests, so that none can be overlooked.
    void everyTextOfTheirsIsTold() {
        const QString all = english.values().join(u'\n');
        QSet<QString> seen;
        const auto texts = translatedTexts(QStringLiteral(ZELK_GERMAN));
        for (const auto &each : texts) {
            if (!tellers.contains(each.context))
                continue;
            seen += each.context;
            const QString said = each.source == u"%1%" ? u"50%"_s : each.source;
            QVERIFY2(each.source == unreached || all.contains(said),
                     qUtf8Printable(each.context + u": "_s + each.source));
        }
        QCOMPARE(seen, QSet<QString>(tellers.cbegin(), tellers.cend()));
    }

    void thePageSaysItsLanguage() {
        QVERIFY(english.value(u"page"_s).contains(u"<html lang=\"en\">"_s));
        QVERIFY(german.value(u"page"_s).contains(u"<html lang=\"de\">"_s));
        QVERIFY(german.value(u"page"_s).contains(u"disabled>Anmelden</button>"_s));
    }

    // It is what reports are made of.
    void theLogStaysEnglish() {
        const LogCapture log;
        AppModel bare(noEngine(), surroundings());
        outcomeOf(bare.start());
        QCOMPARE(bare.startupError(), german.value(u"start"_s));
        QCOMPARE(log.messages(u"app"_s), QStringList{u"startup failed: "_s + english.value(u"start"_s)});
    }
};

QTEST_GUILESS_MAIN(ToldTest)
#include "tst_translations_told.moc"
