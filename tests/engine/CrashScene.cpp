#include "engine/CrashScene.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>

#include <csignal>
#include <sys/stat.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine::testing {

namespace {

constexpr int tickMs = 2;
constexpr int patienceMs = 60'000;

QByteArray line(const QString &id, const QString &method, const QJsonObject &params) {
    QJsonObject request{{u"id"_s, id}, {u"method"_s, method}};
    if (!params.isEmpty()) {
        request.insert(u"params"_s, params);
    }
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

QString trackOf(const QJsonObject &event) {
    return dataOf(event).value("trackId"_L1).toString();
}

using FileIdentity = std::pair<quint64, qint64>;

/// Which file it is and when it was last written: both stay as long as nobody writes it again.
std::optional<FileIdentity> identityOf(const QString &path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity(status.st_ino, status.st_mtim.tv_sec * qint64(1'000'000'000) + status.st_mtim.tv_nsec);
}

QMap<QString, FileIdentity> identities(const EngineHome &home) {
    QMap<QString, FileIdentity> all;
    for (const QString &name : home.outputFiles()) {
        if (const auto identity = identityOf(home.output(u'/' + name))) {
            all.insert(name, *identity);
        }
    }
    return all;
}

/// The tracks that ended well.
QSet<QString> finishedOf(const QList<QJsonObject> &events) {
    QSet<QString> finished;
    for (const QJsonObject &event : named(events, u"trackFinished"_s)) {
        if (dataOf(event).value("status"_L1).toString() == "ok"_L1) {
            finished.insert(trackOf(event));
        }
    }
    return finished;
}

} // namespace

CrashScene::CrashScene(Extent extent) {
    QDir().mkpath(_home.path(u"bin"_s));
    QFile::link(QStringLiteral(CONVERTER_PROGRAM), _home.path(u"bin/ffmpeg"_s));
    _environment.insert(u"PATH"_s, _home.path(u"bin:"_s) + qEnvironmentVariable("PATH"));
    _environment.insert(u"CONVERTED"_s, QStringLiteral(AUDIO_FIXTURES "/tone.mp3"));
    _home.addAudio(u"o.opus"_s, u"Ann"_s, u"Converted"_s);
    for (const QString &title : {u"Slow Burn"_s, u"Quiet Fire"_s}) { // doubtful, with two to choose from
        _home.addAudio(title + u" 1.mp3"_s, u"Ines"_s, title + u" (Live)"_s);
        _home.addAudio(title + u" 2.flac"_s, u"Ines"_s, title + u" (Acoustic)"_s);
    }
    QStringList first{u"Slow Burn|Ines|2"_s, u"Quiet Fire|Ines|2"_s, u"Long|Zed|200"_s};
    QStringList second{u"Converted|Ann|2"_s, u"Nowhere|Nobody|2"_s, u"Slow Burn|Ines|2"_s};
    _home.addWav(u"Zed - Long.wav"_s, 200);
    if (extent == Extent::Many) {
        _home.addWav(u"Zed - long.wav"_s, 100); // of nearly one name
        second.prepend(u"long|Zed|100"_s);
        for (int i = 0; i < 4; ++i) {
            const QString title = QString(QChar(u'A' + i)).repeated(6);
            _home.addAudio(u"%1.%2"_s.arg(i).arg(i % 2 == 0 ? u"flac"_s : u"mp3"_s), u"Ann"_s, title);
            first += title + u"|Ann|2"_s;
        }
        second += first.last();
    }
    _home.addList(u"A.csv"_s, first);
    _home.addList(u"B.csv"_s, second);
    {
        EngineChild engine(_home);
        _selection = engine.selectAll();
    }
    for (int i = 0; i < 2; ++i) { // the second time with all programs and files in the system's memory
        reset();
        QElapsedTimer timer;
        timer.start();
        _undisturbed = live({}, [](const Life &) { return false; }).events;
        _undisturbedMs = timer.elapsed();
    }
    _expected = _home.outputContents();
}

void CrashScene::reset() {
    QDir(_home.output()).removeRecursively();
    QDir(_home.path(u".local"_s)).removeRecursively();
}

QByteArray CrashScene::decisionOn(const QJsonObject &review) const {
    // The one that isn't the engine's own favourite, so that a lost decision shows.
    const QJsonObject chosen = dataOf(review).value("candidates"_L1).toArray().last().toObject();
    const QJsonObject decision{{u"kind"_s, u"candidate"_s}, {u"candidateId"_s, chosen.value("id"_L1)}};
    return line(u"n"_s, u"reviewDecision"_s, {{u"trackId"_s, trackOf(review)}, {u"decision"_s, decision}});
}

CrashScene::Life CrashScene::live(const QProcessEnvironment &extra,
                                  const std::function<bool(const Life &life)> &killNow) {
    Life life;
    QProcessEnvironment environment = _environment;
    environment.insert(extra);
    EngineChild engine(_home, environment);
    QList<QJsonObject> later; // reviews to be decided on after the run
    QSet<QString> open;       // decided and not finished
    bool over = false;
    QElapsedTimer timer;
    timer.start();
    const auto decide = [&](const QJsonObject &review) {
        open.insert(trackOf(review));
        engine.send(decisionOn(review) + '\n' + line(u"d "_s + trackOf(review), u"getConfig"_s, {}));
    };
    const auto take = [&](const QJsonObject &line) {
        const QString event = line.value("event"_L1).toString();
        if (const QString id = line.value("id"_L1).toString(); id.startsWith("d "_L1)) {
            life.decided.insert(id.mid(2));
        }
        if (event.isEmpty()) {
            return;
        }
        life.events += line;
        if (event == "needsReview"_L1 && !life.asked.contains(trackOf(line))) {
            life.asked.insert(trackOf(line));
            if (dataOf(line).value("label"_L1).toString().contains("Quiet"_L1)) {
                decide(line);
            } else {
                later += line;
            }
        } else if (event == "trackFinished"_L1) {
            open.remove(trackOf(line));
        } else if (event == "syncDone"_L1) {
            over = true;
            QSet<QString> labels; // one decision covers all rows of a recording
            for (const QJsonObject &review : std::exchange(later, {})) {
                open.insert(trackOf(review));
                if (const QString label = dataOf(review).value("label"_L1).toString(); !labels.contains(label)) {
                    labels.insert(label);
                    decide(review);
                }
            }
        }
    };
    engine.send(line(u"s"_s, u"startSync"_s, {{u"selection"_s, _selection}}));
    while (engine.process().state() == QProcess::Running && timer.elapsed() < patienceMs) {
        if (killNow(life)) {
            engine.process().kill();
            break;
        }
        if (const QJsonObject line = engine.next(tickMs); !line.isEmpty()) {
            take(line);
        }
        if (over && open.isEmpty()) {
            life.done = true;
            break;
        }
    }
    if (!life.done) {
        engine.process().waitForFinished();
        for (QJsonObject line = engine.next(0); !line.isEmpty(); line = engine.next(0)) {
            take(line); // what it said before its end counts as told
        }
    }
    return life;
}

QString CrashScene::recover(const Life &life) {
    const auto before = identities(_home);
    const Life again = live({}, [](const Life &) { return false; });
    if (!again.done) {
        return u"the next run didn't end"_s;
    }
    if (const QStringList partial = _home.outputFiles().filter(u"partial"_s); !partial.isEmpty()) {
        return u"left lying about: "_s + partial.join(u", "_s);
    }
    const auto contents = _home.outputContents();
    if (contents != _expected) {
        QStringList wrong;
        for (const QString &name : QSet<QString>(contents.keyBegin(), contents.keyEnd())
                                       .unite(QSet<QString>(_expected.keyBegin(), _expected.keyEnd()))) {
            if (contents.value(name) != _expected.value(name)) {
                wrong += u"%1 (%2 bytes for %3)"_s.arg(name)
                             .arg(contents.value(name).size())
                             .arg(_expected.value(name).size());
            }
        }
        return u"another folder than without the kill: "_s + wrong.join(u", "_s);
    }
    // What stood under its final name is whole by now, since the names and bytes are right, and is the same file still.
    const auto after = identities(_home);
    for (auto file = before.cbegin(); file != before.cend(); ++file) {
        if (_expected.contains(file.key()) && after.value(file.key()) != file.value()) {
            return u"written again: "_s + file.key();
        }
    }
    const QMap<QString, QString> ends = endings(again.events);
    for (const QString &track : finishedOf(life.events)) {
        if (ends.value(track) != "present"_L1) {
            return u"%1 was finished, and then %2"_s.arg(track, ends.value(track));
        }
    }
    for (const QString &track : life.decided) {
        if (again.asked.contains(track)) {
            return u"%1 was decided on, and asked again"_s.arg(track);
        }
    }
    return {};
}

} // namespace zelk::engine::testing
