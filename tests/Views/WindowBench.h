#pragma once

#include "App/AppModel.h"
#include "App/Surroundings.h"
#include "Platform/DesktopSettings.h"
#include "Styling/TokensSingleton.h"
#include "Support/Await.h"
#include "Support/ManualClock.h"
#include "Support/MockHelperClient.h"
#include "Support/SampleData.h"
#include "Views/MainWindow.h"
#include "Views/ScriptedFolders.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

namespace zelk {

// A file browser that notes what it was to show.
class SeenFiles final : public FileBrowser {
public:
    void reveal(const QString &path) override { revealed.append(path); }
    QStringList revealed;
};

// A desktop whose user wants what the test says.
class GivenDesktop final : public DesktopSettings {
public:
    using DesktopSettings::setColorScheme;
    using DesktopSettings::setIncreasedContrast;
    using DesktopSettings::setReducedMotion;
    using DesktopSettings::setTextScale;
};

// Lets what a model and a window have left behind come to its end: what ends a task needs a turn of the loop.
inline void settleDown() {
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The main window over an engine that answers as it is told, and hands to use it with.
class WindowBench {
public:
    explicit WindowBench(const std::vector<PlaylistDTO> &playlists = library(),
                         std::shared_ptr<GlobalMenu> globalMenu = {})
        : WindowBench(std::make_shared<MockHelperClient>(MockHelperClient::Responses{
                          {Method::getConfig,
                           JSONValue::object({{QStringLiteral("config"), toJSONValue(SampleData::sampleConfig())}})},
                          {Method::listPlaylists, toJSONValue(playlists)},
                          {Method::getPlaylistTracks, SampleData::previewTracksResult()},
                      }),
                      onboardedDefaults(), {}, std::move(globalMenu)) {}
    // The same over an engine of the test's own.
    explicit WindowBench(const std::shared_ptr<HelperClienting> &client,
                         std::shared_ptr<UserDefaults> defaults = onboardedDefaults(),
                         std::shared_ptr<AutomationPermissionMonitor> permission = {},
                         std::shared_ptr<GlobalMenu> globalMenu = {})
        : around(surroundingsWith(std::move(defaults), std::move(permission))), model(client, around),
          window(model, {.clock = clock,
                         .files = files,
                         .folders = folders,
                         .appearance = std::make_shared<Appearance>(desktop, around.defaults),
                         .defaults = around.defaults,
                         .openUrl = [this](const QUrl &url) { opened.append(url); },
                         .checkForUpdates = [this] { ++updateChecks; },
                         .openAbout = [this] { ++aboutOpened; },
                         .openSettings = [this] { ++settingsOpened; },
                         .globalMenu = std::move(globalMenu)}) {}

    // Two playlists of each source; one of Apple Music's lies in a folder within a folder.
    static std::vector<PlaylistDTO> library() {
        const auto list = [](const char *id, PlaylistSourceId source, const char *name, bool isFolder,
                             const char *parent, std::optional<qint64> count) {
            PlaylistDTO playlist;
            playlist.id = QString::fromUtf8(id);
            playlist.source = source;
            playlist.name = QString::fromUtf8(name);
            playlist.isFolder = isFolder;
            if (parent)
                playlist.parentId = QString::fromUtf8(parent);
            playlist.trackCount = count;
            return playlist;
        };
        constexpr auto apple = PlaylistSourceId::apple;
        constexpr auto spotify = PlaylistSourceId::spotify;
        return {
            list("gigs", apple, "Gigs 2025", true, nullptr, {}),
            list("terrace", apple, "Terrace Sunset", false, "gigs", 42),
            list("inner", apple, "Late", true, "gigs", {}),
            list("lasthour", apple, "Last Hour", false, "inner", 18),
            list("crates", apple, "Crates", true, nullptr, {}),
            list("broken", apple, "Broken Beat Sketches", false, nullptr, 27),
            list("peak", spotify, "Peak Time 132", false, nullptr, 64),
            list("requests", spotify, "Requests", false, nullptr, 1),
        };
    }

    // What was asked of the engine of canned answers.
    std::vector<Request> sent() const {
        return *outcomeOf(static_cast<const MockHelperClient &>(*model.client()).sent()).value;
    }
    void loadLibrary() {
        startTask(&model, [this](const std::stop_token &) { return model.library()->refresh(); });
        QTRY_VERIFY(!model.library()->playlists().empty());
    }

    // Everything visible under an item that answers to `wanted`.
    template<class Wanted>
    static QList<QQuickItem *> itemsOf(QQuickItem *root, const Wanted &wanted) {
        QList<QQuickItem *> found;
        if (!root->isVisible())
            return found;
        if (wanted(root))
            found += root;
        for (QQuickItem *child : root->childItems())
            found += itemsOf(child, wanted);
        return found;
    }
    QQuickItem *item(const char *objectName) const {
        const QString name = QString::fromLatin1(objectName);
        return itemsOf(content(), [&name](QQuickItem *each) { return each->objectName() == name; }).value(0);
    }
    // One of several of that name; waits for it, since what is long comes into view over a few frames.
    QQuickItem *item(const char *objectName, qsizetype place) const {
        [[maybe_unused]] const bool there = QTest::qWaitFor([&] { return items(objectName).size() > place; });
        return items(objectName).value(place);
    }
    QList<QQuickItem *> items(const char *objectName) const {
        const QString name = QString::fromLatin1(objectName);
        return itemsOf(content(), [&name](QQuickItem *each) { return each->objectName() == name; });
    }
    // The texts in view, top to bottom and left to right.
    QStringList texts(QQuickItem *root = nullptr) const {
        QList<QQuickItem *> shown = itemsOf(root ? root : content(), [](QQuickItem *each) {
            return each->inherits("QQuickText") && !each->property("text").toString().isEmpty() && each->opacity() > 0;
        });
        QStringList result;
        for (QQuickItem *each : shown)
            result += each->property("text").toString();
        return result;
    }
    bool shows(const QString &text) const { return texts().contains(text); }

    QQuickItem *content() const { return window.window()->contentItem(); }
    // Lets everything that moved come to its place, as it has for whoever looks at the window.
    void drawFrame() const {
        QSignalSpy drawn(window.window(), &QQuickWindow::frameSwapped);
        window.window()->update();
        drawn.wait();
    }
    void click(QQuickItem *item, Qt::KeyboardModifiers modifiers = {}, Qt::MouseButton button = Qt::LeftButton) {
        drawFrame();
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(window.window(), button, modifiers, middle.toPoint());
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(window.window(), key, modifiers); }
    void route(const ServerEvent &event) { model.sync()->route(HelperEvent::server(event)); }
    // A run under way, with that many rows in each playlist.
    void beginRun(int playlists, int rows) {
        std::vector<TrackDTO> tracks;
        for (int i = 0; i < rows; ++i)
            tracks.push_back({QStringLiteral("t%1").arg(i),
                              QStringLiteral("Track %1").arg(i),
                              QStringLiteral("Artist"),
                              QStringLiteral("Album"),
                              200,
                              {}});
        const QString run = QStringLiteral("run");
        route(ServerEvent::SyncStarted{run, run, playlists});
        for (int i = 0; i < playlists; ++i)
            route(ServerEvent::PlaylistStarted{run, QStringLiteral("list%1").arg(i), i,
                                               QStringLiteral("List %1").arg(i), tracks});
    }

    AppModel::Surroundings surroundingsWith(std::shared_ptr<UserDefaults> defaults,
                                            std::shared_ptr<AutomationPermissionMonitor> permission) const {
        auto made = surroundings(clock);
        made.defaults = std::move(defaults);
        if (permission)
            made.automationPermission = std::move(permission);
        return made;
    }

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<SeenFiles> files = std::make_shared<SeenFiles>();
    std::shared_ptr<ScriptedFolders> folders = std::make_shared<ScriptedFolders>();
    std::shared_ptr<GivenDesktop> desktop = std::make_shared<GivenDesktop>();
    QList<QUrl> opened; // in the browser
    int updateChecks = 0;
    int aboutOpened = 0;
    int settingsOpened = 0;
    AppModel::Surroundings around;
    AppModel model;
    MainWindow window;
};

} // namespace zelk
