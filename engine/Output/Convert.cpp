#include "Output/Convert.h"

#include "Files/FileProblem.h"
#include "Library/AudioReader.h"
#include "Output/CopyFile.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// How often a stop is looked for while ffmpeg works.
constexpr int pollMs = 50;

constexpr std::chrono::seconds startingPatience{20};

QString lastLineOf(const QByteArray &output) {
    return QString::fromUtf8(output).trimmed().section(u'\n', -1).trimmed();
}

QStringList argumentsFor(const AudioFile &source, const QString &to) {
    QStringList arguments{
        u"-nostdin"_s, u"-v"_s,    u"error"_s,         u"-n"_s, u"-i"_s,      u"file:"_s + source.path,
        u"-map"_s,     u"0:a:0"_s, u"-map_metadata"_s, u"0"_s,  u"-fflags"_s, u"+bitexact"_s};
    arguments += source.lossless ? QStringList{u"-c:a"_s, u"pcm_s24be"_s, u"-write_id3v2"_s, u"1"_s}
                                 : QStringList{u"-c:a"_s, u"libmp3lame"_s, u"-b:a"_s, u"320k"_s};
    arguments += u"file:"_s + to;
    return arguments;
}

/// Otherwise a converter whose engine was killed would go on writing, behind the back of the one started next.
void endWithThisProcess(QProcess &process) {
    process.setChildProcessModifier([parent = ::getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) { // it was killed before it could be told to
            ::_exit(EXIT_FAILURE);
        }
    });
}

/// Waits for the converter; throws Stopped, or ConversionFailed if it takes too long. It has then ended.
void await(QProcess &process, const AudioFile &source, const std::stop_token &stop,
           std::chrono::milliseconds patience) {
    QElapsedTimer timer;
    timer.start();
    while (!process.waitForFinished(pollMs) && process.state() != QProcess::NotRunning) {
        const bool late = timer.hasExpired(patience.count());
        if (late || stop.stop_requested()) {
            process.kill();
            process.waitForFinished();
        }
        if (stop.stop_requested()) {
            throw Stopped();
        }
        if (late) {
            throw ConversionFailed(
                u"ffmpeg didn't come to an end with %1, and was ended. Sync again; if it hangs again,"
                " replace the file by a sound one."_s.arg(source.path)
                    .toStdString());
        }
    }
}

/// Throws unless the converter ended well and made what can be heard.
void judge(QProcess &process, const AudioFile &source, const QString &to) {
    const QString said = lastLineOf(process.readAll());
    const auto refuse = [](const QString &message) { throw ConversionFailed(message.toStdString()); };
    // The system's words in English, which it is made to speak, whatever the user's language.
    static const std::pair<int, QLatin1StringView> full[] = {
        {ENOSPC, "No space left on device"_L1}, {EDQUOT, "Disk quota exceeded"_L1}, {EFBIG, "File too large"_L1}};
    for (const auto &[code, words] : full) {
        if (said.contains(words)) {
            throw FileProblem(to, code);
        }
    }
    if (process.error() == QProcess::FailedToStart) {
        refuse(u"ffmpeg can't be started (%1). Install the package \"ffmpeg\" again and sync again."_s.arg(
            process.errorString()));
    }
    if (process.exitStatus() != QProcess::NormalExit) {
        refuse(u"ffmpeg broke off in the middle of %1. Sync again; if it happens again, replace the file by a sound"
               " one."_s.arg(source.path));
    }
    if (process.exitCode() != 0) {
        throw SourceUnsound(
            u"%1 can't be converted (%2). Replace the file by a sound one and sync again."_s
                .arg(source.path, said.isEmpty() ? u"ffmpeg ended with status %1"_s.arg(process.exitCode()) : said)
                .toStdString());
    }
    try {
        readAudio(to);
    } catch (const NotAudio &error) {
        refuse(u"What ffmpeg has made of %1 is no music (%2). Install the package \"ffmpeg\" again, or replace the file"
               " by a sound one, and sync again."_s.arg(source.path, QString::fromUtf8(error.what())));
    }
}

} // namespace

TargetForm targetFormOf(const AudioFile &source) {
    static const QHash<QString, QString> readable = {{u"FLAC"_s, u"flac"_s}, {u"MP3"_s, u"mp3"_s},
                                                     {u"AAC"_s, u"m4a"_s},   {u"ALAC"_s, u"m4a"_s},
                                                     {u"WAV"_s, u"wav"_s},   {u"AIFF"_s, u"aiff"_s}};
    if (const auto extension = readable.constFind(source.format); extension != readable.constEnd()) {
        return {*extension, source.format, false};
    }
    return source.lossless ? TargetForm{u"aiff"_s, u"AIFF"_s, true} : TargetForm{u"mp3"_s, u"MP3"_s, true};
}

QString ffmpegProgram() {
    return QStandardPaths::findExecutable(u"ffmpeg"_s);
}

std::chrono::milliseconds conversionPatience(const AudioFile &source) {
    return startingPatience + std::chrono::milliseconds(static_cast<qint64>(source.durationSec * 1'000));
}

void convertAudio(const AudioFile &source, const QString &to, std::stop_token stop,
                  std::chrono::milliseconds patience) {
    const QString program = ffmpegProgram();
    if (program.isEmpty()) {
        throw ConversionFailed(
            u"%1 files have to be converted, and ffmpeg isn't there. Install the package \"ffmpeg\" and sync again."_s
                .arg(source.format)
                .toStdString());
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C"_s);
    process.setProcessEnvironment(environment);
    endWithThisProcess(process);
    process.start(program, argumentsFor(source, to));
    try {
        await(process, source, stop, patience);
        judge(process, source, to);
    } catch (...) {
        QFile::remove(to);
        throw;
    }
}

} // namespace zelk::engine
