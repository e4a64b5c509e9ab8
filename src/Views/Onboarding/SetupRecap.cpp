#include "Views/Onboarding/SetupRecap.h"

#include "Models/ServiceCatalog.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

} // namespace

QString playlistSummary(bool appleMusicConnected, bool spotifyConnected, ConsentStatus localAccess) {
    QStringList names;
    if (appleMusicConnected)
        names += u"Apple Music"_s;
    else if (localAccess == ConsentStatus::authorized)
        names += Texts::tr("Apple Music (local)");
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

std::vector<RecapFace> recapRows(const Recap &recap) {
    // Without a source of audio the row says nothing, for that is what was chosen.
    const QString playlists = recap.playlists.isEmpty() ? Texts::tr("None yet") : recap.playlists;
    return {
        {u"recapAccounts"_s, u"music.note.list"_s, Texts::tr("Playlist sources"), playlists},
        {u"recapSources"_s, u"square.and.arrow.down"_s, Texts::tr("Download sources"), recap.sources},
        {u"recapQuality"_s, u"waveform"_s, Texts::tr("Quality"), recap.quality},
        {u"recapFolder"_s, u"folder"_s, Texts::tr("Saved to"), recap.folder, true},
    };
}

} // namespace zelk
