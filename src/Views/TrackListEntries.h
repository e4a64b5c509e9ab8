#pragma once

#include "Views/TrackListModel.h"

#include "Views/TrackStatusFace.h"

#include <QColor>

namespace zelk {

// What the card over a playlist's table shows.
class GroupHeaderEntry : public zelk::ListEntry {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the list")
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed)
    Q_PROPERTY(zelk::ArtworkRef artwork MEMBER m_artwork NOTIFY changed)
    Q_PROPERTY(QString placeholderSymbol MEMBER m_placeholderSymbol NOTIFY changed)
    Q_PROPERTY(QString sourceSymbol MEMBER m_sourceSymbol NOTIFY changed)
    Q_PROPERTY(QString sourceName MEMBER m_sourceName NOTIFY changed)
    Q_PROPERTY(QColor sourceColor MEMBER m_sourceColor NOTIFY changed)
    Q_PROPERTY(QString counts MEMBER m_counts NOTIFY changed)
    Q_PROPERTY(double fraction MEMBER m_fraction NOTIFY changed)
    Q_PROPERTY(QString percentText READ percentText NOTIFY changed)
    Q_PROPERTY(QString progressLabel READ progressLabel NOTIFY changed)
    Q_PROPERTY(QString badgeSymbol MEMBER m_badgeSymbol NOTIFY changed)
    Q_PROPERTY(int badgeInk MEMBER m_badgeInk NOTIFY changed)
    Q_PROPERTY(QString collapseSymbol READ collapseSymbol NOTIFY changed)
    Q_PROPERTY(QString collapseLabel READ collapseLabel NOTIFY changed)
    Q_PROPERTY(QString spoken READ spoken NOTIFY changed) // the whole card in one sentence

public:
    void load(const PlaylistGroup &group, const TrackListModel::PlaylistMeta &meta);

    QString percentText() const;
    QString progressLabel() const;
    QString collapseSymbol() const;
    QString collapseLabel() const;
    QString spoken() const;

Q_SIGNALS:
    void changed();

private:
    QString m_name, m_placeholderSymbol, m_sourceSymbol, m_sourceName, m_counts, m_badgeSymbol, m_badgeText;
    ArtworkRef m_artwork;
    QColor m_sourceColor;
    double m_fraction = 0;
    int m_badgeInk = 0;
    bool m_collapsed = false;
};

// What one row of a table shows.
class TrackRowEntry : public zelk::ListEntry {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the list")
    Q_PROPERTY(QString title MEMBER m_title NOTIFY trackChanged)
    Q_PROPERTY(QString artist MEMBER m_artist NOTIFY trackChanged)
    Q_PROPERTY(QString album MEMBER m_album NOTIFY trackChanged)
    Q_PROPERTY(QString time MEMBER m_time NOTIFY trackChanged)
    Q_PROPERTY(zelk::ArtworkRef artwork MEMBER m_artwork NOTIFY trackChanged)
    Q_PROPERTY(bool last MEMBER m_last NOTIFY trackChanged) // of its table
    Q_PROPERTY(bool underReview MEMBER m_underReview NOTIFY underReviewChanged)
    Q_PROPERTY(QString quality MEMBER m_quality NOTIFY metaChanged)
    Q_PROPERTY(QString sourceLabel MEMBER m_sourceLabel NOTIFY metaChanged)
    Q_PROPERTY(QString sourceSymbol MEMBER m_sourceSymbol NOTIFY metaChanged)
    Q_PROPERTY(QColor sourceColor MEMBER m_sourceColor NOTIFY metaChanged)
    Q_PROPERTY(QString hint READ hint NOTIFY stateChanged)       // all of the row, for what is cut or dropped
    Q_PROPERTY(QString details READ details NOTIFY stateChanged) // what narrow windows drop, for a screen reader
    Q_PROPERTY(Face face READ face NOTIFY stateChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY stateChanged)
    Q_PROPERTY(QString statusLabel READ statusLabel NOTIFY stateChanged)
    Q_PROPERTY(QString statusSymbol READ statusSymbol NOTIFY stateChanged)
    Q_PROPERTY(int statusInk READ statusInk NOTIFY stateChanged)
    Q_PROPERTY(double fraction READ fraction NOTIFY stateChanged)
    Q_PROPERTY(QString percentText READ percentText NOTIFY stateChanged)
    // The engine that was at it is gone.
    Q_PROPERTY(bool halted READ halted NOTIFY stateChanged)

public:
    // TrackStatusFace::Kind, in its order.
    enum Face { Pill, Checking, Downloading, Working, Review, Failed };
    Q_ENUM(Face)

    // All of it, for a delegate that takes another row.
    void load(const TrackModel &track, bool last, bool underReview);
    // What an event may have changed.
    void loadState(const TrackModel &track);
    void setUnderReview(bool underReview);
    void setHalted(bool halted);

    QString hint() const;
    QString details() const;
    Face face() const { return static_cast<Face>(m_face.kind); }
    QString statusText() const { return m_face.text; }
    QString statusLabel() const { return m_face.label; }
    QString statusSymbol() const { return m_face.symbol; }
    int statusInk() const { return static_cast<int>(m_face.ink); }
    double fraction() const { return m_face.fraction; }
    bool halted() const { return m_halted; }
    QString percentText() const;
    Q_INVOKABLE QString fittingDetail(double width, const QFont &font) const;
    Q_INVOKABLE QString fittingReason(double width, const QFont &font) const;

Q_SIGNALS:
    void trackChanged();
    void metaChanged();
    void stateChanged();
    void underReviewChanged();

private:
    QString m_title, m_artist, m_album, m_time, m_quality, m_sourceLabel, m_sourceSymbol;
    ArtworkRef m_artwork;
    QColor m_sourceColor;
    TrackStatusFace m_face;
    bool m_last = false;
    bool m_underReview = false;
    bool m_halted = false;
};

} // namespace zelk
