#include "Run/SourceFinder.h"

#include "Files/Download.h"
#include "Library/AudioReader.h"
#include "Playlists/RowIdentity.h"
#include "Run/RunEvents.h"

#include <QCryptographicHash>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

QString fingerprintOf(const MatchIndex &index, const MatchPreferences &preferences, double seconds) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (int i = 0; i < index.size(); ++i) {
        const AudioFile &file = index.file(i);
        hash.addData(u"%1\n%2 %3\n"_s.arg(file.path).arg(file.size).arg(file.modifiedMs).toUtf8());
    }
    QString wishes = u"%1 %2 %3 %4"_s.arg(QString(wireName(preferences.floor)))
                         .arg(preferences.losslessOnly)
                         .arg(preferences.bestQuality)
                         .arg(seconds);
    for (const SourceId source : preferences.sources) {
        wishes += u' ' + QString(wireName(source));
    }
    hash.addData(wishes.toUtf8());
    return QString::fromLatin1(hash.result().toHex());
}

/// The path in the spelling in which it exists: file names may be composed or decomposed Unicode.
QString existingSpelling(const QString &path) {
    for (const QString &spelling :
         {path, path.normalized(QString::NormalizationForm_C), path.normalized(QString::NormalizationForm_D)}) {
        if (!spelling.isEmpty() && QFileInfo(spelling).isFile()) {
            return spelling;
        }
    }
    return {};
}

/// A search took longer than it may.
class Late : public std::exception {};

} // namespace

SourceFinder::SourceFinder(std::shared_ptr<const MatchIndex> index, MatchPreferences preferences, Limits limits,
                           QStringList absent, Warn warn)
    : _index(std::move(index)), _preferences(std::move(preferences)), _limits(std::move(limits)),
      _absent(std::move(absent)), _warn(std::move(warn)),
      _fingerprint(fingerprintOf(*_index, _preferences, _limits.seconds)) {}

std::optional<AudioFile> SourceFinder::readNamed(const QString &path) const {
    const QString spelling = existingSpelling(path);
    if (spelling.isEmpty()) {
        return std::nullopt;
    }
    if (const int position = _index->positionOf(spelling); position >= 0) {
        return _index->file(position);
    }
    try {
        return readAudio(spelling);
    } catch (const NotAudio &error) {
        _warn(u"%1 can't be used: %2"_s.arg(spelling, QString::fromUtf8(error.what())));
        return std::nullopt;
    }
}

FoundSource SourceFinder::find(const ListedTrack &track, const std::optional<StoredDecision> &decision) const {
    FoundSource found;
    if (decision && decision->kind == StoredDecision::Kind::Take) {
        if (isWebAddress(decision->path)) { // what it is shows when it has been downloaded
            found.kind = FoundSource::Kind::Found;
            found.file.path = decision->path;
            return found;
        }
        if (const auto file = readNamed(decision->path)) {
            found.kind = FoundSource::Kind::Found;
            found.file = *file;
            return found;
        }
        found.detail =
            u"The file you chose, %1, is gone or can't be read. Put it back and sync again."_s.arg(decision->path);
        return found;
    }
    return search(track, _preferences);
}

FoundSource SourceFinder::findBest(const ListedTrack &track) const {
    MatchPreferences preferences = _preferences;
    preferences.bestQuality = true;
    return search(track, preferences);
}

FoundSource SourceFinder::search(const ListedTrack &track, const MatchPreferences &preferences) const {
    const auto begun = _limits.now();
    const auto look = [&] {
        if (std::chrono::duration<double>(_limits.now() - begun).count() > _limits.seconds) {
            throw Late();
        }
    };
    FoundSource found;
    MatchResult match;
    bool isNamedShutOut = false;
    try {
        const auto file = readNamed(track.location);
        look();
        isNamedShutOut = file && !allowed(*file, preferences);
        if (file && !isNamedShutOut) {
            found.kind = FoundSource::Kind::Found;
            found.file = *file;
            return found;
        }
        match = findMatch(probeOf(track), *_index, preferences, look);
    } catch (const Late &) {
        found.kind = FoundSource::Kind::Late;
        found.detail = u"The search took longer than %1 s. Raise the search timeout in Settings and sync again."_s.arg(
            _limits.seconds);
        return found;
    }
    if (match.band == MatchResult::Band::Accepted) {
        found.kind = FoundSource::Kind::Found;
        found.file = _index->file(match.candidates.front().position);
        return found;
    }
    for (const MatchCandidate &candidate : match.candidates) {
        if (static_cast<int>(found.candidates.size()) >= _limits.candidates) {
            break;
        }
        found.candidates.push_back(
            candidateOf(_index->file(candidate.position), candidate.confidence, candidate.reason));
    }
    if (!found.candidates.empty()) {
        found.kind = FoundSource::Kind::Doubtful;
        return found;
    }
    found.detail =
        match.shutOut > 0 || isNamedShutOut
            ? u"Only files that your quality or source settings shut out fit. Change them in Settings, or add a better"
              " file to your collection and sync again."_s
        : !_absent.isEmpty()
            ? u"Not found, and the folder %1 of your collection isn't there. Connect the disk that it is on, or make "
              u"the"
              " folder, and sync again."_s.arg(_absent.join(u", "_s))
            : u"Not in your collection. Add the file to one of your collection folders and sync again."_s;
    return found;
}

} // namespace zelk::engine
