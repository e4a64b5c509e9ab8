#include "Matching/Matcher.h"

#include <QDirIterator>
#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelk;
using namespace zelk::engine;

namespace {

/// The share of the rows with a file to be taken that must be. What is missed is told below, and why in
/// docs/notes/matching.md.
constexpr double leastRecall = 0.99;
constexpr int leastGroups = 320;

enum class Label { Right, RightOrAsk, Wrong, LikeASlip };

struct Group {
    QString where;
    AudioFile row;
    std::vector<AudioFile> files;
    std::vector<Label> labels;
};

struct Outcome {
    int takenRight = 0;
    int missed = 0; ///< Groups with a file to be taken, where none was.
    int wanted = 0;
    int slips = 0; ///< Wrong ones among the taken that no rule tells from a slip of the pen.
    QStringList wrong;
    QStringList asked;

    double precision() const {
        return takenRight / static_cast<double>(takenRight + slips + static_cast<int>(wrong.size()));
    }
    double recall() const { return 1 - missed / static_cast<double>(wanted); }
};

AudioFile trackOf(const QString &line) {
    QStringList fields = line.split(u'|');
    while (fields.size() < 5) {
        fields += QString();
    }
    AudioFile track;
    track.title = fields[0].trimmed();
    track.artist = fields[1].trimmed();
    track.durationSec = fields[2].trimmed().toDouble();
    track.album = fields[3].trimmed();
    track.isrc = fields[4].trimmed();
    track.bitrateKbps = 320;
    return track;
}

std::vector<Group> groupsIn(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("a labelled set can't be read");
    }
    std::vector<Group> groups;
    QString kind;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString &line = lines[i];
        const QString where = u"%1:%2"_s.arg(QFileInfo(path).fileName()).arg(i + 1);
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        if (line.startsWith(u'[')) {
            kind = line;
        } else if (line.startsWith(u' ')) {
            const qsizetype label = u"=?x!"_s.indexOf(line.trimmed().at(0));
            if (groups.empty() || label < 0) {
                qFatal("%s: no such label", qPrintable(where));
            }
            groups.back().files.push_back(trackOf(line.trimmed().mid(1)));
            groups.back().files.back().path = u"/c/"_s + where;
            groups.back().labels.push_back(static_cast<Label>(label));
        } else {
            groups.push_back({where + u' ' + kind + u' ' + line, trackOf(line), {}, {}});
        }
    }
    return groups;
}

std::vector<Group> allGroups() {
    std::vector<Group> groups;
    for (QDirIterator files(QStringLiteral(MATCHING_FIXTURES), {u"*.txt"_s}); files.hasNext();) {
        const std::vector<Group> more = groupsIn(files.next());
        groups.insert(groups.end(), more.begin(), more.end());
    }
    return groups;
}

Probe probeOf(const AudioFile &track) {
    return makeProbe(track.title, track.artist, track.album, track.durationSec, track.isrc);
}

void judge(const Group &group, const MatchIndex &index, Outcome &outcome) {
    MatchPreferences preferences;
    preferences.sources = allCases<SourceId>();
    const MatchResult result = findMatch(probeOf(group.row), index, preferences);
    const bool wanted = std::find(group.labels.begin(), group.labels.end(), Label::Right) != group.labels.end();
    outcome.wanted += wanted ? 1 : 0;
    if (result.band != MatchResult::Band::Accepted) {
        outcome.missed += wanted ? 1 : 0;
        if (wanted) {
            outcome.asked +=
                group.where + u" – "_s + (result.candidates.empty() ? u"missing"_s : result.candidates.front().reason);
        }
        return;
    }
    const QString taken = index.file(result.candidates.front().position).path;
    Label label = Label::Wrong;
    for (std::size_t i = 0; i < group.files.size(); ++i) {
        label = group.files[i].path == taken ? group.labels[i] : label;
    }
    if (label == Label::Wrong) {
        outcome.wrong += group.where + u" – took "_s + taken;
    } else if (label == Label::LikeASlip) {
        ++outcome.slips;
    } else {
        ++outcome.takenRight;
    }
}

void tell(const char *title, const Outcome &outcome) {
    qInfo("%s: taken %d right, %d wrong, %d more by a slip of the pen (precision %.4f); %d of %d missed (recall %.4f)",
          title, outcome.takenRight, static_cast<int>(outcome.wrong.size()), outcome.slips, outcome.precision(),
          outcome.missed, outcome.wanted, outcome.recall());
    for (const QString &line : outcome.wrong) {
        qInfo("  wrong: %s", qUtf8Printable(line));
    }
    for (const QString &line : outcome.asked) {
        qInfo("  missed: %s", qUtf8Printable(line));
    }
}

} // namespace

class EngineMatchSet : public QObject {
    Q_OBJECT

    const std::vector<Group> _groups = allGroups();

private Q_SLOTS:
    void theSetIsLargeAndNamesEachRowOnce() {
        QVERIFY2(static_cast<int>(_groups.size()) >= leastGroups, qPrintable(QString::number(_groups.size())));
        QSet<QString> rows;
        for (const Group &group : _groups) {
            const QString row =
                group.row.title + u'|' + group.row.artist + u'|' + QString::number(group.row.durationSec);
            QVERIFY2(!rows.contains(row), qPrintable(group.where));
            rows.insert(row);
        }
    }

    void noWrongVersionIsTakenByItselfAmongTheFilesOfARow() {
        Outcome outcome;
        for (const Group &group : _groups) {
            judge(group, MatchIndex(group.files), outcome);
        }
        tell("each row among its own files", outcome);
        QCOMPARE(outcome.wrong, QStringList());
        QVERIFY(outcome.recall() >= leastRecall);
    }

    void noWrongVersionIsTakenByItselfAmongTheFilesOfAllRows() {
        std::vector<AudioFile> files;
        for (const Group &group : _groups) {
            files.insert(files.end(), group.files.begin(), group.files.end());
        }
        const MatchIndex index(std::move(files));
        Outcome outcome;
        for (const Group &group : _groups) {
            judge(group, index, outcome);
        }
        tell("each row among the files of all", outcome);
        QCOMPARE(outcome.wrong, QStringList());
        QVERIFY(outcome.recall() >= leastRecall);
    }
};

QTEST_GUILESS_MAIN(EngineMatchSet)
#include "tst_enginematchset.moc"
