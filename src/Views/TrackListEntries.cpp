#include "Views/TrackListEntries.h"

#include "Styling/Format.h"
#include "Views/PlaylistGroupHeader.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

void GroupHeaderEntry::load(const PlaylistGroup &group, const TrackListModel::PlaylistMeta &meta) {
    const PlaylistSourceId source = meta.source;
    m_name = group.name();
    m_artwork = meta.artwork;
    m_placeholderSymbol = Tokens::Source::sfSymbol(source);
    m_sourceSymbol = Tokens::Source::logoAsset(source);
    m_sourceName = Tokens::Source::displayName(source);
    m_sourceColor = Tokens::Source::accent(source);
    const int completed = group.completed();
    const int total = group.total();
    m_counts = groupCountsLine(completed, total, group.reviewCount(), group.failedCount());
    m_fraction = total > 0 ? static_cast<double>(completed) / total : 0;
    const std::optional<StatusBadge> badge = groupBadge(group.status());
    m_badgeSymbol = badge ? badge->symbol : QString();
    m_badgeText = badge ? badge->text : QString();
    m_badgeInk = static_cast<int>(badge ? badge->ink : Ink::secondary);
    m_collapsed = group.isCollapsed();
    Q_EMIT changed();
}

QString GroupHeaderEntry::percentText() const {
    return zelk::percentText(m_fraction);
}

QString GroupHeaderEntry::progressLabel() const {
    return QCoreApplication::translate("zelk", "%1 progress").arg(m_name);
}

QString GroupHeaderEntry::collapseSymbol() const {
    return m_collapsed ? u"chevron.down"_s : u"chevron.up"_s;
}

QString GroupHeaderEntry::collapseLabel() const {
    return (m_collapsed ? QCoreApplication::translate("zelk", "Expand %1")
                        : QCoreApplication::translate("zelk", "Collapse %1"))
        .arg(m_name);
}

QString GroupHeaderEntry::spoken() const {
    QStringList parts{m_sourceName, m_name, m_badgeText, m_counts};
    parts.removeAll(QString());
    return parts.join(u", "_s);
}

void TrackRowEntry::load(const TrackModel &track, bool last, bool underReview) {
    m_title = track.dto().title;
    m_artist = track.dto().artist;
    m_album = track.dto().album.value_or(QString());
    m_time = Format::duration(track.dto().durationSec);
    m_artwork = track.artwork();
    m_last = last;
    Q_EMIT trackChanged();
    setUnderReview(underReview);
    loadState(track);
}

void TrackRowEntry::loadState(const TrackModel &track) {
    const std::optional<TrackMeta> meta = track.displayMeta();
    const QString quality = Format::qualityLine(meta).value_or(QString());
    Tokens::Source::DownloadSourceStyle style;
    if (meta && meta->source)
        style = Tokens::Source::downloadStyle(meta->source);
    if (m_quality != quality || m_sourceLabel != style.label) {
        m_quality = quality;
        m_sourceLabel = style.label;
        m_sourceSymbol = style.asset.value_or(QString());
        m_sourceColor = style.color;
        Q_EMIT metaChanged();
    }
    m_face = trackStatusFace(track);
    Q_EMIT stateChanged();
}

void TrackRowEntry::setUnderReview(bool underReview) {
    if (m_underReview == underReview)
        return;
    m_underReview = underReview;
    Q_EMIT underReviewChanged();
}

void TrackRowEntry::setHalted(bool halted) {
    if (m_halted == halted)
        return;
    m_halted = halted;
    Q_EMIT stateChanged();
}

QString TrackRowEntry::hint() const {
    QStringList lines{m_title, m_artist, m_album, m_time, details(), m_face.text};
    lines.removeAll(QString());
    return lines.join(u'\n');
}

QString TrackRowEntry::details() const {
    QStringList parts{m_quality, m_sourceLabel};
    parts.removeAll(QString());
    return parts.join(u" · "_s);
}

QString TrackRowEntry::percentText() const {
    return zelk::percentText(m_face.fraction);
}

QString TrackRowEntry::fittingDetail(double width, const QFont &font) const {
    return zelk::fittingDetail(m_face.text, width, font);
}

QString TrackRowEntry::fittingReason(double width, const QFont &font) const {
    return zelk::fittingReason(m_face.text, width, font);
}

} // namespace zelk
