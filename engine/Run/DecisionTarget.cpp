#include "Run/DecisionTarget.h"

#include "Files/Download.h"
#include "Library/AudioReader.h"
#include "Playlists/Location.h"
#include "Transport/Tagged.h"

#include <QDir>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// The local file or web address that a pasted address means; empty if it means none.
QString placeOf(const QString &address) {
    QString text = address.trimmed();
    if (isWebAddress(text)) {
        return text;
    }
    if (text.startsWith("file:"_L1, Qt::CaseInsensitive)) {
        return resolvedLocation(text, {});
    }
    if (text.startsWith("~/"_L1)) {
        text.replace(0, 1, QDir::homePath());
    }
    return text.startsWith(u'/') ? QDir::cleanPath(text) : QString();
}

QString pathOf(const CandidateDTO &candidate) {
    return QUrl(candidate.url.value_or(QString())).toLocalFile();
}

QString orRefused(const QString &path, const PendingReview &review) {
    if (path.isEmpty()) {
        throw TargetRefused(u"That file isn't among the matches of %1. Choose another one."_s.arg(review.title));
    }
    return path;
}

} // namespace

QString addressIn(const ReviewDecision &decision) {
    const auto *url = caseOf<ReviewDecision::Url>(decision);
    const QString place = url ? placeOf(url->url) : QString();
    return isWebAddress(place) ? place : QString();
}

QString placeTaken(const PendingReview &review, const ReviewDecision &decision) {
    return match(
        decision,
        [&](const ReviewDecision::Accept &) {
            return orRefused(review.candidates.empty() ? QString() : pathOf(review.candidates.front()), review);
        },
        [&](const ReviewDecision::Candidate &chosen) {
            for (const CandidateDTO &candidate : review.candidates) {
                if (candidate.id == chosen.candidateId) {
                    return orRefused(pathOf(candidate), review);
                }
            }
            return orRefused({}, review);
        },
        [](const ReviewDecision::Url &address) {
            const QString place = placeOf(address.url);
            if (place.isEmpty()) {
                throw TargetRefused(
                    u"%1 is no place of a file. Give a path, or an address that begins with file://, http:// or"
                    " https://."_s.arg(address.url));
            }
            return place;
        },
        [](const ReviewDecision::Skip &) { return QString(); });
}

AudioFile fileTaken(const PendingReview &review, const QString &path) {
    try {
        AudioFile file = readAudio(path);
        for (const CandidateDTO &candidate : review.candidates) {
            if (pathOf(candidate) == path && candidate.source) {
                file.origin = fromWireName<SourceId>(QStringView(*candidate.source));
            }
        }
        return file;
    } catch (const NotAudio &error) {
        throw TargetRefused(u"%1 can't be used: %2. Choose another one."_s.arg(path, QString::fromUtf8(error.what())));
    }
}

} // namespace zelk::engine
