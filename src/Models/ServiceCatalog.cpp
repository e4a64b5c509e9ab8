#include "Models/ServiceCatalog.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::ServiceCatalog {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

} // namespace

const std::array<DownloadSourceInfo, 4> &downloadSources() {
    static const std::array<DownloadSourceInfo, 4> table{{
        {.id = SourceId::soulseek,
         .name = u"Soulseek"_s,
         .assetName = u"ServiceSoulseek"_s,
         .blurb = Texts::tr("Peer-to-peer lossless sharing — best quality (FLAC). No setup needed.")},
        {.id = SourceId::bandcamp,
         .name = u"Bandcamp"_s,
         .assetName = u"ServiceBandcamp"_s,
         .blurb = Texts::tr("Real FLAC for lossless tracks, straight from artists.")},
        {.id = SourceId::soundcloud,
         .name = u"SoundCloud"_s,
         .assetName = u"ServiceSoundCloud"_s,
         .blurb = Texts::tr("Remixes and DJ edits. Add a token to unlock higher-quality (256 kbps) streams."),
         .keyService = AccountService::soundcloud,
         .keyPlaceholder = Texts::tr("SoundCloud OAuth token (optional)")},
        {.id = SourceId::youtube,
         .name = u"YouTube"_s,
         .assetName = u"ServiceYouTube"_s,
         .blurb = Texts::tr("The widest catalog, as a lossy last resort.")},
    }};
    return table;
}

const DownloadSourceInfo &downloadSource(SourceId id) {
    const auto &all = downloadSources();
    const auto found = std::ranges::find(all, id, &DownloadSourceInfo::id);
    return found == all.end() ? all.front() : *found;
}

const std::array<QualityProfileInfo, 3> &qualityProfiles() {
    static const std::array<QualityProfileInfo, 3> table{{
        {QualityProfile::best, Texts::tr("Best"), Texts::tr("Upgrade to lossless whenever it's available.")},
        {QualityProfile::balanced, Texts::tr("Balanced"),
         Texts::tr("Keep 256k+/lossless; replace anything worse or missing.")},
        {QualityProfile::fast, Texts::tr("Fast"),
         Texts::tr("Accept the first decent match — fills your library quickly.")},
    }};
    return table;
}

const QualityProfileInfo &qualityProfile(QualityProfile id) {
    return qualityProfiles().at(static_cast<std::size_t>(id));
}

} // namespace zelk::ServiceCatalog
