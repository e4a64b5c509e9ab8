#include "Views/Settings/SettingsTabs.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(SettingsView)
};

} // namespace

std::array<SettingsTabFace, 8> settingsTabFaces() {
    return {{
        {Texts::tr("General"), u"gear"_s, u"GeneralSettings"_s},
        {Texts::tr("Accounts"), u"person.crop.circle"_s, u"AccountsSettings"_s},
        {Texts::tr("Sources"), u"square.stack.3d.up"_s, u"SourcesSettings"_s},
        {Texts::tr("Quality"), u"waveform"_s, u"QualitySettings"_s},
        {Texts::tr("Output"), u"folder"_s, u"OutputSettings"_s},
        {Texts::tr("Vantrix VPN"), u"lock.shield"_s, u"ProxySettings"_s},
        {Texts::tr("Command Line"), u"terminal"_s, u"CLIToolSettings"_s},
        {Texts::tr("Diagnostics"), u"stethoscope"_s, u"DiagnosticsSettings"_s},
    }};
}

} // namespace zelk
