#include "Views/Settings/SettingsTabs.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

QString label(const char *text) {
    return QCoreApplication::translate("SettingsView", text);
}

} // namespace

std::array<SettingsTabFace, 8> settingsTabFaces() {
    return {{
        {label("General"), u"gear"_s, u"GeneralSettings"_s},
        {label("Accounts"), u"person.crop.circle"_s, u"AccountsSettings"_s},
        {label("Sources"), u"square.stack.3d.up"_s, u"SourcesSettings"_s},
        {label("Quality"), u"waveform"_s, u"QualitySettings"_s},
        {label("Output"), u"folder"_s, u"OutputSettings"_s},
        {label("Vantrix VPN"), u"lock.shield"_s, u"ProxySettings"_s},
        {label("Command Line"), u"terminal"_s, u"CLIToolSettings"_s},
        {label("Diagnostics"), u"stethoscope"_s, u"DiagnosticsSettings"_s},
    }};
}

} // namespace zelk
