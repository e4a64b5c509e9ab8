#include "engine/EngineHome.h"

#include "Output/Tagging.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtEndian>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine::testing {

EngineHome::EngineHome() {
    for (const QString &folder : {collection({}), playlists({})}) {
        QDir().mkpath(folder);
    }
}

QString EngineHome::path(const QString &below) const {
    return _folder.filePath(below);
}

void EngineHome::write(const QString &path, const QByteArray &bytes) const {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("a test's file can't be written");
    }
}

QByteArray EngineHome::read(const QString &path) const {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void EngineHome::addAudio(const QString &below, const QString &artist, const QString &title) const {
    const QString extension = below.section(u'.', -1);
    const QString to = collection(below);
    write(to, read(QStringLiteral(AUDIO_FIXTURES "/tone.") + extension));
    writeTags(to, {title, artist, {}}, std::nullopt);
}

void EngineHome::addWav(const QString &below, int seconds) const {
    constexpr quint32 rate = 8'000;
    QByteArray second;
    for (quint32 i = 0; i < rate; ++i) {
        const auto value = static_cast<qint16>(8'000 * std::sin(i * 0.3));
        second.append(static_cast<char>(value & 0xFF)).append(static_cast<char>(value >> 8));
    }
    const QByteArray samples = second.repeated(seconds);
    const auto number = [](quint32 value, int bytes) {
        QByteArray text(4, 0);
        qToLittleEndian(value, text.data());
        return text.left(bytes);
    };
    QByteArray wav = "RIFF" + number(static_cast<quint32>(36 + samples.size()), 4) + "WAVEfmt " + number(16, 4) +
                     number(1, 2) + number(1, 2) + number(rate, 4) + number(rate * 2, 4) + number(2, 2) +
                     number(16, 2) + "data" + number(static_cast<quint32>(samples.size()), 4) + samples;
    write(collection(below), wav);
}

void EngineHome::addList(const QString &name, const QStringList &rows) const {
    QByteArray csv = "Track Name,Artist Name(s),Track Duration (ms)\n";
    for (const QString &row : rows) {
        const QStringList parts = row.split(u'|');
        csv += u"\"%1\",\"%2\",%3\n"_s.arg(parts[0], parts[1]).arg(parts[2].toDouble() * 1'000).toUtf8();
    }
    write(playlists(name), csv);
}

QStringList EngineHome::outputFiles() const {
    return QDir(output()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

QMap<QString, QByteArray> EngineHome::outputContents() const {
    QMap<QString, QByteArray> contents;
    for (const QString &name : outputFiles()) {
        contents.insert(name, read(output(u'/' + name)));
    }
    return contents;
}

EngineChild::EngineChild(const EngineHome &home, const QProcessEnvironment &extra)
    : _process(std::make_unique<QProcess>()) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name :
         {u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s, u"ZELK_PLAYLIST_DIRS"_s, u"ZELK_COLLECTION_DIRS"_s}) {
        environment.remove(name);
    }
    environment.insert(u"HOME"_s, home.path());
    environment.insert(extra);
    _process->setProcessEnvironment(environment);
    _process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    _process->start(QStringLiteral(ENGINE_PROGRAM), {u"serve"_s});
    if (!_process->waitForStarted()) {
        qFatal("the engine doesn't start");
    }
}

EngineChild::~EngineChild() {
    if (_process->state() != QProcess::NotRunning) {
        _process->kill();
        _process->waitForFinished();
    }
}

void EngineChild::send(const QByteArray &line) {
    _process->write(line + '\n');
    while (_process->bytesToWrite() > 0 && _process->waitForBytesWritten()) {
    }
}

QJsonObject EngineChild::call(const QString &method, const QJsonValue &params) {
    const QString id = u"r%1"_s.arg(++_requests);
    QJsonObject request{{u"id"_s, id}, {u"method"_s, method}};
    if (!params.isUndefined()) {
        request.insert(u"params"_s, params);
    }
    send(QJsonDocument(request).toJson(QJsonDocument::Compact));
    while (const auto line = readLine(60'000)) {
        if (line->value("id"_L1).toString() == id) {
            return *line;
        }
        _kept += *line;
    }
    return {};
}

void EngineChild::tell(const QString &method, const QJsonObject &params) {
    send(QJsonDocument(QJsonObject{{u"id"_s, u"n%1"_s.arg(++_requests)}, {u"method"_s, method}, {u"params"_s, params}})
             .toJson(QJsonDocument::Compact));
}

std::optional<QJsonObject> EngineChild::readLine(int patienceMs) {
    QElapsedTimer timer;
    timer.start();
    while (!_process->canReadLine()) {
        const auto left = patienceMs - timer.elapsed();
        if (left <= 0 || !_process->waitForReadyRead(static_cast<int>(left))) {
            if (!_process->canReadLine()) {
                return std::nullopt;
            }
        }
    }
    const QByteArray line = _process->readLine();
    const QJsonDocument document = QJsonDocument::fromJson(line);
    if (!document.isObject()) {
        qWarning("the engine wrote what is no object: %s", line.constData());
    }
    return document.object();
}

QJsonObject EngineChild::next(int patienceMs) {
    return !_kept.isEmpty() ? _kept.takeFirst() : readLine(patienceMs).value_or(QJsonObject());
}

QJsonObject EngineChild::until(const QString &event) {
    for (QJsonObject line = next(); !line.isEmpty(); line = next()) {
        if (line.value("event"_L1).toString() == event) {
            return line;
        }
    }
    return {};
}

QJsonObject EngineChild::untilTrack(const QString &event, qint64 row) {
    for (QJsonObject line = until(event); !line.isEmpty(); line = until(event)) {
        if (dataOf(line).value("trackId"_L1).toString().endsWith(u"#%1"_s.arg(row))) {
            return line;
        }
    }
    return {};
}

QJsonArray EngineChild::selectAll() {
    QJsonArray selection;
    const QJsonObject result = call(u"listPlaylists"_s).value("result"_L1).toObject();
    for (const auto &value : result.value("playlists"_L1).toArray()) {
        const QJsonObject playlist = value.toObject();
        if (!playlist.value("isFolder"_L1).toBool()) {
            selection += QJsonObject{{u"source"_s, playlist.value("source"_L1)},
                                     {u"id"_s, playlist.value("id"_L1)},
                                     {u"name"_s, playlist.value("name"_L1)}};
        }
    }
    return selection;
}

QList<QJsonObject> EngineChild::syncAll(const QJsonObject &options) {
    QJsonObject params{{u"selection"_s, selectAll()}};
    if (!options.isEmpty()) {
        params.insert(u"options"_s, options);
    }
    QList<QJsonObject> events;
    if (!call(u"startSync"_s, params).value("ok"_L1).toBool()) {
        return events;
    }
    for (QJsonObject line = until(u"syncStarted"_s); !line.isEmpty(); line = next()) {
        events += line;
        if (line.value("event"_L1).toString() == "syncDone"_L1) {
            break;
        }
    }
    return events;
}

std::optional<int> EngineChild::finish(int patienceMs) {
    _process->closeWriteChannel();
    if (!_process->waitForFinished(patienceMs) || _process->exitStatus() != QProcess::NormalExit) {
        return std::nullopt;
    }
    return _process->exitCode();
}

QJsonObject dataOf(const QJsonObject &event) {
    return event.value("data"_L1).toObject();
}

QMap<QString, QString> endings(const QList<QJsonObject> &events) {
    QMap<QString, QString> ends;
    for (const QJsonObject &event : events) {
        const QString name = event.value("event"_L1).toString();
        const QJsonObject data = dataOf(event);
        const QString track = data.value("trackId"_L1).toString();
        if (name == "trackFinished"_L1) {
            ends[track] = (data.value("status"_L1).toString() + u' ' + data.value("kind"_L1).toString()).trimmed();
        } else if (name == "diskCheck"_L1 && data.value("result"_L1).toString() == "present"_L1) {
            ends[track] = u"present"_s;
        } else if (name == "needsReview"_L1) {
            ends[track] = u"review"_s;
        }
    }
    return ends;
}

QList<QJsonObject> named(const QList<QJsonObject> &events, const QString &event) {
    QList<QJsonObject> found;
    for (const QJsonObject &each : events) {
        if (each.value("event"_L1).toString() == event) {
            found += each;
        }
    }
    return found;
}

} // namespace zelk::engine::testing
