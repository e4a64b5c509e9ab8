#include "Terminal/Interrupts.h"
#include "Terminal/SyncView.h"
#include "Terminal/Verbs.h"
#include "Transport/Tagged.h"

#include <QDir>
#include <QUrl>

#include <cmath>
#include <iostream>
#include <string>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// What an answer asks for: a decision, to leave this track or all for later, or something that isn't understood.
struct Answer {
    enum class Kind { Decision, Later, Quit, Unclear };
    Kind kind = Kind::Unclear;
    ReviewDecision decision = ReviewDecision::skip();
    QString why; // Unclear
};

QString lengthText(double seconds) {
    const qint64 whole = std::llround(seconds);
    return whole > 0 ? u"%1:%2"_s.arg(whole / 60).arg(whole % 60, 2, 10, QChar(u'0')) : QString();
}

QString joined(const QStringList &parts) {
    QStringList present;
    for (const QString &part : parts) {
        if (!part.isEmpty()) {
            present += part;
        }
    }
    return present.join(u", "_s);
}

/// The user's own file as they know it, any other address as it stands.
QString placeOf(const CandidateDTO &candidate) {
    const QUrl url(candidate.url.value_or(QString()));
    if (!url.isLocalFile()) {
        return candidate.url.value_or(QString());
    }
    const QString path = url.toLocalFile();
    const QString home = QDir::homePath() + u'/';
    return path.startsWith(home) ? u"~/"_s + path.mid(home.size()) : path;
}

void show(Console &console, const WaitingReview &waiting, std::size_t number, std::size_t all) {
    const PendingReview &review = waiting.review;
    const QString label = review.artist.isEmpty() ? review.title : review.artist + " - "_L1 + review.title;
    const QString about = joined({waiting.playlist, review.album, lengthText(review.durationSec)});
    console.line(u"%1 of %2: %3 (%4)"_s.arg(number).arg(all).arg(label, about));
    for (std::size_t i = 0; i < review.candidates.size(); ++i) {
        const CandidateDTO &candidate = review.candidates[i];
        const QString bitrate = candidate.bitrateKbps ? u"%1 kbps"_s.arg(*candidate.bitrateKbps) : QString();
        const QString confidence =
            candidate.confidence ? u"%1 %"_s.arg(*candidate.confidence * 100, 0, 'f', 0) : QString();
        const QString title =
            candidate.channel.isEmpty() ? candidate.title : candidate.channel + " - "_L1 + candidate.title;
        console.line(u"  %1  %2 (%3)"_s.arg(static_cast<int>(i) + 1)
                         .arg(title, joined({lengthText(candidate.durationSec), candidate.format.value_or(QString()),
                                             bitrate, candidate.source.value_or(QString()), confidence})));
        if (candidate.reason) {
            console.line({{u"     "_s + *candidate.reason, Span::Tone::Warning}});
        }
        console.line({{u"     "_s + placeOf(candidate), Span::Tone::Faint}});
    }
}

bool isAddress(const QString &text) {
    return text.contains("://"_L1) || text.startsWith("file:"_L1, Qt::CaseInsensitive);
}

bool isPath(const QString &text) {
    return text.startsWith(u'/') || text.startsWith("~/"_L1) || text.startsWith("./"_L1) || text.startsWith("../"_L1);
}

Answer answerOf(const QString &typed, const PendingReview &review) {
    const QString text = typed.trimmed();
    if (text == "a"_L1) {
        return {Answer::Kind::Decision, ReviewDecision::accept(), {}};
    }
    if (text == "s"_L1) {
        return {Answer::Kind::Decision, ReviewDecision::skip(), {}};
    }
    if (text == "n"_L1) {
        return {Answer::Kind::Later, ReviewDecision::skip(), {}};
    }
    if (text == "q"_L1) {
        return {Answer::Kind::Quit, ReviewDecision::skip(), {}};
    }
    if (isAddress(text) || isPath(text)) {
        const bool relative = text.startsWith(u'.');
        return {
            Answer::Kind::Decision, ReviewDecision::url(relative ? QDir::current().absoluteFilePath(text) : text), {}};
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber && number >= 1 && static_cast<std::size_t>(number) <= review.candidates.size()) {
        return {Answer::Kind::Decision,
                ReviewDecision::candidate(review.candidates[static_cast<std::size_t>(number) - 1].id),
                {}};
    }
    return {Answer::Kind::Unclear, ReviewDecision::skip(),
            isNumber ? u"There is no match %1."_s.arg(text)
                     : u"Answer with a number, a, s, n, q, or the path or address of an audio file."_s};
}

/// How a decision came out.
struct Outcome {
    bool isSettled = false; ///< False: the track still waits.
    bool hasFailed = false;
    int signal = 0;
};

class Decider {
public:
    explicit Decider(Session &session) : _session(session) {}

    Outcome carryOut(const PendingReview &review, const ReviewDecision &decision) {
        Interrupts interrupts; // before this, a signal ends the process at once: there is nothing in hand
        _session.engine.reviewDecision(review.trackId, decision);
        std::optional<Outcome> outcome;
        while (!outcome) {
            _session.console.flush();
            interrupts.wait(_session.events.descriptor());
            if (interrupts.signal() != 0) {
                _session.engine.stopRuns();
                return {false, false, interrupts.signal()};
            }
            for (const ServerEvent &event : _session.events.take()) {
                const auto ended = take(event, review.trackId);
                outcome = outcome ? outcome : ended;
            }
        }
        _session.console.setStatus({});
        return *outcome;
    }

private:
    std::optional<Outcome> take(const ServerEvent &event, const QString &trackId) {
        if (passOn(_session.console, event)) {
            return Outcome{false, true, 0};
        }
        if (const auto *step = caseOf<ServerEvent::Step>(event)) {
            _session.console.setStatus(wordFor(step->phase));
        } else if (const auto *progress = caseOf<ServerEvent::DownloadProgress>(event)) {
            _session.console.setStatus(u"copying "_s + progressText(*progress));
        } else if (const auto *finished = caseOf<ServerEvent::TrackFinished>(event);
                   finished && finished->trackId == trackId) {
            _session.console.setStatus({});
            return tell(*finished);
        }
        return std::nullopt;
    }

    Outcome tell(const ServerEvent::TrackFinished &finished) {
        const QString detail = finished.detail ? u": "_s + *finished.detail : QString();
        switch (finished.status) {
        case Finish::ok:
            _session.console.line({{u"  done"_s, Span::Tone::Good}});
            return {true, false, 0};
        case Finish::skipped:
            _session.console.line({{u"  skipped"_s, Span::Tone::Faint}});
            return {true, false, 0};
        case Finish::failed:
        case Finish::lowConfidence:
            _session.console.line({{u"  failed"_s, Span::Tone::Bad}, {detail}});
            return {true, true, 0};
        }
        return {true, true, 0};
    }

    Session &_session;
};

/// Nothing at the end of the input.
std::optional<QString> readAnswer(Console &console, bool prompts, std::size_t candidates) {
    if (prompts) {
        const QString take = candidates == 0   ? QString()
                             : candidates == 1 ? u"1 take it, "_s
                                               : u"1-%1 take one, a the best, "_s.arg(candidates);
        console.text(take + u"s skip, n later, q quit, or a path: "_s);
    }
    console.flush();
    std::string typed;
    if (!std::getline(std::cin, typed)) {
        if (prompts) {
            console.text(u"\n"_s);
        }
        return std::nullopt;
    }
    return QString::fromStdString(typed);
}

} // namespace

int reviewTracks(Session &session) {
    Console &console = session.console;
    const std::vector<WaitingReview> waiting = session.engine.waitingReviews();
    passOn(session);
    const bool prompts = ::isatty(STDIN_FILENO) == 1;
    Decider decider(session);
    std::size_t decided = 0;
    bool failed = false;
    bool quit = false;
    for (std::size_t i = 0; i < waiting.size() && !quit && !console.isClosed(); ++i) {
        const PendingReview &review = waiting[i].review;
        show(console, waiting[i], i + 1, waiting.size());
        for (bool settled = false; !settled && !quit;) {
            const auto typed = readAnswer(console, prompts, review.candidates.size());
            const Answer answer = typed ? answerOf(*typed, review) : Answer{Answer::Kind::Quit, {}, {}};
            quit = answer.kind == Answer::Kind::Quit;
            settled = answer.kind == Answer::Kind::Later;
            if (answer.kind == Answer::Kind::Unclear) {
                console.complain(answer.why);
                failed |= !prompts; // a person sees it and answers again
            } else if (answer.kind == Answer::Kind::Decision) {
                const Outcome outcome = decider.carryOut(review, answer.decision);
                if (outcome.signal != 0) {
                    return stoppedBySignal + outcome.signal;
                }
                settled = outcome.isSettled;
                decided += outcome.isSettled ? 1 : 0;
                failed |= outcome.hasFailed;
            }
        }
    }
    const std::size_t left = waiting.size() - decided;
    console.line(waiting.empty() ? u"No track waits for your decision."_s
                 : left == 0     ? u"All decided."_s
                 : left == 1     ? u"1 track still waits for your decision."_s
                                 : u"%1 tracks still wait for your decision."_s.arg(left));
    return failed ? somethingFailed : allDone;
}

} // namespace zelk::engine
