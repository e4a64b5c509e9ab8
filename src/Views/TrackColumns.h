#pragma once

#include "Views/WindowMemory.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

namespace zelk {

// Where the columns of the track table stand for a width. Each has its place and the room for its content, the gap to
// the next column left out; a width of 0 says that the column was dropped. An edge between two columns can be dragged,
// which takes from the one what it gives to the other.
class TrackColumns : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY changed)
    // Whether any download has shown in these tables: its text needs more room. Stays, so that nothing jumps.
    Q_PROPERTY(bool roomy READ roomy WRITE setRoomy NOTIFY changed)
    // How much larger than usual text is: the columns of known content grow with it.
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY changed)
    // Knows what the user has dragged the columns to.
    Q_PROPERTY(zelk::WindowMemory *memory READ memory WRITE setMemory NOTIFY changed)
    // The x of the edge after each column but the last; negative where there is nothing to drag.
    Q_PROPERTY(QList<double> edges READ edges NOTIFY changed)
    Q_PROPERTY(double titleX READ titleX NOTIFY changed)
    Q_PROPERTY(double titleWidth READ titleWidth NOTIFY changed)
    Q_PROPERTY(double artistX READ artistX NOTIFY changed)
    Q_PROPERTY(double artistWidth READ artistWidth NOTIFY changed)
    Q_PROPERTY(double albumX READ albumX NOTIFY changed)
    Q_PROPERTY(double albumWidth READ albumWidth NOTIFY changed)
    Q_PROPERTY(double timeX READ timeX NOTIFY changed)
    Q_PROPERTY(double timeWidth READ timeWidth NOTIFY changed)
    Q_PROPERTY(double qualityX READ qualityX NOTIFY changed)
    Q_PROPERTY(double qualityWidth READ qualityWidth NOTIFY changed)
    Q_PROPERTY(double sourceX READ sourceX NOTIFY changed)
    Q_PROPERTY(double sourceWidth READ sourceWidth NOTIFY changed)
    Q_PROPERTY(double statusX READ statusX NOTIFY changed)
    Q_PROPERTY(double statusWidth READ statusWidth NOTIFY changed)

public:
    struct Column {
        double x = 0;
        double width = 0;
        bool operator==(const Column &) const = default;
    };
    struct Layout {
        Column title, artist, album, time, quality, source, status;
        bool operator==(const Layout &) const = default;
    };

    // `detailWidth` decides what is dropped, `contentWidth` is what the columns share. Logical pixels.
    static Layout layout(double contentWidth, double detailWidth, bool roomy, double textScale = 1,
                         const ColumnWidths &chosen = {});
    // As in `edges`.
    static QList<double> edgesOf(const Layout &layout);
    // What is chosen once that edge of that layout has been dragged so far, or as far as it goes.
    static ColumnWidths dragged(const Layout &layout, const ColumnWidths &chosen, int edge, double by);
    // The columns on both sides of the edge have their automatic width again.
    static ColumnWidths released(const Layout &layout, const ColumnWidths &chosen, int edge);

    double width() const { return m_width; }
    void setWidth(double width);
    bool roomy() const { return m_roomy; }
    void setRoomy(bool roomy);
    double textScale() const { return m_textScale; }
    void setTextScale(double scale);
    WindowMemory *memory() const { return m_memory; }
    void setMemory(WindowMemory *memory);
    QList<double> edges() const { return edgesOf(m_layout); }

    // A drag counts from where it began, so that an edge waits for a pointer that has gone beyond its limit.
    Q_INVOKABLE void beginDrag();
    Q_INVOKABLE void drag(int edge, double by);
    Q_INVOKABLE void release(int edge);

    double titleX() const { return m_layout.title.x; }
    double titleWidth() const { return m_layout.title.width; }
    double artistX() const { return m_layout.artist.x; }
    double artistWidth() const { return m_layout.artist.width; }
    double albumX() const { return m_layout.album.x; }
    double albumWidth() const { return m_layout.album.width; }
    double timeX() const { return m_layout.time.x; }
    double timeWidth() const { return m_layout.time.width; }
    double qualityX() const { return m_layout.quality.x; }
    double qualityWidth() const { return m_layout.quality.width; }
    double sourceX() const { return m_layout.source.x; }
    double sourceWidth() const { return m_layout.source.width; }
    double statusX() const { return m_layout.status.x; }
    double statusWidth() const { return m_layout.status.width; }

Q_SIGNALS:
    void changed();

private:
    void update();

    double m_width = 0;
    bool m_roomy = false;
    double m_textScale = 1;
    Layout m_layout;
    QPointer<WindowMemory> m_memory;
    Layout m_dragLayout;
    ColumnWidths m_dragChosen;
};

} // namespace zelk
