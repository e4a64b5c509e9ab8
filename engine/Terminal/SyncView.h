#pragma once

#include "Terminal/Console.h"
#include "Transport/ServerEvent.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace zelk::engine {

/// Shows a run at a terminal from its events: a line for each track that has ended, and, where lines can be drawn
/// again, how far the run is.
class SyncView {
public:
    /// `tracks` is how many the run will go through, as far as known.
    SyncView(Console &console, qint64 tracks) : _console(console), _tracks(tracks) {}

    void take(const ServerEvent &event);
    /// Takes over where it is and what it has in hand into the console's status.
    void drawProgress();

    /// The run's end, once it has come.
    const std::optional<SyncSummary> &summary() const { return _summary; }
    /// Whether the run has told of a failure, be it of a track or of something larger.
    bool hasFailures() const { return _hasErrors || (_summary && _summary->failed > 0); }
    /// Says how it came out and what is to be done next.
    void drawSummary();

private:
    struct InHand {
        QString trackId;
        QString doing;
    };

    void begin(const ServerEvent::PlaylistStarted &event);
    void work(const QString &trackId, const QString &doing);
    void end(const QString &trackId, const Span &outcome, const QString &detail = {});
    void finish(const ServerEvent::TrackFinished &event);

    Console &_console;
    qint64 _tracks;
    qint64 _done = 0;
    QHash<QString, QString> _labels; // by track id
    std::vector<InHand> _inHand;     // the one longest in hand first
    QStringList _leftovers;
    std::optional<SyncSummary> _summary;
    bool _hasErrors = false;
};

/// "copying", "tagging": a step as the words of a line.
QString wordFor(Phase phase);
/// "45 %  3.2 MB/s"
QString progressText(const ServerEvent::DownloadProgress &event);

} // namespace zelk::engine
