#include "Models/ServiceCatalog.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::ServiceCatalog {

namespace {

QString tr(const char *text) {
    return QCoreApplication::translate("zelk", text);
}

} // namespace

const std::array<DownloadSourceInfo, 4> &downloadSources() {
    static const std::array<DownloadSourceInfo, 4> table{{
        {.id = SourceId::soulseek,
         .name = u"Soulseek"_s,
         .assetName = u"ServiceSoulseek"_s,
         .blurb = tr("Peer-to-peer lossless sharing — best quality (FLAC). No setup needed.")},
        {.id = SourceId::bandcamp,
         .name = u"Bandcamp"_s,
         .assetName = u"ServiceBandcamp"_s,
         .blurb = tr("Real FLAC for lossless tracks, straight from artists.")},
        {.id = SourceId::soundcloud,
         .name = u"SoundCloud"_s,
         .assetName = u"ServiceSoundCloud"_s,
         .blurb = tr("Remixes and DJ edits. Add a token to unlock higher-quality (256 kbps) streams."),
         .keyService = AccountService::soundcloud,
         .keyPlaceholder = tr("SoundCloud OAuth token (optional)")},
        {.id = SourceId::youtube,
         .name = u"YouTube"_s,
         .assetName = u"ServiceYouTube"_s,
         .blurb = tr("The widest catalog, as a lossy last resort.")},
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
        {QualityProfile::best, tr("Best"), tr("Upgrade to lossless whenever it's available.")},
        {QualityProfile::balanced, tr("Balanced"), tr("Keep 256k+/lossless; replace anything worse or missing.")},
        {QualityProfile::fast, tr("Fast"), tr("Accept the first decent match — fills your library quickly.")},
    }};
    return table;
}

const QualityProfileInfo &qualityProfile(QualityProfile id) {
    return qualityProfiles().at(static_cast<std::size_t>(id));
}

} // namespace zelk::ServiceCatalog
