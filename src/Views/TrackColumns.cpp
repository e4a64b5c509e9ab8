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
constexpr double sourceIdeal = 110;
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

using Column = TrackColumns::Column;
using Layout = TrackColumns::Layout;

// A column as it can be dragged; the time's width is fixed.
struct Draggable {
    Column Layout::*column;
    const SizedColumn *sized;
    bool isName = false;
};

constexpr std::array<Draggable, 7> inOrder{{
    {&Layout::title, &sizedColumns[0], true},
    {&Layout::artist, &sizedColumns[1], true},
    {&Layout::album, &sizedColumns[2], true},
    {&Layout::time, nullptr},
    {&Layout::quality, &sizedColumns[3]},
    {&Layout::source, &sizedColumns[4]},
    {&Layout::status, &sizedColumns[5]},
}};

// A column's width with its gap, 0 for one that was dropped.
double roomOf(const Layout &layout, const Draggable &draggable) {
    const double width = (layout.*draggable.column).width;
    return width > 0 && draggable.column != &Layout::status ? width + gap : width;
}

double namesOf(const Layout &layout) {
    return roomOf(layout, inOrder[0]) + roomOf(layout, inOrder[1]) + roomOf(layout, inOrder[2]);
}

// The columns that a drag of the edge changes: the nearest on both sides that show and can change.
struct Sides {
    const Draggable *left = nullptr;
    const Draggable *right = nullptr;
    explicit operator bool() const { return left && right; }
};

Sides sidesOf(const Layout &layout, int edge) {
    Sides sides;
    const auto counts = [&layout](const Draggable &each) { return each.sized && roomOf(layout, each) > 0; };
    for (int at = 0; at < static_cast<int>(inOrder.size()); ++at) {
        const Draggable &each = inOrder[static_cast<std::size_t>(at)];
        if (!counts(each))
            continue;
        if (at <= edge)
            sides.left = &each;
        else if (!sides.right)
            sides.right = &each;
    }
    return sides;
}

// What the names take of the room that they share.
struct NameShares {
    double title, artist, album;
};

NameShares sharesOf(const ColumnWidths &chosen) {
    if (chosen.title && chosen.artist && chosen.album)
        return {static_cast<double>(*chosen.title), static_cast<double>(*chosen.artist),
                static_cast<double>(*chosen.album)};
    return {46, 30, 24};
}

} // namespace

TrackColumns::Layout TrackColumns::layout(double contentWidth, double detailWidth, bool roomy, double textScale,
                                          const ColumnWidths &chosen) {
    const auto text = [textScale](double room) { return std::round(room * textScale); };
    const bool narrow = detailWidth < text(dropAlbumBelow);
    const double usualStatus = text(narrow ? statusNarrow : roomy ? statusRoomy : statusIdeal);
    double quality = chosen.quality.value_or(text(qualityIdeal));
    double source = chosen.source.value_or(text(sourceIdeal));
    double status = chosen.status.value_or(usualStatus);
    double time = text(timeRoom);
    const double shared = contentWidth - coverRoom - time;
    double names = shared - quality - source - status;
    if (names < text(namesLeast)) {
        double need = text(namesLeast) - names;
        const auto give = [&need](double &room, double least, double most) {
            const double given = std::max(0.0, std::min({room - least, most, need}));
            room -= given;
            need -= given;
        };
        // The source's names are the wider content, so quality gives five parts where the source gives four.
        give(quality, text(sizedColumns[3].least), std::ceil(need * 5 / 9));
        give(source, text(sizedColumns[4].least), need);
        give(quality, text(sizedColumns[3].least), need);
        give(status, usualStatus, need);
        names = shared - quality - source - status;
    }
    if (narrow && names < text(namesLeastNarrow))
        names += std::exchange(quality, 0);
    if (narrow && names < text(namesLeastNarrow))
        names += std::exchange(source, 0);
    if (narrow && names < text(titleLeast))
        names += std::exchange(time, 0);
    const bool titleAlone = narrow && names < text(titleLeast);
    if (titleAlone) {
        const double given = std::max(0.0, std::min(status - text(statusLeast), text(titleLeast) - names));
        status -= given;
        names += given;
    }
    names = std::max(0.0, names);

    const NameShares shares = narrow && !chosen.title ? NameShares{58, 42, 0} : sharesOf(chosen);
    const double whole = shares.title + shares.artist + (narrow ? 0 : shares.album);
    const double least = chosen.title ? std::min<double>(sizedColumns[0].least, std::floor(names / 3)) : 0;
    // A share that comes to a whole number of pixels is that number, whatever the division leaves.
    const auto part = [&](double share, double room) {
        return std::max(least, std::min(std::floor(names * share / whole + 1e-6), room - least));
    };
    const double title = titleAlone ? names : part(shares.title, names - (narrow ? 0 : least));
    const double album = narrow ? 0 : part(shares.album, names - title);
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

QList<double> TrackColumns::edgesOf(const Layout &layout) {
    QList<double> edges;
    for (int edge = 0; edge + 1 < static_cast<int>(inOrder.size()); ++edge) {
        const Draggable &before = inOrder[static_cast<std::size_t>(edge)];
        const Column &column = layout.*before.column;
        const bool shows = roomOf(layout, before) > 0 && sidesOf(layout, edge);
        edges += shows ? column.x + column.width + gap / 2 : -1;
    }
    return edges;
}

ColumnWidths TrackColumns::dragged(const Layout &layout, const ColumnWidths &chosen, int edge, double by) {
    const Sides sides = sidesOf(layout, edge);
    if (!sides)
        return chosen;
    const Draggable *const left = sides.left;
    const Draggable *const right = sides.right;
    double least = std::min(0.0, left->sized->least - roomOf(layout, *left));
    double most = std::max(0.0, roomOf(layout, *right) - right->sized->least);
    // Where the names are short of room already, nothing else may grow.
    const double spare = std::max(0.0, namesOf(layout) - namesLeast);
    if (left->isName && !right->isName)
        least = std::max(least, -spare);
    else if (!left->isName && namesOf(layout) < namesLeast)
        least = most = 0;
    by = std::round(std::clamp(by, least, most));
    if (by == 0)
        return chosen;

    ColumnWidths result = chosen;
    const auto room = [&](const Draggable &each) {
        const double change = &each == left ? by : &each == right ? -by : 0;
        return static_cast<int>(std::lround(roomOf(layout, each) + change));
    };
    const auto keep = [&](const Draggable &each) {
        if (each.sized && roomOf(layout, each) > 0)
            result.*each.sized->width = room(each);
    };
    if (left->isName) {
        keep(inOrder[0]);
        keep(inOrder[1]);
        keep(inOrder[2]);
        if (roomOf(layout, inOrder[2]) <= 0) { // keeps its part for when it shows again
            const auto [title, artist, album] = sharesOf(chosen);
            result.album =
                std::max(sizedColumns[2].least,
                         static_cast<int>(std::lround((*result.title + *result.artist) * album / (title + artist))));
        }
    }
    if (!right->isName) {
        // These give way for one another, so what one of them is dragged to holds only if both stay.
        keep(inOrder[4]);
        keep(inOrder[5]);
        if (right->column == &Layout::status)
            keep(*right);
    }
    return result;
}

ColumnWidths TrackColumns::released(const Layout &layout, const ColumnWidths &chosen, int edge) {
    const Sides sides = sidesOf(layout, edge);
    ColumnWidths result = chosen;
    for (const Draggable *side : {sides.left, sides.right}) {
        if (side && side->isName)
            result.title = result.artist = result.album = std::nullopt;
        else if (side)
            result.*side->sized->width = std::nullopt;
    }
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

void TrackColumns::setMemory(WindowMemory *memory) {
    if (m_memory == memory)
        return;
    if (m_memory)
        m_memory->disconnect(this);
    m_memory = memory;
    if (m_memory)
        connect(m_memory, &WindowMemory::columnWidthsChanged, this, &TrackColumns::update);
    update();
}

void TrackColumns::beginDrag() {
    m_dragLayout = m_layout;
    m_dragChosen = m_memory ? m_memory->columnWidths() : ColumnWidths();
}

void TrackColumns::drag(int edge, double by) {
    if (m_memory)
        m_memory->setColumnWidths(dragged(m_dragLayout, m_dragChosen, edge, by));
}

void TrackColumns::release(int edge) {
    if (m_memory)
        m_memory->setColumnWidths(released(m_layout, m_memory->columnWidths(), edge));
}

void TrackColumns::update() {
    // The content starts under a header card's cover and ends as far from the right.
    static constexpr double inset = 2.0 * 2 * Tokens::Space::md;
    m_layout =
        layout(m_width - inset, m_width, m_roomy, m_textScale, m_memory ? m_memory->columnWidths() : ColumnWidths());
    Q_EMIT changed();
}

} // namespace zelk
