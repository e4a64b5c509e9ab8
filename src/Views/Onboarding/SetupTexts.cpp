#include "Views/Onboarding/SetupTexts.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

using Screen = SetupCoordinator::Screen;

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

} // namespace

std::optional<SetupHeaderInfo> headerInfo(Screen screen) {
    switch (screen) {
    case Screen::welcome:
    case Screen::finish:
        break;
    case Screen::prepareTools:
        return SetupHeaderInfo{u"arrow.down.circle"_s, Texts::tr("Getting things ready"), {}};
    case Screen::connectMusic:
        return SetupHeaderInfo{
            u"music.note"_s, Texts::tr("Connect your music"),
            Texts::tr("Choose where zelk reads your playlists. You can add more later in Settings.")};
    case Screen::downloadSources:
        return SetupHeaderInfo{
            u"square.stack.3d.up"_s, Texts::tr("Service setup"),
            Texts::tr("Choose where zelk finds audio, and optionally route it through a VPN. The defaults "
                      "work great.")};
    case Screen::fineTuning:
        return SetupHeaderInfo{u"slider.horizontal.3"_s, Texts::tr("Quality & downloads"),
                               Texts::tr("Choose where files are saved and your audio quality.")};
    }
    return {};
}

QString screenTitle(Screen screen) {
    if (const auto info = headerInfo(screen))
        return info->title;
    return screen == Screen::finish ? Texts::tr("You're all set")
                                    : Texts::tr("Turn your playlists into a DJ-ready library");
}

QString primaryText(Screen screen) {
    switch (screen) {
    case Screen::welcome:
        return Texts::tr("Get Started");
    case Screen::finish:
        return Texts::tr("Start Using zelk");
    case Screen::prepareTools:
    case Screen::connectMusic:
    case Screen::downloadSources:
    case Screen::fineTuning:
        break;
    }
    return Texts::tr("Continue");
}

bool offersSkip(Screen screen) {
    return screen == Screen::connectMusic || screen == Screen::downloadSources || screen == Screen::fineTuning;
}

} // namespace zelk
