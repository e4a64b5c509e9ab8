#include "Platform/HttpRequestReader.h"
#include "Platform/MusicUserTokenProvider.h"
#include "Support/Await.h"
#include "Support/LogCapture.h"
#include "Support/ManualClock.h"
#include "Support/SignInFakes.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString userToken = u"user-token-from-the-browser"_s;

/// What stands in for the remote script: `kit` is its MusicKit, and it tells the test each text that the page shows and
/// whatever else is reported, by loading scripts from here: the page's policy lets nothing else out.
QByteArray standIn(const QByteArray &kit) {
    return R"js(
const origin = new URL(document.currentScript.src).origin;
const report = text => {
    const script = document.createElement('script');
    script.src = origin + '/report?text=' + encodeURIComponent(text);
    document.head.append(script);
};
const words = document.getElementById('words');
new MutationObserver(() => {
    report('says ' + words.textContent);
    if (words.textContent.startsWith('Press'))
        document.getElementById(window.pressed ?? 'signIn').click();
}).observe(words, { childList: true });
document.addEventListener('securitypolicyviolation', event => report('refused ' + event.effectiveDirective));
)js" + kit;
}

/// The host of the remote script, and of another site.
class StandInServer : public QTcpServer {
public:
    explicit StandInServer(const QByteArray &script) : _script(script) {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *const socket = nextPendingConnection();
            const auto reader = std::make_shared<HttpRequestReader>();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, reader] {
                reader->feed(socket->readAll());
                if (reader->isComplete())
                    answer(*socket, reader->request());
            });
        });
    }

    QUrl url(const QString &path) const { return QUrl(u"http://127.0.0.1:%1/%2"_s.arg(serverPort()).arg(path)); }

    QStringList reports;
    QList<HttpRequest> requests;
    QByteArray foreignPage;

private:
    void answer(QTcpSocket &socket, const HttpRequest &request) {
        requests.append(request);
        const QUrl target = QUrl::fromEncoded(request.target);
        QByteArray body;
        QByteArray type = "text/javascript";
        if (target.path() == u"/report") {
            reports.append(QUrlQuery(target).queryItemValue(u"text"_s, QUrl::FullyDecoded));
        } else if (target.path() == u"/musickit.js") {
            body = _script;
        } else if (target.path() == u"/foreign") {
            body = foreignPage;
            type = "text/html";
        }
        socket.write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: " + type +
                     "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket.disconnectFromHost();
    }

    const QByteArray _script;
};

/// A browser of its own, which reaches nothing but this machine.
class Browser {
public:
    static QString program() { return QStandardPaths::findExecutable(u"chromium"_s); }

    explicit Browser(const QUrl &url) {
        _process.setStandardOutputFile(QProcess::nullDevice());
        _process.setStandardErrorFile(QProcess::nullDevice());
        _process.start(program(), {u"--headless=new"_s, u"--no-sandbox"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                                   u"--disable-background-networking"_s, u"--disable-component-update"_s,
                                   u"--disable-dev-shm-usage"_s, u"--no-proxy-server"_s,
                                   u"--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"_s,
                                   u"--user-data-dir="_s + _profile.path(), url.toString()});
    }
    ~Browser() {
        _process.terminate();
        if (!_process.waitForFinished()) {
            _process.kill();
            _process.waitForFinished();
        }
        // Its helpers end a little later, and write until then.
        (void)QTest::qWaitFor([this] { return QDir(_profile.path()).removeRecursively(); });
    }
    Q_DISABLE_COPY_MOVE(Browser)

private:
    QTemporaryDir _profile;
    QProcess _process;
};

/// A sign-in in a real browser, with a script that does the user's part.
struct Bench {
    explicit Bench(const QByteArray &kit) : server(standIn(kit)) {
        opener->onOpen = [this](const QUrl &url) { browser.emplace(url); };
        auto provider =
            MusicUserTokenProvider::make({.opener = opener, .clock = clock, .musicKit = server.url(u"musickit.js"_s)});
        outcome = observe(&owner, provider->userToken(u"developer-token"_s, MusicTokenRequestOption::ignoreCache));
    }

    bool reported(const QString &text) const { return server.reports.contains(text); }

    StandInServer server;
    std::shared_ptr<ScriptedOpener> opener = std::make_shared<ScriptedOpener>();
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::optional<Browser> browser;
    QObject owner;
    std::shared_ptr<Outcome<QString>> outcome;
};

constexpr int patience = 30000; // milliseconds, for a browser to start on a busy machine

QByteArray happyKit() {
    return R"js(
window.MusicKit = {
    configure: async given => {
        report('configured ' + [given.developerToken, given.app.name, given.app.build].join(' '));
    },
    getInstance: () => ({
        isAuthorized: window.wasAuthorized ?? false,
        authorize: async () => 'user-token-from-the-browser',
        unauthorize: async () => report('unauthorized'),
    }),
};
)js";
}

/// Whether any process of this machine has that text among its arguments.
bool isArgument(const QString &text) {
    const auto processes = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::ranges::any_of(processes, [&text](const QString &each) {
        QFile arguments(u"/proc/%1/cmdline"_s.arg(each));
        return arguments.open(QIODevice::ReadOnly) && arguments.readAll().contains(text.toUtf8());
    });
}

} // namespace

class TestSignInBrowser : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QCoreApplication::setApplicationVersion(u"1.2.3"_s);
        if (Browser::program().isEmpty())
            QSKIP("chromium is not installed; scripts/setup installs it");
    }

    void theUserSignsIn() {
        const LogCapture log;
        Bench bench(happyKit());
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QCOMPARE(bench.outcome->failureText(), QString());
        QCOMPARE(bench.outcome->value, userToken);
        QTRY_VERIFY(bench.reported(u"says You are signed in. You can close this window."_s));
        QVERIFY(bench.reported(u"configured developer-token zelk 1.2.3"_s));
        QVERIFY(!bench.reported(u"unauthorized"_s));
        QVERIFY(std::ranges::none_of(bench.server.reports,
                                     [](const QString &each) { return each.startsWith(u"refused"); }));
        QVERIFY(!bench.server.requests[0].header("referer"));
        QVERIFY(!isArgument(userToken));
        const auto entries = log.entries();
        QVERIFY(std::ranges::none_of(entries, [](const auto &each) { return each.message.contains(userToken); }));
    }

    void aScriptThatComesLaterSaysSo() {
        Bench bench("setTimeout(() => {" + happyKit() + "document.dispatchEvent(new Event('musickitloaded')); }, 0);");
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QCOMPARE(bench.outcome->value, userToken);
    }

    void aSessionOfBeforeIsEndedFirst() {
        Bench bench("window.wasAuthorized = true;" + happyKit());
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QCOMPARE(bench.outcome->value, userToken);
        QVERIFY(bench.reported(u"unauthorized"_s));
    }

    void theUserRefuses() {
        Bench bench(R"js(window.MusicKit = {
            configure: async () => {},
            getInstance: () => ({ authorize: () => Promise.reject({ errorCode: 'ACCESS_DENIED' }) }),
        };)js");
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QCOMPARE(bench.outcome->failureText(), u"ACCESS_DENIED"_s);
        QTRY_VERIFY(bench.reported(u"says Signing in failed: ACCESS_DENIED. You can close this window."_s));
    }

    void theUserCancelsOnThePage() {
        Bench bench("window.pressed = 'cancel';" + happyKit());
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QCOMPARE(bench.outcome->failureText(), u"The sign-in was cancelled."_s);
        QTRY_VERIFY(bench.reported(u"says The sign-in was cancelled. You can close this window."_s));
    }

    void aScriptThatDoesNotComeIsAFailure() {
        Bench bench({});
        bench.server.close();
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QCOMPARE(bench.outcome->failureText(), u"the sign-in of Apple Music could not be loaded"_s);
    }

    void aPageThatIsTooLateSaysSo() {
        Bench bench(R"js(window.MusicKit = {
            configure: async () => {},
            getInstance: () => ({ authorize: () => new Promise(done => {
                report('authorizing');
                setInterval(() => fetch(location.href).catch(() => done('late')), 20);
            }) }),
        };)js");
        QTRY_VERIFY_WITH_TIMEOUT(bench.reported(u"authorizing"_s), patience);
        bench.clock->advance(std::chrono::minutes(5));
        QTRY_VERIFY(bench.outcome->isOver());
        QCOMPARE(bench.outcome->failureText(), u"Nobody signed in before the time was up."_s);
        QTRY_VERIFY(
            bench.reported(u"says zelk no longer waits for this page. Close this window and connect again in zelk."_s));
    }

    void scriptsOfOthersAreKeptOut() {
        StandInServer other({});
        Bench bench("const script = document.createElement('script'); script.src = '" +
                    other.url(u"musickit.js"_s).toEncoded() + "'; document.head.append(script);" + R"js(
            document.body.setAttribute('onclick', "report('inline')");
            document.body.click();)js" +
                    happyKit());
        QTRY_VERIFY_WITH_TIMEOUT(bench.outcome->isOver(), patience);
        QTRY_VERIFY(bench.reported(u"refused script-src-elem"_s));
        QTRY_VERIFY(bench.reported(u"refused script-src-attr"_s));
        QVERIFY(!bench.reported(u"inline"_s));
        QVERIFY(other.requests.isEmpty());
    }

    void anotherSiteCanNotAnswer() {
        auto opener = std::make_shared<ScriptedOpener>();
        QObject owner;
        auto provider = MusicUserTokenProvider::make({.opener = opener, .clock = std::make_shared<ManualClock>()});
        std::stop_source stop;
        const auto outcome = observe(&owner, provider->userToken(u"developer-token"_s, {}, stop.get_token()));
        StandInServer foreign({});
        foreign.foreignPage = R"html(<script>(async () => {
            const page = 'PAGE', tried = [];
            const body = JSON.stringify({ userToken: 'forged' });
            const json = { 'Content-Type': 'application/json' };
            const attempt = (name, options) => fetch(page, options).then(
                response => tried.push(name + ' ' + response.type), () => tried.push(name + ' failed'));
            await attempt('read', {});
            await attempt('plain', { method: 'POST', mode: 'no-cors', body });
            await attempt('json', { method: 'POST', headers: json, body });
            await fetch('/report?text=' + encodeURIComponent(tried.join(', ')));
        })();</script>)html";
        foreign.foreignPage.replace("PAGE", opener->opened.value(0).toEncoded());
        const Browser browser(foreign.url(u"foreign"_s));
        QTRY_COMPARE_WITH_TIMEOUT(foreign.reports, QStringList{u"read failed, plain opaque, json failed"_s}, patience);
        QVERIFY(!outcome->isOver());
        stop.request_stop();
        QTRY_VERIFY(outcome->isOver());
    }
};

QTEST_GUILESS_MAIN(TestSignInBrowser)
#include "tst_signinbrowser.moc"
