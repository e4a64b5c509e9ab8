#include "DrawnCovers.h"
#include "Rest.h"
#include "Scene.h"
#include "Showcase.h"

#include "Services/ArtworkBench.h"
#include "Transport/HelperError.h"
#include "Views/WindowBench.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSize usual(1040, 720);
constexpr QSize least(880, 600);

/// The application over an engine that answers from the showcase, without the machine's own settings.
class Stage {
public:
    explicit Stage(const std::shared_ptr<MockHelperClient> &engine, const Look &look, QSize size)
        : _engine(engine), _model(launcherOf(engine), around()),
          _window(_model, {.clock = _clock,
                           .files = std::make_shared<SeenFiles>(),
                           .folders = std::make_shared<ScriptedFolders>(),
                           .appearance = std::make_shared<Appearance>(_desktop, _defaults),
                           .defaults = _defaults,
                           .openUrl = {},
                           .checkForUpdates = [] {}}) {
        _desktop->setColorScheme(look.scheme);
        _desktop->setTextScale(look.textScale);
        _desktop->setReducedMotion(true);
        for (int number = 0; number < Showcase::covers; ++number)
            _artwork.shelf.items.push_back({static_cast<quint64>(number), drawnCover(number)});
        ArtworkProvider::setShared(_artwork.provider);
        _window.window()->resize(size);
        settle();
    }
    ~Stage() { ArtworkProvider::setShared(nullptr); }
    Q_DISABLE_COPY_MOVE(Stage)

    AppModel &model() { return _model; }

    void select() {
        // The folder that holds one of them.
        press("folderChevron");
        _model.library()->setSelection(Showcase::selection());
        _model.selectionChanged();
        _clock->advance(1s);
        settle();
    }
    void emitAll(const std::vector<ServerEvent> &events) {
        for (const ServerEvent &event : events)
            _engine->emit(HelperEvent::server(event));
        settle();
    }
    /// Does what a click on the first control of that name does.
    void press(const char *objectName) {
        const auto wanted = [objectName](QQuickItem *each) {
            return each->objectName() == QLatin1StringView(objectName);
        };
        QQuickItem *item = WindowBench::itemsOf(_window.window()->contentItem(), wanted).value(0);
        if (!item)
            qFatal("There is no %s", objectName);
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(_window.window(), Qt::LeftButton, {}, middle.toPoint());
        settle();
    }
    /// Lets covers arrive.
    void settle() {
        QTest::qWait(50);
        _artwork.settle();
        QTest::qWait(50);
    }
    QImage picture(const QString &name) {
        waitForRest(name);
        // In motion again, for a spinner that turns is another picture.
        _desktop->setReducedMotion(false);
        settle();
        return _window.window()->grabWindow();
    }

private:
    static AppModel::Launcher launcherOf(std::shared_ptr<MockHelperClient> engine) {
        return [engine] {
            if (!engine)
                throw HelperError::helperMissing();
            return AppModel::Engine{engine, []() -> QCoro::Task<> { co_return; }};
        };
    }
    AppModel::Surroundings around() const {
        auto made = surroundings(_clock);
        made.defaults = _defaults;
        return made;
    }

    ArtworkBench _artwork;
    std::shared_ptr<MockHelperClient> _engine;
    std::shared_ptr<ManualClock> _clock = std::make_shared<ManualClock>();
    std::shared_ptr<GivenDesktop> _desktop = std::make_shared<GivenDesktop>();
    std::shared_ptr<UserDefaults> _defaults = onboardedDefaults();
    AppModel _model;
    MainWindow _window;

    static std::shared_ptr<UserDefaults> onboardedDefaults() {
        auto made = freshDefaults();
        made->set(u"didOnboard"_s, true);
        return made;
    }
};

MockHelperClient::Responses answers() {
    return {
        {Method::getConfig, JSONValue::object({{u"config"_s, toJSONValue(Showcase::config())}})},
        {Method::listPlaylists, toJSONValue(Showcase::library())},
        {Method::getPlaylistTracks, toJSONValue(PreviewTracksResult{Showcase::preview()})},
    };
}

std::shared_ptr<MockHelperClient> engine() {
    return std::make_shared<MockHelperClient>(answers());
}

std::shared_ptr<MockHelperClient> engineWithoutPlaylists() {
    auto responses = answers();
    responses[Method::listPlaylists] = toJSONValue(std::vector<PlaylistDTO>());
    return std::make_shared<MockHelperClient>(std::move(responses));
}

std::shared_ptr<MockHelperClient> noEngine() {
    return nullptr;
}

void showRun(Stage &stage) {
    stage.select();
    stage.emitAll({Showcase::tunnelStatus()});
    stage.emitAll(Showcase::run());
}

void showReview(Stage &stage) {
    showRun(stage);
    stage.emitAll({Showcase::leftovers()});
    stage.model().openReview();
    stage.settle();
}

struct Play {
    QLatin1StringView name;
    QSize size;
    std::shared_ptr<MockHelperClient> (*engine)();
    void (*play)(Stage &stage);
};

const std::array plays{
    Play{"empty"_L1, usual, engine, [](Stage &) {}},
    Play{"no-playlists"_L1, usual, engineWithoutPlaylists, [](Stage &) {}},
    Play{"unavailable"_L1, usual, noEngine, [](Stage &) {}},
    Play{"preview"_L1, usual, engine, [](Stage &stage) { stage.select(); }},
    Play{"run"_L1, usual, engine,
         [](Stage &stage) {
             showRun(stage);
             ServerEvent::Error notice;
             notice.message = u"Spotify needs to be connected again."_s;
             notice.code = u"spotify_auth_expired"_s;
             stage.emitAll({notice});
         }},
    Play{"review"_L1, usual, engine, showReview},
    Play{"review-small"_L1, least, engine, showReview},
    Play{"done"_L1, usual, engine,
         [](Stage &stage) {
             showRun(stage);
             stage.emitAll({Showcase::runEnd(), Showcase::leftovers()});
             stage.press("orphansToggle");
         }},
    Play{"tunnel"_L1, usual, engine,
         [](Stage &stage) {
             stage.emitAll({Showcase::tunnelStatus()});
             stage.press("toolbarVPN");
         }},
};

} // namespace

std::vector<Scene> zelk::mainScenes() {
    std::vector<Scene> scenes;
    for (const Play &play : plays)
        scenes.push_back({play.name, [play](const Look &look) {
                              Stage stage(play.engine(), look, play.size);
                              play.play(stage);
                              return stage.picture(play.name);
                          }});
    return scenes;
}
