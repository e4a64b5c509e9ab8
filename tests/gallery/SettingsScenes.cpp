#include "Rest.h"
#include "Scene.h"
#include "Showcase.h"

#include "Views/Settings/SettingsBench.h"

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

/// In the order of the tabs.
const QStringList names{u"general"_s, u"accounts"_s, u"sources"_s,      u"quality"_s,
                        u"output"_s,  u"proxy"_s,    u"command-line"_s, u"diagnostics"_s};

const QByteArray checks = R"({"checks": [
    {"id": "ffmpeg", "title": "ffmpeg", "status": "ok", "detail": "Version 5.1."},
    {"id": "output", "title": "Output folder", "status": "fail", "detail": "It isn't there.", "fixable": true},
    {"id": "space", "title": "Disk space", "status": "warn", "detail": "3 GB are left."}]})";

} // namespace

std::vector<Scene> zelk::settingsScenes() {
    std::vector<Scene> scenes;
    for (int tab = 0; tab < names.size(); ++tab)
        scenes.push_back({u"settings-"_s + names[tab], [tab](const Look &look) {
                              SettingsBench bench(Showcase::config());
                              bench.desktop->setColorScheme(look.scheme);
                              bench.desktop->setTextScale(look.textScale);
                              bench.client->reply(Method::runDoctor, checks);
                              bench.show(tab);
                              if (bench.item("runAll"))
                                  bench.click("runAll");
                              settle();
                              waitForRest(names[tab]);
                              return bench.window()->grabWindow();
                          }});
    return scenes;
}
