#include "Serve/Doctor.h"

#include "Files/FileProblem.h"
#include "Files/PrivateFile.h"
#include "Output/Convert.h"
#include "Serve/MethodError.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Less room than a few albums need is worth a word.
constexpr qint64 littleRoom = 2'000'000'000;

const QString okStatus = u"ok"_s;
const QString warningStatus = u"warn"_s;
const QString errorStatus = u"fail"_s;

DoctorCheck checkFfmpeg() {
    const QString program = ffmpegProgram();
    return program.isEmpty()
               ? DoctorCheck{u"ffmpeg"_s, u"ffmpeg"_s, warningStatus,
                             u"Not found. Install the package \"ffmpeg\" to convert Opus, Ogg and the like."_s, false}
               : DoctorCheck{u"ffmpeg"_s, u"ffmpeg"_s, okStatus, program, false};
}

/// The folder itself, or the nearest one above it, that is there.
QString nearestThatExists(const QString &folder) {
    QString existing = folder;
    while (!QFileInfo::exists(existing) && existing.contains(u'/')) {
        existing = existing.section(u'/', 0, -2);
    }
    return existing.isEmpty() ? u"/"_s : existing;
}

/// Whether a folder that is missing could be made. A link that leads nowhere stands in the way of one.
bool canBeMade(const QString &folder) {
    const QFileInfo parent(nearestThatExists(folder));
    return parent.isDir() && parent.isWritable() && !QFileInfo(folder).isSymbolicLink();
}

bool canAllBeMade(const QStringList &folders) {
    return std::all_of(folders.begin(), folders.end(), canBeMade);
}

DoctorCheck checkOutput(const QString &folder, bool heldFiles) {
    DoctorCheck check{u"output-folder"_s, u"Output folder"_s, okStatus, folder, false};
    const QFileInfo info(folder);
    if (!info.exists() && !canBeMade(folder)) {
        check.status = errorStatus;
        check.detail = u"%1 isn't there and can't be made. Choose another folder in Settings."_s.arg(folder);
    } else if (!info.exists() && heldFiles) {
        check.status = errorStatus;
        check.detail =
            u"%1 isn't there any more. Connect the disk that it is on, make it anew, or choose another folder in"
            " Settings."_s.arg(folder);
        check.fixable = true;
    } else if (!info.exists()) {
        check.status = warningStatus;
        check.detail = u"%1 isn't there yet. It is made at the first sync."_s.arg(folder);
        check.fixable = true;
    } else if (!info.isDir()) {
        check.status = errorStatus;
        check.detail = u"%1 is a file. Choose another folder in Settings."_s.arg(folder);
    } else if (!info.isWritable()) {
        check.status = errorStatus;
        check.detail = u"%1 can't be written. Make it writable, or choose another folder in Settings."_s.arg(folder);
    }
    return check;
}

QStringList missingOf(const QStringList &folders) {
    QStringList missing;
    for (const QString &folder : folders) {
        if (!QFileInfo(folder).isDir()) {
            missing += folder;
        }
    }
    return missing;
}

/// The first few problems; a folder of nothing but broken files must not fill the window.
QString unreadText(const QStringList &problems) {
    constexpr qsizetype mostTold = 3;
    const qsizetype more = problems.size() - mostTold;
    const QString told =
        problems.mid(0, mostTold).join(u"; "_s) + (more > 0 ? u"; and %1 more"_s.arg(more) : QString());
    return problems.size() == 1 ? u"1 file can't be read: %1."_s.arg(told)
                                : u"%1 files can't be read: %2."_s.arg(problems.size()).arg(told);
}

DoctorCheck checkPlaylists(const DoctorSubject &subject) {
    DoctorCheck check{u"playlists"_s, u"Playlists"_s, okStatus, {}, false};
    const QStringList missing = missingOf(subject.config.playlistDirs);
    const QString places = subject.config.playlistDirs.join(u", "_s);
    if (!missing.isEmpty()) {
        check.status = subject.playlists > 0 ? warningStatus : errorStatus;
        check.detail = u"%1 isn't there. Make it and put your exported playlists into it."_s.arg(missing.join(u", "_s));
        check.fixable = canAllBeMade(missing);
    } else if (subject.playlists == 0) {
        check.status = errorStatus;
        check.detail = u"None found. Put your exported playlists (CSV, M3U) into %1."_s.arg(places);
    } else {
        check.detail = u"%1 found in %2"_s.arg(subject.playlists).arg(places);
    }
    if (!subject.problems.isEmpty()) {
        const bool isSentence = check.status != okStatus;
        check.detail = *check.detail + (isSentence ? u" "_s : u". "_s) + unreadText(subject.problems);
        check.status = isSentence ? check.status : warningStatus;
    }
    return check;
}

DoctorCheck checkCollection(const DoctorSubject &subject) {
    DoctorCheck check{u"collection"_s, u"Collection"_s, okStatus, subject.config.collectionDirs.join(u", "_s), false};
    const QStringList missing = missingOf(subject.config.collectionDirs);
    if (!missing.isEmpty()) {
        check.status = missing.size() == subject.config.collectionDirs.size() ? errorStatus : warningStatus;
        check.detail = u"%1 isn't there. Make it and put your audio files into it."_s.arg(missing.join(u", "_s));
        check.fixable = canAllBeMade(missing);
    }
    return check;
}

DoctorCheck checkSpace(const QString &folder) {
    const QStorageInfo storage(nearestThatExists(folder));
    DoctorCheck check{u"disk-space"_s, u"Disk space"_s, okStatus, {}, false};
    if (!storage.isValid() || !storage.isReady()) {
        check.status = warningStatus;
        check.detail = u"The disk of %1 doesn't say how much room it has."_s.arg(folder);
        return check;
    }
    const QString room = u"%1 GB free"_s.arg(static_cast<double>(storage.bytesAvailable()) / 1e9, 0, 'f', 1);
    check.detail = room;
    if (storage.bytesAvailable() < littleRoom) {
        check.status = warningStatus;
        check.detail = u"Only %1. Make room on the disk of %2."_s.arg(room, folder);
    }
    return check;
}

} // namespace

std::vector<DoctorCheck> examine(const DoctorSubject &subject) {
    return {checkFfmpeg(), checkOutput(subject.outputDir, subject.outputHeldFiles), checkPlaylists(subject),
            checkCollection(subject), checkSpace(subject.outputDir)};
}

void fixCheck(const QString &checkId, const DoctorSubject &subject) {
    for (const DoctorCheck &check : examine(subject)) {
        if (check.id != checkId) {
            continue;
        }
        if (!check.fixable.value_or(false)) {
            if (check.status == okStatus) { // somebody else has been quicker
                return;
            }
            throw MethodError(EngineErrorCode::invalidParams, u"checkId: \"%1\" can't be fixed from here. %2"_s.arg(
                                                                  checkId, check.detail.value_or(QString())));
        }
        const QStringList folders = checkId == "output-folder"_L1 ? QStringList{subject.outputDir}
                                    : checkId == "playlists"_L1   ? missingOf(subject.config.playlistDirs)
                                                                  : missingOf(subject.config.collectionDirs);
        for (const QString &folder : folders) {
            makeFolder(folder);
        }
        return;
    }
    throw MethodError(EngineErrorCode::invalidParams, u"checkId: there is no check \"%1\""_s.arg(checkId));
}

} // namespace zelk::engine
