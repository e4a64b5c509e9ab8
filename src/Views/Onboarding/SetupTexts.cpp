#include "Views/Onboarding/SetupTexts.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

using Screen = SetupCoordinator::Screen;

namespace {

QString tr(const char *text) {
    return QCoreApplication::translate("zelk", text);
}

} // namespace

std::optional<SetupHeaderInfo> headerInfo(Screen screen) {
    switch (screen) {
    case Screen::welcome:
    case Screen::finish:
        break;
    case Screen::prepareTools:
        return SetupHeaderInfo{u"arrow.down.circle"_s, tr("Getting things ready"), {}};
    case Screen::connectMusic:
        return SetupHeaderInfo{u"music.note"_s, tr("Connect your music"),
                               tr("Choose where zelk reads your playlists. You can add more later in Settings.")};
    case Screen::downloadSources:
        return SetupHeaderInfo{u"square.stack.3d.up"_s, tr("Service setup"),
                               tr("Choose where zelk finds audio, and optionally route it through a VPN. The defaults "
                                  "work great.")};
    case Screen::fineTuning:
        return SetupHeaderInfo{u"slider.horizontal.3"_s, tr("Quality & downloads"),
                               tr("Choose where files are saved and your audio quality.")};
    }
    return {};
}

QString screenTitle(Screen screen) {
    if (const auto info = headerInfo(screen))
        return info->title;
    return screen == Screen::finish ? tr("You're all set") : tr("Turn your playlists into a DJ-ready library");
}

QString primaryText(Screen screen) {
    switch (screen) {
    case Screen::welcome:
        return tr("Get Started");
    case Screen::finish:
        return tr("Start Using zelk");
    case Screen::prepareTools:
    case Screen::connectMusic:
    case Screen::downloadSources:
    case Screen::fineTuning:
        break;
    }
    return tr("Continue");
}

bool offersSkip(Screen screen) {
    return screen == Screen::connectMusic || screen == Screen::downloadSources || screen == Screen::fineTuning;
}

} // namespace zelk
