#include "Output/Convert.h"

#include "Output/CopyFile.h"

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// How often a stop is looked for while ffmpeg works.
constexpr int pollMs = 50;

QString lastLineOf(const QByteArray &output) {
    return QString::fromUtf8(output).trimmed().section(u'\n', -1).trimmed();
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

void convertAudio(const AudioFile &source, const QString &to, std::stop_token stop) {
    const QString program = ffmpegProgram();
    if (program.isEmpty()) {
        throw ConversionFailed(
            u"%1 files have to be converted, and ffmpeg isn't there. Install the package \"ffmpeg\" and sync again."_s
                .arg(source.format)
                .toStdString());
    }
    QStringList arguments{
        u"-nostdin"_s, u"-v"_s,    u"error"_s,         u"-n"_s, u"-i"_s,      u"file:"_s + source.path,
        u"-map"_s,     u"0:a:0"_s, u"-map_metadata"_s, u"0"_s,  u"-fflags"_s, u"+bitexact"_s};
    arguments += source.lossless ? QStringList{u"-c:a"_s, u"pcm_s24be"_s, u"-write_id3v2"_s, u"1"_s}
                                 : QStringList{u"-c:a"_s, u"libmp3lame"_s, u"-b:a"_s, u"320k"_s};
    arguments += u"file:"_s + to;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    while (!process.waitForFinished(pollMs) && process.state() != QProcess::NotRunning) {
        if (stop.stop_requested()) {
            process.kill();
            process.waitForFinished();
            QFile::remove(to);
            throw Stopped();
        }
    }
    if (process.error() == QProcess::FailedToStart || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        QFile::remove(to);
        const QString said = lastLineOf(process.readAll());
        throw ConversionFailed(u"%1 can't be converted (%2). Replace the file by a sound one and sync again."_s
                                   .arg(source.path, said.isEmpty() ? process.errorString() : said)
                                   .toStdString());
    }
}

} // namespace zelk::engine
