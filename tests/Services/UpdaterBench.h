#pragma once

#include "Services/UpdateServer.h"
#include "Services/UpdaterModel.h"
#include "Support/ManualClock.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sodium.h>

namespace zelk {

/// Notes what a user would see.
class NotedDriver final : public UpdateUserDriver {
public:
    void show(const UpdateScene::Any &scene) override { scenes.append(scene); }
    void raise() override { ++raised; }

    template<typename Scene>
    bool shows() const {
        return !scenes.isEmpty() && std::holds_alternative<Scene>(scenes.last());
    }
    template<typename Scene>
    Scene last() const {
        return shows<Scene>() ? std::get<Scene>(scenes.last()) : Scene();
    }
    bool failedFor(UpdateProblem problem) const {
        return shows<UpdateScene::Failed>() && last<UpdateScene::Failed>().problem == problem;
    }

    QList<UpdateScene::Any> scenes;
    int raised = 0;
};

/// A key pair for one test.
struct SigningKey {
    SigningKey() : open(crypto_sign_PUBLICKEYBYTES, '\0'), secret(crypto_sign_SECRETKEYBYTES, '\0') {
        [[maybe_unused]] const int ready = sodium_init();
        crypto_sign_keypair(reinterpret_cast<unsigned char *>(open.data()),
                            reinterpret_cast<unsigned char *>(secret.data()));
    }
    QByteArray sign(const QByteArray &content) const {
        QByteArray signature(crypto_sign_BYTES, '\0');
        crypto_sign_detached(reinterpret_cast<unsigned char *>(signature.data()), nullptr,
                             reinterpret_cast<const unsigned char *>(content.constData()),
                             static_cast<unsigned long long>(content.size()),
                             reinterpret_cast<const unsigned char *>(secret.constData()));
        return signature;
    }

    QByteArray open;
    QByteArray secret;
};

/// What a feed says of one version, and the feed of one such item.
struct FeedItem {
    QByteArray version = "2.0";
    QByteArray url;
    QByteArray length;
    QByteArray signature; ///< in base64
    QByteArray extra;     ///< more elements

    QByteArray feed() const {
        return "<rss version=\"2.0\" "
               "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item>"
               "<sparkle:version>" +
               version + "</sparkle:version>" + extra + "<enclosure url=\"" + url + "\" length=\"" + length + "\"" +
               (signature.isEmpty() ? QByteArray() : " sparkle:edSignature=\"" + signature + "\"") +
               "/></item></channel></rss>";
    }
};

/// An application in a folder of its own, version 1.0, whose feed is the server's "/feed.xml".
class UpdaterBench {
public:
    UpdaterBench() {
        info = {{QStringLiteral("CFBundleVersion"), QStringLiteral("1.0")},
                {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.0")},
                {QStringLiteral("SUFeedURL"), server.url(QStringLiteral("/feed.xml")).toString()},
                {QStringLiteral("SUPublicEDKey"), QString::fromLatin1(key.open.toBase64())},
                {QStringLiteral("SUEnableAutomaticChecks"), false}};
        folder = home.path() + QStringLiteral("/apps");
    }
    ~UpdaterBench() {
        model.reset();
        settle();
    }
    Q_DISABLE_COPY_MOVE(UpdaterBench)

    /// Lets what was ended come to its end.
    static void settle() {
        for (int i = 0; i < 20; ++i)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QString bundlePath() const { return home.path() + QStringLiteral("/apps/zelk.app"); }

    UpdaterSurroundings surroundings() {
        QDir().mkpath(bundlePath() + QStringLiteral("/Contents/Linux"));
        QFile file(bundlePath() + QStringLiteral("/Contents/Info.json"));
        if (file.open(QIODevice::WriteOnly))
            file.write(QJsonDocument(info).toJson());
        UpdaterSurroundings result{.bundle =
                                       Bundle(bundlePath(), bundlePath() + QStringLiteral("/Contents/Linux/zelk"))};
        result.folder = folder;
        result.defaults = defaults;
        result.clock = clock;
        result.wallTime = [this] { return now; };
        result.network = network;
        result.isOwnedByPackageManager = [this](QString path, std::stop_token) -> QCoro::Task<bool> {
            askedFor = path;
            co_return owned;
        };
        result.showInFolder = [this](const QString &path) { shown.append(path); };
        result.driver = &driver;
        result.unattended = unattended;
        return result;
    }
    AppUpdater &launch() {
        model.reset();
        model = std::make_unique<UpdaterModel>(surroundings());
        return *model->controller()->updater();
    }

    /// A well-formed item whose file the server has.
    FeedItem goodItem() {
        server.set(QStringLiteral("/zelk-2.0.tar.gz"), content);
        return {.version = "2.0",
                .url = server.url(QStringLiteral("/zelk-2.0.tar.gz")).toEncoded(),
                .length = QByteArray::number(content.size()),
                .signature = key.sign(content).toBase64(),
                .extra = {}};
    }
    void publish(const FeedItem &item) { server.set(QStringLiteral("/feed.xml"), item.feed()); }
    void answer(UpdateAnswer given) const { driver.answered(given); }

    /// What lies beside the application.
    QStringList neighbours() const {
        QStringList all = QDir(home.path() + QStringLiteral("/apps"))
                              .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        all.removeAll(QStringLiteral("zelk.app"));
        return all;
    }

    /// Lets time pass, by the calendar too.
    void pass(std::chrono::seconds time) {
        now = now.addSecs(time.count());
        clock->advance(time);
        settle();
    }

    QTemporaryDir home;
    UpdateServer server;
    SigningKey key;
    QByteArray content = QByteArray("an application, but newer\n").repeated(20'000);
    QJsonObject info;
    QString folder;
    bool owned = false;
    bool unattended = false;
    QString askedFor;
    QStringList shown;
    QDateTime now = QDateTime(QDate(2030, 5, 1), QTime(12, 0), Qt::UTC);
    std::shared_ptr<UserDefaults> defaults = std::make_shared<UserDefaults>(home.filePath(QStringLiteral("zelk.conf")));
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<QNetworkAccessManager> network = std::make_shared<TrustingNetwork>();
    NotedDriver driver;
    std::unique_ptr<UpdaterModel> model;
};

} // namespace zelk
