#pragma once

#include "App/AppModel.h"
#include "Views/FrameTick.h"
#include "Views/TrackListModel.h"

#include <QObject>
#include <QPointer>
#include <qqmlregistration.h>

namespace zelk {

// Which of its faces the detail pane shows, its rows, and the words of the bar under them.
class DetailLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(Face face READ face NOTIFY faceChanged)
    Q_PROPERTY(QString startupError READ startupError NOTIFY startupErrorChanged)
    Q_PROPERTY(zelk::TrackListModel *tracks READ tracks CONSTANT)
    Q_PROPERTY(QString phaseText READ phaseText NOTIFY summaryChanged)
    Q_PROPERTY(QString runSummary MEMBER m_runSummary NOTIFY summaryChanged)
    Q_PROPERTY(double overallFraction MEMBER m_overallFraction NOTIFY summaryChanged)
    Q_PROPERTY(QString overallPercentText READ overallPercentText NOTIFY summaryChanged)
    Q_PROPERTY(QString previewCounts MEMBER m_previewCounts NOTIFY summaryChanged)
    Q_PROPERTY(QString previewSummary MEMBER m_previewSummary NOTIFY summaryChanged)
    Q_PROPERTY(bool previewLoading READ previewLoading NOTIFY previewLoadingChanged)
    // Whether the row whose menu is open awaits review.
    Q_PROPERTY(bool menuOffersReview READ menuOffersReview NOTIFY menuChanged)

public:
    // Waiting is before there is a library to select from.
    enum Face { Unavailable, Run, Preview, Waiting, Empty };
    Q_ENUM(Face)

    explicit DetailLogic(AppModel &model, QObject *parent = nullptr);

    Face face() const { return m_face; }
    QString startupError() const { return m_model.startupError().value_or(QString()); }
    TrackListModel *tracks() { return &m_tracks; }
    QString phaseText() const;
    QString overallPercentText() const;
    bool previewLoading() const { return m_model.preview() && m_model.preview()->isLoading(); }

    // The one thing that the element at hand offers: a card collapses or expands, a row is reviewed or retried.
    Q_INVOKABLE void activate(int index);
    Q_INVOKABLE void setCollapsed(int index, bool collapsed);
    Q_INVOKABLE void review(int index);
    Q_INVOKABLE void retry() { m_model.startSync(); }

    // The menu of a row is that track's for as long as it is open, wherever its row goes meanwhile. False where there
    // is no row.
    Q_INVOKABLE bool openMenu(int index);
    Q_INVOKABLE void reviewMenuTrack();
    Q_INVOKABLE void skipMenuTrack();
    Q_INVOKABLE void copyMenuTitle();
    bool menuOffersReview() const;

Q_SIGNALS:
    void faceChanged();
    void startupErrorChanged();
    void summaryChanged();
    void previewLoadingChanged();
    void menuChanged();
    // The row under review is to be brought into view.
    void revealRequested(int index);

private:
    bool needsReview(int index) const;
    void attach();
    void attachPreview();
    void updateFace();
    void updateSummary();
    void followReview();
    TrackListModel::PlaylistMeta playlistMeta(const QString &playlistId) const;

    AppModel &m_model;
    QPointer<LibraryStore> m_library;
    QPointer<PreviewStore> m_preview;
    TrackListModel m_tracks;
    QString m_menuTrackId, m_menuTitle;
    Face m_face = Waiting;
    QString m_runSummary, m_previewCounts, m_previewSummary;
    double m_overallFraction = 0;
    FrameTick m_tick;
};

} // namespace zelk
