#include "Rest.h"
#include "Scene.h"

#include "Views/Onboarding/SetupWindow.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using Screen = SetupCoordinator::Screen;

namespace {

struct Step {
    QLatin1StringView name;
    Screen screen;
};

constexpr std::array steps{
    Step{"welcome"_L1, Screen::welcome},      Step{"tools"_L1, Screen::prepareTools},
    Step{"connect"_L1, Screen::connectMusic}, Step{"sources"_L1, Screen::downloadSources},
    Step{"tuning"_L1, Screen::fineTuning},    Step{"finish"_L1, Screen::finish},
};

} // namespace

std::vector<Scene> zelk::setupScenes() {
    std::vector<Scene> scenes;
    for (const Step &step : steps)
        scenes.push_back({u"setup-"_s + step.name, [step](const Look &look) {
                              SetupWindow bench;
                              bench.desktop->setColorScheme(look.scheme);
                              bench.desktop->setTextScale(look.textScale);
                              bench.openAt(step.screen);
                              waitForRest(step.name);
                              return bench.window.window()->grabWindow();
                          }});
    return scenes;
}
