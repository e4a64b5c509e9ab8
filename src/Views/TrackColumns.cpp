#include "Views/TrackColumns.h"

#include "Styling/Tokens.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zelk {

namespace {

// Widths with the gap that follows each column.
constexpr double gap = Tokens::Space::sm;
constexpr double coverRoom = 34 + Tokens::Space::xs;
constexpr double timeRoom = 48;
constexpr double qualityIdeal = 110;
constexpr double qualityLeast = 84;
constexpr double sourceIdeal = 110;
constexpr double sourceLeast = 80;
constexpr double statusIdeal = 160;
constexpr double statusRoomy = 192;
constexpr double statusNarrow = 156;
constexpr double statusLeast = 120;
// Below this the names give way no further while quality and source can.
constexpr double namesLeast = 250;
constexpr double namesLeastNarrow = 200;
// Nor below this while anything else can: of two names then only the title's is left.
constexpr double titleLeast = 140;
// Narrower than this the detail pane drops the album; each step down drops the next column.
constexpr double dropAlbumBelow = 640;

} // namespace

TrackColumns::Layout TrackColumns::layout(double contentWidth, double detailWidth, bool roomy, double textScale) {
    const auto text = [textScale](double room) { return std::round(room * textScale); };
    const bool narrow = detailWidth < text(dropAlbumBelow);
    double quality = text(qualityIdeal);
    double source = text(sourceIdeal);
    double time = text(timeRoom);
    double status = text(narrow ? statusNarrow : roomy ? statusRoomy : statusIdeal);
    const double shared = contentWidth - coverRoom - time - status;
    double names = shared - quality - source;
    if (names < text(namesLeast)) {
        // The source's names are the wider content, so quality gives five parts where the source gives four.
        const double need = text(namesLeast) - names;
        quality -= std::min(text(qualityIdeal) - text(qualityLeast), std::ceil(need * 5 / 9));
        source -= std::min(text(sourceIdeal) - text(sourceLeast), need - (text(qualityIdeal) - quality));
        names = shared - quality - source;
    }
    if (narrow && names < text(namesLeastNarrow))
        names += std::exchange(quality, 0);
    if (narrow && names < text(namesLeastNarrow))
        names += std::exchange(source, 0);
    if (narrow && names < text(titleLeast))
        names += std::exchange(time, 0);
    const bool titleAlone = narrow && names < text(titleLeast);
    if (titleAlone) {
        const double given = std::min(status - text(statusLeast), text(titleLeast) - names);
        status -= given;
        names += given;
    }
    names = std::max(0.0, names);

    const double title = titleAlone ? names : std::floor(names * (narrow ? 0.58 : 0.46));
    const double album = narrow ? 0 : std::floor(names * 0.24);
    const double artist = names - title - album;
    Layout result;
    double x = coverRoom;
    const auto next = [&x](double room, double after) {
        const Column column{x, std::max(0.0, room - after)};
        x += room;
        return column;
    };
    result.title = next(title, gap);
    result.artist = next(artist, gap);
    result.album = next(album, gap);
    result.time = next(time, gap);
    result.quality = next(quality, gap);
    result.source = next(source, gap);
    result.status = next(status, 0);
    return result;
}

void TrackColumns::setWidth(double width) {
    if (m_width == width)
        return;
    m_width = width;
    update();
}

void TrackColumns::setRoomy(bool roomy) {
    if (m_roomy == roomy)
        return;
    m_roomy = roomy;
    update();
}

void TrackColumns::setTextScale(double scale) {
    if (m_textScale == scale)
        return;
    m_textScale = scale;
    update();
}

void TrackColumns::update() {
    // The content starts under a header card's cover and ends as far from the right.
    static constexpr double inset = 2.0 * 2 * Tokens::Space::md;
    m_layout = layout(m_width - inset, m_width, m_roomy, m_textScale);
    Q_EMIT changed();
}

} // namespace zelk
