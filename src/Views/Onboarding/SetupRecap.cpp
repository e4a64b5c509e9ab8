#include "Views/Onboarding/SetupRecap.h"

#include "Models/ServiceCatalog.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

QString playlistSummary(bool appleMusicConnected, bool spotifyConnected, ConsentStatus localAccess) {
    QStringList names;
    if (appleMusicConnected)
        names += u"Apple Music"_s;
    else if (localAccess == ConsentStatus::authorized)
        names += QCoreApplication::translate("zelk", "Apple Music (local)");
    if (spotifyConnected)
        names += u"Spotify"_s;
    return names.join(u", "_s);
}

QString sourcesSummary(const std::vector<SourceId> &sources) {
    QStringList names;
    for (const SourceId source : sources)
        names += ServiceCatalog::downloadSource(source).name;
    return names.join(u", "_s);
}

} // namespace zelk
