#include "Terminal/SyncView.h"

#include "Terminal/Verbs.h"
#include "Transport/Tagged.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr int outcomeColumns = 9;
constexpr int barColumns = 20;
/// Below this width there is no room for a bar beside the numbers.
constexpr int narrow = 50;
constexpr qsizetype mostLeftovers = 20;

QString labelOf(const TrackDTO &track) {
    return track.artist.isEmpty() ? track.title : track.artist + " - "_L1 + track.title;
}

QString counted(qint64 count, const QString &one, const QString &many) {
    return count == 1 ? one : many.arg(count);
}

QString barOf(qint64 done, qint64 all) {
    const auto filled = static_cast<qsizetype>(all > 0 ? std::min(done, all) * barColumns / all : 0);
    return u'[' + QString(filled, u'#') + QString(barColumns - filled, u'-') + "] "_L1;
}

} // namespace

QString wordFor(Phase phase) {
    switch (phase) {
    case Phase::searching:
        return u"searching"_s;
    case Phase::downloading:
        return u"copying"_s;
    case Phase::converting:
        return u"converting"_s;
    case Phase::tagging:
        return u"tagging"_s;
    case Phase::verifying:
        return u"verifying"_s;
    }
    return {};
}

QString progressText(const ServerEvent::DownloadProgress &event) {
    const QString percent = u"%1 %"_s.arg(event.percent, 0, 'f', 0);
    return event.speedText ? percent + "  "_L1 + *event.speedText : percent;
}

void SyncView::take(const ServerEvent &event) {
    match(
        event, [this](const ServerEvent::PlaylistStarted &started) { begin(started); },
        [this](const ServerEvent::TrackStarted &started) { work(started.trackId, {}); },
        [this](const ServerEvent::DiskCheck &check) {
            if (check.result == DiskCheckResult::present) {
                end(check.trackId, {u"on disk"_s, Span::Tone::Faint});
            }
        },
        [this](const ServerEvent::Step &step) { work(step.trackId, wordFor(step.phase)); },
        [this](const ServerEvent::DownloadProgress &progress) {
            work(progress.trackId, u"copying "_s + progressText(progress));
        },
        [this](const ServerEvent::NeedsReview &review) {
            end(review.trackId, {u"review"_s, Span::Tone::Warning});
        },
        [this](const ServerEvent::TrackFinished &finished) { finish(finished); },
        [this](const ServerEvent::OrphansFound &found) { _leftovers += found.paths; },
        [this](const ServerEvent::SyncDone &done) { _summary = done.summary; },
        [this](const ServerEvent::Log &log) { passOn(_console, log); },
        [this](const ServerEvent::Error &error) { _hasErrors |= passOn(_console, error); },
        [](const ServerEvent::SyncStarted &) {}, [](const ServerEvent::PlaylistFinished &) {},
        [](const ServerEvent::ToolProgress &) {}, [](const ServerEvent::ProxyStatus &) {},
        [](const ServerEvent::Unknown &) {});
}

void SyncView::begin(const ServerEvent::PlaylistStarted &event) {
    for (const TrackDTO &track : event.tracks) {
        _labels.insert(track.id, labelOf(track));
    }
    const QString count = counted(static_cast<qint64>(event.tracks.size()), u"1 track"_s, u"%1 tracks"_s);
    _console.line(u"%1 (%2)"_s.arg(event.name, count));
}

void SyncView::work(const QString &trackId, const QString &doing) {
    const auto found =
        std::find_if(_inHand.begin(), _inHand.end(), [&](const InHand &each) { return each.trackId == trackId; });
    if (found != _inHand.end()) {
        found->doing = doing;
    } else {
        _inHand.push_back({trackId, doing});
    }
}

void SyncView::finish(const ServerEvent::TrackFinished &event) {
    const QString detail = event.detail.value_or(QString());
    switch (event.status) {
    case Finish::ok:
        if (event.kind == ServerEvent::TrackFinishKind::verified) {
            end(event.trackId, {u"on disk"_s, Span::Tone::Faint}, detail);
        } else {
            end(event.trackId, {u"done"_s, Span::Tone::Good}, detail);
        }
        return;
    case Finish::lowConfidence:
        end(event.trackId, {u"flagged"_s, Span::Tone::Warning}, detail);
        return;
    case Finish::failed:
        end(event.trackId, {u"failed"_s, Span::Tone::Bad}, detail);
        return;
    case Finish::skipped:
        end(event.trackId, {u"skipped"_s, Span::Tone::Faint}, detail);
        return;
    }
}

void SyncView::end(const QString &trackId, const Span &outcome, const QString &detail) {
    std::erase_if(_inHand, [&](const InHand &each) { return each.trackId == trackId; });
    ++_done;
    const QString label = plainText(_labels.value(trackId, trackId));
    const Span mark{u"  "_s + padded(outcome.text, outcomeColumns), outcome.tone};
    if (const auto width = _console.width()) { // the reason isn't cut: it says what to do
        _console.line({mark, {cutTo(label, *width - outcomeColumns - 2)}});
        if (!detail.isEmpty()) {
            _console.line(QString(outcomeColumns + 2, u' ') + detail);
        }
    } else {
        _console.line({mark, {detail.isEmpty() ? label : label + u": "_s + detail}});
    }
}

void SyncView::drawProgress() {
    const int width = _console.width().value_or(0);
    QString status = width >= narrow ? barOf(_done, _tracks) : QString();
    status += u"%1/%2"_s.arg(_done).arg(std::max(_tracks, _done));
    if (!_inHand.empty()) {
        const InHand &first = _inHand.front();
        status += first.doing.isEmpty() ? QString() : u"  "_s + first.doing;
        status += u"  "_s + _labels.value(first.trackId);
    }
    _console.setStatus(status);
}

void SyncView::drawSummary() {
    _console.setStatus({});
    const SyncSummary summary = _summary.value_or(SyncSummary());
    QString text = u"Summary: %1 done, %2 on disk, %3 flagged, %4 failed, %5 skipped"_s.arg(summary.ok)
                       .arg(summary.present)
                       .arg(summary.flagged)
                       .arg(summary.failed)
                       .arg(summary.skipped);
    if (summary.upgraded > 0) {
        text += u", %1 upgraded"_s.arg(summary.upgraded);
    }
    if (summary.removed > 0) {
        text += u", %1 removed"_s.arg(summary.removed);
    }
    _console.line(text);
    if (summary.flagged > 0) {
        _console.line(counted(summary.flagged, u"1 track waits for your decision. Run \"zelk review\"."_s,
                              u"%1 tracks wait for your decision. Run \"zelk review\"."_s));
    }
    if (!_leftovers.isEmpty()) {
        _console.line(counted(_leftovers.size(), u"1 file is in no playlist any more:"_s,
                              u"%1 files are in no playlist any more:"_s));
        for (const QString &path : _leftovers.first(std::min(_leftovers.size(), mostLeftovers))) {
            _console.line(u"  "_s + path);
        }
        if (_leftovers.size() > mostLeftovers) {
            _console.line(u"  and %1 more"_s.arg(_leftovers.size() - mostLeftovers));
        }
        _console.line(u"\"zelk sync --cleanup\" moves them to the Trash."_s);
    }
}

} // namespace zelk::engine
